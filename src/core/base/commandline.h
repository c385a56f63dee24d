#pragma once

#include <QString>
#include <QStringList>

// The rules by which a command line names a page or a file.
namespace CommandLine {

// How often `pattern` occurs in `text`, counted left to right without overlap.
int CountOf(const QString &text, const QString &pattern);

// Number of ":" plus number of "\\" in the raw command line, plus one for each
// argument that is an absolute path or names an existing file (the Linux twin of
// a drive letter's colon). At least 1 means the line names a page or file.
int markerSum(const QString &rawLine, const QStringList &arguments);
// The same rule on the raw text alone (a hand-over from a second start).
int markerSum(const QString &rawLine);

// The first argument of a command line with more than one marker.
QString FirstArgument(const QString &rawLine, int markerSum);

// The raw command line: arguments joined by blanks, an argument holding a blank
// wrapped in double quotes.
QString rawLine(const QStringList &arguments);

// The address to open for a raw command line: FirstArgument when the marker sum is
// above 1, the whole line otherwise; quotes around a path removed.
QString addressToOpen(const QString &rawLine);

} // namespace CommandLine
