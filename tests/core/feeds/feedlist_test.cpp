#include "core/feeds/feedlist.h"

#include <QTest>

namespace {
QStringList row(std::initializer_list<const char *> values)
{
    QStringList list;
    for (const char *value : values)
        list.append(QString::fromUtf8(value));
    return list;
}
} // namespace

class FeedListTest : public QObject
{
    Q_OBJECT

private slots:
    void serverPartIsSchemeHostAndWrittenPort()
    {
        QCOMPARE(FeedList::GetServerStr(QStringLiteral("http://example.org/a/b/c.html?x=1#top")),
            QStringLiteral("http://example.org"));
        QCOMPARE(
            FeedList::GetServerStr(QStringLiteral("https://user:pw@example.org:8443/deep/path/")),
            QStringLiteral("https://example.org:8443"));
        QCOMPARE(FeedList::GetServerStr(QStringLiteral("http://EXAMPLE.org")),
            QStringLiteral("http://example.org"));
        QCOMPARE(FeedList::GetServerStr(QStringLiteral("not an address")), QString());
    }

    void keepsRssAndXmlLinksInDocumentOrder()
    {
        FeedList feeds;
        const QString page = QStringLiteral("http://example.org:8080/news/today/index.html");
        feeds.collect({row({"TEXT/XML", "Upper", "/feeds/upper.xml"}),
                          row({"application/atom+xml", "Atom", "/atom.xml"}),
                          row({"application/RSS+xml", "Rss", "rss.xml"}),
                          row({"text/html", "Page", "/other.html"}),
                          row({"application/rss+xml", "", "//cdn.example.net/f.xml"}),
                          row({"text/xml ", "Blank", "/blank.xml"})},
            page);
        QCOMPARE(feeds.GetFeedCount(), 3);
        QCOMPARE(feeds.GetFeedTitelByInd(0), QStringLiteral("Upper"));
        QCOMPARE(
            feeds.GetFeedUrlByInd(0), QStringLiteral("http://example.org:8080/feeds/upper.xml"));
        // Other relative forms stay as the page wrote them.
        QCOMPARE(feeds.GetFeedUrlByInd(1), QStringLiteral("rss.xml"));
        QCOMPARE(feeds.GetFeedUrlByInd(2), QStringLiteral("http://cdn.example.net/f.xml"));
        QCOMPARE(feeds.GetFeedUrlByInd(3), QString());

        // Each collection replaces the list.
        feeds.collect({row({"text/xml", "Only", "http://other.example/x.xml"})}, page);
        QCOMPARE(feeds.GetFeedCount(), 1);
        QCOMPARE(feeds.GetFeedUrlByInd(0), QStringLiteral("http://other.example/x.xml"));
        feeds.collect({}, page);
        QCOMPARE(feeds.GetFeedCount(), 0);
    }
};

QTEST_GUILESS_MAIN(FeedListTest)
#include "feedlist_test.moc"
