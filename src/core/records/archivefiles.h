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

// The path of a data file named in a record, or an empty string when the name would
// reach outside the data folder (a path separator or "..").
QString pathInFolder(const QString &folder, const QString &fileName);

// Twips geometry as the record files store it: rounded to the nearest integer, halves
// to the even neighbour, and held to the signed 16-bit range instead of wrapping.
qint16 roundTwips(double value);

} // namespace ArchiveFiles
