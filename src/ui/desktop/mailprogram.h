#pragma once

#include <QString>
#include <QStringList>

// Starts the user's mail program: the command line of the preference MailClient, or,
// when that is empty, the desktop's default mail program.
namespace MailProgram {

// The program and its arguments: the command line split as a shell would split it
// (blanks separate, double quotes group, "" inside quotes is one quote).
QStringList commandOf(const QString &commandLine);

// Returns false when the configured program could not be started.
bool start();

// What the user reads when the configured program does not start.
QString failureText();

} // namespace MailProgram
