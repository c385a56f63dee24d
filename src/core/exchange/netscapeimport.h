#pragma once

#include "core/model/book.h"

#include <QList>

#include <functional>

// Reads a browser bookmark file into folders of bookmarks. The file is parsed as a
// browser would (HTML5 tree building) and walked like this:
// - every element of the body whose first child (white space aside) is an H3 heading
//   starts a folder named by the heading's text; the folders come in document order;
// - every anchor anywhere inside such an element becomes one of its bookmarks, so a
//   nested folder yields a folder of its own and also adds its anchors to each
//   enclosing folder;
// - an anchor's description is the DD element that directly follows it, unless that
//   DD is the folder's very last element;
// - anchors outside every folder are not imported; their number is reported.
// Hostile files are bounded: size, nesting depth and the number of bookmarks.
namespace NetscapeImport {

struct Limits
{
    qint64 maxFileBytes = 32 * 1024 * 1024;
    int maxNesting = 512;
    qint64 maxElements = 2000000; // the parser needs a few hundred bytes for each
    int maxFolders = 32767; // folder numbers are 16-bit
    int maxBookmarksPerFolder = 32767;
    qint64 maxBookmarks = 250000;
};

struct ImportedFolder
{
    QString DirName;
    qint16 Order = 0;
    QList<Bookmark> bookmarks;
};

struct Result
{
    // TooLarge: too many bytes or elements; TooDeep: nested too deeply.
    enum Status { Imported, NoFolder, NoBody, Unreadable, TooLarge, TooDeep, Cancelled };
    Status status = Imported;
    QList<ImportedFolder> folders;
    int anchorsOutsideFolders = 0;
    // Some bookmarks or folders were left out because a limit was reached.
    bool truncated = false;
    QString encoding;
    QString error; // for Unreadable

    qint64 bookmarkCount() const;
};

// Called now and then with the work done so far out of a total; returning false
// cancels the import.
using Progress = std::function<bool(qint64 done, qint64 total)>;

Result parse(const QByteArray &bytes, const Limits &limits = {}, const Progress &progress = {});
Result readFile(const QString &path, const Limits &limits = {}, const Progress &progress = {});

// The address as an anchor gives it: white space around it dropped, line breaks and
// tabs inside it removed; shell-namespace addresses "file:///::…" lose "file:///" and
// take backslashes.
QString normalisedAddress(const QString &href);

struct ApplyOutcome
{
    bool ok = false;
    QString backupFolder; // where the archive files were copied before replacing them
    QString error;
};

// Replaces the archive's folders by the imported ones (folder k gets the number k and
// the file k.bkm) and saves everything. The current archive files are first copied to
// backups/YYYYMMDD-hhmmss/ in the data folder. A result without folders leaves the
// archive as it is. The progress is only reported here; it cannot cancel.
ApplyOutcome replaceArchive(Book &book, const Result &result, const Progress &progress = {});

// The sample archive beside the program, imported when there is no archive yet.
QString sampleArchivePath();

// Copies Book.bkm and every folder file to a new dated folder under backups/ and
// returns that folder; returns an empty string, and makes no folder, when every such
// file is empty or missing.
QString backupArchive(const QString &dataFolder, QString *error);

} // namespace NetscapeImport
