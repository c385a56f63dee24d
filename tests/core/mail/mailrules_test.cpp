#include "core/mail/mailchecker.h"
#include "core/mail/mailschedule.h"
#include "core/mail/mailserveraddress.h"
#include "core/mail/pop3dialogue.h"
#include "core/prefs/prefer.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using Replies = QList<QByteArray>;

class MailRulesTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    // Each reply in turn, and what the dialogue did: the bytes it sent and its signs,
    // [tls] to begin the handshake, [mail], [refused] for a refused STLS and [done].
    // The reply "<handshake>" stands for the finished TLS handshake and is written down.
    void dialogueAnswersEachReply_data()
    {
        QTest::addColumn<bool>("askForStartTls");
        QTest::addColumn<Replies>("replies");
        QTest::addColumn<QByteArray>("transcript");
        const auto row
            = [](const char *name, bool tls, const Replies &replies, const QByteArray &transcript) {
                  QTest::newRow(name) << tls << replies << transcript;
              };
        const QByteArray login = "USER anna\r\nPASS secret\r\n";
        const QByteArray list = login + "LIST\r\n";
        row("whole dialogue", false,
            {"+OK ready", "+OK", "+OK", "+OK 2 messages", "1 10", "2 20", ".", "+OK bye"},
            list + "QUIT\r\n[mail][done]");
        row("scan lines are no replies", false,
            {"+OK ready", "+OK", "+OK", "+OK 2 messages", "1 10", "2 20"}, list + "QUIT\r\n[mail]");
        row("refused greeting", false, {"-ERR busy"}, "[done]");
        row("lower-case ok is refused", false, {"+ok"}, "[done]");
        row("refused user", false, {"+OK", "-ERR who?"}, "USER anna\r\n[done]");
        row("refused password, no quit", false, {"+OK", "+OK", "-ERR [AUTH] failed"},
            login + "[done]");
        row("refused list waits for the time-out", false, {"+OK", "+OK", "+OK", "-ERR 5"}, list);
        row("any fifth reply ends it", false, {"+OK", "+OK", "+OK", "-ERR", "-ERR"},
            list + "[done]");
        row("nothing after the end", false, {"-ERR", "+OK", "+OK"}, "[done]");
        // Only the fifth character of the LIST reply counts.
        for (const char *reply : {"+OK 1 messages (512 octets)", "+OK 9 9000", "+OK 10 messages",
                 "+OK 12 1200", "+OK 100"})
            row(reply, false, {"+OK", "+OK", "+OK", reply}, list + "QUIT\r\n[mail]");
        for (const char *reply : {"+OK 0 messages (0 octets)", "+OK x messages", "+OK  3", "+OK"})
            row(reply, false, {"+OK", "+OK", "+OK", reply}, list + "QUIT\r\n");
        // Clear text injected after STLS's go-ahead is no reply.
        row("STLS offered", true,
            {"+OK ready", "+OK", "TOP", "stls", "USER", ".", "+OK begin", "+OK injected",
                "<handshake>", "+OK", "+OK", "+OK 1 1", ".", "+OK"},
            "CAPA\r\nSTLS\r\n[tls]<handshake>" + list + "QUIT\r\n[mail][done]");
        row("STLS not offered", true, {"+OK ready", "+OK", "TOP", "USER", "."},
            "CAPA\r\nUSER anna\r\n");
        row("no CAPA", true, {"+OK ready", "-ERR unknown"}, "CAPA\r\nUSER anna\r\n");
        row("only a word that contains STLS", true, {"+OK", "+OK", "XSTLS", "."},
            "CAPA\r\nUSER anna\r\n");
        row("STLS refused, no password", true, {"+OK", "+OK", "STLS", ".", "-ERR not now", "+OK"},
            "CAPA\r\nSTLS\r\n[refused][done]");
    }

    void dialogueAnswersEachReply()
    {
        QFETCH(bool, askForStartTls);
        QFETCH(Replies, replies);
        QFETCH(QByteArray, transcript);
        Pop3Dialogue dialogue("anna", "secret", askForStartTls);
        QByteArray said;
        for (const QByteArray &reply : replies) {
            const bool handshake = reply == "<handshake>";
            said += handshake ? reply : QByteArray();
            const Pop3Dialogue::Reaction r
                = handshake ? dialogue.tlsEstablished() : dialogue.reply(reply);
            said += r.send + (r.startTls ? "[tls]" : "") + (r.newMail ? "[mail]" : "")
                + (r.tlsRefused ? "[refused]" : "") + (r.done ? "[done]" : "");
        }
        QCOMPARE(said, transcript);
        QCOMPARE(dialogue.isDone(), said.endsWith("[done]"));
        QCOMPARE(dialogue.quitSent(), said.contains("QUIT"));
    }

    // The address as "host port security", security 0 for STLS when offered, 1 for clear
    // text only, 2 for TLS from the first byte; " 0 0" for no address.
    void serverAddressForms_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("address");
        const auto row = [](const char *text, const char *address) {
            QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(address);
        };
        row(" pop.example.org ", "pop.example.org 110 0");
        row("pop.example.org:1110", "pop.example.org 1110 0");
        row("pop3://pop.example.org", "pop.example.org 110 1");
        row("POP3://pop.example.org:2110/", "pop.example.org 2110 1");
        row("pop3s://pop.example.org", "pop.example.org 995 2");
        row("pop3s://127.0.0.1:1995", "127.0.0.1 1995 2");
        row("::1", "::1 110 0");
        row("[::1]:1110", "::1 1110 0");
        for (const char *invalid : {"  ", "imap://pop.example.org", "pop.example.org:70000",
                 "pop.example.org:0", "pop.example.org:pop", "pop3://pop.example.org/inbox",
                 "anna@pop.example.org", "pop example.org"})
            row(invalid, " 0 0");
    }

    void serverAddressForms()
    {
        QFETCH(QString, text);
        QFETCH(QString, address);
        const MailServerAddress parsed = MailServerAddress::parse(text);
        QCOMPARE(
            QStringLiteral("%1 %2 %3").arg(parsed.host).arg(parsed.port).arg(int(parsed.security)),
            address);
        QCOMPARE(parsed.isValid(), parsed.port != 0);
    }

    void pollIsDueAfterThePeriodAndAfterMidnight_data()
    {
        QTest::addColumn<double>("pollStart");
        QTest::addColumn<double>("now");
        QTest::addColumn<int>("interval");
        QTest::addColumn<bool>("due");
        QTest::newRow("one second early") << 1000.0 << 1299.0 << 5 << false;
        QTest::newRow("exactly the period") << 1000.0 << 1300.0 << 5 << true;
        QTest::newRow("clock set back a period") << 1000.0 << 700.0 << 5 << true;
        QTest::newRow("just after midnight") << 86390.0 << 5.0 << 5 << true;
        QTest::newRow("longest interval, not yet") << 0.0 << 32759.5 << 546 << false;
        QTest::newRow("longest interval") << 0.0 << 32760.0 << 546 << true;
        QTest::newRow("overflowing interval clamped") << 0.0 << 32760.0 << 547 << true;
        QTest::newRow("zero interval is a minute, not yet") << 10.0 << 69.0 << 0 << false;
        QTest::newRow("zero interval is a minute") << 10.0 << 70.0 << 0 << true;
        QTest::newRow("negative interval is a minute") << 10.0 << 70.0 << -3 << true;
        QTest::newRow("largest stored value") << 0.0 << 32760.0 << 32767 << true;
    }

    void pollIsDueAfterThePeriodAndAfterMidnight()
    {
        QFETCH(double, pollStart);
        QFETCH(double, now);
        QFETCH(int, interval);
        QFETCH(bool, due);
        const double period = MailSchedule::periodSeconds(qint16(interval));
        QVERIFY(period >= 60 && period <= 32760);
        QCOMPARE(MailSchedule::isDue(pollStart, now, period), due);
    }

    void firstPollComesOnePeriodAfterStart()
    {
        Prefer p;
        p.setCheckIntervall(5);
        p.setMailSrv2(QStringLiteral("pop3://127.0.0.1:1"));
        double clock = 86280; // 23:58, so the period ends after midnight
        MailChecker checker;
        checker.setClock([&clock] { return clock; });
        checker.InitForPOP3(true, p);
        QVERIFY(checker.isTimerActive());
        QCOMPARE(checker.period(), 300.0);
        QCOMPARE(checker.accounts().at(1).server, p.MailSrv2());
        QVERIFY(!MailChecker::anyEnabled(p));
        QSignalSpy finished(&checker, &MailChecker::pollFinished);
        QSignalSpy started(&checker, &MailChecker::mailboxStarted);
        // After midnight the distance on the clock is large: the poll runs, and with no
        // mailbox enabled it visits none.
        QList<int> polls;
        for (double at : {86399.0, 1.0, 2.0}) {
            clock = at;
            checker.timerTick();
            polls.append(int(finished.count()));
        }
        QCOMPARE(polls, (QList<int> {0, 1, 1}));
        QCOMPARE(started.count(), 0);
        checker.InitForPOP3(false, p);
        QVERIFY(!checker.isTimerActive());
    }
};

QTEST_GUILESS_MAIN(MailRulesTest)
#include "mailrules_test.moc"
