#include "core/model/layoutitem.h"

#include "core/records/recordcodec.h"
#include "core/records/recordfile.h"

using ArchiveFiles::roundTwips;

namespace {
// Layout file record: number, geometry, address, title, bar flags, window state.
constexpr int NrAt = 0, XAt = 2, YAt = 4, BreiteAt = 6, HoeheAt = 8;
constexpr int UrlAt = 10, UrlWidth = 2083;
constexpr int TitelAt = 2093, TitelWidth = 516;
constexpr int ToolbarAt = 2609, AdressbarAt = 2611, WindowStateAt = 2613;
} // namespace

QString LayoutItem::fileNameFor(qint32 sequenz)
{
    return QStringLiteral("WL") + QString::number(sequenz) + QStringLiteral(".nlt");
}

QString LayoutItem::filePath() const
{
    const QString name = RecordCodec::trimBlanks(FileName);
    // Saving writes to the name computed from Sequenz, so a name that differs from it
    // would let a layout be read from one file and written over another.
    if (m_fileRefused || name != fileNameFor(Sequenz))
        return {};
    return ArchiveFiles::ownFilePath(m_dataFolder, name, ArchiveFiles::FileKind::Layout);
}

QByteArray LayoutItem::encodeRecord(const FensterInfo &window, qint16 number)
{
    RecordWriter writer(RecordLength);
    writer.putInt16(NrAt, number);
    writer.putInt16(XAt, roundTwips(window.x));
    writer.putInt16(YAt, roundTwips(window.y));
    writer.putInt16(BreiteAt, roundTwips(window.Breite));
    writer.putInt16(HoeheAt, roundTwips(window.Hoehe));
    writer.putText(UrlAt, UrlWidth, window.URL);
    writer.putText(TitelAt, TitelWidth, window.Titel);
    writer.putInt16(ToolbarAt, window.ToolbarVisible);
    writer.putInt16(AdressbarAt, window.AdressbarVisible);
    writer.putInt16(WindowStateAt, window.WindowState);
    return writer.bytes();
}

FensterInfo LayoutItem::decodeRecord(const QByteArray &record)
{
    const RecordReader reader(record, RecordLength);
    FensterInfo window;
    window.Nr = reader.int16(NrAt);
    window.x = reader.int16(XAt);
    window.y = reader.int16(YAt);
    window.Breite = reader.int16(BreiteAt);
    window.Hoehe = reader.int16(HoeheAt);
    window.URL = reader.text(UrlAt, UrlWidth, RecordCodec::Trim::Blanks);
    window.Titel = reader.text(TitelAt, TitelWidth, RecordCodec::Trim::Blanks);
    window.ToolbarVisible = reader.int16(ToolbarAt);
    window.AdressbarVisible = reader.int16(AdressbarAt);
    window.WindowState = reader.int16(WindowStateAt);
    return window;
}

FileOutcome LayoutItem::SaveAllFensterInfos()
{
    if (!m_fileRefused)
        FileName = fileNameFor(Sequenz);
    FileOutcome outcome;
    outcome.path = filePath();
    if (outcome.path.isEmpty())
        return FileOutcome::failed(
            FileName, FileOutcome::Problem::InvalidName, FileOutcome::invalidNameReason(FileName));
    QList<QByteArray> records;
    records.reserve(colFensterInfo.size());
    for (qsizetype i = 0; i < colFensterInfo.size(); ++i)
        records.append(
            encodeRecord(colFensterInfo.at(i), qint16(std::min<qsizetype>(i + 1, 32767))));
    if (RecordFile::writeAll(outcome.path, records, &outcome.error))
        IsEdit = false;
    else
        outcome.problem = FileOutcome::Problem::CannotWrite;
    return outcome;
}

FileOutcome LayoutItem::LoadAllFensterInfos()
{
    FileOutcome outcome;
    outcome.path = filePath();
    colFensterInfo.clear();
    ItCounter = 0;
    if (outcome.path.isEmpty()) {
        return FileOutcome::failed(
            FileName, FileOutcome::Problem::InvalidName, FileOutcome::invalidNameReason(FileName));
    }
    const RecordFile::ReadResult read = RecordFile::readAll(outcome.path, RecordLength);
    outcome = read.outcome(outcome.path);
    colFensterInfo.reserve(read.records.size());
    for (const QByteArray &record : read.records)
        colFensterInfo.append(decodeRecord(record));
    ItCounter = qint16(std::min<qsizetype>(colFensterInfo.size(), 32767));
    return outcome;
}
