#pragma once

#include "core/model/book.h"
#include "core/model/bookediting.h"

#include <QAbstractItemModel>
#include <QHash>
#include <QSet>

#include <functional>

// The bookmark archive as a tree: the root "Archiv", its folders and their bookmarks.
// A folder's bookmarks are read from its file only when the view first asks for them
// (expanding it), so a large archive shows at once. Every edit goes through
// BookEditing, so the tree and the headless tool follow the same rules.
class BookTreeModel final : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Role {
        KeyRole = Qt::UserRole + 1, // "0@", "3@", "3@12"
        TagRole, // "Archiv", "Dir", "Url"
        ImageRole, // "Archiv", "Dir", "OpenDir", "Url", "xml"
        DamagedRole, // the folder's file was missing or damaged: why, in the user's words
    };

    explicit BookTreeModel(Book &book, QObject *parent = nullptr);

    Book &book() const { return m_book; }

    // Reads the archive index anew, after `change` (an import) has rewritten it; false
    // when there is no archive yet (nothing to show but the root). A folder whose file is
    // missing or damaged is marked, not dropped.
    bool reload(const std::function<void()> &change = {});

    QModelIndex rootIndex() const;
    QModelIndex folderIndex(const Thema *folder) const;
    QModelIndex bookmarkIndex(const Thema *folder, qsizetype row) const;
    // The folder a folder or bookmark node stands for (nullptr for the root).
    Thema *folderAt(const QModelIndex &index) const;
    Bookmark *bookmarkAt(const QModelIndex &index) const;
    QString tagAt(const QModelIndex &index) const;
    // The node with a key as the tree gives it ("0@", "n@", "n@m"), or an invalid index.
    QModelIndex indexOfKey(const QString &key);

    // The view tells which folders are open, for their image.
    void setFolderOpen(const QModelIndex &index, bool open);

    // A new folder with the default name, before the given folder or, for the root,
    // at the front.
    QModelIndex addFolder(const QModelIndex &selected);
    enum class DeleteCheck { Allowed, StartFolder, NotEmpty };
    // The start folder (its file named by `startFolderFile`) is never deleted; one that
    // holds bookmarks only when the user agrees.
    DeleteCheck checkDeleteFolder(const QModelIndex &index, const QString &startFolderFile);
    bool deleteFolder(const QModelIndex &index);
    // The bookmark is appended to the folder of `target` (a folder or bookmark node).
    BookEditing::AddBookmarkResult addBookmark(const QModelIndex &target, const QString &title,
        const QString &url, BookEditing::Duplicates duplicates);
    bool removeBookmark(const QModelIndex &index);
    // After a bookmark was changed in place.
    void bookmarkChanged(const QModelIndex &index);
    void sortFolders();
    void sortBookmarks(const QModelIndex &index);
    // Why the last rename was refused, for the user; empty after an accepted one.
    const QString &refusal() const { return m_refusal; }
    // Whether the folder (of a folder or bookmark node) holds an address already.
    bool folderHasAddress(const QModelIndex &index, const QString &url);

    // Moves a bookmark to the end of another folder (a folder or bookmark node); the new
    // node, or an invalid index when nothing moved.
    QModelIndex moveBookmark(const QModelIndex &bookmark, const QModelIndex &target);
    // Dragged bookmarks carry their keys, and their addresses for other programs.
    static QString bookmarkMimeType() { return QStringLiteral("application/x-vantrell-bookmark"); }
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDropActions() const override;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    bool canFetchMore(const QModelIndex &parent) const override;
    void fetchMore(const QModelIndex &parent) override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    // Renaming a folder; a refused name keeps the old one and sets refusal().
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

signals:
    void renameRefused(const QString &message);

private:
    // Node identity: internalId 1 is the root, 2 a folder; a bookmark carries its
    // folder's address.
    enum : quintptr { RootId = 1, FolderId = 2 };
    bool isFolder(const QModelIndex &index) const;
    bool isBookmark(const QModelIndex &index) const;
    // Loads a folder's bookmarks and shows them, marking the folder when that fails.
    void fetch(Thema *folder);
    // Runs a reordering and keeps every index the views hold on its node.
    template<typename Change> void reorder(Change change);

    Book &m_book;
    QSet<const Thema *> m_fetched;
    QSet<const Thema *> m_open;
    QHash<const Thema *, QString> m_damaged;
    QString m_refusal;
};
