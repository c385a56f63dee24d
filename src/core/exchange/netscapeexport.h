#pragma once

#include "core/model/book.h"

#include <QDateTime>

// Writes the archive or one folder as a browser bookmark file
// ("<!DOCTYPE NETSCAPE-Bookmark-file-1>"), UTF-8 with CR LF line ends. Nothing is
// escaped: titles (feed mark included), addresses, names and descriptions are
// written as they stand, so that other browsers read them as they always have.
// A folder whose bookmarks were never loaded is written without bookmarks: load
// them first (Book::ensureLoaded).
namespace NetscapeExport {

QByteArray archiveBytes(const Book &book, const QDateTime &now);
QByteArray folderBytes(const Thema &folder, const QDateTime &now);

// Atomic writes; false with *error set when the file could not be written.
bool writeArchive(const QString &path, const Book &book, const QDateTime &now, QString *error);
bool writeFolder(const QString &path, const Thema &folder, const QDateTime &now, QString *error);

// The one timestamp written into every date attribute: whole seconds from
// 1 January 1970 to the local wall-clock time, with no time-zone conversion.
qint64 timestamp(const QDateTime &now);
// The description as the DD text holds it: each line break becomes CR "<BR>" CR LF,
// and a trailing "<BR>" CR LF is cut, which leaves the CR before it.
QString convertedDescription(const QString &info);

} // namespace NetscapeExport
