#include "ui/frame/openalllinks.h"

#include "core/base/uitexts.h"
#include "core/model/uniqsortstrcollection.h"
#include "ui/browser/frmbrowser.h"
#include "ui/frame/mdiform1.h"

#include <QCheckBox>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include <utility>

OpenAllLinks::OpenAllLinks(MDIForm1 *frame)
    : QObject(frame)
    , m_frame(frame)
{ }

QString OpenAllLinks::noticeText(int count)
{
    // The first text ends in two carriage returns, the dialog's paragraph break.
    QString text = uiText(1116);
    text.replace(QStringLiteral("%n"), QString::number(count));
    text += uiText(1117);
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    return text;
}

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

QStringList OpenAllLinks::addressesFrom(const QList<QStringList> &anchors)
{
    UniqSortStrCollection links;
    // Addresses differing only in letter case are different addresses.
    links.FindString(QString(), 1);
    for (const QStringList &anchor : anchors) {
        const QString address = anchor.value(0).trimmed();
        if (address.startsWith(QStringLiteral("javascript:"), Qt::CaseInsensitive)
            || address.startsWith(QStringLiteral("mailto:"), Qt::CaseInsensitive))
            continue;
        // A "#" link to a place in the document that holds it.
        const QUrl target(address);
        const QUrl document(anchor.value(2));
        if (anchor.value(1).trimmed().startsWith(u'#')
            || (target.hasFragment()
                && target.adjusted(QUrl::RemoveFragment)
                    == document.adjusted(QUrl::RemoveFragment)))
            continue;
        links.Add(address);
    }
    return links.SortedStrCollection();
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
        const QStringList addresses = addressesFrom(links.anchors);
        const int windows = int(self->m_frame->browsers().size());
        if (!addresses.isEmpty() && windows + addresses.size() >= NoticeThreshold
            && self->m_noticeSwitch) {
            bool showAgain = self->m_noticeSwitch;
            const bool yes = self->m_confirm(noticeText(int(addresses.size())), &showAgain);
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
    if (addresses.isEmpty()) {
        emit finished(0);
        return;
    }
    const bool running = !m_queue.isEmpty();
    m_queue += addresses;
    if (!running)
        openNext();
}

void OpenAllLinks::openNext()
{
    // One window per turn of the event loop, so the program stays responsive while
    // many windows open.
    if (m_queue.isEmpty())
        return;
    m_frame->OpenNewBrowser(m_queue.takeFirst());
    ++m_opened;
    if (m_queue.isEmpty()) {
        emit finished(std::exchange(m_opened, 0));
        return;
    }
    QTimer::singleShot(0, this, &OpenAllLinks::openNext);
}
