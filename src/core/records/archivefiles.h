#pragma once

#include "core/records/fileoutcome.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

// What the bookmark archive and the web layouts share about their files.
namespace ArchiveFiles {

// Flags are stored as 16-bit integers: -1 for true, 0 for false; any non-zero value
// read from a file counts as true and is kept as read.
constexpr qint16 True = -1;
constexpr qint16 False = 0;

// The files an index names: a bookmark folder's "N.bkm" and a layout's "WLn.nlt".
enum class FileKind { Folder, Layout };

// Whether a name read from an index has the form the archive gives that kind of file:
// digits only around the fixed parts, no path. Nothing else in the data folder (the
// indexes, the preferences, another kind's files) has such a name.
bool isOwnFileName(const QString &fileName, FileKind kind);

// The path in the data folder of a file named in an index, or an empty string when
// the name is not one of that kind (isOwnFileName) or the path is a link or anything
// but a regular file: such a name is never read, written or deleted.
QString ownFilePath(const QString &folder, const QString &fileName, FileKind kind);

// Twips geometry as the record files store it: rounded to the nearest integer, halves
// to the even neighbour, and held to the signed 16-bit range instead of wrapping.
qint16 roundTwips(double value);

} // namespace ArchiveFiles
