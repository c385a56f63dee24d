#include "core/base/appinfo.h"
#include "core/base/commandline.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace CommandLine;

class CommandLineTest : public QObject
{
    Q_OBJECT

private slots:
    void countOfDoesNotOverlap()
    {
        QCOMPARE(CountOf(QStringLiteral("aaaa"), QStringLiteral("aa")), 2);
        QCOMPARE(CountOf(QStringLiteral("\\\\\\server"), QStringLiteral("\\\\")), 1);
        QCOMPARE(CountOf(QStringLiteral("abc"), QString()), 0);
    }

    void firstArgumentRules_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("sum");
        QTest::addColumn<QString>("expected");
        QTest::newRow("port, blank and a word")
            << QStringLiteral("http://localhost:8080/x.html more") << 2
            << QStringLiteral("http://localhost:8080/x.html");
        QTest::newRow("quoted path with one marker stays whole") << QStringLiteral(
            "\"C:\\My Pages\\a.html\"") << 1 << QStringLiteral("\"C:\\My Pages\\a.html\"");
        QTest::newRow("quoted first of two")
            << QStringLiteral("\"C:\\a b.html\" http://x") << 2 << QStringLiteral("C:\\a b.html");
        QTest::newRow("no blank takes the whole line")
            << QStringLiteral("http://a:1/b") << 2 << QStringLiteral("http://a:1/b");
        QTest::newRow("no closing quote takes the whole line")
            << QStringLiteral("\"http://a:1/b") << 2 << QStringLiteral("\"http://a:1/b");
    }

    void firstArgumentRules()
    {
        QFETCH(QString, line);
        QFETCH(int, sum);
        QFETCH(QString, expected);
        QCOMPARE(markerSum(line), sum);
        QCOMPARE(FirstArgument(line, sum), expected);
    }

    void linuxPathsCountAsOneMarker()
    {
        QTemporaryDir dir;
        const QString spaced = dir.filePath(QStringLiteral("a b.html"));
        const QStringList args = {spaced};
        const QString raw = rawLine(args);
        QCOMPARE(raw, u'"' + spaced + u'"');
        QCOMPARE(markerSum(raw, args), 1);
        QCOMPARE(addressToOpen(raw), spaced); // quotes removed before navigating

        const QString home = QDir::homePath() + QStringLiteral("/page.html");
        QCOMPARE(markerSum(rawLine({home}), {home}), 1);
        QCOMPARE(addressToOpen(home), home);

        // An existing file named relatively counts too; a bare word does not.
        QVERIFY(QDir::setCurrent(dir.path()));
        QFile file(QStringLiteral("local.html"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        QCOMPARE(markerSum(QStringLiteral("local.html"), {QStringLiteral("local.html")}), 1);
        QCOMPARE(markerSum(QStringLiteral("nothing"), {QStringLiteral("nothing")}), 0);
    }

    void addressOfAPortAndAWordIsTheAddress()
    {
        QCOMPARE(addressToOpen(QStringLiteral("http://localhost:8080/x.html more")),
            QStringLiteral("http://localhost:8080/x.html"));
        QCOMPARE(addressToOpen(QStringLiteral("/tmp/x.html")), QStringLiteral("/tmp/x.html"));
    }

    void dataFolderCarriesTheVersion()
    {
        qunsetenv("VANTRELL_DATA_DIR");
        QVERIFY(AppInfo::dataFolderPath().endsWith(
            QStringLiteral("/VantrellData-") + AppInfo::versionString()));
        QTemporaryDir dir;
        qputenv("VANTRELL_DATA_DIR", dir.filePath(QStringLiteral("deep/er")).toUtf8());
        QCOMPARE(AppInfo::dataFolderPath(), dir.filePath(QStringLiteral("deep/er")));
        QVERIFY(AppInfo::ensureDataFolder(AppInfo::dataFolderPath()));
        QVERIFY(QDir(dir.filePath(QStringLiteral("deep/er"))).exists());
        QVERIFY(AppInfo::ensureDataFolder(AppInfo::dataFolderPath())); // an existing folder is fine
        QCOMPARE(AppInfo::monthNames().size(), 12);
        QCOMPARE(AppInfo::monthNames().at(9), QStringLiteral("Oct"));
        QVERIFY(AppInfo::frameCaption().startsWith(QStringLiteral("Vantrell ")));
        QCOMPARE(AppInfo::versionString().count(u'.'), 2);
    }
};

QTEST_GUILESS_MAIN(CommandLineTest)
#include "commandline_test.moc"
