#pragma once

#include "core/model/thema.h"

#include <QList>

// The plain text and the simple HTML listing of bookmark folders. Both use display
// titles (no feed mark), CR LF line ends and UTF-8; nothing is escaped.
// A folder whose bookmarks were never loaded is written without bookmarks: load
// them first (Book::ensureLoaded).
namespace TextExports {

// `archive` is true for the whole archive, false for one folder; only the archive
// listing starts with the heading (when one is given), followed by two LF.
QByteArray textBytes(const QList<const Thema *> &folders, bool archive, const QString &heading);
QByteArray htmlBytes(const QList<const Thema *> &folders, bool archive);

} // namespace TextExports
