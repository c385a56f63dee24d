#pragma once

#include "core/feeds/feed.h"

#include <QByteArray>
#include <QDomDocument>

// Reads a feed from its bytes or from a parsed document.
//
// The root element decides the kind: "rss" (RSS 0.9x/2.0), "rdf:RDF" (RSS 1.0) or "feed"
// (Atom); a root in the RDF or Atom namespace under another prefix counts the same. Values
// are read from child elements by their literal names ("title", "description", "link",
// "content"); where no child has that name, a child with that local name in any namespace
// is taken. Atom items fall back from content to summary and read their link from the
// href of a link with rel="alternate" or without rel; RSS items without description show
// their "content:encoded". A missing value is an empty string.
// Titles, links and image addresses are trimmed; descriptions keep their text as written
// apart from surrounding white space.
class FeedParser final
{
public:
    // Items beyond this many are not read: the page counts its items in 16 bits, and
    // the page of a huge feed must stay of bounded size.
    static constexpr int MaxItems = 10000;

    // `charset`: the one the server named for the bytes, if any.
    static FeedParseResult parse(const QByteArray &bytes, const QByteArray &charset = {});
    static FeedParseResult read(const QDomDocument &document);
};
