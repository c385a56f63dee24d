#include "core/feeds/feedlist.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

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
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void serverPartIsSchemeHostAndWrittenPort()
    {
        QCOMPARE(FeedList::GetServerStr(u"http://example.org/a/b/c.html?x=1#top"_s),
            u"http://example.org"_s);
        QCOMPARE(FeedList::GetServerStr(u"https://user:pw@example.org:8443/deep/path/"_s),
            u"https://example.org:8443"_s);
        QCOMPARE(FeedList::GetServerStr(u"http://EXAMPLE.org"_s), u"http://example.org"_s);
        QCOMPARE(FeedList::GetServerStr(u"not an address"_s), QString());
    }

    void relativeAddressesOpenAgainstThePage()
    {
        const QString page = u"http://example.org/blog/post.html"_s;
        QCOMPARE(
            FeedList::addressToOpen(u"feed.xml"_s, page), u"http://example.org/blog/feed.xml"_s);
        QCOMPARE(FeedList::addressToOpen(u"../rss"_s, page), u"http://example.org/rss"_s);
        QCOMPARE(FeedList::addressToOpen(u"https://a.example/f"_s, page), u"https://a.example/f"_s);
        QCOMPARE(FeedList::addressToOpen(u"feed.xml"_s, QString()), u"feed.xml"_s);
    }

    void keepsRssAndXmlLinksInDocumentOrder()
    {
        FeedList feeds;
        const QString page = u"http://example.org:8080/news/today/index.html"_s;
        feeds.collect({row({"TEXT/XML", "Upper", "/feeds/upper.xml"}),
                          row({"application/atom+xml", "Atom", "/atom.xml"}),
                          row({"application/RSS+xml", "Rss", "rss.xml"}),
                          row({"text/html", "Page", "/other.html"}),
                          row({"application/rss+xml", "", "//cdn.example.net/f.xml"}),
                          row({"text/xml ", "Blank", "/blank.xml"})},
            page);
        QCOMPARE(feeds.GetFeedCount(), 3);
        QCOMPARE(feeds.GetFeedTitelByInd(0), u"Upper"_s);
        QCOMPARE(feeds.GetFeedUrlByInd(0), u"http://example.org:8080/feeds/upper.xml"_s);
        // Other relative forms stay as the page wrote them.
        QCOMPARE(feeds.GetFeedUrlByInd(1), u"rss.xml"_s);
        QCOMPARE(feeds.GetFeedUrlByInd(2), u"http://cdn.example.net/f.xml"_s);
        QCOMPARE(feeds.GetFeedUrlByInd(3), QString());

        // Each collection replaces the list.
        feeds.collect({row({"text/xml", "Only", "http://other.example/x.xml"})}, page);
        QCOMPARE(feeds.GetFeedCount(), 1);
        QCOMPARE(feeds.GetFeedUrlByInd(0), u"http://other.example/x.xml"_s);
        feeds.collect({}, page);
        QCOMPARE(feeds.GetFeedCount(), 0);
    }
};

QTEST_GUILESS_MAIN(FeedListTest)
#include "feedlist_test.moc"
