#include "ui/browser/lockicon.h"

#include "ui/browser/sharedicons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace LockIcon {

namespace {

QIcon draw(bool secure)
{
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor colour = secure ? QColor(30, 130, 60) : QColor(150, 150, 150);
    painter.setPen(QPen(colour, 1.6));
    painter.setBrush(Qt::NoBrush);
    // The shackle stands open on an unverified connection.
    QPainterPath shackle;
    shackle.moveTo(5, 8);
    shackle.lineTo(5, 5);
    shackle.arcTo(5, 2, 6, 6, 180, -180);
    shackle.lineTo(11, secure ? 8 : 5);
    painter.drawPath(shackle);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawRoundedRect(QRectF(3.5, 7.5, 9, 7), 1.5, 1.5);
    return QIcon(pixmap);
}

} // namespace

QIcon make(bool secure)
{
    const QString theme = secure ? QStringLiteral("security-high") : QStringLiteral("security-low");
    return SharedIcons::themedOr(
        theme, QStringLiteral("lock/") + theme, [secure] { return draw(secure); });
}

} // namespace LockIcon
