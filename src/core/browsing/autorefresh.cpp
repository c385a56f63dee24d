#include "core/browsing/autorefresh.h"

#include <QCryptographicHash>
#include <QTimer>

AutoRefresh::AutoRefresh(QObject *parent)
    : QObject(parent)
    , m_timer(new QTimer(this))
{
    m_timer->setObjectName(QStringLiteral("timRefresh"));
    m_timer->setSingleShot(true);
    connect(m_timer, &QTimer::timeout, this, &AutoRefresh::fire);
}

void AutoRefresh::start(std::chrono::milliseconds interval)
{
    if (interval.count() <= 0) {
        stop();
        return;
    }
    m_interval = interval;
    m_reloading = false;
    m_timer->start(m_interval);
}

void AutoRefresh::stop()
{
    m_timer->stop();
    m_interval = std::chrono::milliseconds(0);
    m_reloading = false;
    m_failedAt = QDateTime();
    m_changedAt = QDateTime();
    m_hasText = false;
}

void AutoRefresh::fire()
{
    if (!isActive())
        return;
    m_reloading = true;
    ++m_attempts;
    emit due();
}

void AutoRefresh::postpone()
{
    m_reloading = false;
    if (isActive())
        m_timer->start(m_interval);
}

void AutoRefresh::reloaded(bool ok)
{
    if (!m_reloading)
        return;
    m_reloading = false;
    if (ok) {
        m_failedAt = QDateTime();
    } else {
        m_failedAt = QDateTime::currentDateTime();
        ++m_failures;
    }
    // Counted from the end of the load, so that a slow page is never asked again
    // while it still loads.
    if (isActive())
        m_timer->start(m_interval);
}

bool AutoRefresh::textChanged(const QString &text)
{
    const QByteArray hash = QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256);
    const bool changed = m_hasText && hash != m_textHash;
    m_textHash = hash;
    m_hasText = true;
    if (changed)
        m_changedAt = QDateTime::currentDateTime();
    return changed;
}
