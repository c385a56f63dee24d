#pragma once

#include "core/browsing/newwindowpolicy.h"
#include "core/model/historyitem.h"
#include "ui/browser/windowcommand.h"

#include <QHash>
#include <QList>
#include <QMainWindow>
#include <QPointer>

#include <optional>

class FrameMenus;
class InfoBar;
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

    // "MDI": a window the user or the program opens; "MDIChild": one a page opened,
    // marked as a popup.
    enum class BrowserKind { MDI, MDIChild };

    // Window registry. A window's start address is the home page unless one is given.
    frmBrowser *CreateBrowser(BrowserKind kind, const QString &startAddress = QString());
    // A new window on the address, or on its start address when the address is empty.
    frmBrowser *NewBrowser(
        const QString &address = QString(), const QString &startAddress = QString());
    frmBrowser *OpenNewBrowser(const QString &address) { return NewBrowser(address); }
    // A new window on the start page, rendered as a feed when the home title says so.
    frmBrowser *OpenStartPage();
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

    // Child window arrangement.
    enum class Arrangement { Cascade, OneBelowAnother, SideBySide };
    void Arrange(Arrangement arrangement);
    // The arrangement chosen last, if any.
    std::optional<Arrangement> arrangement() const { return m_arrangement; }

    // New-window switches. Setting one from the menu also stores it in the preferences.
    const NewWindowPolicy &policy() const { return m_policy; }
    void setPolicy(const NewWindowPolicy &policy);
    void setPolicySwitch(NewWindowPolicy::Switch which, bool on);
    // Pages of the site may open windows even while the switch says no; kept on disk.
    void allowPopupSite(const QString &site);

    // History of this run, newest last.
    void AddToHistory(const QString &url, const QString &title);
    const QList<HistoryItem> &history() const { return m_history; }

    // A command line handed over by a second start.
    void handleHandOver(const QString &rawLine);

    // The frame's caption; the frame keeps it whatever its child windows do.
    void setCaption(const QString &caption);
    void setStatusText(const QString &text);
    QString statusText() const;
    QAction *menuAction(const QString &name) const;
    TabStrip *tabStrip() const { return m_tabs; }
    QMdiArea *mdiArea() const { return m_mdi; }
    // The bar above the windows for messages and questions of the frame itself.
    InfoBar *infoBar() const { return m_infoBar; }
    FrameMenus *menus() const { return m_menus; }

    // Applied by start-up from the preferences.
    bool AddressBarDefault = true;
    bool ToolbarDefault = true;
    bool SecondInstance = false;

    // Stores size and state in the preferences and saves them, once.
    void Unload();

    // Shows the preferences: status bar, tab strip, popup switches, new windows' bars.
    void ApplyPreferences();

signals:
    // The preferences changed after start-up; the mail check follows them.
    void preferencesApplied();
    void historyChanged();
    void windowsChanged();

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void layoutTabStrip();
    void EmptyState();
    void wireBrowser(frmBrowser *window, QMdiSubWindow *sub);
    void runWindowCommand(frmBrowser *window, WindowCommand command);
    frmBrowser *openPageWindow(const NewWindowPolicy::Request &request, bool *keepOpener);
    // Tells the pages of every window (or of one) what a refused window.open returns.
    void guardWindowOpen(frmBrowser *only = nullptr);
    void closeAllFrom(frmBrowser *last);
    void setFullScreen(bool on);
    QMdiSubWindow *subWindowOf(const frmBrowser *window) const;
    void refreshTab(frmBrowser *window);

    QMdiArea *m_mdi = nullptr;
    TabStrip *m_tabs = nullptr;
    InfoBar *m_infoBar = nullptr;
    QWidget *m_central = nullptr;
    QLabel *m_status = nullptr;
    FrameMenus *m_menus = nullptr;
    QHash<QString, QPointer<frmBrowser>> m_browsers;
    QList<QString> m_order;
    int m_windowCounter = 0;
    int m_openWindowCount = 0;
    int m_popupCount = 0;
    std::optional<Arrangement> m_arrangement;
    NewWindowPolicy m_policy;
    QString m_currentKey;
    QString m_caption;
    QList<HistoryItem> m_history;
    bool m_unloaded = false;
    bool m_closingPopups = false;
    bool m_destroying = false;
    Qt::WindowStates m_stateBeforeFullScreen;
};
