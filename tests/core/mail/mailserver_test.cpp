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
using Says = QList<QByteArray>; // pairs of a command ("" on connecting) and its reply
Q_DECLARE_METATYPE(MailAccount)

namespace {
struct MailboxRecord
{
    bool announced = false;
    Failure failure = Failure::None;
    QString detail;
};

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
        const QString problem
            = m_dovecot.start({{QStringLiteral("one"), 1}, {QStringLiteral("twelve"), 12}});
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

    void mailboxEndsAndTheNextIsChecked_data()
    {
        QTest::addColumn<MailAccount>("account"); // %1 Dovecot's POP3 port, %2 its POP3S port
        QTest::addColumn<Says>("says"); // what a scripted server says, when no account
        QTest::addColumn<int>("piece");
        QTest::addColumn<int>("gapMs");
        QTest::addColumn<int>("failure");
        QTest::addColumn<bool>("announced");
        // A pattern in Dovecot's log, or exactly what a scripted server received.
        QTest::addColumn<QString>("seen");
        const auto dovecot
            = [](const char *name, const char *server, const char *user, const char *password,
                  Failure failure, bool announced, const char *logged) {
                  QTest::newRow(name) << MailAccount {QString::fromLatin1(server),
                      QString::fromLatin1(user), QString::fromLatin1(password)}
                                      << Says() << 0 << 0 << int(failure) << announced
                                      << QString::fromLatin1(logged);
              };
        const auto row = [](const QByteArray &name, const Says &says, Failure failure,
                             bool announced, const char *received, int piece = 0, int gap = 5) {
            QTest::newRow(name.constData()) << MailAccount() << says << piece << gap << int(failure)
                                            << announced << QString::fromLatin1(received);
        };
        // A refused password is no failure the user is told about; no QUIT follows it. The
        // password never reaches a server whose certificate is not trusted.
        dovecot("empty mailbox", "pop3://%1", "empty", "pw-empty", Failure::None, false,
            R"(pop3\(empty\).*Logged out)");
        dovecot("one message, upgraded by STLS", "%1", "one", "pw-one", Failure::None, true,
            R"(Login: user=<one>.*TLS[\s\S]*pop3\(one\).*Logged out)");
        dovecot("twelve messages in clear", "pop3://%1", "twelve", "pw-twelve", Failure::None, true,
            R"(Login: user=<twelve>(?!.*TLS)[\s\S]*pop3\(twelve\).*Logged out)");
        dovecot("twelve messages over TLS", "pop3s://%2", "twelve", "pw-twelve", Failure::None,
            true, R"(Login: user=<twelve>.*TLS[\s\S]*pop3\(twelve\).*Logged out)");
        dovecot("wrong password", "pop3://%1", "twelve", "wrong", Failure::None, false,
            R"(Connection closed \(auth failed.*user=<twelve>)");
        dovecot("untrusted certificate, TLS first", "pop3s://%2", "one", "pw-one",
            Failure::Certificate, false, R"(Connection closed \(no auth attempts.*TLS)");
        dovecot("untrusted certificate, STLS", "%1", "one", "pw-one", Failure::Certificate, false,
            R"(Connection closed \(no auth attempts.*TLS)");
        const char *dialogue = "USER anna\r\nPASS secret\r\nLIST\r\nQUIT\r\n";
        QByteArray garbage(4096, '\0');
        QRandomGenerator random(7);
        for (char &byte : garbage)
            byte = char(random.bounded(256));
        row("silent after connect", {"", ""}, Failure::TimedOut, false, "");
        row("greeting without +OK", {"", "-ERR not today\r\n"}, Failure::None, false, "");
        row("garbage bytes", {"", garbage.replace('\n', 'x')}, Failure::LineTooLong, false, "");
        row("garbage line", {"", "\x01\xfe\x80garbage\r\n"}, Failure::None, false, "");
        row("10 MB line without CR LF", {"", QByteArray(10 << 20, 'A')}, Failure::LineTooLong,
            false, "");
        row("several replies in one packet",
            {"", "+OK ready\r\n+OK\r\n+OK\r\n+OK 12 1200\r\n.\r\n+OK bye\r\n"}, Failure::None, true,
            dialogue);
        row("scan lines past the size limit",
            {"LIST", "+OK 0 0\r\n", "QUIT", QByteArray("1 1\r\n").repeated(20000)},
            Failure::TooMuchData, false, dialogue);
        row("closes in the middle of a reply", {"USER", "+O"}, Failure::None, false,
            "USER anna\r\n");
        // One byte every 60 ms against a time-out of one second, as one a second would be
        // against the real fifteen.
        row("one byte at a time, slowly", {"", "+OK a slow server says hello\r\n"},
            Failure::TimedOut, false, "", 1, 60);
        // Every reply cut at every multiple of `at` bytes, 5 ms between the pieces.
        for (int at = 1; at <= 16; ++at)
            row("replies split every " + QByteArray::number(at) + " bytes", {}, Failure::None, true,
                dialogue, at);
    }

    void mailboxEndsAndTheNextIsChecked()
    {
        QFETCH(MailAccount, account);
        QFETCH(Says, says);
        QFETCH(int, piece);
        QFETCH(int, gapMs);
        QFETCH(int, failure);
        QFETCH(bool, announced);
        QFETCH(QString, seen);
        ScriptedPop3Server scripted, next;
        const bool script = account.server.isEmpty();
        for (int i = 0; i + 1 < says.size(); i += 2)
            scripted.says.insert(says.at(i), says.at(i + 1));
        scripted.piece = piece;
        scripted.gapMs = gapMs;
        if (script)
            account = anna(scripted);
        const QString local = QStringLiteral("127.0.0.1:%1");
        account.server.replace(QStringLiteral("%1"), local.arg(m_dovecot.plainPort))
            .replace(QStringLiteral("%2"), local.arg(m_dovecot.tlsPort));
        const qsizetype logStart = m_dovecot.log().size();
        const int timeout = script ? 1000 : 5000;
        QElapsedTimer clock;
        clock.start();
        const QList<MailboxRecord> records = poll({account, anna(next)}, timeout,
            failure == int(Failure::Certificate) ? QList<QSslCertificate>() : m_testCa);
        // The slack is for a loaded machine.
        QVERIFY2(clock.elapsed() < timeout + 3000, "the mailbox outlived its time-out");
        QCOMPARE(records.size(), 2);
        QCOMPARE(int(records.at(0).failure), failure);
        QCOMPARE(records.at(0).announced, announced);
        QVERIFY(records.at(1).announced && records.at(1).failure == Failure::None);
        if (failure == int(Failure::Certificate))
            QVERIFY2(
                records.at(0).detail.contains(QStringLiteral("certificate"), Qt::CaseInsensitive),
                qPrintable(records.at(0).detail));
        QTRY_COMPARE(scripted.openConnections + next.openConnections, 0);
        if (script)
            QCOMPARE(QString::fromLatin1(scripted.received), seen);
        else
            QTRY_VERIFY2(m_dovecot.log().mid(logStart).contains(QRegularExpression(seen)),
                qPrintable(m_dovecot.log().mid(logStart)));
    }

    void fourSilentMailboxesHoldThePollForFourTimeOuts()
    {
        // Scaled down: with the real 15 seconds this poll takes a minute.
        ScriptedPop3Server silent[4];
        for (ScriptedPop3Server &server : silent)
            server.says.insert("", "");
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
        QTRY_VERIFY(
            std::all_of(silent, silent + 4, [](const auto &s) { return s.openConnections == 0; }));
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
