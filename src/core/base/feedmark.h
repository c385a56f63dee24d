#pragma once

#include <QString>

// The mark "<FEED />" in a title field says that the address beside it is opened as a
// feed and shown as a feed page.
namespace FeedMark {

inline QString mark()
{
    return QStringLiteral("<FEED />");
}

// A title that begins with the mark and goes on after it: a bookmark, the home page
// of the Home button and every other title field opens its address as a feed.
bool isFeedTitle(const QString &title);

// The start page at program start counts as a feed by a different test: the title
// holds the mark somewhere after its first character, or is exactly the mark. A title
// that begins with the mark and goes on is no feed here.
bool isFeedStartPageTitle(const QString &title);

// The title to show: a feed title without its mark, any other title as it is.
QString displayTitle(const QString &title);

// The title that marks `title` as a feed.
QString markedTitle(const QString &title);

} // namespace FeedMark
