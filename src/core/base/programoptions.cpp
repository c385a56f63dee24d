#include "core/base/programoptions.h"

#include "core/base/appinfo.h"

#include <QCommandLineParser>

namespace ProgramOptions {

Request requestOf(const QStringList &arguments, bool firstOnly)
{
    for (const QString &argument : arguments) {
        if (argument == u"--")
            break;
        if (argument == u"--help" || argument == u"-h" || argument == u"-?"
            || argument == u"--help-all")
            return Request::Help;
        if (argument == u"--version" || argument == u"-v")
            return Request::Version;
        if (firstOnly)
            break;
    }
    return Request::Run;
}

QStringList fromMain(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

QString versionLine(const QString &programName)
{
    return programName + u' ' + AppInfo::versionString();
}

QString helpText(const QString &description, const QString &positionalName,
    const QString &positionalHelp, const QList<QCommandLineOption> &options)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(description);
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions(options);
    parser.addPositionalArgument(positionalName, positionalHelp,
        QStringLiteral("[") + positionalName + QStringLiteral(" ...]"));
    return parser.helpText();
}

} // namespace ProgramOptions
