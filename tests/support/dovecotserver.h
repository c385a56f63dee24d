#pragma once

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QThread>

#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

// A Dovecot POP3 server of the test's own, run from a configuration in a temporary
// folder: passwd-file users, one Maildir per user, plain POP3 (with STLS) and POP3S on
// free loopback ports, the certificate from tests/support/mailcerts. It touches neither
// /etc nor a system service. Run as root, Dovecot refuses to run its login processes as
// root, so they run as the "dovenull" and "dovecot" users its package creates.
class DovecotServer final
{
public:
    DovecotServer() = default;
    DovecotServer(const DovecotServer &) = delete;
    DovecotServer &operator=(const DovecotServer &) = delete;
    ~DovecotServer() { stop(); }

    void addUser(const QString &name, const QString &password, int messages)
    {
        m_users.insert(name, {password, messages});
    }

    // Returns an empty string when the server answers, else why it does not.
    QString start()
    {
        const QString binary = QStandardPaths::findExecutable(QStringLiteral("dovecot"),
            {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/local/sbin")});
        if (binary.isEmpty())
            return QStringLiteral("dovecot is not installed (scripts/install-deps.sh)");
        if (!m_dir.isValid())
            return QStringLiteral("no temporary folder");
        QString loginUser, internalUser;
        uid_t mailUid = getuid();
        gid_t mailGid = getgid();
        if (getuid() == 0) {
            const passwd *login = getpwnam("dovenull");
            const passwd *internal = getpwnam("dovecot");
            if (!login || !internal)
                return QStringLiteral("the users dovenull and dovecot are missing");
            loginUser = QStringLiteral("dovenull");
            internalUser = QStringLiteral("dovecot");
            mailUid = internal->pw_uid;
            mailGid = internal->pw_gid;
            // The unprivileged processes must pass through the folder.
            chmod(QFile::encodeName(m_dir.path()).constData(), 0711);
        } else {
            const passwd *self = getpwuid(getuid());
            if (!self)
                return QStringLiteral("the current user has no name");
            loginUser = internalUser = QString::fromLocal8Bit(self->pw_name);
        }
        const group *mailGroup = getgrgid(mailGid);
        const QString internalGroup
            = mailGroup ? QString::fromLocal8Bit(mailGroup->gr_name) : internalUser;

        const QString root = m_dir.path();
        QString passwd;
        for (auto user = m_users.cbegin(); user != m_users.cend(); ++user) {
            const QString home = root + QStringLiteral("/home/") + user.key();
            for (const char *sub : {"cur", "new", "tmp"})
                QDir().mkpath(home + QStringLiteral("/Maildir/") + QLatin1String(sub));
            for (int i = 1; i <= user->messages; ++i) {
                QFile message(home + QStringLiteral("/Maildir/new/%1.test").arg(i));
                message.open(QIODevice::WriteOnly);
                message.write("From: sender@example.org\r\nSubject: Message "
                    + QByteArray::number(i) + "\r\n\r\nHello.\r\n");
            }
            passwd += QStringLiteral("%1:{PLAIN}%2:%3:%4::%5::\n")
                          .arg(user.key(), user->password)
                          .arg(mailUid)
                          .arg(mailGid)
                          .arg(home);
            ownTree(home, mailUid, mailGid);
        }
        writeFile(root + QStringLiteral("/passwd"), passwd.toUtf8());
        QDir().mkpath(root + QStringLiteral("/run"));
        QDir().mkpath(root + QStringLiteral("/state"));

        m_plainPort = freePort();
        m_tlsPort = freePort();
        const QString certs = QStringLiteral(VANTRELL_SOURCE_DIR "/tests/support/mailcerts");
        const QString config = QStringLiteral(R"(base_dir = %1/run
state_dir = %1/state
log_path = %1/dovecot.log
protocols = pop3
listen = 127.0.0.1
ssl = yes
ssl_cert = <%2/server.crt
ssl_key = <%2/server.key
default_login_user = %3
default_internal_user = %4
default_internal_group = %5
disable_plaintext_auth = no
auth_failure_delay = 0
first_valid_uid = 1
passdb {
  driver = passwd-file
  args = %1/passwd
}
userdb {
  driver = passwd-file
  args = %1/passwd
}
mail_location = maildir:~/Maildir
service pop3-login {
  chroot =
  inet_listener pop3 {
    port = %6
  }
  inet_listener pop3s {
    port = %7
    ssl = yes
  }
}
# Unreachable, the penalty service lets a failed login delay none of the next.
service anvil {
  chroot =
  unix_listener anvil-auth-penalty {
    mode = 0
  }
}
)")
                                   .arg(root, certs, loginUser, internalUser, internalGroup)
                                   .arg(m_plainPort)
                                   .arg(m_tlsPort);
        writeFile(root + QStringLiteral("/dovecot.conf"), config.toUtf8());

        m_process.setProcessChannelMode(QProcess::MergedChannels);
        // A test that crashes takes its server with it.
        m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
        m_process.start(binary,
            {QStringLiteral("-F"), QStringLiteral("-c"), root + QStringLiteral("/dovecot.conf")});
        if (!m_process.waitForStarted(5000))
            return QStringLiteral("dovecot did not start: ") + m_process.errorString();
        QElapsedTimer waited;
        waited.start();
        while (waited.elapsed() < 10000) {
            if (m_process.state() != QProcess::Running)
                return QStringLiteral("dovecot stopped: ")
                    + QString::fromLocal8Bit(m_process.readAll()) + log();
            QTcpSocket probe;
            probe.connectToHost(QHostAddress::LocalHost, m_plainPort);
            if (probe.waitForConnected(200) && probe.waitForReadyRead(2000))
                return QString();
            QThread::msleep(50);
        }
        return QStringLiteral("dovecot does not answer: ") + log();
    }

    void stop()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        m_process.terminate();
        if (!m_process.waitForFinished(5000)) {
            m_process.kill();
            m_process.waitForFinished(2000);
        }
    }

    quint16 plainPort() const { return m_plainPort; }
    quint16 tlsPort() const { return m_tlsPort; }
    QString log() const
    {
        QFile file(m_dir.path() + QStringLiteral("/dovecot.log"));
        file.open(QIODevice::ReadOnly);
        return QString::fromUtf8(file.readAll());
    }

    static QString certificateFolder()
    {
        return QStringLiteral(VANTRELL_SOURCE_DIR "/tests/support/mailcerts");
    }

private:
    struct User
    {
        QString password;
        int messages = 0;
    };

    static quint16 freePort()
    {
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost);
        return probe.serverPort();
    }

    static void writeFile(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        file.write(bytes);
    }

    static void ownTree(const QString &path, uid_t uid, gid_t gid)
    {
        if (chown(QFile::encodeName(path).constData(), uid, gid) != 0)
            return;
        const QDir dir(path);
        for (const QFileInfo &entry : dir.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot))
            ownTree(entry.absoluteFilePath(), uid, gid);
    }

    QTemporaryDir m_dir;
    QMap<QString, User> m_users;
    QProcess m_process;
    quint16 m_plainPort = 0;
    quint16 m_tlsPort = 0;
};
