#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// The feeds a page announces with LINK elements, rebuilt (never merged) by each
// collection. Positions count from 0.
class FeedList final
{
public:
    struct Entry
    {
        QString title;
        QString url;
    };

    // Takes the page's LINK elements as {type, title, href} in document order and keeps
    // those of type RSS or XML, letter case ignored. An href that begins with "/" gets
    // the server part of the page address in front; other relative forms stay as written.
    void collect(const QList<QStringList> &linkElements, const QString &pageUrl);
    void clear() { m_entries.clear(); }

    int GetFeedCount() const { return int(m_entries.size()); }
    QString GetFeedUrlByInd(int index) const { return m_entries.value(index).url; }
    QString GetFeedTitelByInd(int index) const { return m_entries.value(index).title; }

    // Scheme and host (and a port written in the address) of an address, without a
    // trailing slash: "http://example.org:8080" for "http://example.org:8080/a/b?c".
    static QString GetServerStr(const QString &url);
    // The list keeps a relative address as the page wrote it; opening it resolves it
    // against the page, so "feed.xml" is not taken for a host of that name.
    static QString addressToOpen(const QString &listed, const QString &pageUrl);

private:
    QList<Entry> m_entries;
};
