#include "core/model/book.h"

#include "core/records/recordcodec.h"
#include "core/records/recordfile.h"

#include <QFile>
#include <QSet>

namespace {
// Index record: sequence number, folder number, name, file name.
constexpr int SequenzAt = 0;
constexpr int NrAt = 4;
constexpr int DirNameAt = 8, DirNameWidth = 200;
constexpr int FileNameAt = 208, FileNameWidth = 2083;
} // namespace

Book::Book(QString dataFolder)
    : m_dataFolder(std::move(dataFolder))
{ }

QString Book::indexPath() const
{
    return m_dataFolder + QStringLiteral("/Book.bkm");
}

QString Book::folderKey(qint16 nr)
{
    return u'>' + QString::number(nr);
}

QByteArray Book::encodeRecord(const Thema &folder, qint32 number)
{
    RecordWriter writer(RecordLength);
    writer.putInt32(SequenzAt, folder.Sequenz);
    writer.putInt32(NrAt, number);
    writer.putText(DirNameAt, DirNameWidth, folder.DirName());
    writer.putText(FileNameAt, FileNameWidth, folder.FileName);
    return writer.bytes();
}

bool Book::LoadAllThema()
{
    m_outcomes.last = {};
    KeyedList<Thema> folders;
    QSet<QString> fileNames;
    const auto take = [this, &folders, &fileNames](QByteArrayView record) {
        if (folders.count() >= 32767) // folder numbers are 16-bit
            return false;
        const RecordReader reader(record, RecordLength);
        Thema folder(m_dataFolder);
        const qint32 number = reader.int32(NrAt);
        folder.Nr = qint16(number);
        // Numbers are positions in files this program writes; a damaged index with a
        // number twice or out of range still keeps every folder.
        if (number < 1 || number > 32767 || folders.contains(folderKey(folder.Nr))) {
            qint16 free = qint16(std::min<qsizetype>(folders.count() + 1, 32767));
            while (folders.contains(folderKey(free)))
                free = free == 32767 ? 1 : qint16(free + 1);
            folder.Nr = free;
        }
        folder.FileName = reader.text(FileNameAt, FileNameWidth, RecordCodec::Trim::Blanks);
        // A file named twice is the first folder's: the other must not read, save over
        // or delete it.
        if (!fileNames.contains(folder.FileName))
            fileNames.insert(folder.FileName);
        else
            folder.refuseFile();
        folder.initDirName(reader.text(DirNameAt, DirNameWidth, RecordCodec::Trim::Blanks));
        folder.IsEdit = false;
        folder.Sequenz = reader.int32(SequenzAt);
        SequenzMax = std::max(SequenzMax, folder.Sequenz);
        const QString key = folderKey(folder.Nr);
        folders.add(key, std::move(folder));
        return true;
    };
    const RecordFile::ReadStatus read
        = RecordFile::readEach(indexPath(), RecordLength, RecordFile::Missing::CreateEmpty, take);
    m_outcomes.note(read.outcome(indexPath()));
    // An index that could not be read to its end names no folder.
    if (!read.ok())
        folders.clear();
    if (folders.isEmpty()) {
        ItCounter = 0;
        return false;
    }
    ItCounter = qint16(folders.count());
    colThema = std::move(folders);
    return true;
}

bool Book::SaveAllThema()
{
    m_outcomes.last = {};
    QList<QByteArray> records;
    records.reserve(colThema.count());
    bool ok = true;
    for (qsizetype i = 0; i < colThema.count(); ++i) {
        Thema &folder = colThema.at(i);
        records.append(encodeRecord(folder, qint32(i + 1)));
        if (folder.IsEdit) {
            const FileOutcome saved = folder.SaveBookmarks();
            m_outcomes.note(saved);
            ok = ok && saved.ok();
        }
    }
    // The folders are written first: the index never names a folder whose new file
    // is missing.
    FileOutcome index {indexPath(), {}, {}};
    if (!RecordFile::writeAll(index.path, records, &index.error)) {
        index.problem = FileOutcome::Problem::CannotWrite;
        m_outcomes.note(index);
        return false;
    }
    IsEdit = !ok;
    return ok;
}

qint32 Book::GetNewKey()
{
    SequenzMax = SequenzMax + 1;
    return SequenzMax;
}

bool Book::DeleteThema(qint16 index)
{
    if (index < 1 || index > colThema.count())
        return false;
    Thema &folder = colThema.at(index - 1);
    folder.colBookmark.reset();
    // Only the folder's own file is ever deleted: empty when its name is not a folder
    // file's or belongs to another folder.
    const QString path = folder.filePath();
    if (!path.isEmpty())
        QFile::remove(path);
    colThema.removeAt(index - 1);
    return SaveAllThema();
}

Thema *Book::folderNamed(const QString &name)
{
    const qsizetype index = indexOfFolderNamed(name);
    return index < 0 ? nullptr : &colThema.at(index);
}

qsizetype Book::indexOfFolderNamed(const QString &name) const
{
    for (qsizetype i = 0; i < colThema.count(); ++i) {
        if (colThema.at(i).DirName() == name)
            return i;
    }
    return -1;
}

FileOutcome Book::ensureLoaded(Thema &folder)
{
    const FileOutcome outcome = folder.ensureLoaded();
    m_outcomes.note(outcome);
    return outcome;
}
