#include "core/mail/mailchecker.h"
#include "core/prefs/prefer.h"
#include "dovecotserver.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QSslSocket>
#include <QTest>

namespace {
struct Visit
{
    QString server, user, password;
};

struct PollRecord
{
    QStringList started;
    QStringList announced;
    QStringList failed; // server and failure kind
    QStringList details;
};

using Failure = MailboxCheck::Failure;
} // namespace

// The mail check against a real Dovecot on 127.0.0.1.
class MailServerTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        QVERIFY2(QSslSocket::supportsSsl(), "Qt has no TLS backend");
        m_server.addUser(QStringLiteral("empty"), QStringLiteral("pw-empty"), 0);
        m_server.addUser(QStringLiteral("one"), QStringLiteral("pw-one"), 1);
        m_server.addUser(QStringLiteral("twelve"), QStringLiteral("pw-twelve"), 12);
        const QString problem = m_server.start();
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        m_testCa = QSslCertificate::fromPath(
            DovecotServer::certificateFolder() + QStringLiteral("/ca.crt"));
        QCOMPARE(m_testCa.size(), 1);
    }

    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void cleanupTestCase() { m_server.stop(); }

    void emptyMailboxAnnouncesNothingAndSaysQuit()
    {
        const PollRecord record
            = poll({{plain(), QStringLiteral("empty"), QStringLiteral("pw-empty")}});
        QCOMPARE(record.started, QStringList {plain()});
        QVERIFY(record.announced.isEmpty());
        QVERIFY(record.failed.isEmpty());
        QTRY_VERIFY(sessionLog(QStringLiteral("empty"))
                        .contains(QStringLiteral("Disconnected: Logged out")));
    }

    void mailboxesWithMessagesAreAnnounced_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<QString>("user");
        QTest::addColumn<bool>("encrypted");
        QTest::newRow("one message, upgraded by STLS")
            << QStringLiteral("%1") << QStringLiteral("one") << true;
        QTest::newRow("twelve messages in clear")
            << QStringLiteral("pop3://%1") << QStringLiteral("twelve") << false;
        QTest::newRow("twelve messages over TLS")
            << QStringLiteral("pop3s://%2") << QStringLiteral("twelve") << true;
    }

    void mailboxesWithMessagesAreAnnounced()
    {
        QFETCH(QString, form);
        QFETCH(QString, user);
        QFETCH(bool, encrypted);
        const QString server = address(form);
        const qsizetype logStart = m_server.log().size();
        const PollRecord record = poll({{server, user, QStringLiteral("pw-") + user}});
        QCOMPARE(record.failed, QStringList());
        QCOMPARE(record.announced, QStringList {server});
        QTRY_VERIFY(
            m_server.log().mid(logStart).contains(QStringLiteral("Disconnected: Logged out")));
        const QString login = m_server.log().mid(logStart).section(QStringLiteral("Login: "), 1);
        QVERIFY2(login.startsWith(QStringLiteral("user=<") + user), qPrintable(login));
        QCOMPARE(login.section(u'\n', 0, 0).contains(QStringLiteral(", TLS")), encrypted);
    }

    void wrongPasswordEndsWithoutQuitAndChecksNextMailbox()
    {
        const qsizetype logStart = m_server.log().size();
        const PollRecord record
            = poll({{plain(), QStringLiteral("twelve"), QStringLiteral("wrong")},
                {plain(), QStringLiteral("one"), QStringLiteral("pw-one")}});
        QCOMPARE(record.started, (QStringList {plain(), plain()}));
        QCOMPARE(record.announced, QStringList {plain()});
        // A refused password is no failure the user is told about.
        QVERIFY(record.failed.isEmpty());
        QTRY_VERIFY(m_server.log().mid(logStart).contains(QStringLiteral("Logged out")));
        const QString log = m_server.log().mid(logStart);
        const QString refused = log.section(QStringLiteral("auth failed"), 0, 0).section(u'\n', -1)
            + log.section(QStringLiteral("auth failed"), 1).section(u'\n', 0, 0);
        QVERIFY2(refused.contains(QStringLiteral("user=<twelve>")), qPrintable(log));
        QVERIFY2(!refused.contains(QStringLiteral("logging out")), qPrintable(refused));
    }

    void untrustedCertificateIsRefusedWithItsReason_data()
    {
        QTest::addColumn<QString>("form");
        QTest::newRow("TLS from the start") << QStringLiteral("pop3s://%2");
        QTest::newRow("STLS offered") << QStringLiteral("%1");
    }

    void untrustedCertificateIsRefusedWithItsReason()
    {
        QFETCH(QString, form);
        const QString server = address(form);
        const qsizetype logStart = m_server.log().size();
        const PollRecord record
            = poll({{server, QStringLiteral("one"), QStringLiteral("pw-one")},
                       {plain(), QStringLiteral("empty"), QStringLiteral("pw-empty")}},
                false);
        QCOMPARE(record.failed, QStringList {server + QStringLiteral(" certificate")});
        QVERIFY2(
            record.details.first().contains(QStringLiteral("certificate"), Qt::CaseInsensitive),
            qPrintable(record.details.first()));
        QVERIFY(record.announced.isEmpty());
        QCOMPARE(record.started.size(), 2);
        // The password never reached the server.
        QTRY_VERIFY(m_server.log().mid(logStart).contains(QStringLiteral("user=<empty>")));
        QVERIFY(!m_server.log().mid(logStart).contains(QStringLiteral("user=<one>")));
    }

private:
    // "%1" stands for the plain port's address, "%2" for the TLS port's.
    QString address(QString form) const
    {
        return form
            .replace(QStringLiteral("%1"), QStringLiteral("127.0.0.1:%1").arg(m_server.plainPort()))
            .replace(QStringLiteral("%2"), QStringLiteral("127.0.0.1:%1").arg(m_server.tlsPort()));
    }

    QString plain() const
    {
        return QStringLiteral("pop3://127.0.0.1:%1").arg(m_server.plainPort());
    }

    QString sessionLog(const QString &user) const
    {
        QString lines;
        for (const QString &line : m_server.log().split(u'\n')) {
            if (line.contains(QStringLiteral("pop3(") + user + u')'))
                lines += line + u'\n';
        }
        return lines;
    }

    PollRecord poll(const QList<Visit> &visits, bool trustTestCa = true)
    {
        Prefer p;
        p.setCheckIntervall(5);
        const auto account
            = [&p, &visits](int i, void (Prefer::*server)(const QString &),
                  void (Prefer::*user)(const QString &), void (Prefer::*password)(const QString &),
                  void (Prefer::*enabled)(qint16)) {
                  if (i >= visits.size())
                      return;
                  (p.*server)(visits.at(i).server);
                  (p.*user)(visits.at(i).user);
                  (p.*password)(visits.at(i).password);
                  (p.*enabled)(-1);
              };
        account(0, &Prefer::setMailSrv1, &Prefer::setUser1, &Prefer::setPwd1,
            &Prefer::setEnableMailCheck1);
        account(1, &Prefer::setMailSrv2, &Prefer::setUser2, &Prefer::setPwd2,
            &Prefer::setEnableMailCheck2);

        MailChecker checker;
        checker.InitForPOP3(false, p);
        checker.setMailboxTimeout(5000);
        if (trustTestCa)
            checker.setExtraCaCertificates(m_testCa);
        PollRecord record;
        connect(&checker, &MailChecker::mailboxStarted, this,
            [&record](const QString &server) { record.started.append(server); });
        connect(&checker, &MailChecker::newMail, this,
            [&record](const QString &server) { record.announced.append(server); });
        connect(&checker, &MailChecker::mailboxFailed, this,
            [&record](const QString &server, Failure failure, const QString &detail) {
                record.failed.append(server
                    + (failure == Failure::Certificate ? QStringLiteral(" certificate")
                                                       : QStringLiteral(" other")));
                record.details.append(detail);
            });
        QSignalSpy finished(&checker, &MailChecker::pollFinished);
        checker.poll();
        if (!finished.wait(15000))
            qWarning("the poll did not finish");
        return record;
    }

    DovecotServer m_server;
    QList<QSslCertificate> m_testCa;
};

QTEST_GUILESS_MAIN(MailServerTest)
#include "mailserver_test.moc"
