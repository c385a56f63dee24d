#include "core/model/booktreemodel.h"

#include "core/base/feedmark.h"
#include "core/base/uitexts.h"

#include <QFileInfo>
#include <QMimeData>
#include <QUrl>

#include <utility>

BookTreeModel::BookTreeModel(Book &book, QObject *parent)
    : QAbstractItemModel(parent)
    , m_book(book)
{ }

bool BookTreeModel::reload(const std::function<void()> &change)
{
    beginResetModel();
    m_fetched.clear();
    m_open.clear();
    m_damaged.clear();
    if (change)
        change();
    m_book.colThema.clear();
    const bool found = m_book.LoadAllThema();
    // Missing or cut files are seen without reading them; the rest shows when the
    // folder is opened.
    for (qsizetype i = 0; i < m_book.colThema.count(); ++i) {
        const Thema &folder = m_book.colThema.at(i);
        const QString path = folder.filePath();
        const QFileInfo file(path);
        if (path.isEmpty())
            m_damaged.insert(&folder, FileOutcome::invalidNameReason(folder.FileName));
        else if (!file.exists())
            m_damaged.insert(&folder, uiText(2200).arg(path));
        else if (file.size() % Thema::RecordLength != 0)
            m_damaged.insert(&folder, uiText(2201).arg(path));
    }
    endResetModel();
    return found;
}

QModelIndex BookTreeModel::rootIndex() const
{
    return createIndex(0, 0, quintptr(RootId));
}

QModelIndex BookTreeModel::folderIndex(const Thema *folder) const
{
    const qsizetype row = folder ? m_book.colThema.indexOf(Book::folderKey(folder->Nr)) : -1;
    return row < 0 ? QModelIndex() : createIndex(int(row), 0, quintptr(FolderId));
}

QModelIndex BookTreeModel::bookmarkIndex(const Thema *folder, qsizetype row) const
{
    return createIndex(int(row), 0, const_cast<Thema *>(folder));
}

bool BookTreeModel::isFolder(const QModelIndex &index) const
{
    return index.isValid() && index.internalId() == FolderId;
}

bool BookTreeModel::isBookmark(const QModelIndex &index) const
{
    return index.isValid() && index.internalId() != FolderId && index.internalId() != RootId;
}

Thema *BookTreeModel::folderAt(const QModelIndex &index) const
{
    if (isFolder(index))
        return &m_book.colThema.at(index.row());
    if (isBookmark(index))
        return static_cast<Thema *>(index.internalPointer());
    return nullptr;
}

Bookmark *BookTreeModel::bookmarkAt(const QModelIndex &index) const
{
    Thema *folder = isBookmark(index) ? folderAt(index) : nullptr;
    if (!folder || !folder->colBookmark || index.row() >= folder->colBookmark->count())
        return nullptr;
    return &folder->colBookmark->at(index.row());
}

QString BookTreeModel::tagAt(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    return index.internalId() == RootId ? QStringLiteral("Archiv")
        : isFolder(index)               ? QStringLiteral("Dir")
                                        : QStringLiteral("Url");
}

QModelIndex BookTreeModel::indexOfKey(const QString &key)
{
    const qsizetype at = key.indexOf(u'@');
    if (at < 0)
        return {};
    const int folderNr = key.left(at).toInt();
    if (folderNr == 0)
        return rootIndex();
    Thema *folder = m_book.colThema.find(Book::folderKey(qint16(folderNr)));
    if (!folder || at == key.size() - 1)
        return folderIndex(folder);
    fetch(folder);
    const qsizetype row = folder->colBookmark
        ? folder->colBookmark->indexOf(folder->bookmarkKey(qint16(key.mid(at + 1).toInt())))
        : -1;
    return row < 0 ? QModelIndex() : bookmarkIndex(folder, row);
}

void BookTreeModel::setFolderOpen(const QModelIndex &index, bool open)
{
    if (const Thema *folder = isFolder(index) ? folderAt(index) : nullptr) {
        if (open)
            m_open.insert(folder);
        else
            m_open.remove(folder);
        emit dataChanged(index, index, {ImageRole});
    }
}

QModelIndex BookTreeModel::addFolder(const QModelIndex &selected)
{
    const qsizetype position = isFolder(selected) ? selected.row() : 0;
    beginInsertRows(rootIndex(), int(position), int(position));
    Thema *folder
        = BookEditing::addFolder(m_book, BookEditing::defaultFolderName(m_book), position);
    if (folder)
        m_fetched.insert(folder);
    endInsertRows();
    return folderIndex(folder);
}

BookTreeModel::DeleteCheck BookTreeModel::checkDeleteFolder(
    const QModelIndex &index, const QString &startFolderFile)
{
    Thema *folder = isFolder(index) ? folderAt(index) : nullptr;
    if (!folder)
        return DeleteCheck::Allowed;
    if (!startFolderFile.trimmed().isEmpty() && folder->FileName == startFolderFile.trimmed())
        return DeleteCheck::StartFolder;
    m_book.ensureLoaded(*folder);
    return folder->colBookmark && !folder->colBookmark->isEmpty() ? DeleteCheck::NotEmpty
                                                                  : DeleteCheck::Allowed;
}

bool BookTreeModel::deleteFolder(const QModelIndex &index)
{
    Thema *folder = isFolder(index) ? folderAt(index) : nullptr;
    if (!folder)
        return false;
    beginRemoveRows(rootIndex(), index.row(), index.row());
    m_fetched.remove(folder);
    m_open.remove(folder);
    m_damaged.remove(folder);
    const bool saved = m_book.DeleteThema(qint16(index.row() + 1));
    endRemoveRows();
    return saved;
}

BookEditing::AddBookmarkResult BookTreeModel::addBookmark(const QModelIndex &target,
    const QString &title, const QString &url, BookEditing::Duplicates duplicates)
{
    Thema *folder = folderAt(target);
    if (!folder)
        return {BookEditing::AddBookmarkResult::FolderUnreadable, nullptr, {}};
    fetch(folder);
    // Whatever would refuse the bookmark is found before its row is announced.
    BookEditing::AddBookmarkResult result;
    if (!folder->colBookmark) {
        result.status = BookEditing::AddBookmarkResult::FolderUnreadable;
        return result;
    }
    if (folder->ItCounter >= 32767 || folder->colBookmark->count() >= 32767) {
        result.status = BookEditing::AddBookmarkResult::FolderFull;
        return result;
    }
    const QModelIndex parent = folderIndex(folder);
    if (duplicates == BookEditing::Duplicates::Ask && folderHasAddress(parent, url)) {
        result.status = BookEditing::AddBookmarkResult::DuplicateAddress;
        result.question = BookEditing::duplicateAddressQuestion(url);
        return result;
    }
    const int row = int(folder->colBookmark->count());
    beginInsertRows(parent, row, row);
    result = BookEditing::addBookmark(m_book, *folder, title, url, BookEditing::Duplicates::Allow);
    endInsertRows();
    // A damaged file's numbering can still leave no number free: show the folder anew.
    if (!result.bookmark) {
        beginResetModel();
        endResetModel();
    }
    return result;
}

bool BookTreeModel::folderHasAddress(const QModelIndex &index, const QString &url)
{
    Thema *folder = folderAt(index);
    if (!folder)
        return false;
    fetch(folder);
    if (!folder->colBookmark)
        return false;
    for (qsizetype i = 0; i < folder->colBookmark->count(); ++i) {
        if (folder->colBookmark->at(i).URL == url)
            return true;
    }
    return false;
}

bool BookTreeModel::removeBookmark(const QModelIndex &index)
{
    Thema *folder = bookmarkAt(index) ? folderAt(index) : nullptr;
    if (!folder)
        return false;
    beginRemoveRows(index.parent(), index.row(), index.row());
    const bool removed = BookEditing::removeBookmark(m_book, *folder, index.row());
    endRemoveRows();
    return removed;
}

void BookTreeModel::bookmarkChanged(const QModelIndex &index)
{
    if (Thema *folder = folderAt(index)) {
        folder->IsEdit = true;
        m_book.IsEdit = true;
        emit dataChanged(index, index);
    }
}

template<typename Change> void BookTreeModel::reorder(Change change)
{
    // Each held index is remembered by what it stands for, and found again afterwards.
    emit layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    struct Node
    {
        Thema *folder;
        qint16 bookmarkNr;
    };
    QList<Node> nodes;
    for (const QModelIndex &held : before) {
        const Bookmark *bookmark = bookmarkAt(held);
        nodes.append({folderAt(held), bookmark ? bookmark->Nr : qint16(0)});
    }
    change();
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i) {
        const Node &node = nodes.at(i);
        if (!node.folder)
            after.append(before.at(i));
        else if (node.bookmarkNr == 0)
            after.append(folderIndex(node.folder));
        else
            after.append(bookmarkIndex(node.folder,
                node.folder->colBookmark->indexOf(node.folder->bookmarkKey(node.bookmarkNr))));
    }
    changePersistentIndexList(before, after);
    emit layoutChanged();
}

void BookTreeModel::sortFolders()
{
    reorder([this] { BookEditing::sortFolders(m_book); });
}

void BookTreeModel::sortBookmarks(const QModelIndex &index)
{
    Thema *folder = folderAt(index);
    if (!folder)
        return;
    fetch(folder);
    reorder([this, folder] { BookEditing::sortBookmarks(m_book, *folder); });
}

QModelIndex BookTreeModel::moveBookmark(const QModelIndex &bookmark, const QModelIndex &target)
{
    const Bookmark *moved = bookmarkAt(bookmark);
    Thema *to = folderAt(target);
    if (!moved || !to || to == folderAt(bookmark))
        return {};
    const Bookmark copy = *moved;
    const QPersistentModelIndex source = bookmark;
    const auto added = addBookmark(target, copy.Titel, copy.URL, BookEditing::Duplicates::Allow);
    if (!added.bookmark)
        return {};
    added.bookmark->Info = copy.Info;
    added.bookmark->Toolbar = copy.Toolbar;
    added.bookmark->Adresszeile = copy.Adresszeile;
    removeBookmark(source);
    return bookmarkIndex(to, to->colBookmark->count() - 1);
}

QStringList BookTreeModel::mimeTypes() const
{
    return {bookmarkMimeType(), QStringLiteral("text/uri-list"), QStringLiteral("text/plain")};
}

QMimeData *BookTreeModel::mimeData(const QModelIndexList &indexes) const
{
    QStringList keys;
    QList<QUrl> urls;
    for (const QModelIndex &index : indexes) {
        if (const Bookmark *bookmark = bookmarkAt(index)) {
            keys << index.data(KeyRole).toString();
            // A script address never travels to where a drop would open it.
            const QUrl url(bookmark->URL.trimmed());
            if (url.scheme().compare(u"javascript", Qt::CaseInsensitive) != 0)
                urls << url;
        }
    }
    if (keys.isEmpty())
        return nullptr;
    auto *data = new QMimeData;
    data->setData(bookmarkMimeType(), keys.join(u'\n').toUtf8());
    data->setUrls(urls);
    return data;
}

Qt::DropActions BookTreeModel::supportedDropActions() const
{
    return Qt::MoveAction | Qt::CopyAction;
}

QModelIndex BookTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    if (column != 0 || row < 0 || row >= rowCount(parent))
        return {};
    if (!parent.isValid())
        return rootIndex();
    if (parent.internalId() == RootId)
        return createIndex(row, 0, quintptr(FolderId));
    return bookmarkIndex(folderAt(parent), row);
}

QModelIndex BookTreeModel::parent(const QModelIndex &child) const
{
    if (!child.isValid() || child.internalId() == RootId)
        return {};
    if (isFolder(child))
        return rootIndex();
    return folderIndex(folderAt(child));
}

int BookTreeModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return 1;
    if (parent.internalId() == RootId)
        return int(m_book.colThema.count());
    const Thema *folder = isFolder(parent) ? folderAt(parent) : nullptr;
    if (!folder || !m_fetched.contains(folder) || !folder->colBookmark)
        return 0;
    return int(folder->colBookmark->count());
}

int BookTreeModel::columnCount(const QModelIndex &) const
{
    return 1;
}

bool BookTreeModel::hasChildren(const QModelIndex &parent) const
{
    // An unread folder offers to open; what it holds shows then.
    if (isFolder(parent) && !m_fetched.contains(folderAt(parent)))
        return true;
    return rowCount(parent) > 0;
}

bool BookTreeModel::canFetchMore(const QModelIndex &parent) const
{
    return isFolder(parent) && !m_fetched.contains(folderAt(parent));
}

void BookTreeModel::fetchMore(const QModelIndex &parent)
{
    if (isFolder(parent))
        fetch(folderAt(parent));
}

void BookTreeModel::fetch(Thema *folder)
{
    if (!folder || m_fetched.contains(folder))
        return;
    const FileOutcome outcome = m_book.ensureLoaded(*folder);
    if (!outcome.ok() || outcome.wasMovedAside())
        m_damaged.insert(folder, outcome.message());
    const QModelIndex parent = folderIndex(folder);
    const int count = folder->colBookmark ? int(folder->colBookmark->count()) : 0;
    if (count > 0)
        beginInsertRows(parent, 0, count - 1);
    m_fetched.insert(folder);
    if (count > 0)
        endInsertRows();
    emit dataChanged(parent, parent);
}

QVariant BookTreeModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const QString tag = tagAt(index);
    const Thema *folder = folderAt(index);
    const Bookmark *bookmark = bookmarkAt(index);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        if (bookmark)
            return FeedMark::displayTitle(bookmark->Titel);
        return folder ? folder->DirName() : uiText(105);
    case Qt::ToolTipRole:
        if (folder && !bookmark && m_damaged.contains(folder))
            return m_damaged.value(folder);
        return bookmark ? bookmark->URL : QVariant();
    case KeyRole:
        if (!folder)
            return QStringLiteral("0@");
        return QString(QString::number(folder->Nr) + u'@'
            + (bookmark ? QString::number(bookmark->Nr) : QString()));
    case TagRole:
        return tag;
    case ImageRole:
        if (bookmark)
            return FeedMark::isFeedTitle(bookmark->Titel) ? QStringLiteral("xml")
                                                          : QStringLiteral("Url");
        if (folder)
            return m_open.contains(folder) ? QStringLiteral("OpenDir") : QStringLiteral("Dir");
        return QStringLiteral("Archiv");
    case DamagedRole:
        return folder && !bookmark ? m_damaged.value(folder) : QString();
    default:
        return {};
    }
}

bool BookTreeModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    Thema *folder = isFolder(index) ? folderAt(index) : nullptr;
    if (!folder || role != Qt::EditRole)
        return false;
    const QString name = value.toString();
    if (name == folder->DirName())
        return true;
    const BookEditing::RenameCheck check = BookEditing::renameFolder(m_book, *folder, name);
    m_refusal = BookEditing::renameRefusalText(check, name);
    if (check != BookEditing::RenameCheck::Accepted) {
        emit renameRefused(m_refusal);
        return false;
    }
    emit dataChanged(index, index);
    return true;
}

Qt::ItemFlags BookTreeModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (isFolder(index))
        flags |= Qt::ItemIsEditable | Qt::ItemIsDropEnabled;
    if (isBookmark(index))
        flags |= Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled;
    return flags;
}
