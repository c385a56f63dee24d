#include "core/mail/mailchecker.h"
#include "core/mail/mailschedule.h"
#include "core/mail/mailserveraddress.h"
#include "core/mail/pop3dialogue.h"
#include "core/prefs/prefer.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

namespace {
using Replies = QList<QByteArray>;

struct Outcome
{
    QByteArray sent;
    bool newMail = false;
    bool done = false;
};

Outcome talk(Pop3Dialogue &dialogue, const Replies &replies)
{
    Outcome outcome;
    for (const QByteArray &line : replies) {
        const Pop3Dialogue::Reaction reaction = dialogue.reply(line);
        outcome.sent += reaction.send;
        outcome.newMail = outcome.newMail || reaction.newMail;
        outcome.done = outcome.done || reaction.done;
    }
    return outcome;
}

const QByteArray login = "USER anna\r\nPASS secret\r\n";
} // namespace

class MailRulesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void dialogueFollowsTheStepRule_data()
    {
        QTest::addColumn<Replies>("replies");
        QTest::addColumn<QByteArray>("sent");
        QTest::addColumn<int>("step");
        QTest::addColumn<bool>("done");

        QTest::newRow("whole dialogue")
            << Replies {"+OK ready", "+OK", "+OK", "+OK 2 messages", "1 10", "2 20", ".", "+OK bye"}
            << login + "LIST\r\nQUIT\r\n"
            << 5 << true;
        QTest::newRow("scan lines are no replies")
            << Replies {"+OK ready", "+OK", "+OK", "+OK 2 messages", "1 10", "2 20"}
            << login + "LIST\r\nQUIT\r\n"
            << 4 << false;
        QTest::newRow("refused greeting") << Replies {"-ERR busy"} << QByteArray() << 5 << true;
        QTest::newRow("lower-case ok is refused") << Replies {"+ok"} << QByteArray() << 5 << true;
        QTest::newRow("refused user")
            << Replies {"+OK", "-ERR who?"} << QByteArray("USER anna\r\n") << 5 << true;
        QTest::newRow("refused password, no quit")
            << Replies {"+OK", "+OK", "-ERR [AUTH] failed"} << login << 5 << true;
        QTest::newRow("refused list waits for the time-out") << Replies {"+OK", "+OK", "+OK",
            "-ERR later"} << login + "LIST\r\n" << 4 << false;
        QTest::newRow("any fifth reply ends it") << Replies {"+OK", "+OK", "+OK", "-ERR later",
            "-ERR"} << login + "LIST\r\n" << 5 << true;
        QTest::newRow("nothing after the end")
            << Replies {"-ERR", "+OK", "+OK"} << QByteArray() << 5 << true;
    }

    void dialogueFollowsTheStepRule()
    {
        QFETCH(Replies, replies);
        QFETCH(QByteArray, sent);
        QFETCH(int, step);
        QFETCH(bool, done);
        Pop3Dialogue dialogue("anna", "secret", false);
        const Outcome outcome = talk(dialogue, replies);
        QCOMPARE(outcome.sent, sent);
        QCOMPARE(dialogue.step(), step);
        QCOMPARE(outcome.done, done);
        QCOMPARE(dialogue.quitSent(), outcome.sent.endsWith("QUIT\r\n"));
    }

    void onlyTheFifthCharacterAnnouncesMail_data()
    {
        QTest::addColumn<QByteArray>("listReply");
        QTest::addColumn<bool>("announced");
        QTest::newRow("count 0") << QByteArray("+OK 0 messages (0 octets)") << false;
        QTest::newRow("count 1") << QByteArray("+OK 1 messages (512 octets)") << true;
        QTest::newRow("count 9") << QByteArray("+OK 9 9000") << true;
        QTest::newRow("count 10") << QByteArray("+OK 10 messages") << true;
        QTest::newRow("count 12") << QByteArray("+OK 12 1200") << true;
        QTest::newRow("count 100") << QByteArray("+OK 100") << true;
        QTest::newRow("not a digit") << QByteArray("+OK x messages") << false;
        QTest::newRow("two blanks") << QByteArray("+OK  3") << false;
        QTest::newRow("no count") << QByteArray("+OK") << false;
        QTest::newRow("refused") << QByteArray("-ERR 5") << false;
    }

    void onlyTheFifthCharacterAnnouncesMail()
    {
        QFETCH(QByteArray, listReply);
        QFETCH(bool, announced);
        Pop3Dialogue dialogue("anna", "secret", false);
        talk(dialogue, {"+OK", "+OK", "+OK"});
        const Pop3Dialogue::Reaction reaction = dialogue.reply(listReply);
        QCOMPARE(reaction.newMail, announced);
        // QUIT follows every good LIST reply, with or without mail.
        QCOMPARE(reaction.send, QByteArray(listReply.startsWith("+OK") ? "QUIT\r\n" : ""));
    }

    void startTlsComesBeforeUserWhenOffered_data()
    {
        QTest::addColumn<Replies>("capa");
        QTest::addColumn<QByteArray>("sent");
        QTest::addColumn<bool>("startTls");
        QTest::newRow("offered") << Replies {"+OK", "TOP", "stls", "USER", "."}
                                 << QByteArray("CAPA\r\nSTLS\r\n") << true;
        QTest::newRow("not offered")
            << Replies {"+OK", "TOP", "USER", "."} << QByteArray("CAPA\r\nUSER anna\r\n") << false;
        QTest::newRow("no capa") << Replies {"-ERR unknown"} << QByteArray("CAPA\r\nUSER anna\r\n")
                                 << false;
        QTest::newRow("only a word that contains it")
            << Replies {"+OK", "XSTLS", "."} << QByteArray("CAPA\r\nUSER anna\r\n") << false;
    }

    void startTlsComesBeforeUserWhenOffered()
    {
        QFETCH(Replies, capa);
        QFETCH(QByteArray, sent);
        QFETCH(bool, startTls);
        Pop3Dialogue dialogue("anna", "secret", true);
        Outcome outcome = talk(dialogue, Replies {"+OK ready"} + capa);
        QCOMPARE(outcome.sent, sent);
        QCOMPARE(dialogue.step(), 1);
        if (!startTls)
            return;
        Pop3Dialogue::Reaction reaction = dialogue.reply("+OK begin");
        QVERIFY(reaction.startTls);
        QVERIFY(reaction.send.isEmpty());
        // Clear text that follows the go-ahead is not a reply.
        QVERIFY(dialogue.reply("+OK injected").send.isEmpty());
        QCOMPARE(dialogue.tlsEstablished().send, QByteArray("USER anna\r\n"));
        outcome = talk(dialogue, {"+OK", "+OK", "+OK 1 1", ".", "+OK"});
        QCOMPARE(outcome.sent, QByteArray("PASS secret\r\nLIST\r\nQUIT\r\n"));
        QVERIFY(outcome.newMail);
        QVERIFY(outcome.done);
    }

    void refusedStartTlsEndsWithoutSendingThePassword()
    {
        Pop3Dialogue dialogue("anna", "secret", true);
        talk(dialogue, {"+OK", "+OK", "STLS", "."});
        const Pop3Dialogue::Reaction reaction = dialogue.reply("-ERR not now");
        QVERIFY(reaction.tlsRefused);
        QVERIFY(reaction.done);
        QVERIFY(reaction.send.isEmpty());
        QVERIFY(dialogue.reply("+OK").send.isEmpty());
    }

    void serverAddressForms_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("host");
        QTest::addColumn<int>("port");
        QTest::addColumn<int>("security");
        const int upgrade = int(MailServerAddress::Security::Opportunistic);
        const int plain = int(MailServerAddress::Security::Plain);
        const int tls = int(MailServerAddress::Security::Tls);
        const auto row
            = [](const char *name, const char *text, const char *host, int port, int security) {
                  QTest::newRow(name)
                      << QString::fromUtf8(text) << QString::fromUtf8(host) << port << security;
              };
        row("host", " pop.example.org ", "pop.example.org", 110, upgrade);
        row("host and port", "pop.example.org:1110", "pop.example.org", 1110, upgrade);
        row("plain scheme", "pop3://pop.example.org", "pop.example.org", 110, plain);
        row("plain scheme and port", "POP3://pop.example.org:2110/", "pop.example.org", 2110,
            plain);
        row("tls scheme", "pop3s://pop.example.org", "pop.example.org", 995, tls);
        row("tls scheme and port", "pop3s://127.0.0.1:1995", "127.0.0.1", 1995, tls);
        row("bare ipv6", "::1", "::1", 110, upgrade);
        row("ipv6 and port", "[::1]:1110", "::1", 1110, upgrade);
        row("empty", "  ", "", 0, upgrade);
        row("other scheme", "imap://pop.example.org", "", 0, upgrade);
        row("port too large", "pop.example.org:70000", "", 0, upgrade);
        row("port zero", "pop.example.org:0", "", 0, upgrade);
        row("not a port", "pop.example.org:pop", "", 0, upgrade);
        row("path", "pop3://pop.example.org/inbox", "", 0, upgrade);
        row("user part", "anna@pop.example.org", "", 0, upgrade);
        row("blank inside", "pop example.org", "", 0, upgrade);
    }

    void serverAddressForms()
    {
        QFETCH(QString, text);
        QFETCH(QString, host);
        QFETCH(int, port);
        QFETCH(int, security);
        const MailServerAddress address = MailServerAddress::parse(text);
        QCOMPARE(address.host, host);
        QCOMPARE(int(address.port), port);
        QCOMPARE(address.isValid(), address.port != 0);
        if (address.isValid())
            QCOMPARE(int(address.security), security);
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
        p.setUser2(QStringLiteral("anna"));
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
        clock = 86399;
        checker.timerTick();
        QCOMPARE(finished.count(), 0);
        // After midnight the distance on the clock is large: the poll runs, and with
        // no mailbox enabled it visits none.
        clock = 1;
        checker.timerTick();
        QCOMPARE(finished.count(), 1);
        QCOMPARE(started.count(), 0);
        clock = 2;
        checker.timerTick();
        QCOMPARE(finished.count(), 1);

        checker.InitForPOP3(false, p);
        QVERIFY(!checker.isTimerActive());
    }
};

QTEST_GUILESS_MAIN(MailRulesTest)
#include "mailrules_test.moc"
