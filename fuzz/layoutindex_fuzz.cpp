// The layout index read from any bytes: every record becomes a layout, and the index
// written back reads again to the same layouts and the same bytes.
#include "core/model/layoutbook.h"
#include "scratchfolder.h"

namespace {
QByteArray saveAndRead(const ScratchFolder &folder, LayoutBook &book)
{
    // Nothing is edited: saving rewrites the index alone.
    FUZZ_ASSERT(book.SaveAllLayouts());
    return folder.read(QStringLiteral("WLBook.vtp"));
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const ScratchFolder folder;
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    folder.write(QStringLiteral("WLBook.vtp"), bytes);
    LayoutBook first(folder.path());
    first.LoadAllLayouts();
    const qsizetype records = bytes.size() % LayoutBook::RecordLength == 0
        ? bytes.size() / LayoutBook::RecordLength
        : 0;
    FUZZ_ASSERT(first.colLayout.size() == records);
    const QByteArray once = saveAndRead(folder, first);
    LayoutBook second(folder.path());
    second.LoadAllLayouts();
    FUZZ_ASSERT(second.colLayout.size() == records);
    for (qsizetype i = 0; i < records; ++i)
        FUZZ_ASSERT(second.colLayout.at(i).Sequenz == first.colLayout.at(i).Sequenz);
    FUZZ_ASSERT(saveAndRead(folder, second) == once);
    return 0;
}
