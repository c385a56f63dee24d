#include "localhttpserver.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

// Starts the real program, as a user would, against a data folder of the test's own.
class StartupTest : public QObject
{
    Q_OBJECT

private:
    LocalHttpServer m_server;
    QTemporaryDir m_data;

    QProcessEnvironment environment() const
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("VANTRELL_DATA_DIR"), m_data.path());
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("QTWEBENGINE_DISABLE_SANDBOX"), QStringLiteral("1"));
        env.insert(QStringLiteral("QTWEBENGINE_CHROMIUM_FLAGS"),
            QStringLiteral("--disable-gpu --no-sandbox"));
        return env;
    }

    std::unique_ptr<QProcess> start(const QStringList &arguments) const
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(environment());
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
    void init()
    {
        m_server.clearRequests();
        QFile::remove(m_data.filePath(QStringLiteral("Pref.vtp")));
    }

    void secondStartHandsItsFileToTheFirst()
    {
        m_server.setPage(QStringLiteral("/first"), "<html><body>first</body></html>");
        m_server.setPage(QStringLiteral("/pixel"), "<html><body>from the file</body></html>");
        QTemporaryDir pages;
        const QString file = pages.filePath(QStringLiteral("a page.html"));
        QFile html(file);
        QVERIFY(html.open(QIODevice::WriteOnly));
        // A local page may not fetch from the web, but it may go there.
        html.write("<html><body><script>location.href = '"
            + m_server.url(QStringLiteral("/pixel")).toString().toUtf8()
            + "';</script></body></html>");
        html.close();

        auto first = start({m_server.url(QStringLiteral("/first")).toString()});
        QTRY_COMPARE_WITH_TIMEOUT(m_server.requestCount(QStringLiteral("/first")), 1, 30000);
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_data.filePath(QStringLiteral("Pref.vtp"))), 10000);

        // The second start writes nothing: the preferences file stays gone.
        QFile::remove(m_data.filePath(QStringLiteral("Pref.vtp")));
        auto second = start({file});
        QVERIFY(second->waitForFinished(30000));
        QCOMPARE(second->exitCode(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(m_server.requestCount(QStringLiteral("/pixel")), 1, 30000);
        QVERIFY(!QFile::exists(m_data.filePath(QStringLiteral("Pref.vtp"))));
        QCOMPARE(first->state(), QProcess::Running);

        // Quitting the first saves its preferences.
        stop(*first);
        QVERIFY(QFile::exists(m_data.filePath(QStringLiteral("Pref.vtp"))));
        QCOMPARE(QFileInfo(m_data.filePath(QStringLiteral("Pref.vtp"))).size(), 15572);
    }

    void portBlankAndWordOpensTheAddressOnly()
    {
        m_server.setPage(QStringLiteral("/port"), "<html><body>port</body></html>");
        auto first
            = start({m_server.url(QStringLiteral("/port")).toString(), QStringLiteral("more")});
        QTRY_COMPARE_WITH_TIMEOUT(m_server.requestCount(QStringLiteral("/port")), 1, 30000);
        stop(*first);
    }

    void tenStartsAtOnceLeaveOneInstance()
    {
        QList<std::shared_ptr<QProcess>> starts;
        for (int i = 0; i < 10; ++i) {
            const QString path = QStringLiteral("/many%1").arg(i);
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
            QTRY_COMPARE_WITH_TIMEOUT(
                m_server.requestCount(QStringLiteral("/many%1").arg(i)), 1, 30000);
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
