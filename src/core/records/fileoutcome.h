#pragma once

#include <QString>
#include <QStringList>

// What happened to one data file while it was read or written.
struct FileOutcome
{
    enum class Problem { None, CannotRead, CannotWrite, CannotMoveAside, InvalidName };

    QString path;
    // The file did not hold whole records and was moved here; the caller tells the user.
    QString movedAsidePath;
    // Why the file could not be read or written, in the user's language (or the
    // system's words for a failed system call); empty when nothing went wrong.
    QString error;
    Problem problem = Problem::None;

    bool ok() const { return error.isEmpty(); }
    bool wasMovedAside() const { return !movedAsidePath.isEmpty(); }

    // The whole message for the user, from the UI-text table; empty when nothing needs
    // telling.
    QString message() const;

    static FileOutcome failed(const QString &path, Problem problem, const QString &error);
    // The reason texts of the problems the program names itself.
    static QString cannotMoveAsideReason();
    static QString invalidNameReason(const QString &name);
};

// What an archive remembers of its files for the user: the last file that went
// wrong, and every file moved aside since the archive was made.
struct FileOutcomeLog
{
    FileOutcome last;
    QStringList movedAside;

    void note(const FileOutcome &outcome)
    {
        if (outcome.wasMovedAside())
            movedAside.append(outcome.movedAsidePath);
        if (!outcome.ok() || outcome.wasMovedAside())
            last = outcome;
    }
};
