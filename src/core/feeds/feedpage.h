#pragma once

#include "core/feeds/feed.h"

#include <QString>

// The HTML page that shows a feed: a header box with the feed's title and image and one
// collapsible box per item. Titles and descriptions pass through FeedHtmlCleaner, links
// and image addresses are escaped for their attributes; everything else is fixed text or,
// like the link text and the toggle sign, the caller's own markup written as given.
class FeedPage final
{
public:
    // Link text of an item box when the caller passes none (text 2052).
    static QString defaultLinkText();
    // Sign of an expanded item; "+" marks a collapsed one.
    static QString expandedSign() { return QStringLiteral("-"); }

    static QString render(
        const Feed &feed, const QString &linkText, const QString &toggleSign = expandedSign());

    // The page for a feed that could not be read, naming the reason, the feed's address
    // and the line.
    static QString errorPage(const FeedError &error, const QString &sourceUrl);
    // The page for a well-formed document that is no feed.
    static QString unknownTypePage();

    // The page for any outcome of reading a feed.
    static QString forResult(const FeedParseResult &result, const QString &sourceUrl,
        const QString &linkText, const QString &toggleSign = expandedSign());
};
