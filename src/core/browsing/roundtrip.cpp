#include "core/browsing/roundtrip.h"

#include "core/browsing/linkstoopen.h"

#include <QUrl>

QStringList Roundtrip::addressesOf(const QList<QStringList> &anchors)
{
    return pagesOf(LinksToOpen::select(anchors));
}

QStringList Roundtrip::pagesOf(const QStringList &addresses)
{
    QStringList pages;
    for (const QString &address : addresses) {
        const QString scheme = QUrl(address).scheme().toLower();
        if (scheme == u"http" || scheme == u"https" || scheme == u"file")
            pages.append(address);
    }
    return pages;
}

Roundtrip::Roundtrip(const QStringList &addresses, Timing timing, QObject *parent)
    : QObject(parent)
    , m_addresses(addresses)
    , m_timing(timing)
{
    m_timer.setObjectName(QStringLiteral("timRoundtrip"));
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &Roundtrip::timeUp);
}

void Roundtrip::start()
{
    if (m_step == Step::Waiting)
        advance();
}

void Roundtrip::advance()
{
    m_timer.stop();
    if (m_index + 1 >= count()) {
        finish();
        return;
    }
    ++m_index;
    m_step = Step::Loading;
    m_loadStarted = false;
    m_failedHere = false;
    wait();
    emit changed();
    emit visit(current());
}

void Roundtrip::wait()
{
    if (m_paused || !isRunning())
        return;
    m_timer.start(m_step == Step::Loading ? m_timing.loadTimeoutMs : m_timing.dwellMs);
}

void Roundtrip::loadStarted()
{
    if (m_step == Step::Loading)
        m_loadStarted = true;
}

void Roundtrip::loadFinished(bool ok)
{
    if (m_step != Step::Loading || !m_loadStarted || m_failedHere)
        return;
    if (!ok) {
        fail();
        return;
    }
    ++m_visited;
    m_step = Step::Dwelling;
    wait();
    emit changed();
}

void Roundtrip::downloadRefused()
{
    if (m_step == Step::Loading && m_loadStarted && !m_failedHere)
        fail();
}

void Roundtrip::fail()
{
    ++m_failed;
    if (m_paused) {
        m_timer.stop();
        m_failedHere = true;
        emit changed();
        return;
    }
    advance();
}

void Roundtrip::timeUp()
{
    if (m_step == Step::Loading)
        fail();
    else if (m_step == Step::Dwelling)
        advance();
}

void Roundtrip::pause()
{
    if (!isRunning() || m_paused)
        return;
    m_paused = true;
    m_timer.stop();
    emit changed();
}

void Roundtrip::resume()
{
    if (!isRunning() || !m_paused)
        return;
    m_paused = false;
    // The wait begins anew; an address that failed meanwhile is left at once.
    if (m_failedHere)
        advance();
    else {
        wait();
        emit changed();
    }
}

void Roundtrip::next()
{
    if (isRunning())
        advance();
}

void Roundtrip::stop()
{
    if (!isRunning())
        return;
    m_stopped = true;
    finish();
}

void Roundtrip::finish()
{
    m_timer.stop();
    m_step = Step::Finished;
    m_paused = false;
    emit finished();
}
