#pragma once

#include "core/feeds/feedlist.h"
#include "engine/pageview.h"

#include <QHash>
#include <QPointer>
#include <QString>
#include <QWidget>

class BrowserToolbar;
class BusyIndicator;
class FeedLoader;
class FindBar;
class InfoBar;
class MDIForm1;
class QComboBox;
class QTimer;
class QToolBar;
class QAction;

// One browser window: a page view with its own address bar and toolbar.
class frmBrowser final : public QWidget
{
    Q_OBJECT

public:
    explicit frmBrowser(QWidget *parent = nullptr);
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
    qint16 SecureLockIcon = 0;
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
    void SetZoomFactor(int percent);
    void SetTextSize(int step);
    void PubResize() { }
    // A window that the frame does not size otherwise leaves room for the page.
    QSize sizeHint() const override { return QSize(800, 560); }

    // The caption the frame shows for this window (its page title, or its address).
    QString Caption() const;
    QString LocationURL() const;
    QString LocationName() const;

    bool addressBarVisible() const;
    bool toolbarVisible() const;
    void setAddressBarVisible(bool visible);
    void setToolbarVisible(bool visible);
    bool isBrowserVisible() const;
    void focusAddress();

    PageView *page() const { return brwWebBrowser; }
    QComboBox *addressBox() const { return cboAddress; }
    QToolBar *toolBar() const { return tbToolBar; }
    // A toolbar button or, failing that, a drop-down entry by its key.
    QAction *toolAction(const QString &key) const;
    BrowserToolbar *commands() const { return m_commands; }
    // The frame this window lives in, once it has been placed there.
    MDIForm1 *frame() const;

    // Feeds the page announces, collected after every completed load.
    void CollectXmlFeed();
    int GetFeedCount() const { return m_feeds.GetFeedCount(); }
    QString GetFeedUrlByInd(int index) const { return m_feeds.GetFeedUrlByInd(index); }
    QString GetFeedTitelByInd(int index) const { return m_feeds.GetFeedTitelByInd(index); }
    // Renders the feed at the address in this window.
    void LoadFeed(const QString &url);

    void showFindBar();
    FindBar *findBar() const { return m_findBar; }

signals:
    // The window's title or address changed: the frame refreshes its tab.
    void tabRefreshRequested();
    void historyEntry(const QString &url, const QString &title);
    void statusText(const QString &text);
    void closeRequested();
    void fullScreenRequested(bool on);
    void resizeRequested(const QSize &size);
    // The feed list has been collected anew.
    void feedsCollected();
    // A feed page has been handed to the view (FeedSourceUrl holds its address).
    void feedShown(const QString &feedUrl);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void buildBars();
    void connectPage();
    void commitAddress();
    void startBusyPoll();
    void pollTick();
    void onNavigateComplete(const QUrl &url);
    void updateSecureState(bool loaded);
    void askPermission(const QUrl &origin, PageView::Permission permission);
    void attachToFrame();
    void routeFeedItemWindows();

    PageView *brwWebBrowser = nullptr;
    QWidget *CoolBar1 = nullptr;
    QWidget *addressBand = nullptr;
    QComboBox *cboAddress = nullptr;
    QToolBar *tbToolBar = nullptr;
    QAction *secureAction = nullptr;
    BusyIndicator *busy = nullptr;
    InfoBar *infoBar = nullptr;
    QTimer *timTimer = nullptr;
    BrowserToolbar *m_commands = nullptr;
    FindBar *m_findBar = nullptr;
    FeedLoader *m_feedLoader = nullptr;
    FeedList m_feeds;
    quint64 m_feedRequest = 0;
    bool m_attached = false;
    bool m_routing = false;
    QHash<QString, QPointer<frmBrowser>> m_itemWindows;
};
