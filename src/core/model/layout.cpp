#include "core/model/layout.h"

#include "core/records/recordcodec.h"
#include "core/records/recordfile.h"

using ArchiveFiles::roundTwips;

namespace {
// Layout file record: number, geometry, address, two bar flags, state, caption.
constexpr int NrAt = 0, LeftAt = 2, TopAt = 4, WidthAt = 6, HeightAt = 8;
constexpr int AddressAt = 10, AddressWidth = 1024;
constexpr int FirstBandAt = 1034, ThirdBandAt = 1036, StateAt = 1038;
constexpr int CaptionAt = 1040, CaptionWidth = 516;
} // namespace

namespace Layout {

FensterInfo toFensterInfo(const WindowDescription &window)
{
    FensterInfo info;
    info.x = float(window.left);
    info.y = float(window.top);
    info.Breite = float(window.width);
    info.Hoehe = float(window.height);
    info.URL = window.address;
    info.Titel = window.caption;
    info.WindowState = window.windowState;
    info.ToolbarVisible = window.toolbarVisible;
    info.AdressbarVisible = window.addressBarVisible;
    return info;
}

WindowDescription fromFensterInfo(const FensterInfo &window)
{
    WindowDescription description;
    description.left = window.x;
    description.top = window.y;
    description.width = window.Breite;
    description.height = window.Hoehe;
    description.address = window.URL;
    description.caption = window.Titel;
    description.windowState = window.WindowState;
    description.toolbarVisible = window.ToolbarVisible;
    description.addressBarVisible = window.AdressbarVisible;
    return description;
}

QByteArray encodeRecord(const WindowDescription &window, qint16 number)
{
    RecordWriter writer(RecordLength);
    writer.putInt16(NrAt, number);
    writer.putInt16(LeftAt, roundTwips(window.left));
    writer.putInt16(TopAt, roundTwips(window.top));
    writer.putInt16(WidthAt, roundTwips(window.width));
    writer.putInt16(HeightAt, roundTwips(window.height));
    writer.putText(AddressAt, AddressWidth, window.address);
    writer.putInt16(FirstBandAt, window.addressBarVisible);
    writer.putInt16(ThirdBandAt, window.toolbarVisible);
    writer.putInt16(StateAt, window.windowState);
    writer.putText(CaptionAt, CaptionWidth, window.caption);
    return writer.bytes();
}

WindowDescription decodeRecord(const QByteArray &record)
{
    const RecordReader reader(record, RecordLength);
    WindowDescription window;
    window.left = reader.int16(LeftAt);
    window.top = reader.int16(TopAt);
    window.width = reader.int16(WidthAt);
    window.height = reader.int16(HeightAt);
    window.address = reader.text(AddressAt, AddressWidth, RecordCodec::Trim::Blanks);
    window.addressBarVisible = reader.int16(FirstBandAt);
    window.toolbarVisible = reader.int16(ThirdBandAt);
    window.windowState = reader.int16(StateAt);
    window.caption = reader.text(CaptionAt, CaptionWidth, RecordCodec::Trim::Blanks);
    return window;
}

bool isLayoutFileName(const QString &path)
{
    return RecordCodec::trimBlanks(path).endsWith(QStringLiteral(".wlt"), Qt::CaseInsensitive);
}

FileOutcome SaveLayout(const QString &path, const QList<WindowDescription> &windows)
{
    FileOutcome outcome;
    outcome.path = RecordCodec::trimBlanks(path);
    if (!isLayoutFileName(outcome.path))
        return FileOutcome::failed(outcome.path, FileOutcome::Problem::InvalidName,
            FileOutcome::invalidNameReason(outcome.path));
    QList<QByteArray> records;
    records.reserve(windows.size());
    for (qsizetype i = 0; i < windows.size(); ++i)
        records.append(encodeRecord(windows.at(i), qint16(std::min<qsizetype>(i + 1, 32767))));
    if (!RecordFile::writeAll(outcome.path, records, &outcome.error))
        outcome.problem = FileOutcome::Problem::CannotWrite;
    return outcome;
}

ReadResult LoadLayout(const QString &path)
{
    ReadResult result;
    result.outcome.path = RecordCodec::trimBlanks(path);
    // Anything else, the data folder's own files above all, is neither read as a
    // layout nor moved aside for not being one.
    if (!isLayoutFileName(result.outcome.path)) {
        result.outcome = FileOutcome::failed(result.outcome.path, FileOutcome::Problem::InvalidName,
            FileOutcome::invalidNameReason(result.outcome.path));
        return result;
    }
    const RecordFile::ReadResult read
        = RecordFile::readAll(result.outcome.path, RecordLength, RecordFile::Missing::LeaveAbsent);
    result.outcome = read.outcome(result.outcome.path);
    result.windows.reserve(read.records.size());
    for (const QByteArray &record : read.records)
        result.windows.append(decodeRecord(record));
    return result;
}

} // namespace Layout
