#pragma once

#include "core/model/book.h"

// The editing rules of the bookmark archive that need no tree: new folders and their
// default names, renaming, adding with the duplicate-address question, deleting and
// sorting. Every change marks the folder and the archive as edited.
namespace BookEditing {

// "Neuer Ordner" when no folder has that name, else the first free "Neuer Ordner (k)".
QString defaultFolderName(const Book &book);

// Makes a folder with the next number from the archive and inserts it before the
// given position from 0 (count() appends). It starts with an empty, edited collection,
// so a save writes its file even when a stale file of that name is lying around.
Thema *addFolder(Book &book, const QString &name, qsizetype position);

enum class RenameCheck { Accepted, EmptyName, NameTaken };
// An empty name (or one of blanks) is refused, and so is the name of another folder.
RenameCheck checkFolderName(const Book &book, const Thema *folder, const QString &name);
// The message that explains a refusal, in the program's words.
QString renameRefusalText(RenameCheck check, const QString &name);
RenameCheck renameFolder(Book &book, Thema &folder, const QString &name);

struct AddBookmarkResult
{
    enum Status { Added, DuplicateAddress, FolderFull, FolderUnreadable };
    Status status = Added;
    Bookmark *bookmark = nullptr;
    // For DuplicateAddress: the question to ask; when the user says yes, add again
    // with allowDuplicate set.
    QString question;
};
enum class Duplicates { Ask, Allow };
// Appends a bookmark with the folder's next number, an empty description and both
// bars shown.
AddBookmarkResult addBookmark(
    Book &book, Thema &folder, const QString &title, const QString &url, Duplicates duplicates);
QString duplicateAddressQuestion(const QString &url);

bool removeBookmark(Book &book, Thema &folder, qsizetype index);

// Sorting reorders the collection itself, so that a save keeps the order, and sets
// the Order fields to the new positions.
void sortFolders(Book &book);
void sortBookmarks(Book &book, Thema &folder);
// The comparison key: case folded, umlauts and other accents folded onto their base
// letter and ß onto "ss", as a German dictionary orders (Ärger next to Arger).
QString sortKey(const QString &text);
// A name with its comparison key, made once for each name that is sorted.
struct SortName
{
    QString key;
    QString name;
};
SortName sortName(const QString &name);
bool sortsBefore(const SortName &a, const SortName &b);
bool sortsBefore(const QString &a, const QString &b);

} // namespace BookEditing
