#include "core/model/book.h"
#include "recordbytes.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

using namespace RecordBytes;

namespace {
QByteArray indexRecord(qint32 sequenz, qint32 nr, const QByteArray &name, const QByteArray &file)
{
    return le32(sequenz) + le32(nr) + padded(name, 200) + padded(file, 2083);
}
QByteArray bookmarkRecord(qint16 nr, const QByteArray &title, const QByteArray &url,
    const QByteArray &info, qint16 address, qint16 toolbar)
{
    return le16(nr) + padded(title, 255) + padded(url, 2083) + padded(info, 1024) + le16(address)
        + le16(toolbar);
}
} // namespace

class BookTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void savedArchiveHasExactRecordsAndRenumbers()
    {
        QTemporaryDir dir;
        writeFile(dir.filePath(u"Book.bkm"_s),
            indexRecord(4, 1, "Nachrichten", "4.bkm") + indexRecord(9, 5, "Werkzeuge", "9.bkm")
                + indexRecord(2, 7, "Suche", "2.bkm"));
        writeFile(dir.filePath(u"9.bkm"_s),
            bookmarkRecord(3, "Qt", "https://www.qt.io/", "Toolkit \r\nzweite Zeile  ", -1, 0)
                + bookmarkRecord(8, "<FEED />Planet", "https://planet.qt.io/rss.xml", "", 1, -1));

        Book book(dir.path());
        QVERIFY(book.LoadAllThema());
        QCOMPARE(book.ItCounter, 3);
        QCOMPARE(book.SequenzMax, 9);
        QCOMPARE(book.colThema.keyAt(1), u">5"_s);
        Thema &tools = book.colThema.at(1);
        QCOMPARE(tools.DirName(), u"Werkzeuge"_s);
        QVERIFY(!tools.isLoaded());
        QVERIFY(book.ensureLoaded(tools).ok());
        QCOMPARE(tools.ItCounter, 2);
        QCOMPARE(tools.colBookmark->keyAt(1), u">5|8"_s);
        const Bookmark &qt = tools.colBookmark->at(0);
        // The blank before the line break goes, the blanks inside the text stay.
        QCOMPARE(qt.Info, u"Toolkit\r\nzweite Zeile"_s);
        QCOMPARE(qt.Adresszeile, qint16(-1));
        QCOMPARE(tools.colBookmark->at(1).Adresszeile, qint16(1));

        // Delete the first folder: the index is rewritten with positions 1 and 2, the
        // folder's file goes, and the edited folder keeps its flags as stored.
        writeFile(dir.filePath(u"4.bkm"_s), {});
        tools.IsEdit = true;
        QVERIFY(book.DeleteThema(1));
        QVERIFY(!QFile::exists(dir.filePath(u"4.bkm"_s)));
        QCOMPARE(readFile(dir.filePath(u"Book.bkm"_s)),
            indexRecord(9, 1, "Werkzeuge", "9.bkm") + indexRecord(2, 2, "Suche", "2.bkm"));
        QCOMPARE(readFile(dir.filePath(u"9.bkm"_s)),
            bookmarkRecord(1, "Qt", "https://www.qt.io/", "Toolkit\r\nzweite Zeile", -1, 0)
                + bookmarkRecord(2, "<FEED />Planet", "https://planet.qt.io/rss.xml", "", 1, -1));
        QVERIFY(!book.IsEdit);

        Book again(dir.path());
        QVERIFY(again.LoadAllThema());
        QCOMPARE(again.colThema.keyAt(0), u">1"_s);
        QCOMPARE(again.colThema.keyAt(1), u">2"_s);
        QCOMPARE(again.GetNewKey(), 10);
    }

    void deleteNeverTouchesFilesOutsideTheDataFolder()
    {
        QTemporaryDir root;
        QDir(root.path()).mkdir(u"data"_s);
        QDir(root.path()).mkdir(u"cwd"_s);
        const QString data = root.filePath(u"data"_s);
        const QString cwd = root.filePath(u"cwd"_s);
        const QString current = QDir::currentPath();
        QDir::setCurrent(cwd);
        writeFile(cwd + u"/3.bkm"_s, "keep");
        writeFile(root.filePath(u"escape.bkm"_s), "keep");
        writeFile(data + u"/Book.bkm"_s,
            indexRecord(3, 1, "A", "3.bkm") + indexRecord(4, 2, "B", "../escape.bkm"));
        writeFile(data + u"/3.bkm"_s, {});
        Book book(data);
        QVERIFY(book.LoadAllThema());
        QVERIFY(book.DeleteThema(2));
        QVERIFY(book.DeleteThema(1));
        QDir::setCurrent(current);
        QCOMPARE(readFile(cwd + u"/3.bkm"_s), QByteArray("keep"));
        QCOMPARE(readFile(root.filePath(u"escape.bkm"_s)), QByteArray("keep"));
        QVERIFY(!QFile::exists(data + u"/3.bkm"_s));
        QCOMPARE(readFile(data + u"/Book.bkm"_s), QByteArray());
    }

    void invalidFilesAreMovedAsideAndReported()
    {
        QTemporaryDir dir;
        writeFile(dir.filePath(u"Book.bkm"_s), QByteArray(2290, 'x'));
        Book book(dir.path());
        QVERIFY(!book.LoadAllThema());
        QCOMPARE(book.ItCounter, 0);
        QVERIFY(book.lastOutcome().wasMovedAside());
        QCOMPARE(book.movedAsideFiles().size(), 1);
        QCOMPARE(readFile(book.movedAsideFiles().first()), QByteArray(2290, 'x'));

        writeFile(dir.filePath(u"Book.bkm"_s), indexRecord(1, 1, "A", "1.bkm"));
        writeFile(dir.filePath(u"1.bkm"_s), QByteArray(100, 'y'));
        QVERIFY(book.LoadAllThema());
        Thema &folder = book.colThema.at(0);
        const FileOutcome outcome = book.ensureLoaded(folder);
        QVERIFY(outcome.wasMovedAside());
        QCOMPARE(readFile(outcome.movedAsidePath), QByteArray(100, 'y'));
        QCOMPARE(folder.colBookmark->count(), 0);
    }

    void savingNeverDropsBookmarksThatWereNotLoaded()
    {
        QTemporaryDir dir;
        const QByteArray bookmarks = bookmarkRecord(1, "a", "https://a.example/", "", -1, -1);
        writeFile(dir.filePath(u"Book.bkm"_s), indexRecord(1, 1, "A", "1.bkm"));
        writeFile(dir.filePath(u"1.bkm"_s), bookmarks);
        Book book(dir.path());
        QVERIFY(book.LoadAllThema());
        book.colThema.at(0).setDirName(u"Umbenannt"_s);
        QVERIFY(book.colThema.at(0).IsEdit);
        QVERIFY(book.SaveAllThema());
        QCOMPARE(readFile(dir.filePath(u"1.bkm"_s)), bookmarks);
        QCOMPARE(readFile(dir.filePath(u"Book.bkm"_s)), indexRecord(1, 1, "Umbenannt", "1.bkm"));
    }

    void damagedOrWindowsWrittenFilesStillKeepEveryEntry()
    {
        // Numbers twice or out of range, and text in Windows-1252 as the Windows program
        // wrote it, in the index and in a folder's file.
        QTemporaryDir dir;
        writeFile(dir.filePath(u"Book.bkm"_s),
            indexRecord(1, 2, "A", "1.bkm") + indexRecord(2, 2, "B", "2.bkm")
                + indexRecord(3, 70000, "M\374nchen", "3.bkm"));
        writeFile(dir.filePath(u"3.bkm"_s),
            bookmarkRecord(1, "Stra\337e", "u", "", -1, -1) + bookmarkRecord(3, "b", "", "", 0, 0)
                + bookmarkRecord(3, "c", "", "", 0, 0) + bookmarkRecord(0, "d", "", "", 0, 0));
        Book book(dir.path());
        QVERIFY(book.LoadAllThema());
        QCOMPARE(book.colThema.count(), 3);
        QVERIFY(book.colThema.at(1).Nr != book.colThema.at(0).Nr);
        QVERIFY(book.colThema.at(2).Nr > 0);
        QCOMPARE(book.colThema.at(2).DirName(), u"München"_s);
        QVERIFY(book.ensureLoaded(book.colThema.at(2)).ok());
        const KeyedList<Bookmark> &read = *book.colThema.at(2).colBookmark;
        QCOMPARE(read.at(0).Titel, u"Straße"_s);
        QCOMPARE(QList<int>({read.at(1).Nr, read.at(2).Nr, read.at(3).Nr}), QList<int>({3, 4, 5}));
    }
};

QTEST_GUILESS_MAIN(BookTest)
#include "book_test.moc"
