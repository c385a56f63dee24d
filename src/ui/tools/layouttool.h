#pragma once

#include "core/model/layoutbook.h"

#include <QHash>
#include <QModelIndex>
#include <QWidget>

#include <utility>

class LayoutTreeModel;
class MDIForm1;
class QMenu;
class QToolBar;
class QTreeView;

// The layout tool of the tools pane: the archive of web layouts as a tree (TreeView2),
// its command band (Toolbar3) and the menu mn_ModifyLayout. It also serves the frame's
// "save web layout" into the archive and lists the archive under "open web layout".
class LayoutTool final : public QWidget
{
    Q_OBJECT

public:
    explicit LayoutTool(MDIForm1 *frame, QWidget *parent = nullptr);

    QToolBar *band() const { return m_band; }
    QTreeView *tree() const { return m_tree; }
    LayoutTreeModel *model() const { return m_model; }
    LayoutBook &book() { return m_book; }
    QMenu *menu() const { return m_menu; }
    QAction *action(const QString &name) const { return m_actions.value(name); }

    // Pane operations.
    // Reads the archive (again) and shows it.
    void ViewLayoutArchiv();
    // Asks for a name and description and keeps the open windows as a new layout.
    void AddLayoutToArchive();
    // Renames and describes the layout of a node.
    void UpdateLayout(const QModelIndex &index, const QString &name, const QString &info);
    // The position (from 0) of the layout with a sequence number, or -1.
    qsizetype GetLayoutIdx(qint32 sequenz) const;
    // The layout's position and the window's row of a node (the window's row is -1 for a
    // layout node; both are -1 for no node).
    std::pair<qsizetype, int> GetLAndR_Indx(const QModelIndex &index) const;

    QModelIndex current() const;
    void select(const QModelIndex &index);
    // "layout": the selected layout with all its windows, or the selected window alone.
    void open(const QModelIndex &index);
    // mn_DelLayout: after the user agreed.
    void deleteLayout(const QModelIndex &index);
    // mn_LayoutProp: the name and description dialog for the selected layout.
    void editProperties(const QModelIndex &index);
    // "sort": by name.
    void sort();
    void updateMenus();

signals:
    void statusText(const QString &text);
    // The tool should be shown (a layout was added from the frame's menu).
    void showRequested();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void ensureLoaded();
    void buildMenu();
    void wireFrameMenus();
    // The archive's layouts as entries of the frame's "open web layout".
    void fillOpenMenu(QMenu *menu);
    void reportSave(bool saved, const QString &done);

    MDIForm1 *m_frame;
    LayoutBook m_book;
    LayoutTreeModel *m_model = nullptr;
    QTreeView *m_tree = nullptr;
    QToolBar *m_band = nullptr;
    QMenu *m_menu = nullptr;
    QHash<QString, QAction *> m_actions;
    bool m_loaded = false;
};
