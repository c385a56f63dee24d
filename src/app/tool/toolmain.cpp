#include "app/tool/toolcontext.h"
#include "core/base/appinfo.h"
#include "core/base/clock.h"

#include <QCoreApplication>
#include <QDir>

namespace {
void printUsage(QTextStream &err)
{
    err << "usage: vantrell-tool [--data-dir DIR] [--now YYYY-MM-DDThh:mm:ss] COMMAND ...\n"
           "       vantrell-tool --version\n"
           "commands:\n"
           "  prefs show [--show-passwords] | prefs set NAME VALUE\n"
           "  bookmarks list|add-folder|rename-folder|delete-folder|add|delete|sort|export|import "
           "...\n"
           "  layouts list | layouts show FILE | layouts add NAME FILE.wlt [--info TEXT]\n"
           "  feed render SOURCE [--link-text TEXT]\n";
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

    if (arguments.value(0) == u"--version") {
        out << AppInfo::versionString() << Qt::endl;
        return ToolContext::Success;
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
