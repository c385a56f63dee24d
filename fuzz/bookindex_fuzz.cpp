// The bookmark index read from any bytes: every record becomes a folder (up to the
// 16-bit limit), and what is written back reads again to the same folders and the
// same bytes.
#include "core/model/book.h"
#include "scratchfolder.h"

namespace {
struct Snapshot
{
    QList<QStringList> folders;
    QByteArray bytes;
};

Snapshot saveAndRead(const ScratchFolder &folder, Book &book)
{
    FUZZ_ASSERT(book.SaveAllThema());
    Book again(folder.path());
    again.LoadAllThema();
    Snapshot snapshot;
    snapshot.bytes = folder.read(QStringLiteral("Book.bkm"));
    for (qsizetype i = 0; i < again.colThema.count(); ++i) {
        const Thema &t = again.colThema.at(i);
        snapshot.folders.append({t.DirName(), t.FileName, QString::number(t.Sequenz),
            QString::number(t.Nr), t.filePath().isEmpty() ? QStringLiteral("refused") : QString()});
    }
    return snapshot;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const ScratchFolder folder;
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    folder.write(QStringLiteral("Book.bkm"), bytes);
    Book book(folder.path());
    book.LoadAllThema();
    if (bytes.size() % Book::RecordLength == 0)
        FUZZ_ASSERT(
            book.colThema.count() == std::min<qsizetype>(bytes.size() / Book::RecordLength, 32767));
    else
        FUZZ_ASSERT(book.colThema.isEmpty());
    // No folder was loaded, so saving rewrites the index alone.
    const Snapshot first = saveAndRead(folder, book);
    FUZZ_ASSERT(first.folders.size() == book.colThema.count());
    Book reread(folder.path());
    reread.LoadAllThema();
    const Snapshot second = saveAndRead(folder, reread);
    FUZZ_ASSERT(second.folders == first.folders);
    FUZZ_ASSERT(second.bytes == first.bytes);
    return 0;
}
