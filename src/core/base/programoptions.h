#pragma once

#include <QCommandLineOption>
#include <QList>
#include <QString>
#include <QStringList>

// The options both programs share: --help and --version. Every other word of a command
// line belongs to the program (addresses and files for the browser, commands for the
// tool), so nothing else is refused or taken away here.
namespace ProgramOptions {

enum class Request { Run, Help, Version };

// The request in the arguments (without the program path), up to a "--". With
// `firstOnly` only the first argument counts: later ones belong to a command.
Request requestOf(const QStringList &arguments, bool firstOnly = false);
// The arguments of main() as text, without the program path.
QStringList fromMain(int argc, char *argv[]);

// Name and version, e.g. "Vantrell 1.0.0".
QString versionLine(const QString &programName);
// The usage text in the usual form (needs the application object for the program path).
QString helpText(const QString &description, const QString &positionalName,
    const QString &positionalHelp, const QList<QCommandLineOption> &options = {});

} // namespace ProgramOptions
