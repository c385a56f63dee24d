#pragma once

#include "core/browsing/roundtrip.h"
#include "core/feeds/feedlist.h"
#include "engine/pageview.h"
#include "ui/browser/windowcommand.h"

#include <QHash>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <chrono>
#include <functional>
#include <utility>

class AutoRefresh;
class BrowserToolbar;
class BusyIndicator;
class FeedLoader;
class FindBar;
class InfoBar;
class QComboBox;
class QTimer;
class QToolBar;
class QAction;
class RoundtripBar;

// The security state of the shown page, from unsecured to the strongest encryption;
// each level has its text (1400 + level).
enum class SecureLockLevel : qint16 {
    Unsecure = 0,
    Mixed = 1,
    Secure = 2,
    Secure40Bit = 3,
    Secure56Bit = 4,
    Secure128Bit = 5,
};

// One browser window: a page view with its own address bar and toolbar. It knows
// nothing of the frame that holds it: it asks by signals, and the frame answers
// through the few setters below.
class frmBrowser final : public QWidget
{
    Q_OBJECT

public:
    // `startUrl` is where Navigate goes when it is given no address.
    explicit frmBrowser(const QString &startUrl, QWidget *parent = nullptr);
    ~frmBrowser() override;

    // Registry data, set by the frame.
    int ID = 0;
    bool IsPopup = false;
    // Set on windows a page opened; such a window may be sized by its page.
    bool OpenedByPage = false;

    // Per-window state.
    QString Title;
    QString LastRequestUrl;
    QString FeedSourceUrl;
    bool AddressUpdating = false;
    bool Secure = false;
    SecureLockLevel SecureLockIcon = SecureLockLevel::Unsecure;
    qint16 ZoomFactor = 100;
    QString StartUrl;

    void Navigate(const QString &url);
    void GoBack();
    void GoForward();
    void Stop();
    void Refresh();
    void GoHome();
    void WebSave();
    void WebPrint();
    void WebPrintPreview();
    void LinkMailto();
    void ViewSource(const QString &url);
    void SetHomepage();
    // The home page address and title this window would set: a feed window gives its
    // feed's address and a title with the feed mark.
    std::pair<QString, QString> homePageEntry() const;
    void SetZoomFactor(int percent);
    void SetTextSize(int step);
    void PubResize() { }
    // A window that the frame does not size otherwise leaves room for the page.
    QSize sizeHint() const override { return QSize(800, 560); }

    // The caption the frame shows for this window (its page title, or its address).
    QString Caption() const;
    // The address the user knows the page by: a feed's own address while it is shown.
    QString LocationURL() const;
    // A page the program made (a feed page), never shown to the user by its address.
    static bool isGeneratedPage(const QUrl &url);
    QString LocationName() const;

    bool addressBarVisible() const;
    bool toolbarVisible() const;
    void setAddressBarVisible(bool visible);
    void setToolbarVisible(bool visible);
    bool isBrowserVisible() const;
    void focusAddress();

    PageView *page() const { return m_page; }
    QComboBox *addressBox() const { return m_addressBox; }
    QToolBar *toolBar() const { return m_toolBar; }
    // A toolbar button or, failing that, a drop-down entry by its key.
    QAction *toolAction(const QString &key) const;
    BrowserToolbar *commands() const { return m_commands; }

    // Opens the window a page of this window asks for, or refuses it (nullptr). When
    // *keepOpener is left true the new page keeps its reference to this one.
    using WindowOpener
        = std::function<frmBrowser *(const PageView::NewWindowRequest &, bool *keepOpener)>;
    void setWindowOpener(WindowOpener opener) { m_windowOpener = std::move(opener); }

    // Feeds the page announces, collected after every completed load.
    void CollectXmlFeed();
    int GetFeedCount() const { return m_feeds.GetFeedCount(); }
    QString GetFeedUrlByInd(int index) const { return m_feeds.GetFeedUrlByInd(index); }
    QString GetFeedTitelByInd(int index) const { return m_feeds.GetFeedTitelByInd(index); }
    // Renders the feed at the address in this window.
    void LoadFeed(const QString &url);

    void showFindBar();
    FindBar *findBar() const { return m_findBar; }

    // Auto-refresh: the interval dialog, and the interval it sets (zero ends it; the
    // dialog keeps to whole seconds, tests may use less). "Stop" ends it as well.
    void SetRefresh();
    void setRefreshInterval(std::chrono::milliseconds interval, bool markChanges = false);
    AutoRefresh *autoRefresh() const { return m_refresh; }
    // What the window's tab tool tip adds to its caption: the refresh interval, a failed
    // refresh, a changed page. Empty while the window does not refresh itself.
    QString tabNote() const;
    // The page's text changed at a refresh since the user last looked at the window.
    bool pageChangedMark() const { return m_changedMark; }
    void clearPageChangedMark();
    // Roundtrips: every link of the page, of the active frame, or any list of addresses
    // (a bookmark folder's), shown one after another in this window. A new one replaces
    // a running one; Stop ends it.
    void StartRoundtrip();
    void StartFrameRoundtrip();
    void StartRoundtrip(const QStringList &addresses);
    Roundtrip *roundtrip() const { return m_roundtrip; }
    RoundtripBar *roundtripBar() const { return m_roundtripBar; }
    // Asked before a roundtrip of `count` addresses starts, with the timing to use; false
    // cancels it. The start dialog by default.
    using RoundtripAsker = std::function<bool(int count, Roundtrip::Timing *timing)>;
    void setRoundtripAsker(RoundtripAsker asker) { m_roundtripAsker = std::move(asker); }

public slots:
    // Whether the history holds an entry ("history" is enabled only then).
    void setHistoryAvailable(bool available);

signals:
    // A toolbar command that acts on other windows, for the frame to run.
    void windowCommandRequested(WindowCommand command);
    // A page shows something anew in this window (a feed item opened again): the frame
    // brings it forward as it would a window that a page opens.
    void activationRequested();
    // The window's title or address changed: the frame refreshes its tab.
    void tabRefreshRequested();
    void historyEntry(const QString &url, const QString &title);
    void statusText(const QString &text);
    void closeRequested();
    void fullScreenRequested(bool on);
    void resizeRequested(const QSize &size);
    // The address bar or the toolbar was shown or hidden.
    void barsChanged();
    // The feed list has been collected anew.
    void feedsCollected();
    // A feed page has been handed to the view (FeedSourceUrl holds its address).
    void feedShown(const QString &feedUrl);
    // The user lets pages of this site open windows from now on.
    void popupSiteAllowed(const QString &site);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildBars();
    void connectPage();
    void commitAddress();
    void startBusyPoll();
    void pollTick();
    void onNavigateComplete(const QUrl &url);
    void updateSecureState(bool loaded);
    void askPermission(const QUrl &origin, PageView::Permission permission);
    PageView *openWindowFor(const PageView::NewWindowRequest &request, bool *keepOpener);
    void reportBlockedWindow(const QUrl &url);
    void refreshNow();
    void refreshLoadFinished(bool ok);
    void comparePageText();
    void stopRefresh();
    void startRoundtripOver(const PageView::DocumentLinks &links);

    PageView *m_page = nullptr;
    QWidget *m_coolBar = nullptr;
    QWidget *m_addressBand = nullptr;
    QComboBox *m_addressBox = nullptr;
    QToolBar *m_toolBar = nullptr;
    QAction *m_secureAction = nullptr;
    BusyIndicator *m_busy = nullptr;
    InfoBar *m_infoBar = nullptr;
    RoundtripBar *m_roundtripBar = nullptr;
    Roundtrip *m_roundtrip = nullptr;
    RoundtripAsker m_roundtripAsker;
    Roundtrip::Timing m_roundtripTiming;
    QTimer *m_busyPoll = nullptr;
    BrowserToolbar *m_commands = nullptr;
    FindBar *m_findBar = nullptr;
    FeedLoader *m_feedLoader = nullptr;
    FeedList m_feeds;
    quint64 m_feedRequest = 0;
    WindowOpener m_windowOpener;
    // The windows of a feed page's items, by the window name of each item.
    QHash<QString, QPointer<frmBrowser>> m_itemWindows;
    AutoRefresh *m_refresh = nullptr;
    // The address the refresh reloads, and the scroll position it keeps.
    QString m_refreshUrl;
    QPoint m_refreshScroll;
    bool m_changedMark = false;
    // The engine is laying the page out for a print preview; the busy cursor is on.
    bool m_previewPending = false;
};
