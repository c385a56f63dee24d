#include "core/model/bookediting.h"

#include "core/base/uitexts.h"
#include "core/records/recordcodec.h"

namespace BookEditing {

QString defaultFolderName(const Book &book)
{
    const QString base = uiText(1050);
    if (book.indexOfFolderNamed(base) < 0)
        return base;
    for (int k = 1;; ++k) {
        const QString name = base + QStringLiteral(" (") + QString::number(k) + u')';
        if (book.indexOfFolderNamed(name) < 0)
            return name;
    }
}

Thema *addFolder(Book &book, const QString &name, qsizetype position)
{
    if (book.colThema.count() >= 32767)
        return nullptr;
    qint32 n = book.GetNewKey();
    // A damaged index may already use the number or the file name; skip those.
    auto taken = [&book](qint32 candidate) {
        const QString file = QString::number(candidate) + QStringLiteral(".bkm");
        for (qsizetype i = 0; i < book.colThema.count(); ++i) {
            if (book.colThema.at(i).FileName == file)
                return true;
        }
        return candidate <= 32767 && book.colThema.contains(Book::folderKey(qint16(candidate)));
    };
    while (taken(n))
        n = book.GetNewKey();

    Thema folder(book.dataFolder());
    if (n <= 32767) {
        folder.Nr = qint16(n);
    } else {
        qint16 free = 1;
        while (book.colThema.contains(Book::folderKey(free)))
            ++free;
        folder.Nr = free;
    }
    folder.Sequenz = n;
    folder.FileName = QString::number(n) + QStringLiteral(".bkm");
    folder.setDirName(name);
    folder.colBookmark.emplace();
    folder.IsEdit = true;
    book.IsEdit = true;
    const QString key = Book::folderKey(folder.Nr);
    return book.colThema.insert(position, key, std::move(folder));
}

RenameCheck checkFolderName(const Book &book, const Thema *folder, const QString &name)
{
    if (RecordCodec::trimBlanks(name).isEmpty())
        return RenameCheck::EmptyName;
    for (qsizetype i = 0; i < book.colThema.count(); ++i) {
        const Thema &other = book.colThema.at(i);
        if (&other != folder && other.DirName() == name)
            return RenameCheck::NameTaken;
    }
    return RenameCheck::Accepted;
}

QString renameRefusalText(RenameCheck check, const QString &name)
{
    switch (check) {
    case RenameCheck::EmptyName:
        return uiText(1045);
    case RenameCheck::NameTaken:
        return uiText(1042) + name + uiText(1043) + u'\n' + uiText(1044);
    case RenameCheck::Accepted:
        break;
    }
    return {};
}

RenameCheck renameFolder(Book &book, Thema &folder, const QString &name)
{
    const RenameCheck check = checkFolderName(book, &folder, name);
    if (check == RenameCheck::Accepted) {
        folder.setDirName(name);
        book.IsEdit = true;
    }
    return check;
}

QString duplicateAddressQuestion(const QString &url)
{
    return uiText(1047) + url + uiText(1048);
}

AddBookmarkResult addBookmark(
    Book &book, Thema &folder, const QString &title, const QString &url, Duplicates duplicates)
{
    AddBookmarkResult result;
    if (!book.ensureLoaded(folder).ok() || !folder.colBookmark) {
        result.status = AddBookmarkResult::FolderUnreadable;
        return result;
    }
    KeyedList<Bookmark> &bookmarks = *folder.colBookmark;
    if (duplicates == Duplicates::Ask) {
        for (qsizetype i = 0; i < bookmarks.count(); ++i) {
            if (bookmarks.at(i).URL == url) {
                result.status = AddBookmarkResult::DuplicateAddress;
                result.question = duplicateAddressQuestion(url);
                return result;
            }
        }
    }
    Bookmark bookmark;
    do {
        bookmark.Nr = folder.GetNewKey();
    } while (bookmark.Nr != 0 && bookmarks.contains(folder.bookmarkKey(bookmark.Nr)));
    if (bookmark.Nr == 0) {
        result.status = AddBookmarkResult::FolderFull;
        return result;
    }
    bookmark.Titel = title;
    bookmark.URL = url;
    bookmark.Toolbar = ArchiveFiles::True;
    bookmark.Adresszeile = ArchiveFiles::True;
    result.bookmark = folder.addBookmark(std::move(bookmark));
    folder.IsEdit = true;
    book.IsEdit = true;
    return result;
}

bool removeBookmark(Book &book, Thema &folder, qsizetype index)
{
    if (!folder.colBookmark || index < 0 || index >= folder.colBookmark->count())
        return false;
    folder.colBookmark->removeAt(index);
    folder.IsEdit = true;
    book.IsEdit = true;
    return true;
}

QString sortKey(const QString &text)
{
    const QString decomposed = text.normalized(QString::NormalizationForm_KD);
    QString key;
    key.reserve(decomposed.size());
    for (const QChar c : decomposed) {
        if (c.category() == QChar::Mark_NonSpacing)
            continue;
        if (c == u'ß' || c == u'ẞ')
            key.append(QStringLiteral("ss"));
        else
            key.append(c);
    }
    return key.toCaseFolded();
}

SortName sortName(const QString &name)
{
    return {sortKey(name), name};
}

bool sortsBefore(const SortName &a, const SortName &b)
{
    const int byKey = QString::compare(a.key, b.key);
    if (byKey != 0)
        return byKey < 0;
    // Equal under folding: the plain letter before the umlaut, then by case.
    const int caseBlind = QString::compare(a.name, b.name, Qt::CaseInsensitive);
    return caseBlind < 0 || (caseBlind == 0 && a.name < b.name);
}

bool sortsBefore(const QString &a, const QString &b)
{
    return sortsBefore(sortName(a), sortName(b));
}

void sortFolders(Book &book)
{
    book.colThema.sortByKey([](const Thema &folder) { return sortName(folder.DirName()); },
        [](const SortName &a, const SortName &b) { return sortsBefore(a, b); });
    for (qsizetype i = 0; i < book.colThema.count(); ++i)
        book.colThema.at(i).Order = qint16(std::min<qsizetype>(i + 1, 32767));
    book.IsEdit = true;
}

void sortBookmarks(Book &book, Thema &folder)
{
    if (!book.ensureLoaded(folder).ok() || !folder.colBookmark)
        return;
    folder.colBookmark->sortByKey(
        [](const Bookmark &b) { return sortName(FeedMark::displayTitle(b.Titel)); },
        [](const SortName &a, const SortName &b) { return sortsBefore(a, b); });
    for (qsizetype i = 0; i < folder.colBookmark->count(); ++i)
        folder.colBookmark->at(i).Order = qint16(std::min<qsizetype>(i + 1, 32767));
    folder.IsEdit = true;
    book.IsEdit = true;
}

} // namespace BookEditing
