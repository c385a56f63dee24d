#include "core/base/feedmark.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

class FeedMarkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void titleWithLeadingMarkOpensAsFeed_data();
    void titleWithLeadingMarkOpensAsFeed();
    void displayTitleLosesOnlyAFeedMark();
};

void FeedMarkTest::titleWithLeadingMarkOpensAsFeed_data()
{
    // The start page follows its own test; every other title field the first one.
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("feed");
    QTest::addColumn<bool>("feedStartPage");
    QTest::newRow("mark and title") << u"<FEED />http://a/rss"_s << true << false;
    QTest::newRow("mark alone") << u"<FEED />"_s << false << true;
    QTest::newRow("mark after text") << u"News <FEED />"_s << false << true;
    QTest::newRow("mark twice") << u"<FEED />x<FEED />"_s << true << false;
    QTest::newRow("other case") << u"<feed />x"_s << false << false;
    QTest::newRow("leading blank") << u" <FEED />x"_s << false << true;
    QTest::newRow("no mark") << u"Heise"_s << false << false;
    QTest::newRow("empty") << QString() << false << false;
}

void FeedMarkTest::titleWithLeadingMarkOpensAsFeed()
{
    QFETCH(QString, title);
    QFETCH(bool, feed);
    QFETCH(bool, feedStartPage);
    QCOMPARE(FeedMark::isFeedTitle(title), feed);
    QCOMPARE(FeedMark::isFeedStartPageTitle(title), feedStartPage);
}

void FeedMarkTest::displayTitleLosesOnlyAFeedMark()
{
    QCOMPARE(FeedMark::displayTitle(u"<FEED />Nachrichten"_s), u"Nachrichten"_s);
    QCOMPARE(FeedMark::displayTitle(u"<FEED />"_s), u"<FEED />"_s);
    QCOMPARE(FeedMark::displayTitle(u"a <FEED />"_s), u"a <FEED />"_s);
    QVERIFY(FeedMark::isFeedTitle(FeedMark::markedTitle(u"x"_s)));
}

QTEST_GUILESS_MAIN(FeedMarkTest)
#include "feedmark_test.moc"
