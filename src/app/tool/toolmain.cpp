#include "app/tool/toolcontext.h"
#include "core/base/appinfo.h"
#include "core/base/clock.h"
#include "core/base/programoptions.h"

#include <QCoreApplication>
#include <QDir>

namespace {
const char commands[] = "Commands:\n"
                        "  prefs show [--show-passwords] | prefs set NAME VALUE\n"
                        "  bookmarks list|add-folder|rename-folder|delete-folder|add|delete|"
                        "sort|export|import ...\n"
                        "  layouts list | layouts show FILE | layouts add NAME FILE.wlt "
                        "[--info TEXT]\n"
                        "  feed render SOURCE [--link-text TEXT]\n";

QString helpText()
{
    return ProgramOptions::helpText(
               QStringLiteral("Reads and changes Vantrell's data folder without a window:\n"
                              "preferences, bookmarks, layouts and feeds."),
               QStringLiteral("command"), QStringLiteral("The command and its arguments."),
               {QCommandLineOption(QStringLiteral("data-dir"),
                    QStringLiteral("Work on the data folder <dir> instead of the user's."),
                    QStringLiteral("dir")),
                   QCommandLineOption(QStringLiteral("now"),
                       QStringLiteral("Take <time> (YYYY-MM-DDThh:mm:ss) as the current time."),
                       QStringLiteral("time"))})
        + u'\n' + QLatin1String(commands);
}

void printUsage(QTextStream &err)
{
    err << "usage: vantrell-tool [--data-dir DIR] [--now YYYY-MM-DDThh:mm:ss] COMMAND ...\n"
           "       vantrell-tool --help | --version\n"
        << commands;
    err.flush();
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);
    // The texts are loaded when the first one is needed (UiTexts::text), which most
    // listings never need.

    QStringList arguments = app.arguments().mid(1);
    ToolContext context {AppInfo::dataFolderPath(), {}, out, err};

    switch (ProgramOptions::requestOf(arguments, true)) {
    case ProgramOptions::Request::Version:
        out << ProgramOptions::versionLine(QStringLiteral("vantrell-tool")) << Qt::endl;
        return ToolContext::Success;
    case ProgramOptions::Request::Help:
        out << helpText();
        return ToolContext::Success;
    case ProgramOptions::Request::Run:
        break;
    }
    QString value;
    context.arguments = arguments;
    if (context.takeOption(QStringLiteral("--data-dir"), &value))
        context.dataFolder = QDir::cleanPath(QDir(value).absolutePath());
    if (context.takeOption(QStringLiteral("--now"), &value)) {
        const QDateTime moment = QDateTime::fromString(value, Qt::ISODate);
        if (!moment.isValid())
            return context.fail(
                ToolContext::UsageError, QStringLiteral("--now expects YYYY-MM-DDThh:mm:ss"));
        Clock::setFixed(moment);
    }
    if (context.arguments.isEmpty()) {
        printUsage(err);
        return ToolContext::UsageError;
    }
    if (!AppInfo::ensureDataFolder(context.dataFolder))
        return context.fail(ToolContext::DataError,
            QStringLiteral("cannot create the data folder %1").arg(context.dataFolder));

    const QString command = context.arguments.takeFirst();
    if (command == u"prefs")
        return runPrefsCommand(context);
    if (command == u"bookmarks")
        return runBookmarksCommand(context);
    if (command == u"layouts")
        return runLayoutsCommand(context);
    if (command == u"feed")
        return runFeedCommand(context);
    printUsage(err);
    return ToolContext::UsageError;
}
