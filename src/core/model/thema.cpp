#include "core/model/thema.h"

#include "core/records/recordcodec.h"
#include "core/records/recordfile.h"

#include <QFile>
#include <QFileInfo>

namespace {
// Folder file record: number, title, address, description, two flags.
constexpr int NrAt = 0;
constexpr int TitelAt = 2, TitelWidth = 255;
constexpr int UrlAt = 257, UrlWidth = 2083;
constexpr int InfoAt = 2340, InfoWidth = 1024;
constexpr int AdresszeileAt = 3364;
constexpr int ToolbarAt = 3366;
} // namespace

Thema::Thema(QString dataFolder)
    : m_dataFolder(std::move(dataFolder))
{ }

void Thema::setDirName(const QString &name)
{
    m_dirName = name;
    IsEdit = true;
}

QString Thema::bookmarkKey(qint16 bookmarkNr) const
{
    return bookmarkKey(Nr, bookmarkNr);
}

namespace {
// Writes the decimal digits of n before `end` and returns where they begin.
char16_t *digitsBefore(char16_t *end, qint16 n)
{
    int value = n < 0 ? -int(n) : int(n);
    do {
        *--end = char16_t(u'0' + value % 10);
        value /= 10;
    } while (value > 0);
    if (n < 0)
        *--end = u'-';
    return end;
}
} // namespace

QString Thema::bookmarkKey(qint16 folderNr, qint16 bookmarkNr)
{
    // Built in place: a large folder needs one key for each of its bookmarks.
    char16_t buffer[16];
    char16_t *const end = buffer + 16;
    char16_t *begin = digitsBefore(end, bookmarkNr);
    *--begin = u'|';
    begin = digitsBefore(begin, folderNr);
    *--begin = u'>';
    return QString(reinterpret_cast<const QChar *>(begin), end - begin);
}

QString Thema::filePath() const
{
    if (m_fileRefused)
        return {};
    return ArchiveFiles::ownFilePath(
        m_dataFolder, RecordCodec::trimBlanks(FileName), ArchiveFiles::FileKind::Folder);
}

QByteArray Thema::encodeRecord(const Bookmark &bookmark, qint16 number)
{
    QByteArray record(RecordLength, Qt::Uninitialized);
    encodeRecordTo(record.data(), bookmark, number);
    return record;
}

void Thema::encodeRecordTo(char *out, const Bookmark &bookmark, qint16 number)
{
    RecordWriter writer(out, RecordLength);
    writer.putInt16(NrAt, number);
    writer.putText(TitelAt, TitelWidth, bookmark.Titel);
    writer.putText(UrlAt, UrlWidth, bookmark.URL);
    writer.putText(InfoAt, InfoWidth, bookmark.Info);
    writer.putInt16(AdresszeileAt, bookmark.Adresszeile);
    writer.putInt16(ToolbarAt, bookmark.Toolbar);
}

Bookmark Thema::decodeRecord(QByteArrayView record)
{
    const RecordReader reader(record, RecordLength);
    Bookmark bookmark;
    bookmark.Nr = reader.int16(NrAt);
    bookmark.Titel = reader.text(TitelAt, TitelWidth, RecordCodec::Trim::Blanks);
    bookmark.URL = reader.text(UrlAt, UrlWidth, RecordCodec::Trim::Blanks);
    // A description keeps its line breaks, but a blank left before one by the fixed
    // width of the field is dropped.
    bookmark.Info = reader.text(InfoAt, InfoWidth, RecordCodec::Trim::Blanks);
    if (bookmark.Info.contains(u'\n'))
        bookmark.Info.replace(QStringLiteral(" \r\n"), QStringLiteral("\r\n"));
    bookmark.Adresszeile = reader.int16(AdresszeileAt);
    bookmark.Toolbar = reader.int16(ToolbarAt);
    return bookmark;
}

FileOutcome Thema::LoadBookmarks()
{
    if (filePath().isEmpty())
        return FileOutcome::failed(
            FileName, FileOutcome::Problem::InvalidName, FileOutcome::invalidNameReason(FileName));
    FileOutcome outcome;
    outcome.path = filePath();
    KeyedList<Bookmark> bookmarks;
    bookmarks.reserve(std::min<qint64>(QFileInfo(outcome.path).size() / RecordLength, 32767));
    bool sequential = true;
    const auto take = [this, &bookmarks, &sequential](QByteArrayView record) {
        if (bookmarks.count() >= 32767) // the numbers are 16-bit
            return false;
        Bookmark bookmark = decodeRecord(record);
        // Numbers are positions in files this program writes; a damaged file with a
        // number twice or out of range still keeps every entry.
        QString key = bookmarkKey(bookmark.Nr);
        // Numbered 1, 2, 3 ... as this program writes them, the next number is free.
        const bool next = sequential && bookmark.Nr == bookmarks.count() + 1;
        sequential = next;
        if (!next && (bookmark.Nr < 1 || bookmarks.contains(key))) {
            qint16 free = qint16(std::min<qsizetype>(bookmarks.count() + 1, 32767));
            while (bookmarks.contains(bookmarkKey(free)))
                free = free == 32767 ? 1 : qint16(free + 1);
            bookmark.Nr = free;
            key = bookmarkKey(free);
        }
        bookmarks.add(key, std::move(bookmark));
        return true;
    };
    const RecordFile::ReadStatus read
        = RecordFile::readEach(outcome.path, RecordLength, RecordFile::Missing::CreateEmpty, take);
    outcome = read.outcome(outcome.path);
    // A file that could not be read to its end gives no bookmarks at all.
    if (!read.ok())
        bookmarks.clear();
    if (!bookmarks.isEmpty()) {
        ItCounter = qint16(std::min<qsizetype>(bookmarks.count(), 32767));
        colBookmark = std::move(bookmarks);
    } else {
        ItCounter = 0;
    }
    return outcome;
}

FileOutcome Thema::ensureLoaded()
{
    if (isLoaded())
        return {filePath(), {}, {}};
    FileOutcome outcome = LoadBookmarks();
    // An unreadable file must not turn into an empty folder that a save would write.
    if (!colBookmark && outcome.ok())
        colBookmark.emplace();
    return outcome;
}

FileOutcome Thema::SaveBookmarks()
{
    if (filePath().isEmpty())
        return FileOutcome::failed(
            FileName, FileOutcome::Problem::InvalidName, FileOutcome::invalidNameReason(FileName));
    FileOutcome outcome;
    outcome.path = filePath();
    if (colBookmark) {
        // Every record is encoded in place in the file's bytes.
        QByteArray bytes(colBookmark->count() * RecordLength, Qt::Uninitialized);
        for (qsizetype i = 0; i < colBookmark->count(); ++i)
            encodeRecordTo(bytes.data() + i * RecordLength, colBookmark->at(i), qint16(i + 1));
        if (!RecordFile::writeBytes(outcome.path, bytes, &outcome.error))
            outcome.problem = FileOutcome::Problem::CannotWrite;
    }
    if (outcome.ok())
        IsEdit = false;
    return outcome;
}

qint16 Thema::GetNewKey()
{
    if (ItCounter >= 32767)
        return 0;
    ItCounter = qint16(ItCounter + 1);
    return ItCounter;
}

Bookmark *Thema::addBookmark(Bookmark bookmark)
{
    if (!colBookmark)
        colBookmark.emplace();
    const QString key = bookmarkKey(bookmark.Nr);
    return colBookmark->add(key, std::move(bookmark));
}
