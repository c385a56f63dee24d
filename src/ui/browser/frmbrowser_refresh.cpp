// Auto-refresh of a browser window: it reloads its page on an interval, keeps the
// scroll position across the reload and notes failures and changed text for its tab.
#include "core/base/uitexts.h"
#include "core/browsing/autorefresh.h"
#include "core/browsing/refreshinterval.h"
#include "ui/browser/frmbrowser.h"
#include "ui/browser/refreshdialog.h"

#include <QPointer>
#include <QStringList>
#include <QVariantList>

#include <algorithm>

void frmBrowser::SetRefresh()
{
    auto *dialog = new RefreshDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    const auto interval = std::chrono::duration_cast<std::chrono::seconds>(m_refresh->interval());
    dialog->setSeconds(int(interval.count()));
    dialog->setMarksChanges(m_refresh->marksChanges());
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        setRefreshInterval(std::chrono::seconds(dialog->seconds()), dialog->marksChanges());
    });
    dialog->open();
}

void frmBrowser::setRefreshInterval(std::chrono::milliseconds interval, bool markChanges)
{
    m_refresh->setMarkChanges(markChanges);
    m_refresh->start(interval);
    m_refreshUrl = LocationURL();
    m_changedMark = false;
    // The text shown now is what the first reload is compared with.
    if (m_refresh->isActive() && markChanges && !m_page->isLoading())
        comparePageText();
    emit tabRefreshRequested();
}

void frmBrowser::refreshNow()
{
    if (m_page->isLoading()) {
        m_refresh->postpone();
        return;
    }
    // After a failed load the window shows the engine's error page, which has no
    // position to keep: the address is loaded anew.
    if (m_refresh->lastFailed() && !m_refreshUrl.isEmpty() && FeedSourceUrl.isEmpty()) {
        m_refreshScroll = QPoint();
        m_page->load(QUrl(m_refreshUrl));
        return;
    }
    QPointer<frmBrowser> self = this;
    m_page->runScript(
        QStringLiteral("[window.scrollX, window.scrollY]"), [self](const QVariant &at) {
            if (!self || !self->m_refresh->reloading())
                return;
            const QVariantList xy = at.toList();
            self->m_refreshScroll = QPoint(xy.value(0).toInt(), xy.value(1).toInt());
            if (!self->FeedSourceUrl.isEmpty())
                self->LoadFeed(self->FeedSourceUrl);
            else
                self->m_page->reload();
        });
}

void frmBrowser::refreshLoadFinished(bool ok)
{
    const bool byRefresh = m_refresh->reloading();
    m_refresh->reloaded(ok);
    if (!m_refresh->isActive())
        return;
    if (ok && !LocationURL().isEmpty())
        m_refreshUrl = LocationURL();
    if (ok && byRefresh && !m_refreshScroll.isNull())
        m_page->runScript(QStringLiteral("window.scrollTo(%1, %2)")
                              .arg(m_refreshScroll.x())
                              .arg(m_refreshScroll.y()),
            [](const QVariant &) {});
    if (ok && m_refresh->marksChanges())
        comparePageText();
    emit tabRefreshRequested();
}

void frmBrowser::comparePageText()
{
    QPointer<frmBrowser> self = this;
    m_page->runScript(QStringLiteral("document.body ? document.body.innerText : ''"),
        [self](const QVariant &text) {
            if (!self || !self->m_refresh->isActive())
                return;
            if (self->m_refresh->textChanged(text.toString())) {
                self->m_changedMark = true;
                emit self->tabRefreshRequested();
            }
        });
}

void frmBrowser::stopRefresh()
{
    m_refresh->stop();
    m_changedMark = false;
}

QString frmBrowser::tabNote() const
{
    if (!m_refresh->isActive())
        return {};
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(m_refresh->interval());
    QStringList lines
        = {uiText(2504).arg(RefreshInterval::label(std::max<int>(1, int(seconds.count()))))};
    if (m_refresh->lastFailed())
        lines.append(uiText(2505).arg(m_refresh->failedAt().toString(QStringLiteral("HH:mm:ss"))));
    if (m_changedMark && m_refresh->changedAt().isValid())
        lines.append(uiText(2506).arg(m_refresh->changedAt().toString(QStringLiteral("HH:mm:ss"))));
    return lines.join(u'\n');
}

void frmBrowser::clearPageChangedMark()
{
    m_changedMark = false;
}
