#include "core/mail/mailboxcheck.h"

#include "core/mail/mailserveraddress.h"

#include <QSslConfiguration>
#include <QSslSocket>
#include <QStringList>

MailboxCheck::MailboxCheck(const MailAccount &account, QObject *parent)
    : QObject(parent)
    , m_account(account)
{
    m_timeout.setSingleShot(true);
    connect(&m_timeout, &QTimer::timeout, this, [this] { finish(Failure::TimedOut); });
}

MailboxCheck::~MailboxCheck()
{
    if (m_socket) {
        m_socket->disconnect(this);
        m_socket->abort();
    }
}

void MailboxCheck::start()
{
    if (m_started)
        return;
    m_started = true;
    const MailServerAddress address = MailServerAddress::parse(m_account.server);
    if (!address.isValid()) {
        finishLater(Failure::BadAddress);
        return;
    }
    const auto breaksLine
        = [](const QString &text) { return text.contains(u'\r') || text.contains(u'\n'); };
    if (breaksLine(m_account.user) || breaksLine(m_account.password)) {
        finishLater(Failure::BadAccount);
        return;
    }
    const bool tlsFirst = address.security == MailServerAddress::Security::Tls;
    const bool askForStartTls = address.security == MailServerAddress::Security::Opportunistic
        && QSslSocket::supportsSsl();
    m_dialogue = std::make_unique<Pop3Dialogue>(
        m_account.user.toUtf8(), m_account.password.toUtf8(), askForStartTls);

    m_socket = new QSslSocket(this);
    // Qt stops reading from the system once this much waits unread.
    m_socket->setReadBufferSize(MaxTotalBytes);
    m_socket->setPeerVerifyName(address.host);
    if (!m_extraCaCertificates.isEmpty()) {
        QSslConfiguration configuration = m_socket->sslConfiguration();
        configuration.addCaCertificates(m_extraCaCertificates);
        m_socket->setSslConfiguration(configuration);
    }
    connect(m_socket, &QSslSocket::readyRead, this, &MailboxCheck::readAvailable);
    connect(m_socket, &QSslSocket::encrypted, this, [this] {
        m_encrypted = true;
        if (m_dialogue)
            apply(m_dialogue->tlsEstablished());
    });
    connect(m_socket, &QSslSocket::sslErrors, this, [this](const QList<QSslError> &errors) {
        QStringList reasons;
        for (const QSslError &error : errors)
            reasons.append(error.errorString());
        reasons.removeDuplicates();
        finish(Failure::Certificate, reasons.join(QStringLiteral("; ")));
    });
    connect(m_socket, &QSslSocket::disconnected, this, [this] { finish(Failure::None); });
    connect(m_socket, &QSslSocket::errorOccurred, this, [this](QAbstractSocket::SocketError error) {
        // The server closing the connection is the end of the dialogue, not a fault.
        if (error == QAbstractSocket::RemoteHostClosedError)
            finish(Failure::None);
        else
            finish(Failure::SocketError, m_socket->errorString());
    });

    m_timeout.start(m_timeoutMs);
    if (tlsFirst)
        m_socket->connectToHostEncrypted(address.host, address.port);
    else
        m_socket->connectToHost(address.host, address.port);
}

void MailboxCheck::readAvailable()
{
    if (m_finished)
        return;
    // Everything that waits is taken at once: after STLS the clear text still unread
    // must be dropped rather than read as if it had come encrypted.
    const QByteArray chunk = m_socket->read(MaxTotalBytes + 1 - m_received);
    m_received += chunk.size();
    if (m_received > MaxTotalBytes) {
        finish(Failure::TooMuchData);
        return;
    }
    m_buffer += chunk;
    qsizetype end;
    while ((end = m_buffer.indexOf("\r\n")) >= 0) {
        if (end + 2 > MaxLineBytes) {
            finish(Failure::LineTooLong);
            return;
        }
        const QByteArray line = m_buffer.left(end);
        m_buffer.remove(0, end + 2);
        apply(m_dialogue->reply(line));
        if (m_finished)
            return;
    }
    // The line's CR LF can no longer fit within the limit.
    if (m_buffer.size() >= MaxLineBytes)
        finish(Failure::LineTooLong);
}

void MailboxCheck::apply(const Pop3Dialogue::Reaction &reaction)
{
    if (m_finished)
        return;
    if (!reaction.send.isEmpty())
        m_socket->write(reaction.send);
    if (reaction.newMail)
        emit newMail();
    if (reaction.tlsRefused) {
        finish(Failure::StartTlsRefused);
        return;
    }
    if (reaction.done) {
        finish(Failure::None);
        return;
    }
    if (reaction.startTls) {
        m_buffer.clear();
        m_socket->startClientEncryption();
    }
}

void MailboxCheck::finish(Failure failure, const QString &detail)
{
    if (m_finished)
        return;
    m_finished = true;
    m_failure = failure;
    m_failureDetail = detail;
    m_timeout.stop();
    if (m_socket) {
        m_socket->disconnect(this);
        // What the dialogue wrote last (QUIT) goes out before the connection is cut.
        if (m_socket->state() == QAbstractSocket::ConnectedState)
            m_socket->flush();
        m_socket->abort();
    }
    emit finished();
}

void MailboxCheck::finishLater(Failure failure)
{
    QMetaObject::invokeMethod(
        this, [this, failure] { finish(failure); }, Qt::QueuedConnection);
}
