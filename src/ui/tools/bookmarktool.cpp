#include "ui/tools/bookmarktool.h"

#include "core/base/appinfo.h"
#include "core/base/uitexts.h"
#include "core/exchange/netscapeimport.h"
#include "core/model/booktreemodel.h"
#include "ui/tools/bandicon.h"
#include "ui/tools/bookmarkexchange.h"
#include "ui/tools/treeimages.h"

#include <QAction>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

BookmarkTool::BookmarkTool(MDIForm1 *frame, QWidget *parent)
    : QWidget(parent)
    , m_frame(frame)
    , m_book(AppInfo::dataFolderPath())
{
    m_model = new BookTreeModel(m_book, this);
    m_tree = new QTreeView(this);
    m_tree->setObjectName(QStringLiteral("TreeView1"));
    m_tree->setHeaderHidden(true);
    m_tree->setUniformRowHeights(true);
    m_tree->setModel(m_model);
    m_tree->setItemDelegate(new TreeImages(m_tree));
    m_tree->setEditTriggers(QAbstractItemView::EditKeyPressed);
    m_tree->setContextMenuPolicy(Qt::CustomContextMenu);
    m_tree->installEventFilter(this);
    // Bookmarks move between folders; addresses and links dropped on a folder join it.
    m_tree->setDragDropMode(QAbstractItemView::DragDrop);
    m_tree->setDefaultDropAction(Qt::MoveAction);
    m_tree->viewport()->installEventFilter(this);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_tree);

    m_exchange = new BookmarkExchange(this);
    buildMenus();

    m_band = new QToolBar(this);
    m_band->setObjectName(QStringLiteral("Toolbar1"));
    m_band->setIconSize(QSize(16, 16));
    const auto button
        = [this](const char *key, int tip, const char *theme, QStyle::StandardPixmap fallback) {
              QAction *entry = m_band->addAction(bandIcon(theme, fallback, this), uiText(tip));
              entry->setObjectName(QLatin1String(key));
              entry->setToolTip(uiText(tip));
              return entry;
          };
    // "archiv" and "edit" open their menus at the button.
    QAction *archiv = button("archiv", 105, "folder-bookmark", QStyle::SP_DirHomeIcon);
    archiv->setMenu(m_menus.value(QStringLiteral("mn_Archive")));
    QAction *edit = button("edit", 2062, "document-edit", QStyle::SP_FileDialogDetailedView);
    connect(archiv, &QAction::triggered, this, [this, archiv] {
        if (auto *tool = qobject_cast<QToolButton *>(m_band->widgetForAction(archiv)))
            tool->showMenu();
    });
    connect(edit, &QAction::triggered, this, [this, edit] {
        QWidget *at = m_band->widgetForAction(edit);
        menuForSelection()->popup(at ? at->mapToGlobal(QPoint(0, at->height())) : QCursor::pos());
    });
    connect(button("sort", 2063, "view-sort-ascending", QStyle::SP_ArrowDown), &QAction::triggered,
        this, &BookmarkTool::sortSelected);

    connect(m_tree, &QTreeView::expanded, m_model,
        [this](const QModelIndex &index) { m_model->setFolderOpen(index, true); });
    connect(m_tree, &QTreeView::collapsed, m_model,
        [this](const QModelIndex &index) { m_model->setFolderOpen(index, false); });
    connect(m_tree, &QTreeView::customContextMenuRequested, this, [this](const QPoint &at) {
        if (const QModelIndex index = m_tree->indexAt(at); index.isValid())
            select(index);
        menuForSelection()->popup(m_tree->viewport()->mapToGlobal(at));
    });
    connect(m_tree, &QTreeView::doubleClicked, this, [this](const QModelIndex &index) {
        if (m_model->bookmarkAt(index))
            OpenBookmark(index);
    });
    // The refusal is told once the editor has closed, with the old name back.
    connect(m_model, &BookTreeModel::renameRefused, this, [this](const QString &message) {
        QTimer::singleShot(
            0, this, [this, message] { QMessageBox::warning(this, uiText(100), message); });
    });
    connect(m_model, &QAbstractItemModel::modelReset, this, [this] {
        m_tree->expand(m_model->rootIndex());
        updateMenus();
    });
}

BookmarkTool::~BookmarkTool() = default;

QAction *BookmarkTool::addEntry(
    QMenu *menu, const char *name, int textId, void (BookmarkTool::*slot)())
{
    QAction *entry = menu->addAction(uiText(textId));
    entry->setObjectName(QLatin1String(name));
    if (slot)
        connect(entry, &QAction::triggered, this, slot);
    m_actions.insert(entry->objectName(), entry);
    return entry;
}

void BookmarkTool::buildMenus()
{
    const auto newMenu = [this](const char *name, int textId, QMenu *parentMenu = nullptr) {
        auto *menu
            = parentMenu ? parentMenu->addMenu(uiText(textId)) : new QMenu(uiText(textId), this);
        menu->setObjectName(QLatin1String(name));
        m_menus.insert(menu->objectName(), menu);
        connect(menu, &QMenu::aboutToShow, this, &BookmarkTool::updateMenus);
        return menu;
    };
    using Self = BookmarkTool;
    using Format = BookmarkExchange::Format;
    const auto exportEntry
        = [this](QMenu *menu, const char *name, int textId, Format format, bool folder) {
              connect(addEntry(menu, name, textId, nullptr), &QAction::triggered, this,
                  [this, format, folder] {
                      m_exchange->exportTo(format, folder ? current() : m_model->rootIndex());
                  });
          };

    QMenu *archive = newMenu("mn_Archive", 1001);
    addEntry(archive, "mn_Laden", 1011, &Self::load);
    addEntry(archive, "mn_Speichern", 1012, nullptr);
    connect(m_actions.value(QStringLiteral("mn_Speichern")), &QAction::triggered, this,
        [this] { save(); });
    addEntry(archive, "mn_Sortieren", 1019, nullptr);
    connect(m_actions.value(QStringLiteral("mn_Sortieren")), &QAction::triggered, m_model,
        [this] { m_model->sortFolders(); });
    QMenu *exports = newMenu("mn_export", 1013, archive);
    exportEntry(exports, "mn_ExpTxt", 1014, Format::Text, false);
    exportEntry(exports, "mn_ExpHtml", 1016, Format::Html, false);
    exportEntry(exports, "mn_ExpXML", 1055, Format::Xml, false);
    exportEntry(exports, "mn_ExpRSS", 1059, Format::Rss, false);
    exportEntry(exports, "mn_ExpNetscapeHtml", 1015, Format::Netscape, false);
    QMenu *imports = newMenu("mn_import", 1017, archive);
    connect(addEntry(imports, "mn_ImpNetscapeHtml", 1018, nullptr), &QAction::triggered, m_exchange,
        [this] { m_exchange->importArchive(); });
    archive->addSeparator();
    connect(addEntry(archive, "mn_Schlie_en", 1020, nullptr), &QAction::triggered, this,
        &BookmarkTool::closeRequested);
    connect(addEntry(archive, "mn_Modify", 1021, nullptr), &QAction::triggered, this,
        [this] { menuForSelection()->popup(QCursor::pos()); });

    QMenu *folder = newMenu("mn_Ordner", 1022);
    addEntry(folder, "mn_SortOrdner", 1023, nullptr);
    connect(m_actions.value(QStringLiteral("mn_SortOrdner")), &QAction::triggered, m_model,
        [this] { m_model->sortFolders(); });
    addEntry(folder, "mn_AddOrdner", 1024, &Self::AddDirToArchive);
    connect(addEntry(folder, "mn_DelOrdner", 1025, nullptr), &QAction::triggered, this,
        [this] { deleteFolder(current()); });
    connect(addEntry(folder, "mn_AttrOrdner", 1026, nullptr), &QAction::triggered, this,
        [this] { renameFolder(current()); });
    QMenu *detail = newMenu("mn_exportdetail", 1013, folder);
    exportEntry(detail, "mn_expdetText", 1014, Format::Text, true);
    exportEntry(detail, "mn_expdetHtml", 1016, Format::Html, true);
    exportEntry(detail, "mn_expdetXML", 1055, Format::Xml, true);
    exportEntry(detail, "mn_expdetRSS", 1059, Format::Rss, true);
    exportEntry(detail, "mn_expdetNetscapeHtml", 1015, Format::Netscape, true);

    QMenu *bookmark = newMenu("mn_Bookmark", 1028);
    addEntry(bookmark, "mn_SortBkm", 1029, &Self::sortSelected);
    connect(addEntry(bookmark, "mn_OpenAllBkm", 1034, nullptr), &QAction::triggered, this,
        [this] { OpenAll(current()); });
    connect(addEntry(bookmark, "mn_StartBkmRoundtrip", 1051, nullptr), &QAction::triggered, this,
        [this] { startRoundtrip(current()); });
    connect(addEntry(bookmark, "mn_OpenBkm", 1033, nullptr), &QAction::triggered, this,
        [this] { OpenBookmark(current()); });
    connect(addEntry(bookmark, "mn_setHome", 1027, nullptr), &QAction::triggered, this,
        [this] { setHome(current()); });
    bookmark->addSeparator();
    addEntry(bookmark, "mn_Hinzuvon", 1030, &Self::addFromForeground);
    addEntry(bookmark, "mn_HinzuvonAll", 1031, &Self::addFromAllWindows);
    addEntry(bookmark, "mn_HinzuvonLinks", 1032, &Self::addAllLinks);
    addEntry(bookmark, "mn_Hinzuf_gen", 1035, &Self::addWithDialog);
    bookmark->addSeparator();
    connect(addEntry(bookmark, "mn_Loeschen", 1036, nullptr), &QAction::triggered, this,
        [this] { deleteBookmark(current()); });
    connect(addEntry(bookmark, "mn_Eigenschaften", 1049, nullptr), &QAction::triggered, this,
        [this] { editProperties(current()); });
}

QModelIndex BookmarkTool::current() const
{
    return m_tree->currentIndex();
}

void BookmarkTool::select(const QModelIndex &index)
{
    m_tree->setCurrentIndex(index);
    updateMenus();
}

void BookmarkTool::updateMenus()
{
    const QString tag = m_model->tagAt(current());
    const bool dir = tag == u"Dir";
    const bool url = tag == u"Url";
    const auto enable = [this](std::initializer_list<const char *> names, bool on) {
        for (const char *name : names)
            m_actions.value(QLatin1String(name))->setEnabled(on);
    };
    enable({"mn_DelOrdner", "mn_AttrOrdner", "mn_expdetText", "mn_expdetHtml", "mn_expdetXML",
               "mn_expdetRSS", "mn_expdetNetscapeHtml"},
        dir);
    m_menus.value(QStringLiteral("mn_exportdetail"))->setEnabled(dir);
    enable({"mn_AddOrdner", "mn_SortOrdner"}, m_model->rowCount() > 0 && !url);
    enable({"mn_SortBkm", "mn_Hinzuvon", "mn_HinzuvonAll", "mn_HinzuvonLinks", "mn_Hinzuf_gen",
               "mn_OpenAllBkm", "mn_StartBkmRoundtrip"},
        dir || url);
    enable({"mn_OpenBkm", "mn_setHome", "mn_Loeschen", "mn_Eigenschaften"}, url);
    if (m_busy) {
        for (QAction *entry : std::as_const(m_actions))
            entry->setEnabled(false);
    }
}

void BookmarkTool::setBusy(bool busy)
{
    m_busy = busy;
    m_tree->setEnabled(!busy);
    m_band->setEnabled(!busy);
    updateMenus();
}

QMenu *BookmarkTool::menuForSelection() const
{
    const QString tag = m_model->tagAt(current());
    return m_menus.value(
        tag == u"Url" ? QStringLiteral("mn_Bookmark") : QStringLiteral("mn_Ordner"));
}

void BookmarkTool::load()
{
    if (!m_model->reload()) {
        // No archive yet: the program's sample bookmarks make the first one.
        const NetscapeImport::Result samples
            = NetscapeImport::readFile(NetscapeImport::sampleArchivePath());
        if (samples.status == NetscapeImport::Result::Imported)
            m_model->reload([this, &samples] { NetscapeImport::replaceArchive(m_book, samples); });
    }
    if (!m_book.lastOutcome().message().isEmpty())
        emit statusText(m_book.lastOutcome().message());
    else
        emit statusText(uiText(2216).arg(m_book.colThema.count()));
}

bool BookmarkTool::save()
{
    if (m_book.SaveAllThema())
        return true;
    QMessageBox::warning(this, uiText(100), m_book.lastOutcome().message());
    return false;
}

void BookmarkTool::askToSave()
{
    if (!m_book.IsEdit)
        return;
    if (QMessageBox::question(this, uiText(100), uiText(1046), QMessageBox::Yes | QMessageBox::No)
        == QMessageBox::Yes)
        save();
}

bool BookmarkTool::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_tree->viewport() && event->type() == QEvent::Drop)
        return drop(static_cast<QDropEvent *>(event));
    // Keys typed into a name being edited go to the editor, not here.
    if (watched != m_tree || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    const QString tag = m_model->tagAt(current());
    if (key->modifiers() == Qt::ControlModifier && key->key() == Qt::Key_I && tag == u"Archiv") {
        m_exchange->importArchive();
        return true;
    }
    if (key->modifiers() == Qt::ControlModifier && key->key() == Qt::Key_E
        && (tag == u"Archiv" || tag == u"Dir")) {
        m_exchange->exportTo(BookmarkExchange::Format::Netscape, current());
        return true;
    }
    if (key->modifiers() == Qt::NoModifier && key->key() == Qt::Key_Delete) {
        if (tag == u"Url")
            deleteBookmark(current());
        else if (tag == u"Dir")
            deleteFolder(current());
        return true;
    }
    if (key->modifiers() == Qt::NoModifier
        && (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) && tag == u"Url") {
        OpenBookmark(current());
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

bool BookmarkTool::drop(QDropEvent *event)
{
    const QModelIndex target = m_tree->indexAt(event->position().toPoint());
    const QMimeData *data = event->mimeData();
    if (!m_model->folderAt(target))
        return false;
    if (data->hasFormat(BookTreeModel::bookmarkMimeType())) {
        const QStringList keys
            = QString::fromUtf8(data->data(BookTreeModel::bookmarkMimeType())).split(u'\n');
        // Found by key one at a time: each move renumbers nothing but its own node.
        for (const QString &key : keys)
            m_model->moveBookmark(m_model->indexOfKey(key), target);
    } else {
        QList<LinksToOpen::TitledLink> links;
        const QList<QUrl> urls = data->hasUrls()
            ? data->urls()
            : QList<QUrl> {QUrl::fromUserInput(data->text().trimmed())};
        for (const QUrl &url : urls) {
            if (url.isValid() && !url.scheme().isEmpty())
                links.append({url.toDisplayString(), url.toString()});
        }
        select(target);
        addBookmarks(links);
    }
    event->acceptProposedAction();
    return true;
}
