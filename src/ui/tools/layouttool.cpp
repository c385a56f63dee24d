#include "ui/tools/layouttool.h"

#include "core/base/appinfo.h"
#include "core/base/uitexts.h"
#include "core/model/layout.h"
#include "core/model/layouttreemodel.h"
#include "ui/frame/framemenus.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/windowsets.h"
#include "ui/tools/bandicon.h"
#include "ui/tools/layoutpropertydialog.h"

#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <QMessageBox>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>

LayoutTool::LayoutTool(MDIForm1 *frame, QWidget *parent)
    : QWidget(parent)
    , m_frame(frame)
    , m_book(AppInfo::dataFolderPath())
{
    m_model = new LayoutTreeModel(m_book, this);
    m_tree = new QTreeView(this);
    m_tree->setObjectName(QStringLiteral("TreeView2"));
    m_tree->setHeaderHidden(true);
    m_tree->setUniformRowHeights(true);
    m_tree->setModel(m_model);
    m_tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_tree->setContextMenuPolicy(Qt::CustomContextMenu);
    m_tree->installEventFilter(this);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_tree);
    buildMenu();

    m_band = new QToolBar(this);
    m_band->setObjectName(QStringLiteral("Toolbar3"));
    m_band->setIconSize(QSize(16, 16));
    const auto button
        = [this](const char *key, int tip, const char *theme, QStyle::StandardPixmap fallback) {
              QAction *entry = m_band->addAction(bandIcon(theme, fallback, this), uiText(tip));
              entry->setObjectName(QLatin1String(key));
              entry->setToolTip(uiText(tip));
              return entry;
          };
    connect(button("layout", 1551, "window-new", QStyle::SP_DialogOpenButton), &QAction::triggered,
        this, [this] { open(current()); });
    QAction *edit = button("edit", 2062, "document-edit", QStyle::SP_FileDialogDetailedView);
    connect(edit, &QAction::triggered, this, [this, edit] {
        QWidget *at = m_band->widgetForAction(edit);
        m_menu->popup(at ? at->mapToGlobal(QPoint(0, at->height())) : QCursor::pos());
    });
    connect(button("sort", 2063, "view-sort-ascending", QStyle::SP_ArrowDown), &QAction::triggered,
        this, &LayoutTool::sort);

    connect(m_tree, &QTreeView::doubleClicked, this, &LayoutTool::open);
    connect(m_tree, &QTreeView::customContextMenuRequested, this, [this](const QPoint &at) {
        if (const QModelIndex index = m_tree->indexAt(at); index.isValid())
            select(index);
        m_menu->popup(m_tree->viewport()->mapToGlobal(at));
    });
    wireFrameMenus();
}

void LayoutTool::buildMenu()
{
    m_menu = new QMenu(uiText(1550), this);
    m_menu->setObjectName(QStringLiteral("mn_ModifyLayout"));
    connect(m_menu, &QMenu::aboutToShow, this, &LayoutTool::updateMenus);
    const auto entry = [this](const char *name, int textId, auto act) {
        QAction *added = m_menu->addAction(uiText(textId));
        added->setObjectName(QLatin1String(name));
        connect(added, &QAction::triggered, this, act);
        m_actions.insert(added->objectName(), added);
    };
    entry("mn_OpenLayoutForm", 1552, [this] { open(current()); });
    entry("mn_AddLayout", 1553, [this] { AddLayoutToArchive(); });
    entry("mn_DelLayout", 1554, [this] { deleteLayout(current()); });
    entry("mn_LayoutProp", 1555, [this] { editProperties(current()); });
}

void LayoutTool::wireFrameMenus()
{
    // The frame offers the archive beside the layout files; the pane keeps the archive.
    if (QAction *save = m_frame->menuAction(QStringLiteral("mn_Anordnung_saveArchive"))) {
        save->setEnabled(true);
        connect(save, &QAction::triggered, this, [this] {
            emit showRequested();
            AddLayoutToArchive();
        });
    }
    if (QMenu *openMenu = m_frame->menus()->layoutMenu()) {
        connect(openMenu, &QMenu::aboutToShow, this, [this, openMenu] { fillOpenMenu(openMenu); });
    }
}

void LayoutTool::ensureLoaded()
{
    if (!m_loaded)
        ViewLayoutArchiv();
}

void LayoutTool::ViewLayoutArchiv()
{
    m_loaded = true;
    m_model->reload();
    const QString problem = m_model->problem();
    emit statusText(problem.isEmpty() ? uiText(2653).arg(m_book.colLayout.size()) : problem);
    updateMenus();
}

QModelIndex LayoutTool::current() const
{
    return m_tree->currentIndex();
}

void LayoutTool::select(const QModelIndex &index)
{
    m_tree->setCurrentIndex(index);
    updateMenus();
}

void LayoutTool::updateMenus()
{
    const bool any = m_model->layoutAt(current()) != nullptr;
    for (const char *name : {"mn_OpenLayoutForm", "mn_DelLayout", "mn_LayoutProp"})
        m_actions.value(QLatin1String(name))->setEnabled(any);
    m_actions.value(QStringLiteral("mn_AddLayout"))->setEnabled(!m_frame->browsers().isEmpty());
}

void LayoutTool::open(const QModelIndex &index)
{
    const LayoutItem *layout = m_model->layoutAt(index);
    if (!layout)
        return;
    QList<WindowDescription> windows;
    if (const FensterInfo *window = m_model->windowAt(index)) {
        windows.append(Layout::fromFensterInfo(*window));
    } else {
        for (const FensterInfo &window : layout->colFensterInfo)
            windows.append(Layout::fromFensterInfo(window));
    }
    emit statusText(uiText(2657).arg(windows.size()).arg(layout->LayoutName));
    WindowSets::openLayout(*m_frame, windows);
}

void LayoutTool::AddLayoutToArchive()
{
    ensureLoaded();
    const QList<WindowDescription> windows = WindowSets::describeOpenWindows(*m_frame);
    if (windows.isEmpty()) {
        QMessageBox::information(this, uiText(100), uiText(2655));
        return;
    }
    LayoutPropertyDialog dialog(uiText(1556), QString(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    QList<FensterInfo> infos;
    infos.reserve(windows.size());
    for (const WindowDescription &window : windows)
        infos.append(Layout::toFensterInfo(window));
    const QModelIndex added = m_model->addLayout(infos, dialog.name(), dialog.info());
    select(added);
    reportSave(m_model->problem().isEmpty(), uiText(2654).arg(dialog.name()));
}

void LayoutTool::UpdateLayout(const QModelIndex &index, const QString &name, const QString &info)
{
    reportSave(
        m_model->setProperties(index, name, info), uiText(2653).arg(m_book.colLayout.size()));
}

qsizetype LayoutTool::GetLayoutIdx(qint32 sequenz) const
{
    for (qsizetype i = 0; i < m_book.colLayout.size(); ++i) {
        if (m_book.colLayout.at(i).Sequenz == sequenz)
            return i;
    }
    return -1;
}

std::pair<qsizetype, int> LayoutTool::GetLAndR_Indx(const QModelIndex &index) const
{
    const LayoutItem *layout = m_model->layoutAt(index);
    if (!layout)
        return {-1, -1};
    const qsizetype position = GetLayoutIdx(layout->Sequenz);
    return {position, m_model->windowAt(index) ? index.row() : -1};
}

void LayoutTool::deleteLayout(const QModelIndex &index)
{
    const LayoutItem *layout = m_model->layoutAt(index);
    if (!layout)
        return;
    if (QMessageBox::question(this, uiText(100), uiText(1557).arg(layout->LayoutName),
            QMessageBox::Yes | QMessageBox::No, QMessageBox::No)
        != QMessageBox::Yes)
        return;
    const bool saved = m_model->deleteLayout(index);
    reportSave(saved, uiText(2653).arg(m_book.colLayout.size()));
    updateMenus();
}

void LayoutTool::editProperties(const QModelIndex &index)
{
    const LayoutItem *layout = m_model->layoutAt(index);
    if (!layout)
        return;
    LayoutPropertyDialog dialog(layout->LayoutName, layout->Info, this);
    if (dialog.exec() == QDialog::Accepted)
        UpdateLayout(index, dialog.name(), dialog.info());
}

void LayoutTool::sort()
{
    reportSave(m_model->sortByName(), uiText(2653).arg(m_book.colLayout.size()));
}

void LayoutTool::reportSave(bool saved, const QString &done)
{
    emit statusText(saved ? done : m_model->problem());
}

void LayoutTool::fillOpenMenu(QMenu *menu)
{
    ensureLoaded();
    // The entries of the last showing go; the file entry stays first.
    const QList<QAction *> entries = menu->actions();
    for (QAction *entry : entries) {
        if (entry->property("layoutEntry").toBool())
            delete entry;
    }
    QAction *separator = menu->addSeparator();
    separator->setProperty("layoutEntry", true);
    if (m_book.colLayout.isEmpty()) {
        QAction *none = menu->addAction(uiText(2656));
        none->setProperty("layoutEntry", true);
        none->setEnabled(false);
        return;
    }
    for (qsizetype i = 0; i < m_book.colLayout.size(); ++i) {
        const LayoutItem &layout = m_book.colLayout.at(i);
        QString caption = layout.LayoutName;
        QAction *entry = menu->addAction(caption.replace(u'&', QStringLiteral("&&")));
        entry->setProperty("layoutEntry", true);
        entry->setToolTip(layout.Info);
        const qint32 sequenz = layout.Sequenz;
        connect(entry, &QAction::triggered, this, [this, sequenz] {
            const qsizetype position = GetLayoutIdx(sequenz);
            if (position >= 0)
                open(m_model->layoutIndex(position));
        });
    }
}

bool LayoutTool::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_tree || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    if (key->modifiers() != Qt::NoModifier)
        return QWidget::eventFilter(watched, event);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
        open(current());
        return true;
    }
    if (key->key() == Qt::Key_Delete) {
        deleteLayout(current());
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
