#pragma once

#include "core/model/layout.h"

#include <QString>

class MDIForm1;
class QMdiSubWindow;
class QRect;
class frmBrowser;
struct Bookmark;
struct WindowDescription;

// Sets of windows the frame opens or keeps: a bookmark folder's bookmarks, or the
// windows of a layout file. The openers return the number of windows opened; a text
// for the status bar says what went wrong, if anything did.
namespace WindowSets {

// One bookmark in a new window, as a feed when its title says so, with its bars.
frmBrowser *openBookmark(MDIForm1 &frame, const Bookmark &bookmark);
int openBookmarkFolder(
    MDIForm1 &frame, const QString &dataFolder, const QString &folderFile, QString *problem);
int openLayoutFile(MDIForm1 &frame, const QString &path, QString *problem);
// Opens one window as a layout describes it: address (a feed when its caption ends
// with the feed mark), geometry in twips, bars and state.
void OpenLayoutItem(MDIForm1 &frame, const WindowDescription &window);
// Opens the windows of a layout through the frame's window queue (a handful loading at
// once), placed inside the frame's client area: a layout larger than the area is scaled
// down as a whole.
void openLayout(MDIForm1 &frame, const QList<WindowDescription> &windows);
// The open windows, in the frame's window order, as a layout keeps them.
QList<WindowDescription> describeOpenWindows(MDIForm1 &frame);
// A window as a layout keeps it, given its normal geometry (pixels) and its state
// (0 normal, 1 minimised, 2 maximised).
WindowDescription describeWindow(
    MDIForm1 &frame, const frmBrowser &window, const QRect &normal, qint16 state);
qint16 windowStateOf(const QMdiSubWindow &sub);
// Writes the open windows, in the frame's window order, to a layout file.
bool saveLayoutFile(MDIForm1 &frame, const QString &path, QString *problem);

} // namespace WindowSets
