#include "core/feeds/feedfetcher.h"
#include "localhttpserver.h"

#include <QNetworkAccessManager>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class FeedFetchTest : public QObject
{
    Q_OBJECT

private:
    LocalHttpServer m_server;
    QNetworkAccessManager m_manager;

    // Fetches a path of the server and returns what the fetcher reported, once.
    QList<QVariant> fetch(const QString &path, int timeoutMs = 30000)
    {
        FeedFetcher fetcher(&m_manager);
        fetcher.setTimeout(timeoutMs);
        QSignalSpy finished(&fetcher, &FeedFetcher::finished);
        fetcher.fetch(m_server.url(path));
        [&] { QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, 120000); }();
        QTest::qWait(100);
        [&] { QCOMPARE(finished.size(), 1); }(); // reported once
        return finished.value(0);
    }

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void fetcherFollowsRedirects()
    {
        m_server.setPage(u"/feed.xml"_s, "<rss/>", "application/rss+xml");
        m_server.setRedirect(u"/moved"_s, u"/feed.xml"_s);
        const QList<QVariant> reported = fetch(u"/moved"_s);
        QCOMPARE(reported.value(1).value<FeedError>().problem, FeedError::Problem::None);
        QCOMPARE(reported.value(0).toByteArray(), QByteArray("<rss/>"));
    }

    void fetcherCutsOffFeedThatNeverEnds()
    {
        m_server.setEndless(u"/endless"_s,
            QByteArray("<item><title>more</title></item>").repeated(64), "application/rss+xml");
        const QList<QVariant> reported = fetch(u"/endless"_s);
        QVERIFY(reported.value(0).toByteArray().isEmpty());
        QCOMPARE(reported.value(1).value<FeedError>().problem, FeedError::Problem::TooLarge);
    }

    void fetcherGivesUpOnSilentServer()
    {
        m_server.setSilent(u"/silent"_s);
        const FeedError error = fetch(u"/silent"_s, 500).value(1).value<FeedError>();
        QCOMPARE(error.problem, FeedError::Problem::Timeout);
    }
};

QTEST_GUILESS_MAIN(FeedFetchTest)
#include "feedfetch_test.moc"
