#include "ui/frame/windowsets.h"

#include "core/base/feedmark.h"
#include "core/base/uitexts.h"
#include "core/model/book.h"
#include "core/model/layout.h"
#include "core/model/layoutfit.h"
#include "ui/browser/frmbrowser.h"
#include "ui/frame/framemenus.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/openalllinks.h"
#include "ui/frame/twips.h"

#include <QMdiArea>
#include <QMdiSubWindow>

namespace {

frmBrowser *openAddress(MDIForm1 &frame, const QString &address, bool asFeed)
{
    if (!asFeed)
        return frame.OpenNewBrowser(address);
    frmBrowser *window = frame.CreateBrowser(MDIForm1::BrowserKind::MDI);
    window->LoadFeed(address);
    return window;
}

frmBrowser *openPlaced(MDIForm1 &frame, const WindowDescription &description, const QRect &at)
{
    const bool asFeed = description.caption.endsWith(FeedMark::mark());
    frmBrowser *window = openAddress(frame, description.address.trimmed(), asFeed);
    window->setAddressBarVisible(description.addressBarVisible != 0);
    window->setToolbarVisible(description.toolbarVisible != 0);
    auto *sub = qobject_cast<QMdiSubWindow *>(window->parentWidget());
    if (!sub)
        return window;
    sub->showNormal();
    sub->setGeometry(at);
    if (description.windowState == 1)
        sub->showMinimized();
    else if (description.windowState == 2)
        sub->showMaximized();
    return window;
}

QRect pixelsOf(MDIForm1 &frame, const WindowDescription &description)
{
    return QRect(Twips::toPixels(qRound(description.left), &frame),
        Twips::toPixels(qRound(description.top), &frame),
        Twips::toPixels(qRound(description.width), &frame),
        Twips::toPixels(qRound(description.height), &frame));
}

// Where each window goes: inside the client area, a larger layout scaled down.
QList<QRect> placesFor(MDIForm1 &frame, const QList<WindowDescription> &windows)
{
    QList<QRect> saved;
    saved.reserve(windows.size());
    for (const WindowDescription &window : windows)
        saved.append(pixelsOf(frame, window));
    return LayoutFit::fitInto(saved, frame.mdiArea()->viewport()->size());
}

} // namespace

namespace WindowSets {

frmBrowser *openBookmark(MDIForm1 &frame, const Bookmark &bookmark)
{
    frmBrowser *window = openAddress(frame, bookmark.URL, FeedMark::isFeedTitle(bookmark.Titel));
    window->setAddressBarVisible(bookmark.Adresszeile != 0);
    window->setToolbarVisible(bookmark.Toolbar != 0);
    return window;
}

int openBookmarkFolder(
    MDIForm1 &frame, const QString &dataFolder, const QString &folderFile, QString *problem)
{
    Book book(dataFolder);
    book.LoadAllThema();
    const QString wanted = folderFile.trimmed();
    for (qsizetype i = 0; i < book.colThema.count(); ++i) {
        Thema &folder = book.colThema.at(i);
        if (folder.FileName != wanted)
            continue;
        *problem = book.ensureLoaded(folder).message();
        int opened = 0;
        if (!folder.colBookmark)
            return opened;
        for (qsizetype b = 0; b < folder.colBookmark->count(); ++b) {
            openBookmark(frame, folder.colBookmark->at(b));
            ++opened;
        }
        return opened;
    }
    *problem = uiText(2046).arg(wanted);
    return 0;
}

void OpenLayoutItem(MDIForm1 &frame, const WindowDescription &description)
{
    openPlaced(frame, description, pixelsOf(frame, description));
}

void openLayout(MDIForm1 &frame, const QList<WindowDescription> &windows)
{
    const QList<QRect> places = placesFor(frame, windows);
    QList<OpenAllLinks::Opener> openers;
    openers.reserve(windows.size());
    for (qsizetype i = 0; i < windows.size(); ++i) {
        openers.append([&frame, window = windows.at(i), at = places.at(i)] {
            return openPlaced(frame, window, at);
        });
    }
    frame.menus()->openAllLinks()->openWindows(openers);
}

int openLayoutFile(MDIForm1 &frame, const QString &path, QString *problem)
{
    const Layout::ReadResult read = Layout::LoadLayout(path.trimmed());
    *problem = read.outcome.message();
    const QList<QRect> places = placesFor(frame, read.windows);
    for (qsizetype i = 0; i < read.windows.size(); ++i)
        openPlaced(frame, read.windows.at(i), places.at(i));
    return int(read.windows.size());
}

WindowDescription describeWindow(
    MDIForm1 &frame, const frmBrowser &window, const QRect &normal, qint16 state)
{
    WindowDescription description;
    description.windowState = state;
    description.left = Twips::fromPixels(normal.x(), &frame);
    description.top = Twips::fromPixels(normal.y(), &frame);
    description.width = Twips::fromPixels(normal.width(), &frame);
    description.height = Twips::fromPixels(normal.height(), &frame);
    description.address
        = window.FeedSourceUrl.isEmpty() ? window.LocationURL() : window.FeedSourceUrl;
    description.addressBarVisible = window.addressBarVisible() ? -1 : 0;
    description.toolbarVisible = window.toolbarVisible() ? -1 : 0;
    description.caption = window.Caption();
    if (!window.FeedSourceUrl.isEmpty())
        description.caption += FeedMark::mark();
    return description;
}

qint16 windowStateOf(const QMdiSubWindow &sub)
{
    return sub.isMinimized() ? 1 : sub.isMaximized() ? 2 : 0;
}

QList<WindowDescription> describeOpenWindows(MDIForm1 &frame)
{
    QList<WindowDescription> windows;
    for (frmBrowser *window : frame.browsers()) {
        auto *sub = qobject_cast<QMdiSubWindow *>(window->parentWidget());
        if (!sub)
            continue;
        const qint16 state = windowStateOf(*sub);
        // A window that is not normal is shown normal for a moment, so that its
        // normal position and size can be read.
        if (state != 0)
            sub->showNormal();
        const QRect normal = sub->geometry();
        if (state == 1)
            sub->showMinimized();
        else if (state == 2)
            sub->showMaximized();
        windows.append(describeWindow(frame, *window, normal, state));
    }
    return windows;
}

bool saveLayoutFile(MDIForm1 &frame, const QString &path, QString *problem)
{
    const QList<WindowDescription> windows = describeOpenWindows(frame);
    const FileOutcome outcome = Layout::SaveLayout(path, windows);
    *problem = outcome.message();
    return outcome.ok();
}

} // namespace WindowSets
