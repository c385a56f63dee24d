#include "core/base/uitexts.h"
#include "core/feeds/feedpage.h"
#include "core/feeds/feedparser.h"
#include "core/model/layout.h"
#include "core/prefs/prefer.h"
#include "localhttpserver.h"
#include "recordbytes.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

using RecordBytes::readFile;
using RecordBytes::writeFile;

namespace {
struct Run
{
    int exitCode = -1;
    QString out;
    QString err;
};

const QByteArray latinFeed = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n"
                             "<rss version=\"2.0\"><channel><title>Gr\xFC\xDF"
                             "e aus dem Netz</title>"
                             "<item><title>Eins</title><link>http://example.org/1</link>"
                             "<description>Text</description></item></channel></rss>\n";

} // namespace

// Runs vantrell-tool in a data folder of its own, as a user would.
class ToolTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    LocalHttpServer m_server;

    QString file(const char *name) const { return m_dir.filePath(QString::fromUtf8(name)); }

    // Runs the tool with arguments separated by '|', so that one may hold blanks.
    Run tool(const QString &line, const QString &dataFolder = {})
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"VANTRELL_LANG"_s, u"de"_s);
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(VANTRELL_TOOL_PATH),
            QStringList({u"--data-dir"_s, dataFolder.isEmpty() ? m_dir.path() : dataFolder,
                u"--now"_s, u"2004-10-05T14:03:22"_s})
                + line.split(u'|'));
        // The event loop keeps running so that the in-test server can answer the tool.
        [&] { QTRY_VERIFY_WITH_TIMEOUT(process.state() == QProcess::NotRunning, 60000); }();
        if (process.exitStatus() != QProcess::NormalExit)
            return {};
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
    }

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void editsAreListedAndRefusalsExplained()
    {
        QCOMPARE(tool(u"bookmarks|add-folder"_s).exitCode, 0);
        QCOMPARE(tool(u"bookmarks|add-folder"_s).exitCode, 0);
        const QString add = u"bookmarks|add|Neuer Ordner (1)|Planet|https://planet.qt.io/|--feed|"
                            u"--no-toolbar|--info|Zeile\r\nTab\there\\"_s;
        QCOMPARE(tool(add).exitCode, 0);
        const Run duplicate = tool(add);
        QCOMPARE(duplicate.exitCode, 2);
        QVERIFY(duplicate.err.contains(u"existiert bereits, trotzdem hinzufügen ?"));
        QCOMPARE(tool(add + u"|--allow-duplicate").exitCode, 0);

        const Run rename = tool(u"bookmarks|rename-folder|Neuer Ordner|Neuer Ordner (1)"_s);
        QCOMPARE(rename.exitCode, 2);
        QVERIFY(
            rename.err.contains(u"Der Ordner mit dem Namen 'Neuer Ordner (1)' existiert schon !"));
        QCOMPARE(tool(u"bookmarks|delete|Neuer Ordner (1)|1"_s).exitCode, 0);

        const Run list = tool(u"bookmarks|list"_s);
        QCOMPARE(list.exitCode, 0);
        QCOMPARE(list.out,
            u"F\t1\tNeuer Ordner\t1.bkm\nF\t2\tNeuer Ordner (1)\t2.bkm\n"
            u"B\t2\t1\t<FEED />Planet\thttps://planet.qt.io/\tZeile\\r\\nTab\\there\\\\\t-1\t0\n"_s);

        QCOMPARE(tool(u"bookmarks|export|text|" + file("liste.txt") + u"|--folder|Neuer Ordner (1)")
                     .exitCode,
            0);
        QCOMPARE(readFile(file("liste.txt")),
            QByteArray(
                "Thema: Neuer Ordner (1)\r\n\r\nName: Planet\r\nURL:  https://planet.qt.io/\r\n"
                "Beschreibung: Zeile\r\nTab\there\\\r\n\r\n\r\n"));

        const Run rss = tool(u"bookmarks|export|rss|" + file("x.xml")
            + u"|--channel-title|T|--channel-link|www.example.org");
        QCOMPARE(rss.exitCode, 1);
        QVERIFY(rss.err.contains(u"Feld \"<link>\" ist ungültig oder leer."));
        QCOMPARE(tool(u"bookmarks|frobnicate"_s).exitCode, 1);
    }

    void importAsksBeforeReplacingAndCountsLeftovers()
    {
        writeFile(file("in.html"),
            "<DL><DT><A HREF=a>lose</A><DT><H3>Neu</H3><DL><DT><A HREF=b>b</A></DL></DL>");
        QCOMPARE(tool(u"bookmarks|add-folder|Alt"_s).exitCode, 0);
        QCOMPARE(tool(u"bookmarks|import|" + file("in.html")).exitCode, 1);
        const Run done = tool(u"bookmarks|import|" + file("in.html") + u"|--yes");
        QCOMPARE(done.exitCode, 0);
        QVERIFY(done.out.contains(u"1 bookmarks outside folders were left out"));
        QVERIFY(done.out.contains(u"backups/20041005-140322"));
        QCOMPARE(tool(u"bookmarks|list"_s).out, u"F\t1\tNeu\t1.bkm\nB\t1\t1\tb\tb\t\t-1\t-1\n"_s);
    }

    void importNamesTheCharsetItDecoded()
    {
        QTemporaryDir fresh;
        const Run run = tool(u"bookmarks|import|"_s
                + QStringLiteral(
                    VANTRELL_CORPUS_DIR "/bookmarks/derived-yobidashi-japanese-shift_jis.html"),
            fresh.path());
        QVERIFY2(run.out.startsWith(u"imported 3 folders with 19 bookmarks (shift_jis)"),
            qPrintable(run.out + run.err));
        const QStringList listed = tool(u"bookmarks|list"_s, fresh.path()).out.split(u'\n');
        QCOMPARE(listed.filter(QRegularExpression(u"^F\t"_s)),
            QStringList({u"F\t1\tリンク\t1.bkm"_s, u"F\t2\tCG\t2.bkm"_s,
                u"F\t3\t新しいフォルダ\t3.bkm"_s}));

        // The sample archive lies beside the program.
        QTemporaryDir sample;
        const QString samples
            = QFileInfo(QStringLiteral(VANTRELL_TOOL_PATH)).absolutePath() + u"/vtbooksamples.html";
        QVERIFY(tool(u"bookmarks|import|" + samples, sample.path())
                    .out.startsWith(u"imported 3 folders"));
    }

    void layoutFilesAreShownRecordByRecord()
    {
        WindowDescription window;
        window.left = 10;
        window.top = 20;
        window.width = 3000;
        window.height = 2000;
        window.address = u"https://www.qt.io/"_s;
        window.toolbarVisible = 0;
        window.caption = u"Qt"_s;
        QVERIFY(Layout::SaveLayout(file("a.wlt"), {window}).ok());
        const Run show = tool(u"layouts|show|" + file("a.wlt"));
        QCOMPARE(show.exitCode, 0);
        QCOMPARE(show.out, u"1\t10\t20\t3000\t2000\thttps://www.qt.io/\t-1\t0\t0\tQt\n"_s);
        QCOMPARE(tool(u"layouts|list"_s).exitCode, 0);
        QCOMPARE(tool(u"layouts|show|" + file("none.wlt")).exitCode, 2);
    }

    void prefsAreShownInTableOrderAndSetByName()
    {
        QTemporaryDir fresh;
        QCOMPARE(tool(u"prefs|set|Group|Reise"_s, fresh.path()).exitCode, 0);
        const Run show = tool(u"prefs|show"_s, fresh.path());
        QCOMPARE(show.exitCode, 0);
        const QStringList lines = show.out.split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), Prefer::fields().size());
        QVERIFY(lines.first().startsWith(u"HomeUrl="));
        QCOMPARE(lines.last(), u"CheckIntervall=5"_s);
        QVERIFY(lines.contains(u"Group=Reise" + QString(195, u' ')));
        QVERIFY(lines.contains(u"Pwd1=***"_s));
        QCOMPARE(tool(u"prefs|set|MdiWidth|wide"_s, fresh.path()).exitCode, 1);

        // A password field of another origin: the program's own words, and a data error.
        QFile pref(fresh.filePath(u"Pref.vtp"_s));
        QVERIFY(pref.open(QIODevice::ReadWrite) && pref.seek(11145));
        pref.write("\xff");
        pref.close();
        const Run old = tool(u"prefs|show"_s, fresh.path());
        QCOMPARE(old.exitCode, 2);
        QVERIFY2(
            old.err.contains(uiText(1141) + u" \"" + fresh.path() + u'"'), qPrintable(old.err));
    }

    void feedsAreRenderedFromFilesAndHttpInTheirCharset()
    {
        writeFile(file("feed.xml"), latinFeed);
        const Run run = tool(u"feed|render|" + file("feed.xml") + u"|--link-text|Zum Artikel");
        QCOMPARE(run.exitCode, 0);
        QVERIFY(run.out.startsWith(u"<html><head><title>Grüße aus dem Netz</title>"));
        QCOMPARE(run.out, FeedPage::render(FeedParser::parse(latinFeed).feed, u"Zum Artikel"_s));

        m_server.setPage(u"/feed.xml"_s, latinFeed, "application/rss+xml");
        m_server.setRedirect(u"/moved"_s, u"/feed.xml"_s);
        const Run http = tool(u"feed|render|" + m_server.url(u"/moved"_s).toString());
        QVERIFY2(http.exitCode == 0, qPrintable(http.err));
        QVERIFY(http.out.contains(u"<h1>Grüße aus dem Netz</h1>"));
        QVERIFY(http.out.contains(u"target=\"frm1\">Weiterlesen...</a>"));

        // A document that is no feed still prints its page.
        writeFile(file("feed.xml"), "<rss><channel>");
        const Run broken = tool(u"feed|render|" + file("feed.xml"));
        QCOMPARE(broken.exitCode, 0);
        QVERIFY(broken.out.contains(u"<b>Quelle:</b> " + file("feed.xml")));

        // The charset the server names is the one the bytes are read in.
        m_server.setPage(u"/koi8.xml"_s,
            "<rss><channel><title>\xF0\xD2\xC9\xD7\xC5\xD4</title></channel></rss>",
            "application/rss+xml; charset=KOI8-R");
        QVERIFY(tool(u"feed|render|" + m_server.url(u"/koi8.xml"_s).toString())
                    .out.contains(u"<h1>Привет</h1>"));

        // Sources that cannot be read are data errors.
        const Run missing = tool(u"feed|render|" + file("no-such-feed.xml"));
        QCOMPARE(missing.exitCode, 2);
        QVERIFY(missing.err.contains(file("no-such-feed.xml")));
        QVERIFY(missing.out.isEmpty());
        const Run gone = tool(u"feed|render|" + m_server.url(u"/gone"_s).toString());
        QCOMPARE(gone.exitCode, 2);
        QVERIFY(gone.out.isEmpty());
        QCOMPARE(tool(u"feed|render"_s).exitCode, 1);
    }
};

QTEST_GUILESS_MAIN(ToolTest)
#include "tool_test.moc"
