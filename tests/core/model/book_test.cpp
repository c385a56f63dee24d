#include "core/model/book.h"
#include "recordbytes.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

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
void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}
} // namespace

class BookTest : public QObject
{
    Q_OBJECT

private slots:
    void missingIndexLoadsNothingAndIsCreated()
    {
        QTemporaryDir dir;
        Book book(dir.path());
        QVERIFY(!book.LoadAllThema());
        QCOMPARE(book.ItCounter, 0);
        QCOMPARE(book.colThema.count(), 0);
        QCOMPARE(readFile(dir.filePath(QStringLiteral("Book.bkm"))), QByteArray());
    }

    void savedArchiveHasExactRecordsAndRenumbers()
    {
        QTemporaryDir dir;
        writeFile(dir.filePath(QStringLiteral("Book.bkm")),
            indexRecord(4, 1, "Nachrichten", "4.bkm") + indexRecord(9, 5, "Werkzeuge", "9.bkm")
                + indexRecord(2, 7, "Suche", "2.bkm"));
        writeFile(dir.filePath(QStringLiteral("9.bkm")),
            bookmarkRecord(3, "Qt", "https://www.qt.io/", "Toolkit \r\nzweite Zeile  ", -1, 0)
                + bookmarkRecord(8, "<FEED />Planet", "https://planet.qt.io/rss.xml", "", 1, -1));

        Book book(dir.path());
        QVERIFY(book.LoadAllThema());
        QCOMPARE(book.ItCounter, 3);
        QCOMPARE(book.SequenzMax, 9);
        QCOMPARE(book.colThema.keyAt(1), QStringLiteral(">5"));
        Thema &tools = book.colThema.at(1);
        QCOMPARE(tools.DirName(), QStringLiteral("Werkzeuge"));
        QVERIFY(!tools.isLoaded());
        QVERIFY(book.ensureLoaded(tools).ok());
        QCOMPARE(tools.ItCounter, 2);
        QCOMPARE(tools.colBookmark->keyAt(1), QStringLiteral(">5|8"));
        const Bookmark &qt = tools.colBookmark->at(0);
        // The blank before the line break goes, the blanks inside the text stay.
        QCOMPARE(qt.Info, QStringLiteral("Toolkit\r\nzweite Zeile"));
        QCOMPARE(qt.Adresszeile, qint16(-1));
        QCOMPARE(tools.colBookmark->at(1).Adresszeile, qint16(1));

        // Delete the first folder: the index is rewritten with positions 1 and 2, the
        // folder's file goes, and the edited folder keeps its flags as stored.
        writeFile(dir.filePath(QStringLiteral("4.bkm")), {});
        tools.IsEdit = true;
        QVERIFY(book.DeleteThema(1));
        QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("4.bkm"))));
        QCOMPARE(readFile(dir.filePath(QStringLiteral("Book.bkm"))),
            indexRecord(9, 1, "Werkzeuge", "9.bkm") + indexRecord(2, 2, "Suche", "2.bkm"));
        QCOMPARE(readFile(dir.filePath(QStringLiteral("9.bkm"))),
            bookmarkRecord(1, "Qt", "https://www.qt.io/", "Toolkit\r\nzweite Zeile", -1, 0)
                + bookmarkRecord(2, "<FEED />Planet", "https://planet.qt.io/rss.xml", "", 1, -1));
        QVERIFY(!book.IsEdit);

        Book again(dir.path());
        QVERIFY(again.LoadAllThema());
        QCOMPARE(again.colThema.keyAt(0), QStringLiteral(">1"));
        QCOMPARE(again.colThema.keyAt(1), QStringLiteral(">2"));
        QCOMPARE(again.GetNewKey(), 10);
    }

    void deleteNeverTouchesFilesOutsideTheDataFolder()
    {
        QTemporaryDir root;
        QDir(root.path()).mkdir(QStringLiteral("data"));
        QDir(root.path()).mkdir(QStringLiteral("cwd"));
        const QString data = root.filePath(QStringLiteral("data"));
        const QString cwd = root.filePath(QStringLiteral("cwd"));
        const QString current = QDir::currentPath();
        QDir::setCurrent(cwd);
        writeFile(cwd + QStringLiteral("/3.bkm"), "keep");
        writeFile(root.filePath(QStringLiteral("escape.bkm")), "keep");
        writeFile(data + QStringLiteral("/Book.bkm"),
            indexRecord(3, 1, "A", "3.bkm") + indexRecord(4, 2, "B", "../escape.bkm"));
        writeFile(data + QStringLiteral("/3.bkm"), {});
        Book book(data);
        QVERIFY(book.LoadAllThema());
        QVERIFY(book.DeleteThema(2));
        QVERIFY(book.DeleteThema(1));
        QDir::setCurrent(current);
        QCOMPARE(readFile(cwd + QStringLiteral("/3.bkm")), QByteArray("keep"));
        QCOMPARE(readFile(root.filePath(QStringLiteral("escape.bkm"))), QByteArray("keep"));
        QVERIFY(!QFile::exists(data + QStringLiteral("/3.bkm")));
        QCOMPARE(readFile(data + QStringLiteral("/Book.bkm")), QByteArray());
    }

    void longFieldsAreCutAtTheirWidth()
    {
        QTemporaryDir dir;
        Thema folder(dir.path());
        folder.FileName = QStringLiteral("1.bkm");
        Bookmark bookmark;
        bookmark.Nr = 1;
        bookmark.Titel = QString(300, u'T');
        bookmark.URL = QStringLiteral("https://example.org/") + QString(2100, u'u');
        // A cut never splits a character: the euro sign takes three bytes.
        bookmark.Info = QString(1022, u'i') + QStringLiteral("€");
        folder.addBookmark(bookmark);
        folder.IsEdit = true;
        QVERIFY(folder.SaveBookmarks().ok());
        QVERIFY(!folder.IsEdit);
        QCOMPARE(QFileInfo(folder.filePath()).size(), 3368);

        Thema again(dir.path());
        again.FileName = QStringLiteral("1.bkm");
        QVERIFY(again.LoadBookmarks().ok());
        const Bookmark &read = again.colBookmark->at(0);
        QCOMPARE(read.Titel, QString(255, u'T'));
        QCOMPARE(read.URL, bookmark.URL.left(2083));
        QCOMPARE(read.Info, QString(1022, u'i'));
    }

    void invalidFilesAreMovedAsideAndReported()
    {
        QTemporaryDir dir;
        writeFile(dir.filePath(QStringLiteral("Book.bkm")), QByteArray(2290, 'x'));
        Book book(dir.path());
        QVERIFY(!book.LoadAllThema());
        QVERIFY(book.lastOutcome().wasMovedAside());
        QCOMPARE(book.movedAsideFiles().size(), 1);
        QCOMPARE(readFile(book.movedAsideFiles().first()), QByteArray(2290, 'x'));

        writeFile(dir.filePath(QStringLiteral("Book.bkm")), indexRecord(1, 1, "A", "1.bkm"));
        writeFile(dir.filePath(QStringLiteral("1.bkm")), QByteArray(100, 'y'));
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
        writeFile(dir.filePath(QStringLiteral("Book.bkm")), indexRecord(1, 1, "A", "1.bkm"));
        writeFile(dir.filePath(QStringLiteral("1.bkm")), bookmarks);
        Book book(dir.path());
        QVERIFY(book.LoadAllThema());
        book.colThema.at(0).setDirName(QStringLiteral("Umbenannt"));
        QVERIFY(book.colThema.at(0).IsEdit);
        QVERIFY(book.SaveAllThema());
        QCOMPARE(readFile(dir.filePath(QStringLiteral("1.bkm"))), bookmarks);
        QCOMPARE(readFile(dir.filePath(QStringLiteral("Book.bkm"))),
            indexRecord(1, 1, "Umbenannt", "1.bkm"));
    }

    void damagedIndexNumbersStillKeepEveryFolder()
    {
        QTemporaryDir dir;
        writeFile(dir.filePath(QStringLiteral("Book.bkm")),
            indexRecord(1, 2, "A", "1.bkm") + indexRecord(2, 2, "B", "2.bkm")
                + indexRecord(3, 70000, "C", "3.bkm"));
        Book book(dir.path());
        QVERIFY(book.LoadAllThema());
        QCOMPARE(book.colThema.count(), 3);
        QCOMPARE(book.colThema.at(1).DirName(), QStringLiteral("B"));
        QVERIFY(book.colThema.at(1).Nr != book.colThema.at(0).Nr);
        QVERIFY(book.colThema.at(2).Nr > 0);
    }

    void windowsFilesAreReadAsWindows1252()
    {
        QTemporaryDir dir;
        writeFile(dir.filePath(QStringLiteral("Book.bkm")),
            indexRecord(1, 1,
                "M\xfc"
                "nchen",
                "1.bkm"));
        Book book(dir.path());
        QVERIFY(book.LoadAllThema());
        QCOMPARE(book.colThema.at(0).DirName(), QStringLiteral("München"));
    }
};

QTEST_GUILESS_MAIN(BookTest)
#include "book_test.moc"
