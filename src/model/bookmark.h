#pragma once

#include "archivefiles.h"

#include <QString>

// One entry of a bookmark folder.
struct Bookmark
{
    qint16 Nr = 0;
    QString Titel;
    QString URL;
    QString Info; // may hold line breaks (CR LF)
    qint16 Order = 0; // display order of the tools pane, not stored
    qint16 Toolbar = ArchiveFiles::False;
    qint16 Adresszeile = ArchiveFiles::False;
};

// The feed mark at the start of a title: such a bookmark is opened as a feed.
namespace FeedMark {

inline QString mark()
{
    return QStringLiteral("<FEED />");
}
// True when the title begins with the mark and holds more than the mark.
inline bool isFeedTitle(const QString &title)
{
    return title.size() > 8 && title.startsWith(mark());
}
// The title without a leading feed mark, as the tree and most exports show it.
inline QString displayTitle(const QString &title)
{
    return isFeedTitle(title) ? title.mid(8) : title;
}

} // namespace FeedMark
