#pragma once

#include "core/browsing/linkstoopen.h"
#include "core/model/book.h"

#include <QHash>
#include <QList>
#include <QModelIndex>
#include <QWidget>

class BookTreeModel;
class BookmarkExchange;
class MDIForm1;
class QDropEvent;
class QMenu;
class QToolBar;
class QTreeView;

// The bookmark tool of the tools pane: the archive as a tree (TreeView1), its command
// band (Toolbar1) and the menus mn_Archive, mn_Ordner and mn_Bookmark.
class BookmarkTool final : public QWidget
{
    Q_OBJECT

public:
    explicit BookmarkTool(MDIForm1 *frame, QWidget *parent = nullptr);
    ~BookmarkTool() override;

    QToolBar *band() const { return m_band; }
    QTreeView *tree() const { return m_tree; }
    BookTreeModel *model() const { return m_model; }
    BookmarkExchange *exchange() const { return m_exchange; }
    Book &book() { return m_book; }
    MDIForm1 *frame() const { return m_frame; }
    QMenu *menu(const QString &name) const { return m_menus.value(name); }
    QAction *action(const QString &name) const { return m_actions.value(name); }

    // (Re)builds the tree from the archive; with no archive yet, the sample bookmarks
    // are imported first.
    void load();
    bool save();
    // While the archive has unsaved changes, asks whether to save them.
    void askToSave();

    QModelIndex current() const;
    void select(const QModelIndex &index);
    // Sets each entry's enabled state from the selected node.
    void updateMenus();
    // While an import writes the archive, nothing may edit or save it.
    void setBusy(bool busy);
    // The menu that fits the selected node ("edit").
    QMenu *menuForSelection() const;

    // Pane operations.
    void AddDirToArchive();
    void deleteFolder(const QModelIndex &index);
    void renameFolder(const QModelIndex &index);
    // Adds bookmarks to the folder of the selected node; a duplicate address is asked
    // about, and the answer may cover every further duplicate of the batch.
    int addBookmarks(const QList<LinksToOpen::TitledLink> &links);
    void addFromForeground();
    void addFromAllWindows();
    void addAllLinks();
    void addWithDialog();
    void editProperties(const QModelIndex &index);
    void deleteBookmark(const QModelIndex &index);
    void sortSelected();
    void setHome(const QModelIndex &index);
    // Opens a bookmark in a new window; script addresses never, local files only after
    // the user agrees.
    bool OpenBookmark(const QModelIndex &index);
    // Every bookmark of the folder, one window per turn of the event loop.
    void OpenAll(const QModelIndex &index);
    // mn_StartBkmRoundtrip: a new window visits the folder's bookmarks in turn.
    void startRoundtrip(const QModelIndex &index);

signals:
    void statusText(const QString &text);
    void closeRequested();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildMenus();
    QAction *addEntry(QMenu *menu, const char *name, int textId, void (BookmarkTool::*slot)());
    void openNext();
    bool drop(QDropEvent *event);
    // Whether a bookmark's address may open: not a script, a local file when agreed.
    bool mayOpen(const QString &url);

    MDIForm1 *m_frame;
    Book m_book;
    BookTreeModel *m_model = nullptr;
    QTreeView *m_tree = nullptr;
    QToolBar *m_band = nullptr;
    BookmarkExchange *m_exchange = nullptr;
    QHash<QString, QMenu *> m_menus;
    QHash<QString, QAction *> m_actions;
    QList<Bookmark> m_openQueue;
    bool m_busy = false;
};
