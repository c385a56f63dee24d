#pragma once

#include "core/mail/mailaccount.h"
#include "core/mail/pop3dialogue.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QSslCertificate>
#include <QTimer>

#include <memory>

class QSslSocket;

// One visit to one mailbox: connect, talk POP3 line by line, end. Everything is driven
// by the socket's signals and one time-out, so the caller's event loop keeps running.
// Bytes are collected until CR LF and each complete line is one reply. A line longer
// than POP3 allows or too much data in all ends the visit as a failure, so a hostile
// server cannot make the program hold more than a few kilobytes.
class MailboxCheck final : public QObject
{
    Q_OBJECT

public:
    // A reply line may be 512 bytes long, CR LF included.
    static constexpr int MaxLineBytes = 512;
    static constexpr int MaxTotalBytes = 64 * 1024;

    enum class Failure {
        None, // the dialogue ended, or the server closed the connection
        TimedOut, // no end within the time-out
        SocketError, // unknown host, refused connection, broken connection
        Certificate, // the server's certificate was not accepted
        LineTooLong,
        TooMuchData,
        StartTlsRefused, // STLS was offered, then refused
        BadAddress, // the server setting is not an address
        BadAccount, // the user name or password contains a line break
    };

    explicit MailboxCheck(const MailAccount &account, QObject *parent = nullptr);
    ~MailboxCheck() override;

    void setTimeout(int milliseconds) { m_timeoutMs = milliseconds; }
    // Certificates trusted in addition to the system's, for test servers.
    void setExtraCaCertificates(const QList<QSslCertificate> &certificates)
    {
        m_extraCaCertificates = certificates;
    }

    void start();

    Failure failure() const { return m_failure; }
    // The socket's or the TLS library's words for a failure, when there are any.
    QString failureDetail() const { return m_failureDetail; }
    // The server took the login and answered LIST: the account works.
    bool loggedIn() const { return m_dialogue && m_dialogue->quitSent(); }
    bool wasEncrypted() const { return m_encrypted; }

Q_SIGNALS:
    void newMail();
    // Exactly once per visit, never from inside start().
    void finished();

private:
    void readAvailable();
    void apply(const Pop3Dialogue::Reaction &reaction);
    void finish(Failure failure, const QString &detail = QString());
    void finishLater(Failure failure);

    MailAccount m_account;
    QList<QSslCertificate> m_extraCaCertificates;
    std::unique_ptr<Pop3Dialogue> m_dialogue;
    QSslSocket *m_socket = nullptr;
    QTimer m_timeout;
    QByteArray m_buffer;
    qint64 m_received = 0;
    int m_timeoutMs = 15000;
    bool m_started = false;
    bool m_finished = false;
    bool m_encrypted = false;
    Failure m_failure = Failure::None;
    QString m_failureDetail;
};
