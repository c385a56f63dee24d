#pragma once

#include "core/browsing/newwindowpolicy.h"
#include "core/model/historyitem.h"

#include <QHash>
#include <QList>
#include <QMainWindow>
#include <QPointer>

class FrameMenus;
class QLabel;
class QMdiArea;
class QMdiSubWindow;
class QMenu;
class TabStrip;
class frmBrowser;

// The main frame: every browser window lives in its client area, mirrored by one
// tab each in the tab strip. It owns the window registry and the history.
class MDIForm1 final : public QMainWindow
{
    Q_OBJECT

public:
    explicit MDIForm1(QWidget *parent = nullptr);
    ~MDIForm1() override;

    // Window registry.
    frmBrowser *CreateBrowser(const QString &kind);
    frmBrowser *NewBrowser();
    frmBrowser *OpenNewBrowser(const QString &address);
    void CreateTab(int number, const QString &caption);
    void UpdateTab(const QString &title, int number);
    void RemoveTab(int number);
    void TabSync();

    frmBrowser *activeBrowser() const;
    frmBrowser *browser(const QString &key) const;
    QList<frmBrowser *> browsers() const;
    int windowCounter() const { return m_windowCounter; }
    int openWindowCount() const { return m_openWindowCount; }
    int popupCount() const { return m_popupCount; }

    // Closing and cloning.
    void CloseAll();
    void ClosePopups();
    void CloseOtherBrowsers(frmBrowser *keep);
    bool IsCloneable() const;
    frmBrowser *CloneActive();
    void activateWindowAt(int offset, bool relative);

    // Tab strip placement (1 top, 2 or 3 bottom) and style.
    void SetTabAlign(qint16 align);
    void SetTabButton(bool buttons);

    // Child window arrangement: 0 cascade, 1 one below another, 2 side by side.
    void Arrange(int code);
    int arrangement() const { return m_arrangement; }

    // New-window switches.
    NewWindowPolicy policy;
    void setPolicySwitch(const QString &name, bool on);

    // History of this run, newest last.
    void AddToHistory(const QString &url, const QString &title);
    const QList<HistoryItem> &history() const { return m_history; }

    // A command line handed over by a second start.
    void handleHandOver(const QString &rawLine);

    void setStatusText(const QString &text);
    QString statusText() const;
    QAction *menuAction(const QString &name) const;
    TabStrip *tabStrip() const { return m_tabs; }
    QMdiArea *mdiArea() const { return m_mdi; }
    FrameMenus *menus() const { return m_menus; }

    // Applied by start-up from the preferences.
    QString PendingAddress;
    QString StartAddressOverride;
    bool AddressBarDefault = true;
    bool ToolbarDefault = true;
    bool SecondInstance = false;

    // Stores size and state in the preferences and saves them, once.
    void Unload();

signals:
    void historyChanged();
    void windowsChanged();

protected:
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void layoutTabStrip();
    void EmptyState();
    void wireBrowser(frmBrowser *window, QMdiSubWindow *sub);
    frmBrowser *openPageWindow(frmBrowser *opener, bool *keepOpener);
    void setFullScreen(bool on);
    QMdiSubWindow *subWindowOf(const frmBrowser *window) const;

    QMdiArea *m_mdi = nullptr;
    TabStrip *m_tabs = nullptr;
    QWidget *m_central = nullptr;
    QLabel *m_status = nullptr;
    FrameMenus *m_menus = nullptr;
    QHash<QString, QPointer<frmBrowser>> m_browsers;
    QList<QString> m_order;
    int m_windowCounter = 0;
    int m_openWindowCount = 0;
    int m_popupCount = 0;
    int m_arrangement = -1;
    QString m_currentKey;
    QList<HistoryItem> m_history;
    bool m_unloaded = false;
    bool m_closingPopups = false;
    bool m_destroying = false;
    Qt::WindowStates m_stateBeforeFullScreen;
};
