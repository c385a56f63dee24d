#include "core/mail/mailchecker.h"
#include "core/prefs/prefer.h"
#include "dovecotserver.h"
#include "scriptedpop3server.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QSslSocket>
#include <QTest>

using Failure = MailboxCheck::Failure;
// Makes a scripted server misbehave.
using Script = std::function<void(ScriptedPop3Server &)>;
Q_DECLARE_METATYPE(Script)

namespace {
struct MailboxRecord
{
    bool announced = false;
    Failure failure = Failure::None;
    QString detail;
};

// Says `bytes` on connecting, then nothing more.
Script greeting(const QByteArray &bytes)
{
    return [bytes](ScriptedPop3Server &s) {
        s.greet = [bytes](QTcpSocket *socket) { socket->write(bytes); };
        s.answer = [](QTcpSocket *, const QByteArray &) {};
    };
}
} // namespace

// The mail check against servers on 127.0.0.1, a real Dovecot and scripted ones that
// misbehave. Each case polls the mailbox under test and then one with mail, which must
// be checked whatever the first did, while the event loop keeps running.
class MailServerTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY2(QSslSocket::supportsSsl(), "Qt has no TLS backend");
        const QString problem = m_dovecot.start({{QStringLiteral("one"), 1},
            {QStringLiteral("twelve"), 12}, {QStringLiteral("next"), 3}});
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        m_testCa
            = QSslCertificate::fromPath(DovecotServer::certificates + QStringLiteral("/ca.crt"));
        QCOMPARE(m_testCa.size(), 1);
        // A fast timer whose worst lateness shows how long a poll held the event loop.
        m_beat.setTimerType(Qt::PreciseTimer);
        connect(&m_beat, &QTimer::timeout, this,
            [this] { m_worstLateness = qMax(m_worstLateness, m_sinceBeat.restart() - 5); });
    }

    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void cleanupTestCase()
    {
        qInfo("worst event-loop lateness during the polls: %lld ms", m_worstLateness);
        QVERIFY2(m_worstLateness < 1000, "the event loop stalled during a poll");
    }

    void dovecotMailboxIsChecked_data()
    {
        QTest::addColumn<QString>("server"); // %1 the POP3 port, %2 the POP3S port
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("password");
        QTest::addColumn<bool>("announced");
        QTest::addColumn<int>("failure");
        QTest::addColumn<QString>("logged"); // what the server logs about the user
        QTest::addColumn<bool>("quit");
        const auto row
            = [](const char *name, const char *server, const char *user, const char *password,
                  bool announced, Failure failure, const char *logged, bool quit) {
                  QTest::newRow(name) << QString::fromLatin1(server) << QString::fromLatin1(user)
                                      << QString::fromLatin1(password) << announced << int(failure)
                                      << QString::fromLatin1(logged) << quit;
              };
        row("empty mailbox", "pop3://%1", "empty", "pw-empty", false, Failure::None,
            "Login: user=<empty>", true);
        row("one message, upgraded by STLS", "%1", "one", "pw-one", true, Failure::None,
            "Login: user=<one>.*TLS", true);
        row("twelve messages in clear", "pop3://%1", "twelve", "pw-twelve", true, Failure::None,
            "Login: user=<twelve>(?!.*TLS)", true);
        row("twelve messages over TLS", "pop3s://%2", "twelve", "pw-twelve", true, Failure::None,
            "Login: user=<twelve>.*TLS", true);
        // A refused password is no failure the user is told about; no QUIT follows it.
        row("wrong password", "pop3://%1", "twelve", "wrong", false, Failure::None,
            "auth failed.*user=<twelve>", false);
        // An untrusted certificate: the password never reaches the server.
        row("untrusted certificate, TLS first", "pop3s://%2", "one", "pw-one", false,
            Failure::Certificate, "^$", false);
        row("untrusted certificate, STLS", "%1", "one", "pw-one", false, Failure::Certificate, "^$",
            false);
    }

    void dovecotMailboxIsChecked()
    {
        QFETCH(QString, server);
        QFETCH(QString, user);
        QFETCH(QString, password);
        QFETCH(bool, announced);
        QFETCH(int, failure);
        QFETCH(QString, logged);
        QFETCH(bool, quit);
        const QString local = QStringLiteral("127.0.0.1:%1");
        server.replace(QStringLiteral("%1"), local.arg(m_dovecot.plainPort))
            .replace(QStringLiteral("%2"), local.arg(m_dovecot.tlsPort));
        const qsizetype logStart = m_dovecot.log().size();
        const QList<MailboxRecord> records
            = poll({{server, user, password},
                       {QStringLiteral("pop3://") + local.arg(m_dovecot.plainPort),
                           QStringLiteral("next"), QStringLiteral("pw-next")}},
                5000, failure == int(Failure::Certificate) ? QList<QSslCertificate>() : m_testCa);
        QCOMPARE(records.size(), 2);
        QCOMPARE(records.at(0).announced, announced);
        QCOMPARE(int(records.at(0).failure), failure);
        QVERIFY(records.at(1).announced && records.at(1).failure == Failure::None);
        if (failure == int(Failure::Certificate))
            QVERIFY2(
                records.at(0).detail.contains(QStringLiteral("certificate"), Qt::CaseInsensitive),
                qPrintable(records.at(0).detail));

        const QRegularExpression nextLoggedOut(QStringLiteral(R"(pop3\(next\).*Logged out)"));
        QTRY_VERIFY(m_dovecot.log().mid(logStart).contains(nextLoggedOut));
        QString lines;
        for (const QString &line : m_dovecot.log().mid(logStart).split(u'\n')) {
            if (line.contains(u'<' + user + u'>') || line.contains(u'(' + user + u')'))
                lines += line + u'\n';
        }
        QVERIFY2(lines.contains(QRegularExpression(logged)), qPrintable(lines));
        const QRegularExpression loggedOut(
            QStringLiteral("logged out|logging out"), QRegularExpression::CaseInsensitiveOption);
        QVERIFY2(lines.contains(loggedOut) == quit, qPrintable(lines));
    }

    void hostileMailboxEndsWithinItsTimeOut_data()
    {
        QTest::addColumn<Script>("script");
        QTest::addColumn<int>("failure");
        QTest::addColumn<bool>("announced");
        QTest::addColumn<QByteArray>("received");
        const auto row = [](const char *name, const Script &script, Failure failure, bool announced,
                             const QByteArray &received) {
            QTest::newRow(name) << script << int(failure) << announced << received;
        };
        const QByteArray dialogue = "USER anna\r\nPASS secret\r\nLIST\r\nQUIT\r\n";
        QByteArray garbage(4096, '\0');
        QRandomGenerator random(7);
        for (char &byte : garbage)
            byte = char(random.bounded(256));
        row("silent after connect", greeting(""), Failure::TimedOut, false, "");
        row("greeting without +OK", greeting("-ERR not today\r\n"), Failure::None, false, "");
        row("garbage bytes", greeting(garbage.replace('\n', 'x')), Failure::LineTooLong, false, "");
        row("garbage line", greeting("\x01\xfe\x80garbage\r\n"), Failure::None, false, "");
        row("10 MB line without CR LF", greeting(QByteArray(10 << 20, 'A')), Failure::LineTooLong,
            false, "");
        row("several replies in one packet",
            greeting("+OK ready\r\n+OK\r\n+OK\r\n+OK 12 1200\r\n.\r\n+OK bye\r\n"), Failure::None,
            true, dialogue);
        row(
            "scan lines past the size limit",
            [](ScriptedPop3Server &s) {
                s.answer = [](QTcpSocket *socket, const QByteArray &command) {
                    socket->write(command == "LIST" ? QByteArray("+OK 0 0\r\n")
                            : command == "QUIT"     ? QByteArray("1 1\r\n").repeated(20000)
                                                    : QByteArray("+OK\r\n"));
                };
            },
            Failure::TooMuchData, false, dialogue);
        row(
            "closes in the middle of a reply",
            [](ScriptedPop3Server &s) {
                s.answer = [](QTcpSocket *socket, const QByteArray &) {
                    socket->write("+O");
                    socket->disconnectFromHost();
                };
            },
            Failure::None, false, "USER anna\r\n");
        // One byte every 60 ms against a time-out of one second, as one a second would be
        // against the real fifteen.
        row(
            "one byte at a time, slowly",
            [](ScriptedPop3Server &s) {
                s.piece = 1;
                s.gapMs = 60;
                s.greet = [&s](QTcpSocket *socket) {
                    s.say(socket, "+OK a slow server says hello\r\n");
                };
            },
            Failure::TimedOut, false, "");
        // Every reply cut at every multiple of `at` bytes, 5 ms between the pieces.
        for (int at = 1; at <= 16; ++at) {
            QTest::addRow("replies split every %d bytes", at)
                << Script([at](ScriptedPop3Server &s) { s.piece = at; }) << int(Failure::None)
                << true << dialogue;
        }
    }

    void hostileMailboxEndsWithinItsTimeOut()
    {
        QFETCH(Script, script);
        QFETCH(int, failure);
        QFETCH(bool, announced);
        QFETCH(QByteArray, received);
        ScriptedPop3Server server, next;
        script(server);
        QElapsedTimer clock;
        clock.start();
        const QList<MailboxRecord> records = poll({anna(server), anna(next)}, 1000);
        // The next mailbox takes a few milliseconds; the slack is for a loaded machine.
        QVERIFY2(clock.elapsed() < 1000 + 3000, "the mailbox outlived its time-out");
        QCOMPARE(records.size(), 2);
        QCOMPARE(int(records.at(0).failure), failure);
        QCOMPARE(records.at(0).announced, announced);
        QVERIFY(records.at(1).announced && records.at(1).failure == Failure::None);
        QTRY_VERIFY(server.allClosed() && next.allClosed());
        QCOMPARE(server.received, received);
    }

    void fourSilentMailboxesHoldThePollForFourTimeOuts()
    {
        // Scaled down: with the real 15 seconds this poll takes a minute.
        ScriptedPop3Server silent[4];
        for (ScriptedPop3Server &server : silent)
            greeting("")(server);
        QElapsedTimer clock;
        clock.start();
        const QList<MailboxRecord> records
            = poll({anna(silent[0]), anna(silent[1]), anna(silent[2]), anna(silent[3])}, 200);
        const qint64 elapsed = clock.elapsed();
        QCOMPARE(records.size(), 4);
        for (const MailboxRecord &record : records)
            QCOMPARE(int(record.failure), int(Failure::TimedOut));
        // Timers may fire up to 5 % early.
        QVERIFY2(elapsed >= 4 * 200 * 95 / 100, qPrintable(QString::number(elapsed)));
        QTRY_VERIFY(std::all_of(silent, silent + 4, [](auto &s) { return s.allClosed(); }));
    }

private:
    static MailAccount anna(const ScriptedPop3Server &server)
    {
        return {server.address(), QStringLiteral("anna"), QStringLiteral("secret")};
    }

    QList<MailboxRecord> poll(
        const QList<MailAccount> &accounts, int timeout, const QList<QSslCertificate> &trusted = {})
    {
        Prefer p;
        for (int i = 0; i < accounts.size(); ++i) {
            const auto set = [&p, i](const char *name, const QString &value) {
                p.setValueText(*Prefer::field(QLatin1String(name) + QString::number(i + 1)), value);
            };
            set("MailSrv", accounts.at(i).server);
            set("User", accounts.at(i).user);
            set("Pwd", accounts.at(i).password);
            set("EnableMailCheck", QStringLiteral("-1"));
        }
        MailChecker checker;
        checker.InitForPOP3(false, p);
        checker.setMailboxTimeout(timeout);
        checker.setExtraCaCertificates(trusted);
        QList<MailboxRecord> records;
        connect(&checker, &MailChecker::mailboxStarted,
            [&records] { records.append(MailboxRecord()); });
        connect(&checker, &MailChecker::newMail, [&records] { records.last().announced = true; });
        connect(&checker, &MailChecker::mailboxFailed,
            [&records](const QString &, Failure failure, const QString &detail) {
                records.last().failure = failure;
                records.last().detail = detail;
            });
        QSignalSpy finished(&checker, &MailChecker::pollFinished);
        m_sinceBeat.start();
        m_beat.start(5);
        checker.poll();
        if (!finished.wait(accounts.size() * timeout + 10000))
            qWarning("the poll did not finish");
        m_beat.stop();
        return records;
    }

    DovecotServer m_dovecot;
    QList<QSslCertificate> m_testCa;
    QTimer m_beat;
    QElapsedTimer m_sinceBeat;
    qint64 m_worstLateness = 0;
};

QTEST_GUILESS_MAIN(MailServerTest)
#include "mailserver_test.moc"
