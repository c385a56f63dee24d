#include "core/model/layout.h"
#include "core/model/sessionfile.h"
#include "localhttpserver.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;

// Kills the real program with windows open and starts it again on the same data folder.
class CrashRestoreTest : public QObject
{
    Q_OBJECT

    LocalHttpServer m_server;
    QTemporaryDir m_data;

    std::unique_ptr<QProcess> start(const QString &path) const
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process->start(QStringLiteral(VANTRELL_APP_PATH), {m_server.url(path).toString()});
        return process;
    }

    // The captions the session file holds now; a file being replaced reads as it was.
    QStringList sessionCaptions() const
    {
        QStringList captions;
        for (const WindowDescription &window :
            Layout::LoadLayout(m_data.filePath(SessionFile::fileName())).windows)
            captions.append(window.caption);
        return captions;
    }

private slots:
    void initTestCase()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        qputenv("VANTRELL_DATA_DIR", m_data.path().toUtf8());
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
        qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu --no-sandbox");
        // The second start answers its restore offer with "Restore".
        qputenv("VANTRELL_RESTORE", "yes");
        for (int i = 1; i <= 6; ++i)
            m_server.setPage(u"/w%1"_s.arg(i),
                "<html><head><title>Window " + QByteArray::number(i) + "</title></head></html>");
    }

    void killedProgramRestoresItsFiveWindowsBesideTheNewOne()
    {
        auto first = start(u"/w1"_s);
        QTRY_COMPARE_WITH_TIMEOUT(m_server.requestCount(u"/w1"_s), 1, 60000);
        // Four more windows, handed over by second starts.
        for (int i = 2; i <= 5; ++i) {
            auto handOver = start(u"/w%1"_s.arg(i));
            QVERIFY(handOver->waitForFinished(30000));
            QCOMPARE(handOver->exitCode(), 0);
        }
        const QStringList five
            = {u"Window 1"_s, u"Window 2"_s, u"Window 3"_s, u"Window 4"_s, u"Window 5"_s};
        QTRY_COMPARE_WITH_TIMEOUT(sessionCaptions(), five, 60000);

        ::kill(pid_t(first->processId()), SIGKILL);
        QVERIFY(first->waitForFinished(10000));
        QCOMPARE(first->exitStatus(), QProcess::CrashExit);
        QCOMPARE(sessionCaptions(), five);

        m_server.clearRequests();
        auto second = start(u"/w6"_s);
        // The restored windows come after the one the command line opened.
        QTRY_COMPARE_WITH_TIMEOUT(sessionCaptions(), QStringList {u"Window 6"_s} + five, 60000);
        for (int i = 1; i <= 5; ++i)
            QCOMPARE(m_server.requestCount(u"/w%1"_s.arg(i)), 1);

        // A clean quit leaves nothing to restore.
        second->terminate();
        QVERIFY(second->waitForFinished(30000));
        QCOMPARE(second->exitStatus(), QProcess::NormalExit);
        QVERIFY(!QFile::exists(m_data.filePath(SessionFile::fileName())));
    }
};

QTEST_GUILESS_MAIN(CrashRestoreTest)
#include "crashrestore_test.moc"
