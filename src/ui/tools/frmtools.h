#pragma once

#include <QDockWidget>
#include <QHash>

class BookmarkTool;
class HistoryTool;
class LayoutTool;
class MDIForm1;
class QLabel;
class QMenuBar;
class QProgressBar;
class QStackedWidget;
class QStatusBar;
class QTabBar;
class QToolBar;
class QToolButton;
class SearchTool;

// The tools pane: a dock of the main frame carrying the bookmark archive, the layout
// archive, the history and the search, one at a time, switched by the tab strip at its
// bottom. Its tool, side, width and folded state are kept in "ToolsPane.ini" in the
// data folder.
class frmTools final : public QDockWidget
{
    Q_OBJECT

public:
    enum Tool { Bookmarks = 1, History = 2, Search = 3, Layouts = 4 };
    enum class Corner { UpperLeft, UpperRight, LowerLeft, LowerRight };

    // Makes the pane for the frame, docked as it was last time, and lets the frame's
    // entries for bookmarks and history open it.
    static frmTools *attach(MDIForm1 *frame);

    // Shows the pane with the tool.
    void SelectTool(int tool);
    int currentTool() const;

    BookmarkTool *bookmarks() const { return m_bookmarks; }
    HistoryTool *history() const { return m_history; }
    LayoutTool *layouts() const { return m_layouts; }
    SearchTool *search() const { return m_search; }
    QTabBar *tabStrip() const { return m_tabs; }
    QLabel *statusPanel() const { return m_status; }
    QToolBar *minmax() const { return m_minmax; }
    QToolButton *cancelButton() const { return m_cancel; }
    QMenuBar *paneMenuBar() const { return m_menuBar; }

    // "min" folds the pane to its bands, "max" unfolds it.
    void setFolded(bool folded);
    bool isFolded() const { return m_folded; }
    // mn_lo, mn_ro, mn_lu, mn_ru: the pane docks at that corner's side.
    void place(Corner corner);

    void saveSettings() const;
    static QString settingsPath();

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit frmTools(MDIForm1 *frame);
    void buildMenuBar();
    void showTab(int index);
    void restoreSettings();
    void syncButtons();
    void setStatus(const QString &text);

    MDIForm1 *m_frame;
    BookmarkTool *m_bookmarks = nullptr;
    HistoryTool *m_history = nullptr;
    LayoutTool *m_layouts = nullptr;
    SearchTool *m_search = nullptr;
    QMenuBar *m_menuBar = nullptr;
    QStackedWidget *m_bands = nullptr;
    QStackedWidget *m_content = nullptr;
    QToolBar *m_minmax = nullptr;
    QTabBar *m_tabs = nullptr;
    QStatusBar *m_statusBar = nullptr;
    QLabel *m_status = nullptr;
    QProgressBar *m_progress = nullptr;
    QToolButton *m_cancel = nullptr;
    QWidget *m_body = nullptr;
    bool m_folded = false;
    bool m_archiveLoaded = false;
    bool m_layoutsLoaded = false;
    int m_shownTab = -1;
};
