#include "core/mail/mailchecker.h"

#include "core/mail/mailschedule.h"
#include "core/prefs/prefer.h"

#include <QTime>

MailChecker::MailChecker(QObject *parent)
    : QObject(parent)
{
    m_timer.setInterval(TimerIntervalMs);
    connect(&m_timer, &QTimer::timeout, this, &MailChecker::timerTick);
}

MailChecker::~MailChecker()
{
    stop();
}

bool MailChecker::anyEnabled(const Prefer &p)
{
    return p.EnableMailCheck1() != 0 || p.EnableMailCheck2() != 0 || p.EnableMailCheck3() != 0
        || p.EnableMailCheck4() != 0;
}

void MailChecker::InitForPOP3(bool enable, const Prefer &p)
{
    m_accounts = {
        {p.MailSrv1(), p.User1(), p.Pwd1(), p.EnableMailCheck1() != 0},
        {p.MailSrv2(), p.User2(), p.Pwd2(), p.EnableMailCheck2() != 0},
        {p.MailSrv3(), p.User3(), p.Pwd3(), p.EnableMailCheck3() != 0},
        {p.MailSrv4(), p.User4(), p.Pwd4(), p.EnableMailCheck4() != 0},
    };
    m_period = MailSchedule::periodSeconds(p.CheckIntervall());
    m_pollStart = now();
    if (enable)
        m_timer.start();
    else
        m_timer.stop();
}

double MailChecker::now() const
{
    return m_clock ? m_clock() : MailSchedule::secondsSinceMidnight(QTime::currentTime());
}

void MailChecker::timerTick()
{
    if (!isPolling() && MailSchedule::isDue(m_pollStart, now(), m_period))
        poll();
}

void MailChecker::poll()
{
    if (isPolling())
        return;
    m_pollStart = now();
    m_index = 0;
    nextMailbox();
}

void MailChecker::nextMailbox()
{
    while (m_index < m_accounts.size() && !m_accounts.at(m_index).enabled)
        ++m_index;
    if (m_index >= m_accounts.size()) {
        m_index = -1;
        emit pollFinished();
        return;
    }
    const MailAccount &account = m_accounts.at(m_index);
    emit mailboxStarted(account.server);
    auto *check = new MailboxCheck(account, this);
    check->setTimeout(m_mailboxTimeoutMs);
    check->setExtraCaCertificates(m_extraCaCertificates);
    const QString server = account.server;
    connect(check, &MailboxCheck::newMail, this, [this, server] { emit newMail(server); });
    connect(check, &MailboxCheck::finished, this, &MailChecker::mailboxFinished);
    m_current = check;
    check->start();
}

void MailChecker::mailboxFinished()
{
    MailboxCheck *check = m_current.data();
    if (!check || m_index < 0)
        return;
    m_current.clear();
    check->deleteLater();
    const QString server = m_accounts.at(m_index).server;
    if (check->failure() != MailboxCheck::Failure::None)
        emit mailboxFailed(server, check->failure(), check->failureDetail());
    emit mailboxEnded(server);
    ++m_index;
    // The next visit starts from the event loop, not from inside this one's signal.
    QMetaObject::invokeMethod(
        this,
        [this, next = m_index] {
            // A stop, or a stop and a new poll, may have come in between.
            if (m_index == next && !m_current)
                nextMailbox();
        },
        Qt::QueuedConnection);
}

void MailChecker::stop()
{
    m_timer.stop();
    if (MailboxCheck *check = m_current.data()) {
        m_current.clear();
        check->disconnect(this);
        delete check;
    }
    m_index = -1;
}
