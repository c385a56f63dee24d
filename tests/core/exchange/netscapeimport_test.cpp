#include "core/base/clock.h"
#include "core/exchange/netscapeexport.h"
#include "core/exchange/netscapeimport.h"
#include "core/model/bookediting.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using NetscapeImport::Result;

namespace {
QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Everything of an archive that an export and import must keep, folder by folder.
QStringList describe(Book &book)
{
    QStringList lines;
    for (qsizetype i = 0; i < book.colThema.count(); ++i) {
        Thema &folder = book.colThema.at(i);
        book.ensureLoaded(folder);
        lines << QStringLiteral("F ") + folder.DirName();
        for (qsizetype j = 0; j < folder.colBookmark->count(); ++j) {
            const Bookmark &b = folder.colBookmark->at(j);
            lines << b.Titel + u'|' + b.URL + u'|' + b.Info + u'|' + QString::number(b.Toolbar)
                    + QString::number(b.Adresszeile);
        }
    }
    return lines;
}
} // namespace

class NetscapeImportTest : public QObject
{
    Q_OBJECT

private slots:
    void nestedFoldersYieldOwnFoldersAndFillEnclosingOnes()
    {
        const Result result = NetscapeImport::readFile(
            QStringLiteral(VANTRELL_CORPUS_DIR "/bookmarks/nbp-netscape_nested.htm"));
        QCOMPARE(result.status, Result::Imported);
        QStringList names;
        QList<qsizetype> counts;
        for (const auto &folder : result.folders) {
            names << folder.DirName;
            counts << folder.bookmarks.size();
        }
        QCOMPARE(names,
            QStringList({QStringLiteral("Folder1, the first,folder to encounter"),
                QStringLiteral("Folder2"), QStringLiteral("Folder3"),
                QStringLiteral("Folder3-1")}));
        // Folder2's DD ends its DT, so its list lies outside the folder element.
        QCOMPARE(counts, QList<qsizetype>({2, 0, 2, 2}));
        QCOMPARE(result.anchorsOutsideFolders, 4);
        QCOMPARE(result.folders.at(2).bookmarks.at(1).Titel, QStringLiteral("Nested 3-2"));
        QCOMPARE(result.folders.at(2).bookmarks.at(1).URL, QStringLiteral("http://nest.ed/3-2"));
        QCOMPARE(result.folders.at(2).bookmarks.at(1).Toolbar, qint16(-1));
    }

    void descriptionsTextAndAddressesAreTakenAsABrowserSeesThem()
    {
        const QByteArray html
            = "<DL><DT><H3>F</H3><DL><p>\n"
              "<DT><A HREF=\" file:///::{20D04FE0}/C:/x \">  Two\n  words <b>bold</b></A>\n"
              "<DD>line one  \n still one<br>line two<BR>\n"
              "<DT><A HREF=\"https://x.example/\">last</A>\n"
              "<DD>last description\n</DL></DL>";
        const Result result = NetscapeImport::parse(html);
        QCOMPARE(result.folders.size(), 1);
        const QList<Bookmark> &bookmarks = result.folders.at(0).bookmarks;
        QCOMPARE(bookmarks.size(), 2);
        QCOMPARE(bookmarks.at(0).Titel, QStringLiteral("Two words bold"));
        QCOMPARE(bookmarks.at(0).URL, QStringLiteral("::{20D04FE0}\\C:\\x"));
        QCOMPARE(bookmarks.at(0).Info, QStringLiteral("line one still one\r\nline two"));
        // The DD that is the folder's very last element is not taken.
        QCOMPARE(bookmarks.at(1).Info, QString());
    }

    void descriptionBlocksAndPreformattedTextKeepTheirLineBreaks()
    {
        const QByteArray html = "<DT><H3>F &amp; <i>G</i></H3><DL>\n"
                                "<DT><A HREF=a>a</A><DD><p>one</p><p>two</p><script>x()</script>\n"
                                "<pre>  keep\n  this</pre>tail\n"
                                "<DT><A HREF=b>b</A></DL><p>";
        const Result result = NetscapeImport::parse(html);
        QCOMPARE(result.folders.at(0).DirName, QStringLiteral("F & G"));
        QCOMPARE(result.folders.at(0).bookmarks.at(0).Info,
            QStringLiteral("one\r\n\r\ntwo\r\n\r\n  keep\r\n  this\r\ntail"));
    }

    void feedMarkSurvivesExportAndImport()
    {
        QTemporaryDir dir;
        Book book(dir.path());
        Thema *folder = BookEditing::addFolder(book, QStringLiteral("Feeds"), 0);
        for (const char *title : {"<FEED />Planet Qt", "<FEED />", "Plain"}) {
            Bookmark *b = BookEditing::addBookmark(book, *folder, QString::fromUtf8(title),
                QStringLiteral("https://planet.qt.io/") + QString::number(qstrlen(title)),
                BookEditing::Duplicates::Allow)
                              .bookmark;
            b->Info = QStringLiteral("über\r\nFeeds");
        }
        const Result result
            = NetscapeImport::parse(NetscapeExport::archiveBytes(book, Clock::now()));
        const QList<Bookmark> &read = result.folders.at(0).bookmarks;
        QCOMPARE(read.size(), 3);
        QCOMPARE(read.at(0).Titel, QStringLiteral("<FEED />Planet Qt"));
        QCOMPARE(read.at(0).Info, QStringLiteral("über\r\nFeeds"));
        QCOMPARE(read.at(1).Titel, QString());
        QCOMPARE(read.at(2).Titel, QStringLiteral("Plain"));
        QCOMPARE(read.at(2).Info, QStringLiteral("über\r\nFeeds"));
    }

    void encodingFollowsBomThenMetaThenContent()
    {
        const QByteArray body = "<DT><H3>M\xfc"
                                "nchen</H3><DL><DT><A HREF=x>\xe4</A></DL>";
        QCOMPARE(NetscapeImport::parse(body).folders.at(0).DirName, QStringLiteral("München"));
        QCOMPARE(NetscapeImport::parse(body).encoding, QStringLiteral("windows-1252"));
        const QByteArray utf8 = QStringLiteral("<DT><H3>Köln</H3><DL></DL>").toUtf8();
        QCOMPARE(NetscapeImport::parse(utf8).folders.at(0).DirName, QStringLiteral("Köln"));
        const QByteArray meta
            = "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=ISO-8859-1\">" + utf8;
        QCOMPARE(NetscapeImport::parse(meta).folders.at(0).DirName, QStringLiteral("KÃ¶ln"));
        QCOMPARE(NetscapeImport::parse("\xEF\xBB\xBF" + meta).folders.at(0).DirName,
            QStringLiteral("Köln"));
    }

    void filesWithoutFoldersOrBodyLeaveTheArchiveAlone()
    {
        QTemporaryDir dir;
        Book book(dir.path());
        BookEditing::addFolder(book, QStringLiteral("Bleibt"), 0);
        QVERIFY(book.SaveAllThema());
        const QByteArray before = fileBytes(book.indexPath());

        const Result flat
            = NetscapeImport::parse("<DL><DT><A HREF=a>a</A><DT><A HREF=b>b</A></DL>");
        QCOMPARE(flat.status, Result::NoFolder);
        QCOMPARE(flat.anchorsOutsideFolders, 2);
        QVERIFY(!NetscapeImport::replaceArchive(book, flat).ok);
        QCOMPARE(
            NetscapeImport::parse("<frameset><frame src=a></frameset>").status, Result::NoBody);
        QCOMPARE(fileBytes(book.indexPath()), before);
        QVERIFY(!QDir(dir.filePath(QStringLiteral("backups"))).exists());
    }

    void hostileFilesAreRefusedOrBounded()
    {
        NetscapeImport::Limits limits;
        QCOMPARE(NetscapeImport::parse(QByteArray("<div>").repeated(100000), limits).status,
            Result::TooDeep);
        limits.maxElements = 1000;
        QCOMPARE(NetscapeImport::parse(QByteArray("<p>x").repeated(1001), limits).status,
            Result::TooLarge);
        limits.maxFileBytes = 100;
        QCOMPARE(NetscapeImport::parse(QByteArray(101, ' '), limits).status, Result::TooLarge);

        // Many folders nested as deep as allowed: every anchor counts for each of them,
        // but never beyond the bookmark limit.
        limits = {};
        limits.maxBookmarks = 1000;
        const QByteArray nested = QByteArray("<DT><H3>f</H3><DL>").repeated(200)
            + QByteArray("<DT><A HREF=u>t</A>").repeated(50);
        const Result result = NetscapeImport::parse(nested, limits);
        QCOMPARE(result.folders.size(), 200);
        QVERIFY(result.truncated);
        QCOMPARE(result.bookmarkCount(), 1000);

        int calls = 0;
        const Result cancelled = NetscapeImport::parse(
            nested, limits, [&calls](qint64, qint64) { return ++calls < 3; });
        QCOMPARE(cancelled.status, Result::Cancelled);
    }

    void importReplacesTheArchiveAfterABackup()
    {
        QTemporaryDir dir;
        Clock::setFixed(QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58)));
        Book book(dir.path());
        book.SequenzMax = 40;
        Thema *old = BookEditing::addFolder(book, QStringLiteral("Alt"), 0);
        BookEditing::addBookmark(
            book, *old, QStringLiteral("a"), QStringLiteral("b"), BookEditing::Duplicates::Ask);
        QVERIFY(book.SaveAllThema());
        const QByteArray oldIndex = fileBytes(book.indexPath());

        const Result result = NetscapeImport::parse(
            "<DT><H3>Eins</H3><DL><DT><A HREF=u1>t1</A></DL><DT><H3>Zwei</H3><DL></DL>");
        const NetscapeImport::ApplyOutcome applied = NetscapeImport::replaceArchive(book, result);
        Clock::setFixed({});
        QVERIFY2(applied.ok, qPrintable(applied.error));
        QCOMPARE(applied.backupFolder, dir.filePath(QStringLiteral("backups/20240229-235958")));
        QCOMPARE(fileBytes(applied.backupFolder + QStringLiteral("/Book.bkm")), oldIndex);
        QVERIFY(QFile::exists(applied.backupFolder + QStringLiteral("/41.bkm")));

        Book again(dir.path());
        QVERIFY(again.LoadAllThema());
        QCOMPARE(describe(again),
            QStringList({QStringLiteral("F Eins"), QStringLiteral("t1|u1||-1-1"),
                QStringLiteral("F Zwei")}));
        QCOMPARE(again.colThema.at(1).FileName, QStringLiteral("2.bkm"));
        // New folders never reuse an imported folder's number or file.
        QCOMPARE(BookEditing::addFolder(again, QStringLiteral("Neu"), 2)->FileName,
            QStringLiteral("3.bkm"));
    }

    void sampleArchiveRoundTripsUnchanged()
    {
        QTemporaryDir first;
        QTemporaryDir second;
        Book book(first.path());
        const Result sample = NetscapeImport::readFile(
            QStringLiteral(VANTRELL_SOURCE_DIR "/resources/vtbooksamples.html"));
        QCOMPARE(sample.status, Result::Imported);
        QCOMPARE(sample.anchorsOutsideFolders, 0);
        QVERIFY(NetscapeImport::replaceArchive(book, sample).ok);
        const QStringList original = describe(book);
        QVERIFY(original.filter(QStringLiteral("<FEED />")).size() == 1);
        QVERIFY(original.filter(QStringLiteral("||")).size() < original.size() - 3);

        Book copy(second.path());
        QVERIFY(NetscapeImport::replaceArchive(
            copy, NetscapeImport::parse(NetscapeExport::archiveBytes(book, Clock::now())))
                    .ok);
        QCOMPARE(describe(copy), original);
    }

    void corpusFilesImportWithoutHarm_data()
    {
        QTest::addColumn<QString>("path");
        QDirIterator files(QStringLiteral(VANTRELL_CORPUS_DIR "/bookmarks"), QDir::Files);
        QStringList paths;
        while (files.hasNext())
            paths << files.next();
        paths.sort();
        for (const QString &path : paths)
            QTest::newRow(qPrintable(QFileInfo(path).fileName())) << path;
    }

    void corpusFilesImportWithoutHarm()
    {
        QFETCH(QString, path);
        const QByteArray bytes = fileBytes(path);
        const Result result = NetscapeImport::parse(bytes);
        QVERIFY(result.status == Result::Imported || result.status == Result::NoFolder);
        // Independent bounds: a folder per H3 heading at most, every bookmark an anchor.
        const QByteArray lower = bytes.toLower();
        QVERIFY(result.folders.size() <= lower.count("<h3"));
        for (const auto &folder : result.folders)
            QVERIFY(folder.bookmarks.size() <= lower.count("<a "));
        QVERIFY(result.anchorsOutsideFolders <= lower.count("<a "));
        if (result.status == Result::Imported) {
            QTemporaryDir dir;
            Book book(dir.path());
            QVERIFY(NetscapeImport::replaceArchive(book, result).ok);
            Book again(dir.path());
            QVERIFY(again.LoadAllThema());
            QCOMPARE(again.colThema.count(), result.folders.size());
        }
    }
};

QTEST_GUILESS_MAIN(NetscapeImportTest)
#include "netscapeimport_test.moc"
