#pragma once

#include "core/model/fensterinfo.h"
#include "core/records/archivefiles.h"

#include <QList>
#include <QString>

// The description of one open browser window as a ".wlt" layout file keeps it. The
// frame fills a list of these from its windows (in the order of its window list) and
// opens windows from the list read back.
struct WindowDescription
{
    double left = 0; // twips, as the window's normal (not minimised) geometry
    double top = 0;
    double width = 0;
    double height = 0;
    QString address;
    qint16 addressBarVisible = ArchiveFiles::True; // the window's first bar band
    qint16 toolbarVisible = ArchiveFiles::True; // the window's third bar band
    qint16 windowState = 0; // 0 normal, 1 minimised, 2 maximised
    QString caption; // with "<FEED />" appended when the window renders a feed
};

// Layout files chosen by the user (".wlt").
namespace Layout {

constexpr int RecordLength = 1556;

struct ReadResult
{
    QList<WindowDescription> windows;
    FileOutcome outcome;
};

// Whether a path names a layout file (".wlt", in any case); no other file is read or
// written as one.
bool isLayoutFileName(const QString &path);
// Replaces the file atomically with one record per window, numbered from 1.
FileOutcome SaveLayout(const QString &path, const QList<WindowDescription> &windows);
// Reads the windows of a layout file; a file that is not a whole number of records
// is moved aside and yields no window.
ReadResult LoadLayout(const QString &path);

// The window as a layout of the layout archive keeps it.
FensterInfo toFensterInfo(const WindowDescription &window);
// A window of the layout archive, as the frame opens it.
WindowDescription fromFensterInfo(const FensterInfo &window);

QByteArray encodeRecord(const WindowDescription &window, qint16 number);
WindowDescription decodeRecord(const QByteArray &record);

} // namespace Layout
