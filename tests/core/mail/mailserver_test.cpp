#include "core/mail/mailchecker.h"
#include "core/prefs/prefer.h"
#include "scriptedpop3server.h"

#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <signal.h>
#include <sys/prctl.h>

using Failure = MailboxCheck::Failure;
using Says = QList<QByteArray>; // pairs of a command ("" on connecting) and its reply
Q_DECLARE_METATYPE(MailAccount)

// The mail check against servers on 127.0.0.1, a real Dovecot and scripted ones that
// misbehave. Each case polls the mailbox under test and then one with mail, which must
// be checked whatever the first did, while the event loop keeps running.
class MailServerTest : public QObject
{
    Q_OBJECT

private slots:
    // A Dovecot of the test's own, configured in a temporary folder: any user whose
    // password is "pw-" and the name, POP3 (with STLS) and POP3S on free ports.
    void initTestCase()
    {
        const QString dir = m_dir.path();
        for (const auto &[user, messages] : {std::pair {"one", 1}, std::pair {"twelve", 12}}) {
            QDir().mkpath(dir + QStringLiteral("/mail/%1/new").arg(QLatin1String(user)));
            for (int i = 1; i <= messages; ++i) {
                QFile message(
                    dir + QStringLiteral("/mail/%1/new/%2").arg(QLatin1String(user)).arg(i));
                QVERIFY(message.open(QIODevice::WriteOnly));
                message.write("Subject: " + QByteArray::number(i) + "\r\n\r\nHello.\r\n");
            }
        }
        QProcess::execute(QStringLiteral("chown"),
            {QStringLiteral("-R"), QStringLiteral("dovecot:dovecot"),
                dir + QStringLiteral("/mail")});
        QFile::setPermissions(dir, QFile::permissions(dir) | QFile::ExeOther);
        QFile config(dir + QStringLiteral("/dovecot.conf"));
        QVERIFY(config.open(QIODevice::WriteOnly));
        // An unreachable penalty service lets a failed login delay none of the next.
        config.write(QStringLiteral(
            "base_dir = %1/run\nstate_dir = %1\nlog_path = %1/log\nprotocols = pop3\n"
            "listen = 127.0.0.1\nssl_cert = <%2/server.crt\nssl_key = <%2/server.key\n"
            "disable_plaintext_auth = no\nauth_failure_delay = 0\nfirst_valid_uid = 1\n"
            "mail_uid = dovecot\nmail_gid = dovecot\nmail_location = maildir:%1/mail/%u\n"
            "passdb {\n driver = static\n args = password=pw-%u\n}\n"
            "userdb {\n driver = static\n args = allow_all_users=yes\n}\n"
            "service pop3-login {\n inet_listener pop3 {\n port = %3\n }\n"
            " inet_listener pop3s {\n port = %4\n ssl = yes\n }\n}\n"
            "service anvil {\n unix_listener anvil-auth-penalty {\n mode = 0\n }\n}\n")
                         .arg(dir, QStringLiteral(VANTRELL_SOURCE_DIR "/tests/support/mailcerts"))
                         .arg(m_plainPort)
                         .arg(m_tlsPort)
                         .toUtf8());
        config.close();
        m_dovecot.setProcessChannelMode(QProcess::ForwardedChannels);
        // A test that crashes takes its server with it.
        m_dovecot.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
        m_dovecot.start(QStringLiteral("/usr/sbin/dovecot"),
            {QStringLiteral("-F"), QStringLiteral("-c"), config.fileName()});
        QVERIFY2(m_dovecot.waitForStarted(), "no dovecot (scripts/install-deps.sh installs it)");
        QTRY_VERIFY_WITH_TIMEOUT(log().contains(QStringLiteral("starting up")), 10000);
        m_testCa = QSslCertificate::fromPath(
            QStringLiteral(VANTRELL_SOURCE_DIR "/tests/support/mailcerts/ca.crt"));
        QCOMPARE(m_testCa.size(), 1);
        // A fast timer whose worst lateness shows how long a poll held the event loop.
        m_beat.setTimerType(Qt::PreciseTimer);
        connect(&m_beat, &QTimer::timeout, this,
            [this] { m_worstLateness = qMax(m_worstLateness, m_sinceBeat.restart() - 5); });
        // Each mailbox's outcome: "mail", or its failure and the reason. The checker lives
        // on after each poll, so a connection it left open would stay open.
        connect(&m_checker, &MailChecker::mailboxStarted, this,
            [this] { m_outcomes.append(QString()); });
        connect(&m_checker, &MailChecker::newMail, this,
            [this] { m_outcomes.last() += QStringLiteral("mail"); });
        connect(&m_checker, &MailChecker::mailboxFailed, this,
            [this](const QString &, Failure failure, const QString &detail) {
                static const char *const names[] = {"", "timed out", "socket error", "certificate",
                    "line too long", "too much data", "STLS refused", "bad address", "bad account"};
                m_outcomes.last() += QLatin1String(names[int(failure)])
                    + (detail.isEmpty() ? QString() : u": " + detail);
            });
    }

    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void cleanupTestCase()
    {
        m_dovecot.terminate();
        m_dovecot.waitForFinished();
        qInfo("worst event-loop lateness during the polls: %lld ms", m_worstLateness);
        QVERIFY2(m_worstLateness < 1000, "the event loop stalled during a poll");
    }

    void mailboxEndsAndTheNextIsChecked_data()
    {
        QTest::addColumn<MailAccount>("account"); // %1 Dovecot's POP3 port, %2 its POP3S port
        QTest::addColumn<Says>("says"); // what a scripted server says, when no account
        QTest::addColumn<int>("piece");
        QTest::addColumn<int>("gapMs");
        QTest::addColumn<QString>("outcome");
        // A pattern in Dovecot's log, or exactly what a scripted server received.
        QTest::addColumn<QString>("seen");
        const auto dovecot = [](const char *name, const char *server, const char *user,
                                 const char *password, const char *outcome, const char *logged) {
            QTest::newRow(name) << MailAccount {QString::fromLatin1(server),
                QString::fromLatin1(user), QString::fromLatin1(password)}
                                << Says() << 0 << 0 << QString::fromLatin1(outcome)
                                << QString::fromLatin1(logged);
        };
        const auto row = [](const QByteArray &name, const Says &says, const char *outcome,
                             const char *received, int piece = 0, int gapMs = 5) {
            QTest::newRow(name.constData())
                << MailAccount() << says << piece << gapMs << QString::fromLatin1(outcome)
                << QString::fromLatin1(received);
        };
        // A refused password is no failure the user is told about; no QUIT follows it. The
        // password never reaches a server whose certificate is not trusted.
        dovecot(
            "empty mailbox", "pop3://%1", "empty", "pw-empty", "", R"(pop3\(empty\).*Logged out)");
        dovecot("one message, upgraded by STLS", "%1", "one", "pw-one", "mail",
            R"(Login: user=<one>.*TLS[\s\S]*pop3\(one\).*Logged out)");
        dovecot("twelve messages in clear", "pop3://%1", "twelve", "pw-twelve", "mail",
            R"(Login: user=<twelve>(?!.*TLS)[\s\S]*pop3\(twelve\).*Logged out)");
        dovecot("twelve messages over TLS", "pop3s://%2", "twelve", "pw-twelve", "mail",
            R"(Login: user=<twelve>.*TLS[\s\S]*pop3\(twelve\).*Logged out)");
        dovecot("wrong password", "pop3://%1", "twelve", "wrong", "",
            R"(Connection closed \(auth failed.*user=<twelve>)");
        dovecot("untrusted certificate, TLS first", "pop3s://%2", "one", "pw-one",
            "certificate: .*certificate.*", R"(Connection closed \(no auth attempts.*TLS)");
        dovecot("untrusted certificate, STLS", "%1", "one", "pw-one",
            "certificate: .*certificate.*", R"(Connection closed \(no auth attempts.*TLS)");
        const char *dialogue = "USER anna\r\nPASS secret\r\nLIST\r\nQUIT\r\n";
        QByteArray garbage(4096, '\0');
        QRandomGenerator random(7);
        for (char &byte : garbage)
            byte = char(random.bounded(256));
        row("silent after connect", {"", ""}, "timed out", "");
        row("greeting without +OK", {"", "-ERR not today\r\n"}, "", "");
        row("garbage bytes", {"", garbage.replace('\n', 'x')}, "line too long", "");
        row("garbage line", {"", "\x01\xfe\x80garbage\r\n"}, "", "");
        row("10 MB line without CR LF", {"", QByteArray(10 << 20, 'A')}, "line too long", "");
        row("several replies in one packet",
            {"", "+OK ready\r\n+OK\r\n+OK\r\n+OK 12 1200\r\n.\r\n+OK bye\r\n"}, "mail", dialogue);
        row("scan lines past the size limit",
            {"LIST", "+OK 0 0\r\n", "QUIT", QByteArray("1 1\r\n").repeated(20000)}, "too much data",
            dialogue);
        row("closes in the middle of a reply", {"USER", "+O"}, "", "USER anna\r\n");
        // One byte every 60 ms against a time-out of one second, as one a second would be
        // against the real fifteen.
        row("one byte at a time, slowly", {"", "+OK a slow server says hello\r\n"}, "timed out", "",
            1, 60);
        // Every reply cut at every multiple of `at` bytes, 5 ms between the pieces.
        for (int at = 1; at <= 16; ++at)
            row("replies split every " + QByteArray::number(at) + " bytes", {}, "mail", dialogue,
                at);
    }

    void mailboxEndsAndTheNextIsChecked()
    {
        QFETCH(MailAccount, account);
        QFETCH(Says, says);
        QFETCH(int, piece);
        QFETCH(int, gapMs);
        QFETCH(QString, outcome);
        QFETCH(QString, seen);
        ScriptedPop3Server scripted, next;
        const bool isScripted = account.server.isEmpty();
        for (int i = 0; i + 1 < says.size(); i += 2)
            scripted.says.insert(says.at(i), says.at(i + 1));
        scripted.piece = piece;
        scripted.gapMs = gapMs;
        if (isScripted)
            account = anna(scripted);
        const QString local = QStringLiteral("127.0.0.1:%1");
        account.server.replace(QStringLiteral("%1"), local.arg(m_plainPort))
            .replace(QStringLiteral("%2"), local.arg(m_tlsPort));
        const qsizetype logStart = log().size();
        const int timeout = isScripted ? 1000 : 5000;
        QElapsedTimer clock;
        clock.start();
        const QStringList outcomes = poll({account, anna(next)}, timeout,
            outcome.startsWith(QStringLiteral("certificate")) ? QList<QSslCertificate>()
                                                              : m_testCa);
        // The slack is for a loaded machine.
        QVERIFY2(clock.elapsed() < timeout + 3000, "the mailbox outlived its time-out");
        QCOMPARE(outcomes.size(), 2);
        QVERIFY2(QRegularExpression(u'^' + outcome + u'$').match(outcomes.at(0)).hasMatch(),
            qPrintable(outcomes.at(0)));
        QCOMPARE(outcomes.at(1), QStringLiteral("mail"));
        QTRY_COMPARE(scripted.openConnections + next.openConnections, 0);
        if (isScripted)
            QCOMPARE(QString::fromLatin1(scripted.received), seen);
        else
            QTRY_VERIFY2(log().mid(logStart).contains(QRegularExpression(seen)),
                qPrintable(log().mid(logStart)));
    }

    void fourSilentMailboxesHoldThePollForFourTimeOuts()
    {
        // Scaled down: with the real 15 seconds this poll takes a minute.
        ScriptedPop3Server silent[4];
        for (ScriptedPop3Server &server : silent)
            server.says.insert("", "");
        QElapsedTimer clock;
        clock.start();
        const QStringList outcomes
            = poll({anna(silent[0]), anna(silent[1]), anna(silent[2]), anna(silent[3])}, 200);
        // Timers may fire up to 5 % early.
        QVERIFY2(
            clock.elapsed() >= 4 * 200 * 95 / 100, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(outcomes, QStringList(4, QStringLiteral("timed out")));
        QTRY_VERIFY(
            std::all_of(silent, silent + 4, [](const auto &s) { return s.openConnections == 0; }));
    }

private:
    static MailAccount anna(const ScriptedPop3Server &server)
    {
        return {server.address(), QStringLiteral("anna"), QStringLiteral("secret")};
    }

    QString log() const
    {
        QFile file(m_dir.path() + QStringLiteral("/log"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    QStringList poll(
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
        m_checker.InitForPOP3(false, p);
        m_checker.setMailboxTimeout(timeout);
        m_checker.setExtraCaCertificates(trusted);
        m_outcomes.clear();
        QSignalSpy finished(&m_checker, &MailChecker::pollFinished);
        m_sinceBeat.start();
        m_beat.start(5);
        m_checker.poll();
        if (!finished.wait(accounts.size() * timeout + 10000))
            qWarning("the poll did not finish");
        m_beat.stop();
        return m_outcomes;
    }

    QTemporaryDir m_dir;
    QProcess m_dovecot;
    MailChecker m_checker;
    QStringList m_outcomes;
    const quint16 m_plainPort = freePort(), m_tlsPort = freePort();
    QList<QSslCertificate> m_testCa;
    QTimer m_beat;
    QElapsedTimer m_sinceBeat;
    qint64 m_worstLateness = 0;

    static quint16 freePort()
    {
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost);
        return probe.serverPort();
    }
};

QTEST_GUILESS_MAIN(MailServerTest)
#include "mailserver_test.moc"
