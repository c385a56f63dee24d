#include "ui/frame/appicon.h"

#include <QFont>
#include <QLinearGradient>
#include <QPainter>
#include <QPixmap>

namespace AppIcon {

QIcon make()
{
    QIcon icon;
    for (int size : {16, 24, 32, 48, 64, 128}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        QLinearGradient fill(0, 0, 0, size);
        fill.setColorAt(0, QColor(49, 131, 255));
        fill.setColorAt(1, QColor(22, 74, 160));
        painter.setBrush(fill);
        painter.setPen(Qt::NoPen);
        painter.drawRoundedRect(QRectF(0.5, 0.5, size - 1, size - 1), size * 0.2, size * 0.2);
        // Three stacked window edges: many pages in one frame.
        painter.setBrush(QColor(255, 255, 255, 90));
        painter.drawRoundedRect(QRectF(size * 0.14, size * 0.14, size * 0.5, size * 0.12), 1, 1);
        QFont font;
        font.setBold(true);
        font.setPixelSize(int(size * 0.62));
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(
            QRectF(0, size * 0.12, size, size * 0.9), Qt::AlignCenter, QStringLiteral("V"));
        icon.addPixmap(pixmap);
    }
    return QIcon::fromTheme(
        QStringLiteral("vantrell"), QIcon::fromTheme(QStringLiteral("web-browser"), icon));
}

} // namespace AppIcon
