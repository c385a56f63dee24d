#include "core/model/layoutbook.h"

#include "core/records/recordcodec.h"
#include "core/records/recordfile.h"

#include <QFile>
#include <QSet>

namespace {
// Index record: sequence number, position, name, file name, description.
constexpr int SequenzAt = 0, NrAt = 4;
constexpr int NameAt = 8, NameWidth = 255;
constexpr int FileNameAt = 263, FileNameWidth = 2083;
constexpr int InfoAt = 2346, InfoWidth = 1024;
} // namespace

LayoutBook::LayoutBook(QString dataFolder)
    : m_dataFolder(std::move(dataFolder))
{ }

QString LayoutBook::indexPath() const
{
    return m_dataFolder + QStringLiteral("/WLBook.vtp");
}

QByteArray LayoutBook::encodeRecord(const LayoutItem &item, qint32 number)
{
    RecordWriter writer(RecordLength);
    writer.putInt32(SequenzAt, item.Sequenz);
    writer.putInt32(NrAt, number);
    writer.putText(NameAt, NameWidth, item.LayoutName);
    writer.putText(FileNameAt, FileNameWidth, item.FileName);
    writer.putText(InfoAt, InfoWidth, item.Info);
    return writer.bytes();
}

bool LayoutBook::LoadAllLayouts()
{
    m_outcomes.last = {};
    const RecordFile::ReadResult read = RecordFile::readAll(indexPath(), RecordLength);
    m_outcomes.note(read.outcome(indexPath()));
    colLayout.clear();
    colLayout.reserve(read.records.size());
    QSet<QString> fileNames;
    for (const QByteArray &record : read.records) {
        const RecordReader reader(record, RecordLength);
        LayoutItem item(m_dataFolder);
        item.FileName = reader.text(FileNameAt, FileNameWidth, RecordCodec::Trim::Blanks);
        item.LayoutName = reader.text(NameAt, NameWidth, RecordCodec::Trim::Blanks);
        item.Info = reader.text(InfoAt, InfoWidth, RecordCodec::Trim::Blanks);
        item.IsEdit = false;
        item.Sequenz = reader.int32(SequenzAt);
        SequenzMax = std::max(SequenzMax, item.Sequenz);
        // A file named twice is the first layout's alone.
        if (!fileNames.contains(item.FileName))
            fileNames.insert(item.FileName);
        else
            item.refuseFile();
        m_outcomes.note(item.LoadAllFensterInfos());
        colLayout.append(std::move(item));
    }
    if (colLayout.isEmpty()) {
        ItCounter = 0;
        SequenzMax = 0;
        return false;
    }
    ItCounter = qint16(std::min<qsizetype>(colLayout.size(), 32767));
    return true;
}

bool LayoutBook::SaveAllLayouts()
{
    m_outcomes.last = {};
    QList<QByteArray> records;
    records.reserve(colLayout.size());
    bool ok = true;
    for (qsizetype i = 0; i < colLayout.size(); ++i) {
        LayoutItem &item = colLayout[i];
        if (item.IsEdit) {
            const FileOutcome saved = item.SaveAllFensterInfos();
            m_outcomes.note(saved);
            ok = ok && saved.ok();
        }
        records.append(encodeRecord(item, qint32(i + 1)));
    }
    FileOutcome index {indexPath(), {}, {}};
    if (!RecordFile::writeAll(index.path, records, &index.error)) {
        index.problem = FileOutcome::Problem::CannotWrite;
        m_outcomes.note(index);
        return false;
    }
    IsEdit = !ok;
    return ok;
}

qint32 LayoutBook::GetNewKey()
{
    SequenzMax = SequenzMax + 1;
    return SequenzMax;
}

LayoutItem &LayoutBook::AddLayout(
    LayoutItem item, const QString &name, const QString &info, qint32 position)
{
    item.setDataFolder(m_dataFolder);
    item.Sequenz = GetNewKey();
    item.LayoutName = name;
    item.Info = info;
    item.FileName = LayoutItem::fileNameFor(item.Sequenz);
    item.IsEdit = true;
    IsEdit = true;
    if (position < 1 || position >= colLayout.size()) {
        colLayout.append(std::move(item));
        return colLayout.last();
    }
    colLayout.insert(position, std::move(item));
    return colLayout[position];
}

bool LayoutBook::DeleteLayout(qsizetype index)
{
    if (index < 1 || index > colLayout.size())
        return false;
    const QString path = colLayout.at(index - 1).filePath();
    if (!path.isEmpty())
        QFile::remove(path);
    colLayout.removeAt(index - 1);
    IsEdit = true;
    return SaveAllLayouts();
}

bool LayoutBook::UpdateAllLayouts()
{
    for (LayoutItem &item : colLayout)
        item.IsEdit = true;
    return SaveAllLayouts();
}
