// Roundtrips of a browser window: the window gathers the addresses, loads what the
// roundtrip asks for and tells it how each load went; the bar shows where it stands.
#include "core/base/uitexts.h"
#include "core/browsing/roundtrip.h"
#include "ui/browser/frmbrowser.h"
#include "ui/browser/infobar.h"
#include "ui/browser/roundtripbar.h"

#include <QPointer>

void frmBrowser::StartRoundtrip()
{
    QPointer<frmBrowser> self = this;
    m_page->documentLinks([self](const PageView::DocumentLinks &links) {
        if (self)
            self->startRoundtripOver(links);
    });
}

void frmBrowser::StartFrameRoundtrip()
{
    QPointer<frmBrowser> self = this;
    m_page->activeFrameLinks([self](const PageView::DocumentLinks &links) {
        if (self)
            self->startRoundtripOver(links);
    });
}

void frmBrowser::startRoundtripOver(const PageView::DocumentLinks &links)
{
    if (!links.html)
        m_infoBar->showMessage(uiText(2575));
    else if (links.foreignFrame)
        m_infoBar->showMessage(uiText(2591));
    else
        StartRoundtrip(Roundtrip::addressesOf(links.anchors));
}

void frmBrowser::StartRoundtrip(const QStringList &addresses)
{
    if (addresses.isEmpty()) {
        m_infoBar->showMessage(uiText(2590));
        return;
    }
    Roundtrip::Timing timing = m_roundtripTiming;
    if (!m_roundtripAsker || !m_roundtripAsker(int(addresses.size()), &timing))
        return;
    m_roundtripTiming = timing;
    if (m_roundtrip) {
        m_roundtrip->disconnect(this);
        m_roundtrip->stop();
        m_roundtrip->deleteLater();
    }
    auto *roundtrip = new Roundtrip(addresses, timing, this);
    m_roundtrip = roundtrip;
    // Loaded after the roundtrip's own step is done, never inside an engine signal.
    connect(
        roundtrip, &Roundtrip::visit, this,
        [this](const QString &address) {
            FeedSourceUrl.clear();
            Navigate(address);
        },
        Qt::QueuedConnection);
    connect(m_page, &PageView::loadStarted, roundtrip, &Roundtrip::loadStarted);
    connect(m_page, &PageView::loadFinished, roundtrip, &Roundtrip::loadFinished);
    connect(m_page, &PageView::downloadRefused, roundtrip, &Roundtrip::downloadRefused);
    connect(roundtrip, &Roundtrip::finished, this, [this] {
        m_page->setRefusesDownloads(false);
        emit tabRefreshRequested();
    });
    // A download prompt would stall the tour: downloads are refused while it runs.
    m_page->setRefusesDownloads(true);
    m_roundtripBar->follow(roundtrip);
    roundtrip->start();
}
