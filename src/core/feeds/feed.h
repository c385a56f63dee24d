#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

// One entry of a feed as the feed page shows it.
struct FeedItem
{
    QString title;
    QString description;
    QString link;
};

// A parsed feed: its kind, header and items, each value as the feed wrote it
// (markup in titles and descriptions is cleaned only when the page is built).
struct Feed
{
    enum class Format { Rss, Rdf, Atom };

    Format format = Format::Rss;
    QString title;
    QString imageUrl;
    QList<FeedItem> items;

    // "[RSS]", "[RDF]" or "[ATOM]".
    static QString formatTag(Format format);
};

// Why a feed could not be read: what went wrong, its text for the user (from the
// UI-text table, or the XML reader's or network's own words), and the line the reader
// stopped at (0 when the failure has no line, such as a feed that is too large).
struct FeedError
{
    enum class Problem {
        None,
        Network,
        Timeout,
        TooLarge,
        TooDeep,
        TooMany,
        EntityDeclaration,
        Malformed
    };

    QString reason;
    int line = 0;
    Problem problem = Problem::None;

    static FeedError tooLarge();
};
Q_DECLARE_METATYPE(FeedError)

// What reading a feed gives: a feed, a well-formed document of another kind, or an error.
struct FeedParseResult
{
    enum class Status { Parsed, UnknownType, XmlError };

    Status status = Status::XmlError;
    Feed feed;
    FeedError error;
};
