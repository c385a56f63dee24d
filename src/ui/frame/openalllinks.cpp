#include "ui/frame/openalllinks.h"

#include "core/base/uitexts.h"
#include "core/browsing/linkstoopen.h"
#include "ui/browser/frmbrowser.h"
#include "ui/frame/mdiform1.h"

#include <QCheckBox>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>

#include <utility>

OpenAllLinks::OpenAllLinks(MDIForm1 *frame)
    : QObject(frame)
    , m_frame(frame)
{ }

bool OpenAllLinks::askUser(const QString &message, bool *showAgain)
{
    QMessageBox box(
        QMessageBox::Question, uiText(100), message, QMessageBox::Yes | QMessageBox::No);
    box.setDefaultButton(QMessageBox::Yes);
    auto *again = new QCheckBox(uiText(106), &box);
    again->setChecked(*showAgain);
    box.setCheckBox(again);
    const bool yes = box.exec() == QMessageBox::Yes;
    *showAgain = again->isChecked();
    return yes;
}

void OpenAllLinks::run(frmBrowser *window)
{
    if (!window) {
        emit finished(0);
        return;
    }
    QPointer<OpenAllLinks> self = this;
    window->page()->documentLinks([self](const PageView::DocumentLinks &links) {
        if (!self)
            return;
        if (!links.html) {
            emit self->finished(0);
            return;
        }
        const QStringList addresses = LinksToOpen::select(links.anchors);
        const int count = int(addresses.size());
        if (LinksToOpen::needsNotice(
                int(self->m_frame->browsers().size()), count, self->m_noticeSwitch)) {
            bool showAgain = self->m_noticeSwitch;
            const bool yes = self->m_confirm(LinksToOpen::noticeText(count), &showAgain);
            if (!self)
                return;
            self->m_noticeSwitch = showAgain;
            if (!yes) {
                emit self->finished(0);
                return;
            }
        }
        self->open(addresses);
    });
}

void OpenAllLinks::open(const QStringList &addresses)
{
    QList<Opener> openers;
    openers.reserve(addresses.size());
    for (const QString &address : addresses)
        openers.append([this, address] { return m_frame->OpenNewBrowser(address); });
    openWindows(openers);
}

void OpenAllLinks::openWindows(const QList<Opener> &openers)
{
    if (openers.isEmpty()) {
        emit finished(0);
        return;
    }
    const bool running = !m_queue.isEmpty();
    m_queue += openers;
    if (!running)
        openNext();
}

void OpenAllLinks::openNext()
{
    // One window per turn of the event loop, so the program stays responsive while
    // many windows open, and only a handful loading at once, so that each of them
    // gets its page soon instead of all of them crawling together.
    if (m_queue.isEmpty() || m_loading.size() >= MaxLoading)
        return;
    frmBrowser *window = m_queue.takeFirst()();
    ++m_opened;
    m_loading.append(window);
    connect(window->page(), &PageView::loadFinished, this, [this, window] { loaded(window); });
    connect(window, &QObject::destroyed, this, [this, window] { loaded(window); });
    QTimer::singleShot(m_loadTimeoutMs, this, [this, window] { loaded(window); });
    if (m_queue.isEmpty()) {
        emit finished(std::exchange(m_opened, 0));
        return;
    }
    QTimer::singleShot(0, this, &OpenAllLinks::openNext);
}

void OpenAllLinks::loaded(frmBrowser *window)
{
    // Only the pointer is compared: the window may be gone.
    if (m_loading.removeOne(window))
        QTimer::singleShot(0, this, &OpenAllLinks::openNext);
}
