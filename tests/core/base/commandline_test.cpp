#include "core/base/appinfo.h"
#include "core/base/commandline.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

using namespace CommandLine;

class CommandLineTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void countOfDoesNotOverlap()
    {
        QCOMPARE(CountOf(u"aaaa"_s, u"aa"_s), 2);
        QCOMPARE(CountOf(u"\\\\\\server"_s, u"\\\\"_s), 1);
        QCOMPARE(CountOf(u"abc"_s, QString()), 0);
    }

    void firstArgumentRules_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("sum");
        QTest::addColumn<QString>("expected");
        QTest::newRow("port, blank and a word")
            << u"http://localhost:8080/x.html more"_s << 2 << u"http://localhost:8080/x.html"_s;
        QTest::newRow("quoted path with one marker stays whole")
            << u"\"C:\\My Pages\\a.html\""_s << 1 << u"\"C:\\My Pages\\a.html\""_s;
        QTest::newRow("quoted first of two")
            << u"\"C:\\a b.html\" http://x"_s << 2 << u"C:\\a b.html"_s;
        QTest::newRow("no blank takes the whole line")
            << u"http://a:1/b"_s << 2 << u"http://a:1/b"_s;
        QTest::newRow("no closing quote takes the whole line")
            << u"\"http://a:1/b"_s << 2 << u"\"http://a:1/b"_s;
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
        const QString spaced = dir.filePath(u"a b.html"_s);
        const QStringList args = {spaced};
        const QString raw = rawLine(args);
        QCOMPARE(raw, u'"' + spaced + u'"');
        QCOMPARE(markerSum(raw, args), 1);
        QCOMPARE(addressToOpen(raw), spaced); // quotes removed before navigating

        const QString home = QDir::homePath() + u"/page.html"_s;
        QCOMPARE(markerSum(rawLine({home}), {home}), 1);
        QCOMPARE(addressToOpen(home), home);

        // An existing file named relatively counts too; a bare word does not.
        QVERIFY(QDir::setCurrent(dir.path()));
        QFile file(u"local.html"_s);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        QCOMPARE(markerSum(u"local.html"_s, {u"local.html"_s}), 1);
        QCOMPARE(markerSum(u"nothing"_s, {u"nothing"_s}), 0);
    }

    void addressOfAPortAndAWordIsTheAddress()
    {
        QCOMPARE(addressToOpen(u"http://localhost:8080/x.html more"_s),
            u"http://localhost:8080/x.html"_s);
        QCOMPARE(addressToOpen(u"/tmp/x.html"_s), u"/tmp/x.html"_s);
    }

    void dataFolderCarriesTheVersion()
    {
        qunsetenv("VANTRELL_DATA_DIR");
        QVERIFY(AppInfo::dataFolderPath().endsWith(u"/VantrellData-"_s + AppInfo::versionString()));
        QTemporaryDir dir;
        qputenv("VANTRELL_DATA_DIR", dir.filePath(u"deep/er"_s).toUtf8());
        QCOMPARE(AppInfo::dataFolderPath(), dir.filePath(u"deep/er"_s));
        QVERIFY(AppInfo::ensureDataFolder(AppInfo::dataFolderPath()));
        QVERIFY(QDir(dir.filePath(u"deep/er"_s)).exists());
        QVERIFY(AppInfo::ensureDataFolder(AppInfo::dataFolderPath())); // an existing folder is fine
    }
};

QTEST_GUILESS_MAIN(CommandLineTest)
#include "commandline_test.moc"
