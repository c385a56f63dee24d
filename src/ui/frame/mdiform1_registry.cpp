// The frame's window registry: every browser window has the key "[n]" in the
// collection and on its tab, and both are added and removed together.
#include "core/base/appinfo.h"
#include "core/base/feedmark.h"
#include "core/browsing/usercommand.h"
#include "core/prefs/prefer.h"
#include "ui/browser/frmbrowser.h"
#include "ui/browser/sharedicons.h"
#include "ui/frame/framemenus.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/openalllinks.h"
#include "ui/frame/tabstrip.h"

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>

frmBrowser *MDIForm1::CreateBrowser(BrowserKind kind, const QString &startAddress)
{

    auto *window
        = new frmBrowser(startAddress.isEmpty() ? prefer().HomeUrl().trimmed() : startAddress);
    window->setAddressBarVisible(AddressBarDefault);
    window->setToolbarVisible(ToolbarDefault);
    window->IsPopup = kind == BrowserKind::MDIChild;
    window->OpenedByPage = kind == BrowserKind::MDIChild;

    ++m_windowCounter;
    const QString key = TabStrip::keyOf(m_windowCounter);
    CreateTab(m_windowCounter, window->Caption());
    m_browsers.insert(key, window);
    m_order.append(key);
    window->ID = m_windowCounter;
    m_currentKey = key;

    QMdiSubWindow *sub = m_mdi->addSubWindow(window);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->setWindowIcon(SharedIcons::themedOr(QStringLiteral("text-html"),
        QStringLiteral("window/text-html"), [] { return QApplication::windowIcon(); }));
    // The window menu's entry closes the active window; the keys of every window's own
    // close entry would make each press ambiguous, so that nothing closed.
    for (QAction *entry : sub->systemMenu()->actions())
        entry->setShortcuts({});
    wireBrowser(window, sub);
    sub->show();
    // The first window takes the whole client area; the arrangements place the rest.
    if (m_browsers.size() == 1 && !sub->isMaximized() && !m_mdi->viewport()->size().isEmpty())
        sub->setGeometry(m_mdi->viewport()->rect());
    ++m_openWindowCount;
    m_menus->syncEnabled();
    m_menus->syncEnabled();
    emit windowsChanged();
    return window;
}

// Everything a window asks of the frame, and everything the frame tells a window,
// is connected here.
void MDIForm1::wireBrowser(frmBrowser *window, QMdiSubWindow *sub)
{
    const int number = window->ID;
    connect(window, &QObject::destroyed, this, [this, number] {
        if (!m_destroying)
            RemoveTab(number);
    });
    connect(window, &frmBrowser::tabRefreshRequested, this, [this, window, sub] {
        sub->setWindowTitle(window->Caption());
        refreshTab(window);
        if (window == activeBrowser()) {
            setCaption(AppInfo::frameCaption() + QStringLiteral(" - ") + window->Caption());
            // The active window has an address now: it can be cloned.
            m_menus->syncEnabled();
        }
    });
    connect(window, &frmBrowser::historyEntry, this, &MDIForm1::AddToHistory);
    window->setHistoryAvailable(!m_history.isEmpty());
    connect(this, &MDIForm1::historyChanged, window,
        [this, window] { window->setHistoryAvailable(!m_history.isEmpty()); });
    connect(window, &frmBrowser::statusText, this, &MDIForm1::setStatusText);
    connect(window, &frmBrowser::windowCommandRequested, this,
        [this, window](WindowCommand command) { runWindowCommand(window, command); });
    connect(window, &frmBrowser::activationRequested, this, [this, sub] {
        if (!m_policy.AllowWinInBack)
            m_mdi->setActiveSubWindow(sub);
    });
    // A page that closes itself closes its window through the registry.
    connect(window, &frmBrowser::closeRequested, sub, &QMdiSubWindow::close, Qt::QueuedConnection);
    connect(window, &frmBrowser::fullScreenRequested, this, &MDIForm1::setFullScreen);
    connect(window, &frmBrowser::resizeRequested, this, [this, window, sub](const QSize &size) {
        // Pages may size their window when allowed; they may never move it.
        if (!m_policy.maySize(sub->isMaximized()) || !size.isValid())
            return;
        const QSize chrome = sub->size() - window->page()->size();
        sub->resize(size + chrome);
    });
    window->setWindowOpener(
        [this, window](const PageView::NewWindowRequest &request, bool *keepOpener) {
            return openPageWindow(
                {request.userInitiated, request.background, window->LocationURL()}, keepOpener);
        });
    connect(window, &frmBrowser::popupSiteAllowed, this, &MDIForm1::allowPopupSite);
    guardWindowOpen(window);
}

void MDIForm1::runWindowCommand(frmBrowser *window, WindowCommand command)
{
    switch (command) {
    case WindowCommand::Clone:
        CloneActive();
        break;
    case WindowCommand::Start:
        OpenStartPage();
        break;
    case WindowCommand::StartBlank:
        NewBrowser(QString(), QStringLiteral("about:blank"));
        break;
    case WindowCommand::OpenAllLinks:
        m_menus->openAllLinks()->run(window);
        break;
    case WindowCommand::ClosePopups:
        ClosePopups();
        break;
    case WindowCommand::CloseAll:
        closeAllFrom(window);
        break;
    case WindowCommand::CloseOthers:
        CloseOtherBrowsers(window);
        break;
    case WindowCommand::Bookmarks:
        menuAction(QStringLiteral("mn_Bookmarks"))->trigger();
        break;
    case WindowCommand::History:
        menuAction(QStringLiteral("mn_Historie"))->trigger();
        break;
    }
}

frmBrowser *MDIForm1::openPageWindow(const NewWindowPolicy::Request &request, bool *keepOpener)
{
    const NewWindowPolicy::Decision decision = m_policy.decide(request, UserCommand::now());
    if (decision.placement == NewWindowPolicy::Placement::Refuse)
        return nullptr;
    QMdiSubWindow *previous = m_mdi->activeSubWindow();
    frmBrowser *window = CreateBrowser(decision.popup ? BrowserKind::MDIChild : BrowserKind::MDI);
    window->OpenedByPage = true;
    if (decision.popup)
        ++m_popupCount;
    *keepOpener = decision.keepOpener;
    if (decision.placement == NewWindowPolicy::Placement::Behind && previous) {
        m_mdi->setActiveSubWindow(previous);
        if (QMdiSubWindow *sub = subWindowOf(window); sub && !sub->isMaximized())
            sub->lower();
    }
    return window;
}

frmBrowser *MDIForm1::NewBrowser(const QString &address, const QString &startAddress)
{
    frmBrowser *window = CreateBrowser(BrowserKind::MDI, startAddress);
    window->Navigate(address);
    return window;
}

frmBrowser *MDIForm1::OpenStartPage()
{
    if (!FeedMark::isFeedTitle(prefer().HomeTitle()))
        return NewBrowser();
    frmBrowser *window = CreateBrowser(BrowserKind::MDI);
    window->LoadFeed(prefer().HomeUrl().trimmed());
    return window;
}

void MDIForm1::CreateTab(int number, const QString &caption)
{
    m_tabs->CreateTab(number, caption);
}

void MDIForm1::UpdateTab(const QString &title, int number)
{
    m_tabs->UpdateTab(title, number);
}

void MDIForm1::refreshTab(frmBrowser *window)
{
    UpdateTab(window->Caption(), window->ID);
    const QString note = window->tabNote();
    m_tabs->setTabNote(window->ID,
        note.isEmpty() ? window->Caption() : window->Caption() + u'\n' + note,
        window->pageChangedMark());
}

void MDIForm1::RemoveTab(int number)
{
    const QString key = TabStrip::keyOf(number);
    m_browsers.remove(key);
    m_order.removeAll(key);
    m_tabs->RemoveTab(number);
    if (m_browsers.isEmpty())
        EmptyState();
    m_menus->syncEnabled();
    emit windowsChanged();
}

void MDIForm1::EmptyState()
{
    m_currentKey.clear();
    setCaption(AppInfo::frameCaption());
    setStatusText(QString());
}

void MDIForm1::TabSync()
{
    frmBrowser *window = activeBrowser();
    if (!window || m_browsers.isEmpty())
        return;
    m_currentKey = TabStrip::keyOf(window->ID);
    m_tabs->selectKey(m_currentKey);
    // The user sees the window now: a change it was marked for is seen.
    window->clearPageChangedMark();
    if (!window->Caption().isEmpty()) {
        refreshTab(window);
        setCaption(AppInfo::frameCaption() + QStringLiteral(" - ") + window->Caption());
    }
    m_menus->syncEnabled();
}

frmBrowser *MDIForm1::activeBrowser() const
{
    QMdiSubWindow *sub = m_mdi->activeSubWindow();
    return sub ? qobject_cast<frmBrowser *>(sub->widget()) : nullptr;
}

frmBrowser *MDIForm1::browser(const QString &key) const
{
    return m_browsers.value(key);
}

QList<frmBrowser *> MDIForm1::browsers() const
{
    QList<frmBrowser *> all;
    for (const QString &key : m_order) {
        if (frmBrowser *window = m_browsers.value(key))
            all.append(window);
    }
    return all;
}

QMdiSubWindow *MDIForm1::subWindowOf(const frmBrowser *window) const
{
    return window ? qobject_cast<QMdiSubWindow *>(window->parentWidget()) : nullptr;
}

void MDIForm1::CloseAll()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    for (frmBrowser *window : browsers()) {
        if (QMdiSubWindow *sub = subWindowOf(window))
            sub->close();
    }
    QApplication::restoreOverrideCursor();
}

void MDIForm1::ClosePopups()
{
    if (m_closingPopups)
        return;
    m_closingPopups = true;
    // No closing page may open a window while the sweep runs.
    const bool allowed = m_policy.AllowOpenWin;
    m_policy.AllowOpenWin = false;
    for (frmBrowser *window : browsers()) {
        if (window->IsPopup) {
            if (QMdiSubWindow *sub = subWindowOf(window))
                sub->close();
        }
    }
    // Requests that the closing pages sent meanwhile arrive while windows are
    // refused; once the pages are gone they can send no more.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    m_policy.AllowOpenWin = allowed;
    m_popupCount = 0;
    m_closingPopups = false;
}

void MDIForm1::closeAllFrom(frmBrowser *last)
{
    CloseOtherBrowsers(last);
    TabSync();
    if (QMdiSubWindow *sub = subWindowOf(last))
        sub->close();
}

void MDIForm1::CloseOtherBrowsers(frmBrowser *keep)
{
    if (!keep)
        keep = activeBrowser();
    for (frmBrowser *window : browsers()) {
        if (window != keep) {
            if (QMdiSubWindow *sub = subWindowOf(window))
                sub->close();
        }
    }
}

bool MDIForm1::IsCloneable() const
{
    const frmBrowser *window = activeBrowser();
    return window && !window->LocationURL().isEmpty();
}

frmBrowser *MDIForm1::CloneActive()
{
    if (!IsCloneable())
        return nullptr;
    frmBrowser *source = activeBrowser();
    frmBrowser *clone = nullptr;
    if (source->FeedSourceUrl.isEmpty()) {
        clone = OpenNewBrowser(source->LocationURL());
    } else {
        clone = CreateBrowser(BrowserKind::MDI);
        clone->LoadFeed(source->FeedSourceUrl);
    }
    clone->setAddressBarVisible(source->addressBarVisible());
    clone->setToolbarVisible(source->toolbarVisible());
    return clone;
}

void MDIForm1::activateWindowAt(int offset, bool relative)
{
    const QList<QMdiSubWindow *> subs = m_mdi->subWindowList(QMdiArea::CreationOrder);
    if (subs.isEmpty())
        return;
    int index = offset;
    if (relative) {
        const int current = subs.indexOf(m_mdi->activeSubWindow());
        index = (qMax(0, current) + offset + subs.size()) % subs.size();
    } else if (index < 0) {
        index = subs.size() - 1;
    }
    QMdiSubWindow *sub = subs.at(qBound(0, index, int(subs.size() - 1)));
    if (sub->isMinimized())
        sub->showNormal();
    m_mdi->setActiveSubWindow(sub);
}
