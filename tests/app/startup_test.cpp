#include "localhttpserver.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

// Starts the real program, as a user would, against a data folder of the test's own.
class StartupTest : public QObject
{
    Q_OBJECT

private:
    LocalHttpServer m_server;
    QTemporaryDir m_data;

    std::unique_ptr<QProcess> start(const QStringList &arguments) const
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process->start(QStringLiteral(VANTRELL_APP_PATH), arguments);
        return process;
    }

    static void stop(QProcess &process)
    {
        process.terminate();
        if (!process.waitForFinished(15000))
            process.kill();
        process.waitForFinished(5000);
    }

private slots:
    void initTestCase()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        // The program started here inherits these.
        qputenv("VANTRELL_DATA_DIR", m_data.path().toUtf8());
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
        qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu --no-sandbox");
    }

    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        m_server.clearRequests();
        QFile::remove(m_data.filePath(u"Pref.vtp"_s));
    }

    void secondStartHandsItsFileToTheFirst()
    {
        m_server.setPage(u"/first"_s, "<html><body>first</body></html>");
        m_server.setPage(u"/pixel"_s, "<html><body>from the file</body></html>");
        QTemporaryDir pages;
        const QString file = pages.filePath(u"a page.html"_s);
        QFile html(file);
        QVERIFY(html.open(QIODevice::WriteOnly));
        // A local page may not fetch from the web, but it may go there.
        html.write("<html><body><script>location.href = '"
            + m_server.url(u"/pixel"_s).toString().toUtf8() + "';</script></body></html>");
        html.close();

        auto first = start({m_server.url(u"/first"_s).toString()});
        QTRY_COMPARE_WITH_TIMEOUT(m_server.requestCount(u"/first"_s), 1, 30000);
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_data.filePath(u"Pref.vtp"_s)), 10000);

        // The second start writes nothing: the preferences file stays gone.
        QFile::remove(m_data.filePath(u"Pref.vtp"_s));
        auto second = start({file});
        QVERIFY(second->waitForFinished(30000));
        QCOMPARE(second->exitCode(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(m_server.requestCount(u"/pixel"_s), 1, 30000);
        QVERIFY(!QFile::exists(m_data.filePath(u"Pref.vtp"_s)));
        QCOMPARE(first->state(), QProcess::Running);

        // Quitting the first saves its preferences.
        stop(*first);
        QVERIFY(QFile::exists(m_data.filePath(u"Pref.vtp"_s)));
        QCOMPARE(QFileInfo(m_data.filePath(u"Pref.vtp"_s)).size(), 15572);
    }

    void tenStartsAtOnceLeaveOneInstance()
    {
        QList<std::shared_ptr<QProcess>> starts;
        for (int i = 0; i < 10; ++i) {
            const QString path = u"/many%1"_s.arg(i);
            m_server.setPage(path, "<html><body>many</body></html>");
            starts.append(
                std::shared_ptr<QProcess>(start({m_server.url(path).toString()}).release()));
        }
        // Nine hand over and end; one keeps running with every page open.
        QTRY_VERIFY_WITH_TIMEOUT(
            std::count_if(starts.cbegin(), starts.cend(),
                [](const auto &p) { return p->state() == QProcess::NotRunning; })
                == 9,
            60000);
        for (int i = 0; i < 10; ++i)
            QTRY_COMPARE_WITH_TIMEOUT(m_server.requestCount(u"/many%1"_s.arg(i)), 1, 30000);
        for (const auto &p : starts) {
            if (p->state() == QProcess::NotRunning)
                QCOMPARE(p->exitCode(), 0);
        }
        for (const auto &p : starts)
            stop(*p);
    }
};

QTEST_GUILESS_MAIN(StartupTest)
#include "startup_test.moc"
