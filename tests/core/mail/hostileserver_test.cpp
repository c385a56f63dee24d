#include "core/mail/mailchecker.h"
#include "core/prefs/prefer.h"
#include "scriptedpop3server.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

#include <functional>

namespace {
using Failure = MailboxCheck::Failure;

struct MailboxRecord
{
    QString server;
    bool announced = false;
    Failure failure = Failure::None;
    qint64 milliseconds = 0;
};

// Sends `bytes` in pieces of `size`, one piece every `gap` milliseconds.
void drip(QTcpSocket *socket, const QByteArray &bytes, int size, int gap)
{
    auto *timer = new QTimer(socket);
    auto rest = std::make_shared<QByteArray>(bytes);
    QObject::connect(timer, &QTimer::timeout, socket, [socket, timer, rest, size] {
        if (socket->state() != QAbstractSocket::ConnectedState) {
            timer->stop();
            return;
        }
        socket->write(rest->left(size));
        rest->remove(0, size);
        if (rest->isEmpty())
            timer->stop();
    });
    timer->start(gap);
}
// Writes the first piece now and the others one by one, 5 ms apart.
void drainPieces(QTcpSocket *socket, const std::shared_ptr<QList<QByteArray>> &pieces)
{
    if (pieces->isEmpty() || socket->state() != QAbstractSocket::ConnectedState)
        return;
    socket->write(pieces->takeFirst());
    socket->flush();
    QTimer::singleShot(5, socket, [socket, pieces] { drainPieces(socket, pieces); });
}
} // namespace

// Servers that misbehave: each must end its own mailbox within the time-out, leave no
// connection open, and let the next mailbox be checked, while the event loop keeps
// running.
class HostileServerTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void cleanupTestCase()
    {
        // The figure to watch: no mailbox, however hostile, may hold the event loop.
        qInfo("worst event-loop lateness during the polls: %lld ms", m_worstLateness);
        QVERIFY2(m_worstLateness < 1000, "the event loop stalled during a poll");
    }

    void hostileMailboxEndsAndNextIsChecked_data()
    {
        QTest::addColumn<int>("scenario");
        QTest::addColumn<int>("failure");
        QTest::newRow("silent after connect") << 0 << int(Failure::TimedOut);
        QTest::newRow("greeting without +OK") << 1 << int(Failure::None);
        QTest::newRow("garbage bytes") << 2 << int(Failure::LineTooLong);
        QTest::newRow("garbage line") << 3 << int(Failure::None);
        QTest::newRow("10 MB line without CR LF") << 4 << int(Failure::LineTooLong);
        QTest::newRow("endless scan lines") << 5 << int(Failure::TooMuchData);
        QTest::newRow("one byte at a time, slowly") << 6 << int(Failure::TimedOut);
        QTest::newRow("closes in the middle of a reply") << 7 << int(Failure::None);
    }

    void hostileMailboxEndsAndNextIsChecked()
    {
        QFETCH(int, scenario);
        QFETCH(int, failure);
        ScriptedPop3Server hostile;
        switch (scenario) {
        case 0:
            hostile.greet = [](QTcpSocket *) {};
            break;
        case 1:
            hostile.greet = [](QTcpSocket *socket) { socket->write("-ERR not today\r\n"); };
            break;
        case 2:
            hostile.greet = [](QTcpSocket *socket) {
                QRandomGenerator random(7);
                QByteArray garbage(4096, '\0');
                for (char &byte : garbage)
                    byte = char(random.bounded(256));
                socket->write(garbage.replace('\n', 'x'));
            };
            break;
        case 3:
            hostile.greet = [](QTcpSocket *socket) { socket->write("\x01\xfe\x80garbage\r\n"); };
            break;
        case 4:
            hostile.greet
                = [](QTcpSocket *socket) { socket->write(QByteArray(10 * 1024 * 1024, 'A')); };
            break;
        case 5:
            hostile.answer = [](QTcpSocket *socket, const QByteArray &command) {
                if (command != "LIST") {
                    socket->write("+OK\r\n");
                    return;
                }
                socket->write("+OK 0 0\r\n");
                const QByteArray lines = QByteArray("1 1\r\n").repeated(1024);
                auto more = [socket, lines] {
                    while (socket->bytesToWrite() < 4 * lines.size())
                        socket->write(lines);
                };
                connect(socket, &QTcpSocket::bytesWritten, socket, more);
                more();
            };
            break;
        case 6:
            hostile.greet = [](QTcpSocket *socket) {
                drip(socket, "+OK a very slow server says hello\r\n", 1, 20);
            };
            break;
        case 7:
            hostile.answer = [](QTcpSocket *socket, const QByteArray &) {
                socket->write("+O");
                socket->disconnectFromHost();
            };
            break;
        }
        ScriptedPop3Server next;
        const QList<MailboxRecord> records = poll({&hostile, &next}, 300);
        QCOMPARE(records.size(), 2);
        QCOMPARE(int(records.at(0).failure), failure);
        QVERIFY(!records.at(0).announced);
        QVERIFY2(records.at(0).milliseconds < 300 + 3000, "the mailbox outlived its time-out");
        QCOMPARE(int(records.at(1).failure), int(Failure::None));
        QVERIFY(records.at(1).announced);
        QTRY_VERIFY(hostile.allClosed());
        QTRY_VERIFY(next.allClosed());
        // Nothing after a refused greeting or a broken reply: no USER, no password.
        if (scenario == 1 || scenario == 3)
            QCOMPARE(hostile.received, QByteArray());
        if (scenario == 7)
            QCOMPARE(hostile.received, QByteArray("USER anna\r\n"));
    }

    void repliesSplitAnywhereAreReadWhole_data()
    {
        QTest::addColumn<int>("at");
        // Every position of the longest reply, "+OK 1 2\r\n1 2\r\n.\r\n"; shorter
        // replies are cut before their last byte.
        for (int at = 1; at <= 17; ++at)
            QTest::addRow("split after %d bytes", at) << at;
    }

    void repliesSplitAnywhereAreReadWhole()
    {
        QFETCH(int, at);
        ScriptedPop3Server server;
        // Each reply leaves in two pieces, in order, 5 ms apart.
        auto pieces = std::make_shared<QList<QByteArray>>();
        const auto split = [at, pieces](QTcpSocket *socket, const QByteArray &reply) {
            const int first = qMin(at, int(reply.size()) - 1);
            pieces->append(reply.left(first));
            pieces->append(reply.mid(first));
            if (pieces->size() == 2)
                drainPieces(socket, pieces);
        };
        server.greet = [split](QTcpSocket *socket) { split(socket, "+OK ready\r\n"); };
        server.answer = [split](QTcpSocket *socket, const QByteArray &command) {
            split(socket, command == "LIST" ? QByteArray("+OK 1 2\r\n1 2\r\n.\r\n") : "+OK\r\n");
        };
        const QList<MailboxRecord> records = poll({&server}, 3000);
        QCOMPARE(int(records.at(0).failure), int(Failure::None));
        QVERIFY(records.at(0).announced);
        QCOMPARE(server.received, QByteArray("USER anna\r\nPASS secret\r\nLIST\r\nQUIT\r\n"));
        QTRY_VERIFY(server.allClosed());
    }

    void severalRepliesInOnePacketAreEachAnswered()
    {
        ScriptedPop3Server server;
        server.greet = [](QTcpSocket *socket) {
            socket->write("+OK ready\r\n+OK\r\n+OK\r\n+OK 12 1200\r\n.\r\n+OK bye\r\n");
        };
        server.answer = [](QTcpSocket *, const QByteArray &) {};
        const QList<MailboxRecord> records = poll({&server}, 3000);
        QCOMPARE(int(records.at(0).failure), int(Failure::None));
        QVERIFY(records.at(0).announced);
        QTRY_COMPARE(server.received, QByteArray("USER anna\r\nPASS secret\r\nLIST\r\nQUIT\r\n"));
        QTRY_VERIFY(server.allClosed());
    }

    void fourSilentMailboxesHoldThePollForFourTimeOuts()
    {
        // Scaled down: with the real 15 seconds this poll takes a minute.
        const int timeout = 200;
        ScriptedPop3Server silent[4];
        for (ScriptedPop3Server &server : silent)
            server.greet = [](QTcpSocket *) {};
        QElapsedTimer clock;
        clock.start();
        const QList<MailboxRecord> records
            = poll({&silent[0], &silent[1], &silent[2], &silent[3]}, timeout);
        const qint64 elapsed = clock.elapsed();
        QCOMPARE(records.size(), 4);
        for (const MailboxRecord &record : records)
            QCOMPARE(int(record.failure), int(Failure::TimedOut));
        // Timers may fire up to 5 % early.
        QVERIFY2(elapsed >= 4 * timeout * 95 / 100, qPrintable(QString::number(elapsed)));
        for (ScriptedPop3Server &server : silent)
            QTRY_VERIFY(server.allClosed());
    }

private:
    QList<MailboxRecord> poll(const QList<ScriptedPop3Server *> &servers, int timeout)
    {
        Prefer p;
        const QList<void (Prefer::*)(const QString &)> setServer = {
            &Prefer::setMailSrv1, &Prefer::setMailSrv2, &Prefer::setMailSrv3, &Prefer::setMailSrv4};
        const QList<void (Prefer::*)(const QString &)> setUser
            = {&Prefer::setUser1, &Prefer::setUser2, &Prefer::setUser3, &Prefer::setUser4};
        const QList<void (Prefer::*)(const QString &)> setPassword
            = {&Prefer::setPwd1, &Prefer::setPwd2, &Prefer::setPwd3, &Prefer::setPwd4};
        const QList<void (Prefer::*)(qint16)> setEnabled
            = {&Prefer::setEnableMailCheck1, &Prefer::setEnableMailCheck2,
                &Prefer::setEnableMailCheck3, &Prefer::setEnableMailCheck4};
        for (int i = 0; i < servers.size(); ++i) {
            (p.*setServer.at(i))(servers.at(i)->address());
            (p.*setUser.at(i))(QStringLiteral("anna"));
            (p.*setPassword.at(i))(QStringLiteral("secret"));
            (p.*setEnabled.at(i))(-1);
        }
        MailChecker checker;
        checker.InitForPOP3(false, p);
        checker.setMailboxTimeout(timeout);

        QList<MailboxRecord> records;
        QElapsedTimer mailboxClock;
        connect(&checker, &MailChecker::mailboxStarted, this,
            [&records, &mailboxClock](const QString &server) {
                records.append({server, false, Failure::None, 0});
                mailboxClock.start();
            });
        connect(&checker, &MailChecker::newMail, this,
            [&records](const QString &) { records.last().announced = true; });
        connect(&checker, &MailChecker::mailboxFailed, this,
            [&records](const QString &, Failure failure, const QString &) {
                records.last().failure = failure;
            });
        connect(
            &checker, &MailChecker::mailboxEnded, this, [&records, &mailboxClock](const QString &) {
                records.last().milliseconds = mailboxClock.elapsed();
            });

        // A fast timer whose worst lateness shows how long the event loop was held.
        QTimer beat;
        beat.setTimerType(Qt::PreciseTimer);
        QElapsedTimer sinceBeat;
        sinceBeat.start();
        connect(&beat, &QTimer::timeout, this, [this, &sinceBeat] {
            m_worstLateness = qMax(m_worstLateness, sinceBeat.restart() - 5);
        });
        beat.start(5);

        QSignalSpy finished(&checker, &MailChecker::pollFinished);
        checker.poll();
        if (!finished.wait(4 * timeout + 10000))
            qWarning("the poll did not finish");
        return records;
    }

    qint64 m_worstLateness = 0;
};

QTEST_GUILESS_MAIN(HostileServerTest)
#include "hostileserver_test.moc"
