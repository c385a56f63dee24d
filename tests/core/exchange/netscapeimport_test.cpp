#include "core/base/clock.h"
#include "core/exchange/netscapeexport.h"
#include "core/exchange/netscapeimport.h"
#include "core/model/bookediting.h"
#include "recordbytes.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

using NetscapeImport::Result;

namespace {
// Everything of an archive that an export and import must keep, folder by folder.
QStringList describe(Book &book)
{
    QStringList lines;
    for (qsizetype i = 0; i < book.colThema.count(); ++i) {
        Thema &folder = book.colThema.at(i);
        book.ensureLoaded(folder);
        lines << u"F "_s + folder.DirName();
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
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

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
            QStringList({u"Folder1, the first,folder to encounter"_s, u"Folder2"_s, u"Folder3"_s,
                u"Folder3-1"_s}));
        // Folder2's DD ends its DT, so its list lies outside the folder element.
        QCOMPARE(counts, QList<qsizetype>({2, 0, 2, 2}));
        QCOMPARE(result.anchorsOutsideFolders, 4);
        QCOMPARE(result.folders.at(2).bookmarks.at(1).Titel, u"Nested 3-2"_s);
        QCOMPARE(result.folders.at(2).bookmarks.at(1).URL, u"http://nest.ed/3-2"_s);
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
        QCOMPARE(bookmarks.at(0).Titel, u"Two words bold"_s);
        QCOMPARE(bookmarks.at(0).URL, u"::{20D04FE0}\\C:\\x"_s);
        QCOMPARE(bookmarks.at(0).Info, u"line one still one\r\nline two"_s);
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
        QCOMPARE(result.folders.at(0).DirName, u"F & G"_s);
        QCOMPARE(result.folders.at(0).bookmarks.at(0).Info,
            u"one\r\n\r\ntwo\r\n\r\n  keep\r\n  this\r\ntail"_s);
    }

    void feedMarkSurvivesExportAndImport()
    {
        QTemporaryDir dir;
        Book book(dir.path());
        Thema *folder = BookEditing::addFolder(book, u"Feeds"_s, 0);
        for (const char *title : {"<FEED />Planet Qt", "<FEED />", "Plain"}) {
            Bookmark *b = BookEditing::addBookmark(book, *folder, QString::fromUtf8(title),
                u"https://planet.qt.io/"_s + QString::number(qstrlen(title)),
                BookEditing::Duplicates::Allow)
                              .bookmark;
            b->Info = u"über\r\nFeeds"_s;
        }
        const Result result
            = NetscapeImport::parse(NetscapeExport::archiveBytes(book, Clock::now()));
        const QList<Bookmark> &read = result.folders.at(0).bookmarks;
        QCOMPARE(read.size(), 3);
        QCOMPARE(read.at(0).Titel, u"<FEED />Planet Qt"_s);
        QCOMPARE(read.at(0).Info, u"über\r\nFeeds"_s);
        QCOMPARE(read.at(1).Titel, QString());
        QCOMPARE(read.at(2).Titel, u"Plain"_s);
        QCOMPARE(read.at(2).Info, u"über\r\nFeeds"_s);
    }

    void encodingFollowsBomThenMetaThenContent()
    {
        const QByteArray body = "<DT><H3>M\xfc"
                                "nchen</H3><DL><DT><A HREF=x>\xe4</A></DL>";
        QCOMPARE(NetscapeImport::parse(body).folders.at(0).DirName, u"München"_s);
        QCOMPARE(NetscapeImport::parse(body).encoding, u"windows-1252"_s);
        const QByteArray utf8 = u"<DT><H3>Köln</H3><DL></DL>"_s.toUtf8();
        QCOMPARE(NetscapeImport::parse(utf8).folders.at(0).DirName, u"Köln"_s);
        const QByteArray meta
            = "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=ISO-8859-1\">" + utf8;
        QCOMPARE(NetscapeImport::parse(meta).folders.at(0).DirName, u"KÃ¶ln"_s);
        QCOMPARE(NetscapeImport::parse("\xEF\xBB\xBF" + meta).folders.at(0).DirName, u"Köln"_s);
    }

    void filesWithoutFoldersOrBodyLeaveTheArchiveAlone()
    {
        QTemporaryDir dir;
        Book book(dir.path());
        BookEditing::addFolder(book, u"Bleibt"_s, 0);
        QVERIFY(book.SaveAllThema());
        const QByteArray before = RecordBytes::readFile(book.indexPath());

        const Result flat
            = NetscapeImport::parse("<DL><DT><A HREF=a>a</A><DT><A HREF=b>b</A></DL>");
        QCOMPARE(flat.status, Result::NoFolder);
        QCOMPARE(flat.anchorsOutsideFolders, 2);
        QVERIFY(!NetscapeImport::replaceArchive(book, flat).ok);
        QCOMPARE(
            NetscapeImport::parse("<frameset><frame src=a></frameset>").status, Result::NoBody);
        QCOMPARE(RecordBytes::readFile(book.indexPath()), before);
        QVERIFY(!QDir(dir.filePath(u"backups"_s)).exists());
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
        Thema *old = BookEditing::addFolder(book, u"Alt"_s, 0);
        BookEditing::addBookmark(book, *old, u"a"_s, u"b"_s, BookEditing::Duplicates::Ask);
        QVERIFY(book.SaveAllThema());
        const QByteArray oldIndex = RecordBytes::readFile(book.indexPath());

        const Result result = NetscapeImport::parse(
            "<DT><H3>Eins</H3><DL><DT><A HREF=u1>t1</A></DL><DT><H3>Zwei</H3><DL></DL>");
        const NetscapeImport::ApplyOutcome applied = NetscapeImport::replaceArchive(book, result);
        Clock::setFixed({});
        QVERIFY2(applied.ok, qPrintable(applied.error));
        QCOMPARE(applied.backupFolder, dir.filePath(u"backups/20240229-235958"_s));
        QCOMPARE(RecordBytes::readFile(applied.backupFolder + u"/Book.bkm"_s), oldIndex);
        QVERIFY(QFile::exists(applied.backupFolder + u"/41.bkm"_s));

        Book again(dir.path());
        QVERIFY(again.LoadAllThema());
        QCOMPARE(describe(again), QStringList({u"F Eins"_s, u"t1|u1||-1-1"_s, u"F Zwei"_s}));
        QCOMPARE(again.colThema.at(1).FileName, u"2.bkm"_s);
        // New folders never reuse an imported folder's number or file.
        QCOMPARE(BookEditing::addFolder(again, u"Neu"_s, 2)->FileName, u"3.bkm"_s);
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
        QVERIFY(original.filter(u"<FEED />"_s).size() == 1);
        QVERIFY(original.filter(u"||"_s).size() < original.size() - 3);

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
        const QByteArray bytes = RecordBytes::readFile(path);
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
