#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// What the bookmark archive and the web layouts share about their files.
namespace ArchiveFiles {

// Flags are stored as 16-bit integers: -1 for true, 0 for false; any non-zero value
// read from a file counts as true and is kept as read.
constexpr qint16 True = -1;
constexpr qint16 False = 0;

// The path of a data file named in a record, or an empty string when the name would
// reach outside the data folder (a path separator or "..").
QString pathInFolder(const QString &folder, const QString &fileName);

// Twips geometry as the record files store it: rounded to the nearest integer, halves
// to the even neighbour, and held to the signed 16-bit range instead of wrapping.
qint16 roundTwips(double value);

} // namespace ArchiveFiles

// What happened to one data file while it was read or written.
struct FileOutcome
{
    QString path;
    // The file did not hold whole records and was moved here; the caller tells the user.
    QString movedAsidePath;
    // The file could not be read or written.
    QString error;

    bool ok() const { return error.isEmpty(); }
    bool wasMovedAside() const { return !movedAsidePath.isEmpty(); }
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
