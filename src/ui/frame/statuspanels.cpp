#include "ui/frame/statuspanels.h"

#include "core/base/uitexts.h"

#include <QDateTime>
#include <QEvent>
#include <QIcon>
#include <QLabel>
#include <QPainter>
#include <QStatusBar>
#include <QStyle>

namespace {
// A closed envelope, for desktops without a mail icon in their theme.
QIcon envelopeIcon()
{
    QPixmap picture(16, 16);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(60, 60, 60), 1));
    painter.setBrush(QColor(250, 240, 200));
    painter.drawRect(QRectF(1.5, 3.5, 13, 9));
    painter.drawPolyline(QPolygonF({QPointF(1.5, 3.5), QPointF(8, 9), QPointF(14.5, 3.5)}));
    return QIcon(picture);
}
} // namespace

StatusPanels::StatusPanels(QStatusBar *bar)
    : QObject(bar)
{
    const auto panel = [bar](const QString &name) {
        auto *label = new QLabel(bar);
        label->setObjectName(name);
        label->setFrameShape(QFrame::StyledPanel);
        label->setFrameShadow(QFrame::Sunken);
        label->setContentsMargins(4, 0, 4, 0);
        bar->addPermanentWidget(label);
        return label;
    };
    m_email = panel(QStringLiteral("email"));
    m_email->setPixmap(
        QIcon::fromTheme(QStringLiteral("mail-unread"), envelopeIcon()).pixmap(16, 16));
    m_email->setToolTip(uiText(608));
    m_email->hide();
    m_email->installEventFilter(this);
    m_date = panel(QStringLiteral("date"));
    m_time = panel(QStringLiteral("time"));
    tick();
    m_timer.setInterval(1000);
    connect(&m_timer, &QTimer::timeout, this, &StatusPanels::tick);
    m_timer.start();
}

void StatusPanels::setMailNotice(bool visible, const QString &toolTip)
{
    if (!toolTip.isEmpty())
        m_email->setToolTip(toolTip);
    m_email->setVisible(visible);
}

bool StatusPanels::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_email && event->type() == QEvent::MouseButtonRelease)
        emit mailNoticeClicked();
    return QObject::eventFilter(watched, event);
}

void StatusPanels::tick()
{
    const QDateTime now = QDateTime::currentDateTime();
    m_date->setText(now.toString(QStringLiteral("dd.MM.yyyy")));
    m_time->setText(now.toString(QStringLiteral("hh:mm:ss")));
}
