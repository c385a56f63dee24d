#pragma once

#include <QString>
#include <QStringList>
#include <QTextStream>

// What every command of vantrell-tool shares: the data folder, the arguments left
// after the global options, and the two output streams.
struct ToolContext
{
    enum Exit { Success = 0, UsageError = 1, DataError = 2 };

    QString dataFolder;
    QStringList arguments; // after the command word, e.g. {"show"} for "prefs show"
    QTextStream &out;
    QTextStream &err;

    // Prints a message in the program's words and returns the exit code.
    int fail(Exit code, const QString &message) const;
    // Takes "--name VALUE" out of the arguments; returns false when absent.
    bool takeOption(const QString &name, QString *value);
    // Takes "--name" out of the arguments.
    bool takeFlag(const QString &name);
    // A field of a listing line: texts keep their line breaks and tabs in the
    // files, but a listing line must not, so they are written as \r \n \t \\.
    static QString escaped(const QString &text);
};

int runPrefsCommand(ToolContext &context);
int runBookmarksCommand(ToolContext &context);
int runLayoutsCommand(ToolContext &context);
int runFeedCommand(ToolContext &context);
