#include "core/prefs/prefer.h"
#include "engine/downloads.h"
#include "engineenvironment.h"
#include "localhttpserver.h"
#include "ui/browser/frmbrowser.h"
#include "ui/browser/infobar.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/tabstrip.h"

#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QProcess>
#include <QSignalSpy>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTemporaryDir>
#include <QTest>

namespace {
QByteArray titled(const char *title, const QByteArray &body = {})
{
    return "<html><head><title>" + QByteArray(title) + "</title></head><body>" + body
        + "</body></html>";
}
QStringList entries(const QComboBox *box)
{
    QStringList all;
    for (int i = 0; i < box->count(); ++i)
        all.append(box->itemText(i));
    return all;
}
} // namespace

class BrowserWindowTest : public QObject
{
    Q_OBJECT

private:
    LocalHttpServer m_server;
    QString url(const char *path) const { return m_server.url(QLatin1String(path)).toString(); }

private slots:
    void initTestCase()
    {
        m_server.setPage(QStringLiteral("/a"), titled("A"));
        m_server.setPage(QStringLiteral("/b"), titled("B"));
        m_server.setPage(QStringLiteral("/closer"),
            titled("Closer", "<script>setTimeout(() => window.close(), 50)</script>"));
        m_server.setPage(QStringLiteral("/file.bin"), QByteArray(100000, 'z'),
            "application/octet-stream",
            "Content-Disposition: attachment; filename=\"file.bin\"\r\n");
        m_server.setPage(QStringLiteral("/image.png"),
            QByteArray::fromBase64("iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mP8z8B"
                                   "QDwAEhQGAhKmMIQAAAABJRU5ErkJggg=="),
            "image/png");
    }

    void typedAddressIsTrimmedAndListedMostRecentFirst()
    {
        MDIForm1 frame;
        frame.show();
        frmBrowser *window = frame.OpenNewBrowser(url("/a"));
        QTRY_VERIFY_WITH_TIMEOUT(window->Title == u"A" && !window->page()->isLoading(), 15000);

        QComboBox *box = window->addressBox();
        box->setEditText(QStringLiteral("   ") + url("/b") + QStringLiteral("  "));
        QTest::keyClick(box->lineEdit(), Qt::Key_Return);
        QTRY_VERIFY_WITH_TIMEOUT(window->Title == u"B" && !window->page()->isLoading(), 15000);
        QCOMPARE(window->LastRequestUrl, url("/b"));

        box->setEditText(url("/a"));
        QTest::keyClick(box->lineEdit(), Qt::Key_Return);
        QTRY_VERIFY_WITH_TIMEOUT(window->Title == u"A" && !window->page()->isLoading(), 15000);
        QCOMPARE(entries(box), (QStringList {url("/a"), url("/b")}));
        QVERIFY(!window->AddressUpdating);

        // Every completed page is recorded once, newest last. (The title shows before
        // a page has finished loading; the steps above wait for the loading to end, so
        // no page is cut short by the next one.)
        QTRY_COMPARE_WITH_TIMEOUT(frame.history().size(), 3, 15000);
        QCOMPARE(frame.history().last().URL(), url("/a"));
        QCOMPARE(frame.history().last().Title(), QStringLiteral("A"));

        // Back and forward, and neither fails where there is nothing to go to.
        window->GoBack();
        QTRY_VERIFY_WITH_TIMEOUT(window->Title == u"B" && !window->page()->isLoading(), 15000);
        window->GoForward();
        QTRY_VERIFY_WITH_TIMEOUT(window->Title == u"A" && !window->page()->isLoading(), 15000);
        window->GoForward();
        QTest::qWait(200);
        QCOMPARE(window->Title, QStringLiteral("A"));

        // An empty address goes to the start page of the window.
        window->StartUrl = url("/b");
        window->Navigate(QString());
        QTRY_VERIFY_WITH_TIMEOUT(window->Title == u"B" && !window->page()->isLoading(), 15000);
    }

    void historyKeepsTheNewestRows()
    {
        prefer().setHistoryRows(2);
        MDIForm1 frame;
        frame.show();
        frame.AddToHistory(QStringLiteral("http://one/"), QStringLiteral("1"));
        frame.AddToHistory(QStringLiteral("http://two/"), QStringLiteral("2"));
        frame.AddToHistory(QStringLiteral("http://three/"), QStringLiteral("3"));
        QCOMPARE(frame.history().size(), 2);
        QCOMPARE(frame.history().first().URL(), QStringLiteral("http://two/"));
        prefer().setHistoryRows(50);
    }

    void zoomAppliesToHtmlOnly()
    {
        MDIForm1 frame;
        frame.show();
        frmBrowser *window = frame.OpenNewBrowser(url("/a"));
        QTRY_COMPARE_WITH_TIMEOUT(window->Title, QStringLiteral("A"), 15000);
        window->SetZoomFactor(150);
        QTRY_COMPARE(window->ZoomFactor, qint16(150));
        QCOMPARE(window->page()->zoomPercent(), 150);

        window->Navigate(url("/image.png"));
        QTRY_VERIFY_WITH_TIMEOUT(
            window->LocationURL().endsWith(QStringLiteral("/image.png")), 15000);
        QTRY_VERIFY_WITH_TIMEOUT(!window->page()->isLoading(), 15000);
        window->SetZoomFactor(300);
        QTest::qWait(500);
        QCOMPARE(window->ZoomFactor, qint16(150));
    }

    void pageThatClosesItselfRemovesItsTab()
    {
        MDIForm1 frame;
        frame.show();
        frame.OpenNewBrowser(url("/a"));
        frmBrowser *closer = frame.OpenNewBrowser(url("/closer"));
        QPointer<frmBrowser> watch = closer;
        QTRY_VERIFY_WITH_TIMEOUT(watch.isNull(), 15000);
        QCOMPARE(frame.browsers().size(), 1);
        QCOMPARE(frame.tabStrip()->count(), 1);
    }

    void homePageFollowsTheFeedRule()
    {
        MDIForm1 frame;
        frame.show();
        frmBrowser *window = frame.OpenNewBrowser(url("/a"));
        QTRY_COMPARE_WITH_TIMEOUT(window->Title, QStringLiteral("A"), 15000);
        window->SetHomepage();
        QCOMPARE(prefer().HomeUrl(), url("/a"));
        QCOMPARE(prefer().HomeTitle(), QString());
        QCOMPARE(window->toolAction(QStringLiteral("Home"))->toolTip(), url("/a"));

        window->FeedSourceUrl = QStringLiteral("http://example.org/feed.xml");
        window->SetHomepage();
        QCOMPARE(prefer().HomeUrl(), QStringLiteral("http://example.org/feed.xml"));
        QVERIFY(prefer().HomeTitle().startsWith(QStringLiteral("<FEED />")));
        prefer().resetToDefaults();
    }

    void permissionRequestIsAskedAndDeniedUnlessAllowed()
    {
        m_server.setPage(QStringLiteral("/geo"),
            titled("Geo",
                "<script>navigator.geolocation.getCurrentPosition("
                "() => fetch('/granted'), e => fetch('/denied?' + e.code));</script>"));
        MDIForm1 frame;
        frame.show();
        frmBrowser *window = frame.OpenNewBrowser(url("/geo"));
        InfoBar *bar = window->findChild<InfoBar *>();
        QVERIFY(bar);
        QTRY_VERIFY_WITH_TIMEOUT(bar->isVisible(), 15000);
        QVERIFY2(bar->text().contains(QStringLiteral("127.0.0.1")), qPrintable(bar->text()));
        bar->answer(false);
        QVERIFY(!bar->isVisible());
        QTRY_COMPARE_WITH_TIMEOUT(m_server.requestCount(QStringLiteral("/denied")), 1, 15000);
        QCOMPARE(m_server.requestCount(QStringLiteral("/granted")), 0);
    }

    void invalidCertificateIsRefusedAndExplained()
    {
        // A self-signed certificate, made for this test.
        QTemporaryDir dir;
        const QString key = dir.filePath(QStringLiteral("key.pem"));
        const QString cert = dir.filePath(QStringLiteral("cert.pem"));
        QProcess openssl;
        openssl.start(QStringLiteral("openssl"),
            {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
                QStringLiteral("rsa:2048"), QStringLiteral("-nodes"), QStringLiteral("-keyout"),
                key, QStringLiteral("-out"), cert, QStringLiteral("-days"), QStringLiteral("2"),
                QStringLiteral("-subj"), QStringLiteral("/CN=127.0.0.1")});
        QVERIFY(openssl.waitForFinished(60000));
        QCOMPARE(openssl.exitCode(), 0);
        QFile keyFile(key);
        QFile certFile(cert);
        QVERIFY(keyFile.open(QIODevice::ReadOnly) && certFile.open(QIODevice::ReadOnly));

        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.setLocalCertificate(QSslCertificate(certFile.readAll()));
        tls.setPrivateKey(QSslKey(keyFile.readAll(), QSsl::Rsa));
        QSslServer server;
        server.setSslConfiguration(tls);
        QVERIFY(server.listen(QHostAddress::LocalHost));
        int served = 0;
        connect(&server, &QSslServer::pendingConnectionAvailable, &server, [&server, &served] {
            while (QTcpSocket *socket = server.nextPendingConnection()) {
                connect(socket, &QTcpSocket::readyRead, socket, [socket, &served] {
                    socket->readAll();
                    ++served;
                    socket->write(
                        "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 44\r\n\r\n"
                        "<html><head><title>Secret</title></head></html>");
                });
            }
        });

        MDIForm1 frame;
        frame.show();
        frmBrowser *window = frame.OpenNewBrowser(
            QStringLiteral("https://127.0.0.1:%1/").arg(server.serverPort()));
        InfoBar *bar = window->findChild<InfoBar *>();
        QTRY_VERIFY_WITH_TIMEOUT(bar->isVisible(), 15000);
        QVERIFY2(bar->text().contains(QStringLiteral("127.0.0.1")), qPrintable(bar->text()));
        QTest::qWait(500);
        QCOMPARE(served, 0);
        QVERIFY(window->Title != QStringLiteral("Secret"));
        QVERIFY(!window->Secure);
    }

    void downloadLandsOnDisk()
    {
        QTemporaryDir target;
        const QString path = target.filePath(QStringLiteral("saved.bin"));
        MDIForm1 frame;
        frame.show();
        Downloads downloads(WebEngineSetup::profile());
        downloads.setTargetChooser([path](const QString &suggested) {
            return suggested.endsWith(QStringLiteral("file.bin")) ? path : QString();
        });
        QSignalSpy finished(&downloads, &Downloads::finished);
        frame.OpenNewBrowser(url("/file.bin"));
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, 15000);
        QCOMPARE(finished.first().at(1).toBool(), true);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray(100000, 'z'));
    }
};

VANTRELL_ENGINE_TEST_MAIN(BrowserWindowTest)
#include "browserwindow_test.moc"
