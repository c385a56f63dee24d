#include "core/model/layout.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {
struct Run
{
    int exitCode = -1;
    QString out;
    QString err;
};
} // namespace

class BookmarksToolTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    Run tool(const QStringList &arguments)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("VANTRELL_LANG"), QStringLiteral("de"));
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(VANTRELL_TOOL_PATH),
            QStringList({QStringLiteral("--data-dir"), m_dir.path(), QStringLiteral("--now"),
                QStringLiteral("2004-10-05T14:03:22")})
                + arguments);
        if (!process.waitForFinished(60000))
            return {};
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
    }

private slots:
    void editsAreListedAndRefusalsExplained()
    {
        QCOMPARE(tool({QStringLiteral("bookmarks"), QStringLiteral("add-folder")}).exitCode, 0);
        QCOMPARE(tool({QStringLiteral("bookmarks"), QStringLiteral("add-folder")}).exitCode, 0);
        const QStringList add = {QStringLiteral("bookmarks"), QStringLiteral("add"),
            QStringLiteral("Neuer Ordner (1)"), QStringLiteral("Planet"),
            QStringLiteral("https://planet.qt.io/"), QStringLiteral("--feed"),
            QStringLiteral("--no-toolbar"), QStringLiteral("--info"),
            QStringLiteral("Zeile\r\nTab\there\\")};
        QCOMPARE(tool(add).exitCode, 0);
        const Run duplicate = tool(add);
        QCOMPARE(duplicate.exitCode, 2);
        QVERIFY(duplicate.err.contains(QStringLiteral("existiert bereits, trotzdem hinzufügen ?")));
        QCOMPARE(tool(add + QStringList {QStringLiteral("--allow-duplicate")}).exitCode, 0);

        const Run rename = tool({QStringLiteral("bookmarks"), QStringLiteral("rename-folder"),
            QStringLiteral("Neuer Ordner"), QStringLiteral("Neuer Ordner (1)")});
        QCOMPARE(rename.exitCode, 2);
        QVERIFY(rename.err.contains(
            QStringLiteral("Der Ordner mit dem Namen 'Neuer Ordner (1)' existiert schon !")));
        QCOMPARE(tool({QStringLiteral("bookmarks"), QStringLiteral("delete"),
                          QStringLiteral("Neuer Ordner (1)"), QStringLiteral("1")})
                     .exitCode,
            0);

        const Run list = tool({QStringLiteral("bookmarks"), QStringLiteral("list")});
        QCOMPARE(list.exitCode, 0);
        QCOMPARE(list.out,
            QStringLiteral("F\t1\tNeuer Ordner\t1.bkm\n"
                           "F\t2\tNeuer Ordner (1)\t2.bkm\n"
                           "B\t2\t1\t<FEED "
                           "/>Planet\thttps://planet.qt.io/\tZeile\\r\\nTab\\there\\\\\t-1\t0\n"));

        const QString text = m_dir.filePath(QStringLiteral("liste.txt"));
        QCOMPARE(
            tool({QStringLiteral("bookmarks"), QStringLiteral("export"), QStringLiteral("text"),
                     text, QStringLiteral("--folder"), QStringLiteral("Neuer Ordner (1)")})
                .exitCode,
            0);
        QFile file(text);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(),
            QByteArray(
                "Thema: Neuer Ordner (1)\r\n\r\nName: Planet\r\nURL:  https://planet.qt.io/\r\n"
                "Beschreibung: Zeile\r\nTab\there\\\r\n\r\n\r\n"));

        const Run rss = tool({QStringLiteral("bookmarks"), QStringLiteral("export"),
            QStringLiteral("rss"), m_dir.filePath(QStringLiteral("x.xml")),
            QStringLiteral("--channel-title"), QStringLiteral("T"),
            QStringLiteral("--channel-link"), QStringLiteral("www.example.org")});
        QCOMPARE(rss.exitCode, 1);
        QVERIFY(rss.err.contains(QStringLiteral("Feld \"<link>\" ist ungültig oder leer.")));
        QCOMPARE(tool({QStringLiteral("bookmarks"), QStringLiteral("frobnicate")}).exitCode, 1);
    }

    void importAsksBeforeReplacingAndCountsLeftovers()
    {
        const QString html = m_dir.filePath(QStringLiteral("in.html"));
        QFile file(html);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<DL><DT><A HREF=a>lose</A><DT><H3>Neu</H3><DL><DT><A HREF=b>b</A></DL></DL>");
        file.close();
        QCOMPARE(
            tool({QStringLiteral("bookmarks"), QStringLiteral("add-folder"), QStringLiteral("Alt")})
                .exitCode,
            0);
        const QStringList import = {QStringLiteral("bookmarks"), QStringLiteral("import"), html};
        const Run refused = tool(import);
        QCOMPARE(refused.exitCode, 1);
        const Run done = tool(import + QStringList {QStringLiteral("--yes")});
        QCOMPARE(done.exitCode, 0);
        QVERIFY(done.out.contains(QStringLiteral("1 bookmarks outside folders were left out")));
        QVERIFY(done.out.contains(QStringLiteral("backups/20041005-140322")));
        QCOMPARE(tool({QStringLiteral("bookmarks"), QStringLiteral("list")}).out,
            QStringLiteral("F\t1\tNeu\t1.bkm\nB\t1\t1\tb\tb\t\t-1\t-1\n"));
    }

    void sampleArchiveLiesBesideTheProgram()
    {
        QTemporaryDir fresh;
        const QString sample = QFileInfo(QStringLiteral(VANTRELL_TOOL_PATH)).absolutePath()
            + QStringLiteral("/vtbooksamples.html");
        QProcess process;
        process.start(QStringLiteral(VANTRELL_TOOL_PATH),
            {QStringLiteral("--data-dir"), fresh.path(), QStringLiteral("bookmarks"),
                QStringLiteral("import"), sample});
        QVERIFY(process.waitForFinished(60000));
        QCOMPARE(process.exitCode(), 0);
        QVERIFY(QString::fromUtf8(process.readAllStandardOutput())
                    .startsWith(QStringLiteral("imported 3 folders")));
    }

    void layoutFilesAreShownRecordByRecord()
    {
        WindowDescription window;
        window.left = 10;
        window.top = 20;
        window.width = 3000;
        window.height = 2000;
        window.address = QStringLiteral("https://www.qt.io/");
        window.toolbarVisible = 0;
        window.caption = QStringLiteral("Qt");
        const QString path = m_dir.filePath(QStringLiteral("a.wlt"));
        QVERIFY(Layout::SaveLayout(path, {window}).ok());
        const Run show = tool({QStringLiteral("layouts"), QStringLiteral("show"), path});
        QCOMPARE(show.exitCode, 0);
        QCOMPARE(
            show.out, QStringLiteral("1\t10\t20\t3000\t2000\thttps://www.qt.io/\t-1\t0\t0\tQt\n"));
        QCOMPARE(tool({QStringLiteral("layouts"), QStringLiteral("list")}).exitCode, 0);
        QCOMPARE(tool({QStringLiteral("layouts"), QStringLiteral("show"),
                          m_dir.filePath(QStringLiteral("none.wlt"))})
                     .exitCode,
            2);
    }
};

QTEST_GUILESS_MAIN(BookmarksToolTest)
#include "tool_test.moc"
