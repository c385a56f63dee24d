#include "core/base/appinfo.h"
#include "core/base/programoptions.h"

#include <QProcess>
#include <QtTest>

using namespace Qt::StringLiterals;
using ProgramOptions::Request;

// Both programs answer --help and --version on the terminal; everything else on the
// browser's command line stays an address.
class ProgramOptionsTest : public QObject
{
    Q_OBJECT

private:
    struct Run
    {
        int exitCode = -1;
        QString out;
    };

    // Runs a program where no display is to be had.
    static Run run(const char *program, const QString &argument)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const QString &name : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s})
            environment.remove(name);
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(QString::fromUtf8(program), {argument});
        if (!process.waitForFinished(30000) || process.exitStatus() != QProcess::NormalExit)
            return {};
        return {process.exitCode(), QString::fromLocal8Bit(process.readAllStandardOutput())};
    }

private slots:
    void helpAndVersionNeedNoDisplay()
    {
        const QString version = AppInfo::versionString();
        for (const QString &option : {u"--version"_s, u"-v"_s}) {
            const Run browser = run(VANTRELL_APP_PATH, option);
            QCOMPARE(browser.exitCode, 0);
            QCOMPARE(browser.out, u"Vantrell "_s + version + u'\n');
            const Run tool = run(VANTRELL_TOOL_PATH, option);
            QCOMPARE(tool.exitCode, 0);
            QCOMPARE(tool.out, u"vantrell-tool "_s + version + u'\n');
        }
        const Run browser = run(VANTRELL_APP_PATH, u"--help"_s);
        QCOMPARE(browser.exitCode, 0);
        for (const QString &part : {u"Usage: "_s, u"[address ...]"_s, u"--version"_s})
            QVERIFY2(browser.out.contains(part), qPrintable(browser.out));
        const Run tool = run(VANTRELL_TOOL_PATH, u"-h"_s);
        QCOMPARE(tool.exitCode, 0);
        for (const QString &part : {u"--data-dir <dir>"_s, u"bookmarks list"_s})
            QVERIFY2(tool.out.contains(part), qPrintable(tool.out));
    }

    void onlyHelpAndVersionAreOptions()
    {
        QCOMPARE(
            ProgramOptions::requestOf({u"http://example.org:8080/"_s, u"wort"_s}), Request::Run);
        QCOMPARE(ProgramOptions::requestOf({u"-x"_s, u"--data-dir"_s, u"/tmp/a b.html"_s}),
            Request::Run);
        QCOMPARE(ProgramOptions::requestOf({u"seite.html"_s, u"--version"_s}), Request::Version);
        QCOMPARE(ProgramOptions::requestOf({u"--"_s, u"--help"_s}), Request::Run);
        // The tool's commands have options of their own.
        QCOMPARE(ProgramOptions::requestOf({u"prefs"_s, u"--help"_s}, true), Request::Run);
        QCOMPARE(ProgramOptions::requestOf({u"--help"_s, u"prefs"_s}, true), Request::Help);
    }
};

QTEST_GUILESS_MAIN(ProgramOptionsTest)
#include "programoptions_test.moc"
