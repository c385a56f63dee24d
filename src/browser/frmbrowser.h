#pragma once

#include "platform/pageview.h"

#include <QString>
#include <QWidget>

class BusyIndicator;
class InfoBar;
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
    QAction *toolAction(const QString &key) const;

signals:
    // The window's title or address changed: the frame refreshes its tab.
    void tabRefreshRequested();
    void historyEntry(const QString &url, const QString &title);
    void statusText(const QString &text);
    void closeRequested();
    void fullScreenRequested(bool on);
    void resizeRequested(const QSize &size);

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

    PageView *brwWebBrowser = nullptr;
    QWidget *CoolBar1 = nullptr;
    QWidget *addressBand = nullptr;
    QComboBox *cboAddress = nullptr;
    QToolBar *tbToolBar = nullptr;
    QAction *secureAction = nullptr;
    BusyIndicator *busy = nullptr;
    InfoBar *infoBar = nullptr;
    QTimer *timTimer = nullptr;
};
