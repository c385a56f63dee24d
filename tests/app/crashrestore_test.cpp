#include "core/model/layout.h"
#include "core/model/sessionfile.h"
#include "localhttpserver.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;

// Kills the real program with five windows open and starts it again on its data folder.
class CrashRestoreTest : public QObject
{
    Q_OBJECT

    LocalHttpServer m_server;
    QTemporaryDir m_data;

    std::unique_ptr<QProcess> start(int page) const
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process->start(
            QStringLiteral(VANTRELL_APP_PATH), {m_server.url(u"/w%1"_s.arg(page)).toString()});
        return process;
    }
    QStringList sessionCaptions() const
    {
        QStringList captions;
        for (const auto &window :
            Layout::LoadLayout(m_data.filePath(SessionFile::fileName())).windows)
            captions.append(window.caption);
        return captions;
    }

private slots:
    void killedProgramRestoresItsFiveWindowsBesideTheNewOne()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        qputenv("VANTRELL_DATA_DIR", m_data.path().toUtf8());
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
        qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu --no-sandbox");
        qputenv("VANTRELL_RESTORE", "yes"); // the second start answers "Restore"
        QStringList five;
        for (int i = 1; i <= 6; ++i) {
            const QByteArray title = "Window " + QByteArray::number(i);
            m_server.setPage(u"/w%1"_s.arg(i), "<title>" + title + "</title>");
            if (i <= 5)
                five.append(QString::fromLatin1(title));
        }
        auto first = start(1);
        QTRY_COMPARE_WITH_TIMEOUT(m_server.requestCount(u"/w1"_s), 1, 60000);
        for (int i = 2; i <= 5; ++i) // handed over by second starts
            QVERIFY(start(i)->waitForFinished(30000));
        QTRY_COMPARE_WITH_TIMEOUT(sessionCaptions(), five, 60000);

        ::kill(pid_t(first->processId()), SIGKILL);
        QVERIFY(first->waitForFinished(10000));
        QCOMPARE(sessionCaptions(), five);

        m_server.clearRequests();
        auto second = start(6);
        QTRY_COMPARE_WITH_TIMEOUT(sessionCaptions(), QStringList {u"Window 6"_s} + five, 60000);
        for (int i = 1; i <= 5; ++i)
            QCOMPARE(m_server.requestCount(u"/w%1"_s.arg(i)), 1);

        // A clean quit (SIGTERM closes the frame as "Exit" does) leaves nothing to restore.
        second->terminate();
        QVERIFY(second->waitForFinished(30000));
        QCOMPARE(second->exitStatus(), QProcess::NormalExit);
        QVERIFY(!QFile::exists(m_data.filePath(SessionFile::fileName())));
    }
};

QTEST_GUILESS_MAIN(CrashRestoreTest)
#include "crashrestore_test.moc"
