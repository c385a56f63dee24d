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
        // Output only counts from a program that ended well.
        return {process.exitCode(),
            process.exitCode() == 0 ? QString::fromLocal8Bit(process.readAllStandardOutput())
                                    : QString()};
    }

private slots:
    void helpAndVersionNeedNoDisplay()
    {
        const QString version = AppInfo::versionString();
        for (const QString &option : {u"--version"_s, u"-v"_s}) {
            QCOMPARE(run(VANTRELL_APP_PATH, option).out, u"Vantrell "_s + version + u'\n');
            QCOMPARE(run(VANTRELL_TOOL_PATH, option).out, u"vantrell-tool "_s + version + u'\n');
        }
        const Run browser = run(VANTRELL_APP_PATH, u"--help"_s);
        const Run tool = run(VANTRELL_TOOL_PATH, u"-h"_s);
        QCOMPARE(browser.exitCode + tool.exitCode, 0);
        QVERIFY2(browser.out.contains(u"[options] [address ...]"_s), qPrintable(browser.out));
        QVERIFY2(tool.out.contains(u"--data-dir <dir>"_s) && tool.out.contains(u"bookmarks list"_s),
            qPrintable(tool.out));
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
