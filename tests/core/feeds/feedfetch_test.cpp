#include "core/feeds/feeddocument.h"
#include "core/feeds/feedfetcher.h"
#include "core/feeds/feedpage.h"
#include "core/feeds/feedparser.h"

#include <QNetworkAccessManager>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QByteArray latinFeed = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n"
                             "<rss version=\"2.0\"><channel><title>Gr\xFC\xDF"
                             "e aus dem Netz</title>"
                             "<item><title>Eins</title><link>http://example.org/1</link>"
                             "<description>Text</description></item></channel></rss>\n";

// An HTTP server on 127.0.0.1 with the few behaviours a feed download meets: a feed,
// a redirect to it, a missing page, a body that never ends and a server that never
// answers.
class FeedServer final : public QTcpServer
{
public:
    FeedServer()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = nextPendingConnection()) {
                connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
                    m_requests.remove(socket);
                    socket->deleteLater();
                });
                connect(socket, &QTcpSocket::readyRead, this, [this, socket] { serve(socket); });
            }
        });
    }

    QUrl url(const char *path) const
    {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2")
                        .arg(serverPort())
                        .arg(QString::fromLatin1(path)));
    }

private:
    void serve(QTcpSocket *socket)
    {
        m_requests[socket] += socket->readAll();
        if (!m_requests[socket].contains("\r\n\r\n"))
            return;
        const QByteArray path = m_requests.take(socket).split(' ').value(1);
        if (path == "/feed.xml") {
            socket->write("HTTP/1.1 200 OK\r\nContent-Type: application/rss+xml\r\n"
                          "Content-Length: "
                + QByteArray::number(latinFeed.size()) + "\r\nConnection: close\r\n\r\n"
                + latinFeed);
            socket->disconnectFromHost();
        } else if (path == "/moved") {
            socket->write("HTTP/1.1 302 Found\r\nLocation: /feed.xml\r\nContent-Length: 0\r\n"
                          "Connection: close\r\n\r\n");
            socket->disconnectFromHost();
        } else if (path == "/endless") {
            socket->write("HTTP/1.1 200 OK\r\nContent-Type: application/rss+xml\r\n"
                          "Connection: close\r\n\r\n<rss><channel>");
            const QByteArray chunk = QByteArray("<item><title>more</title></item>").repeated(2048);
            auto more = [socket, chunk] {
                while (socket->bytesToWrite() < 4 * chunk.size())
                    socket->write(chunk);
            };
            connect(socket, &QTcpSocket::bytesWritten, socket, more);
            more();
        } else if (path == "/silent") {
            // Keeps the connection open and says nothing.
        } else {
            socket->write(
                "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
            socket->disconnectFromHost();
        }
    }

    QHash<QTcpSocket *, QByteArray> m_requests;
};

struct ToolRun
{
    int exitCode = -1;
    QString out;
    QString err;
};

} // namespace

class FeedFetchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral("."))); }
    void fetcherFollowsRedirects();
    void fetcherCutsOffFeedThatNeverEnds();
    void fetcherGivesUpOnSilentServer();
    void toolRendersFeedFile();
    void toolRendersFeedFromHttp();
    void toolFailsOnUnreadableSource();

private:
    ToolRun runTool(const QStringList &arguments);

    QTemporaryDir m_dataDir;
    FeedServer m_server;
};

ToolRun FeedFetchTest::runTool(const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("VANTRELL_LANG"), QStringLiteral("de"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(VANTRELL_TOOL_PATH),
        QStringList {QStringLiteral("--data-dir"), m_dataDir.path(), QStringLiteral("feed")}
            + arguments);
    // The event loop keeps running so the in-test server can answer the tool.
    [&] { QTRY_VERIFY_WITH_TIMEOUT(process.state() == QProcess::NotRunning, 60000); }();
    ToolRun run;
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

void FeedFetchTest::fetcherFollowsRedirects()
{
    QNetworkAccessManager manager;
    FeedFetcher fetcher(&manager);
    QSignalSpy finished(&fetcher, &FeedFetcher::finished);
    fetcher.fetch(m_server.url("/moved"));
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, 30000);
    QCOMPARE(finished.at(0).at(1).value<FeedError>().reason, QString());
    QCOMPARE(finished.at(0).at(0).toByteArray(), latinFeed);
}

void FeedFetchTest::fetcherCutsOffFeedThatNeverEnds()
{
    QNetworkAccessManager manager;
    FeedFetcher fetcher(&manager);
    QSignalSpy finished(&fetcher, &FeedFetcher::finished);
    fetcher.fetch(m_server.url("/endless"));
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, 120000);
    QVERIFY(finished.at(0).at(0).toByteArray().isEmpty());
    const FeedError error = finished.at(0).at(1).value<FeedError>();
    QVERIFY2(error.reason.contains(u"20 MB"), qPrintable(error.reason));
    QTest::qWait(100);
    QCOMPARE(finished.size(), 1); // reported once
}

void FeedFetchTest::fetcherGivesUpOnSilentServer()
{
    QNetworkAccessManager manager;
    FeedFetcher fetcher(&manager);
    fetcher.setTimeout(500);
    QSignalSpy finished(&fetcher, &FeedFetcher::finished);
    fetcher.fetch(m_server.url("/silent"));
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, 30000);
    QVERIFY(!finished.at(0).at(1).value<FeedError>().reason.isEmpty());
}

void FeedFetchTest::toolRendersFeedFile()
{
    QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("feed.xml")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(latinFeed);
    file.close();

    const ToolRun run = runTool({QStringLiteral("render"), file.fileName(),
        QStringLiteral("--link-text"), QStringLiteral("Zum Artikel")});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.out.startsWith(u"<html><head><title>Grüße aus dem Netz</title>"));
    QVERIFY(run.out.contains(u"target=\"frm1\">Zum Artikel</a>"));
    QCOMPARE(run.out,
        FeedPage::render(FeedParser::parse(latinFeed).feed, QStringLiteral("Zum Artikel")));

    // A document that is no feed still prints its page.
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("<rss><channel>");
    file.close();
    const ToolRun broken = runTool({QStringLiteral("render"), file.fileName()});
    QCOMPARE(broken.exitCode, 0);
    QVERIFY(broken.out.contains(u"<b>Quelle:</b> " + file.fileName()));
}

void FeedFetchTest::toolRendersFeedFromHttp()
{
    const ToolRun run = runTool({QStringLiteral("render"), m_server.url("/moved").toString()});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QVERIFY2(run.out.contains(u"<h1>Grüße aus dem Netz</h1>"), qPrintable(run.err));
    QVERIFY(run.out.contains(u"target=\"frm1\">Weiterlesen...</a>"));
}

void FeedFetchTest::toolFailsOnUnreadableSource()
{
    const QString missing = m_dataDir.filePath(QStringLiteral("no-such-feed.xml"));
    const ToolRun file = runTool({QStringLiteral("render"), missing});
    QCOMPARE(file.exitCode, 2);
    QVERIFY(file.err.contains(missing));
    QVERIFY(file.out.isEmpty());

    const ToolRun http = runTool({QStringLiteral("render"), m_server.url("/gone").toString()});
    QCOMPARE(http.exitCode, 2);
    QVERIFY(http.out.isEmpty());

    QCOMPARE(runTool({QStringLiteral("render")}).exitCode, 1);
}

QTEST_GUILESS_MAIN(FeedFetchTest)
#include "feedfetch_test.moc"
