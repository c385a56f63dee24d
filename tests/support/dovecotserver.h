#pragma once

#include <QDir>
#include <QMap>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QThread>

#include <signal.h>
#include <sys/prctl.h>

// A Dovecot POP3 server of the test's own, configured in a temporary folder: any user
// whose password is "pw-" and the name, one Maildir each, POP3 (with STLS) and POP3S on
// free loopback ports, the certificate from tests/support/mailcerts. It touches neither
// /etc nor a system service; its processes run as the users its package creates.
class DovecotServer final
{
public:
    static inline const QString certificates
        = QStringLiteral(VANTRELL_SOURCE_DIR "/tests/support/mailcerts");
    const quint16 plainPort = freePort(), tlsPort = freePort();

    ~DovecotServer()
    {
        m_process.terminate();
        m_process.waitForFinished(5000);
    }

    // Returns an empty string when the server answers, else why it does not.
    QString start(const QMap<QString, int> &messagesByUser)
    {
        const QString dir = m_dir.path();
        for (auto user = messagesByUser.cbegin(); user != messagesByUser.cend(); ++user) {
            QDir().mkpath(dir + QStringLiteral("/mail/%1/new").arg(user.key()));
            for (int i = 1; i <= user.value(); ++i) {
                QFile message(dir + QStringLiteral("/mail/%1/new/%2").arg(user.key()).arg(i));
                if (message.open(QIODevice::WriteOnly))
                    message.write("Subject: " + QByteArray::number(i) + "\r\n\r\nHello.\r\n");
            }
        }
        QProcess::execute(QStringLiteral("chown"),
            {QStringLiteral("-R"), QStringLiteral("dovecot:dovecot"),
                dir + QStringLiteral("/mail")});
        QFile::setPermissions(dir, QFile::permissions(dir) | QFile::ExeOther | QFile::ExeGroup);
        QFile config(dir + QStringLiteral("/dovecot.conf"));
        if (!config.open(QIODevice::WriteOnly))
            return QStringLiteral("no configuration file");
        // An unreachable penalty service lets a failed login delay none of the next.
        config.write(QStringLiteral(
            "base_dir = %1/run\nstate_dir = %1\nlog_path = %1/dovecot.log\nprotocols = pop3\n"
            "listen = 127.0.0.1\nssl_cert = <%2/server.crt\nssl_key = <%2/server.key\n"
            "disable_plaintext_auth = no\nauth_failure_delay = 0\nfirst_valid_uid = 1\n"
            "mail_uid = dovecot\nmail_gid = dovecot\nmail_location = maildir:%1/mail/%u\n"
            "passdb {\n driver = static\n args = password=pw-%u\n}\n"
            "userdb {\n driver = static\n args = allow_all_users=yes\n}\n"
            "service pop3-login {\n inet_listener pop3 {\n port = %3\n }\n"
            " inet_listener pop3s {\n port = %4\n ssl = yes\n }\n}\n"
            "service anvil {\n unix_listener anvil-auth-penalty {\n mode = 0\n }\n}\n")
                         .arg(dir, certificates)
                         .arg(plainPort)
                         .arg(tlsPort)
                         .toUtf8());
        config.close();
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        // A test that crashes takes its server with it.
        m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
        m_process.start(QStringLiteral("/usr/sbin/dovecot"),
            {QStringLiteral("-F"), QStringLiteral("-c"), config.fileName()});
        for (int tries = 0; tries < 50 && m_process.state() != QProcess::NotRunning; ++tries) {
            QTcpSocket probe;
            probe.connectToHost(QHostAddress::LocalHost, plainPort);
            if (probe.waitForConnected(100) && probe.waitForReadyRead(2000))
                return QString();
            QThread::msleep(100);
        }
        return QStringLiteral("dovecot (scripts/install-deps.sh) does not answer: ")
            + m_process.errorString() + QString::fromLocal8Bit(m_process.readAll()) + log();
    }

    QString log() const
    {
        QFile file(m_dir.path() + QStringLiteral("/dovecot.log"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

private:
    static quint16 freePort()
    {
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost);
        return probe.serverPort();
    }

    QTemporaryDir m_dir;
    QProcess m_process;
};
