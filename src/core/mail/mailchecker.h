#pragma once

#include "core/mail/mailaccount.h"
#include "core/mail/mailboxcheck.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QSslCertificate>
#include <QTimer>

#include <functional>

class Prefer;

// Watches up to four POP3 mailboxes: every 500 ms the timer asks whether a period has
// passed since the last poll began; a poll then visits the enabled mailboxes one after
// another, each with its own time-out. Nothing waits in a nested event loop: each visit
// runs on socket signals, and the next begins when the last has finished.
class MailChecker final : public QObject
{
    Q_OBJECT

public:
    static constexpr int AccountCount = 4;
    static constexpr int TimerIntervalMs = 500;
    static constexpr int MailboxTimeoutMs = 15000;

    explicit MailChecker(QObject *parent = nullptr);
    ~MailChecker() override;

    // Takes the four accounts and the interval from the preferences, sets both start
    // times to now and starts (or stops) the timer. The first poll therefore comes one
    // full period after this call.
    void InitForPOP3(bool enable, const Prefer &preferences);
    static bool anyEnabled(const Prefer &preferences);

    const QList<MailAccount> &accounts() const { return m_accounts; }
    double period() const { return m_period; }
    bool isTimerActive() const { return m_timer.isActive(); }
    bool isPolling() const { return m_index >= 0; }

    void setMailboxTimeout(int milliseconds) { m_mailboxTimeoutMs = milliseconds; }
    void setExtraCaCertificates(const QList<QSslCertificate> &certificates)
    {
        m_extraCaCertificates = certificates;
    }
    // Seconds since midnight; the local clock unless a test sets another.
    void setClock(const std::function<double()> &clock) { m_clock = clock; }

    // One tick of the timer: polls when the period has passed.
    void timerTick();
    // Visits the enabled mailboxes now; does nothing while a poll runs.
    void poll();
    // Ends a running poll at once; its current mailbox is closed.
    void stop();

Q_SIGNALS:
    void mailboxStarted(const QString &server);
    void newMail(const QString &server);
    void mailboxFailed(const QString &server, MailboxCheck::Failure failure, const QString &detail);
    void mailboxEnded(const QString &server);
    void pollFinished();

private:
    void nextMailbox();
    void mailboxFinished();
    double now() const;

    QList<MailAccount> m_accounts;
    QList<QSslCertificate> m_extraCaCertificates;
    std::function<double()> m_clock;
    QTimer m_timer;
    QPointer<MailboxCheck> m_current;
    double m_period = 300;
    double m_pollStart = 0;
    int m_mailboxTimeoutMs = MailboxTimeoutMs;
    int m_index = -1; // the account being visited, -1 between polls
};
