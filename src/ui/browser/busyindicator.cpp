#include "ui/browser/busyindicator.h"

#include <QApplication>
#include <QPainter>
#include <QtMath>

#include <array>

namespace {

constexpr int Size = 20;

// The frames are drawn once and shared by every window.
const std::array<QPixmap, BusyIndicator::FrameCount> &frames()
{
    static const std::array<QPixmap, BusyIndicator::FrameCount> drawn = [] {
        std::array<QPixmap, BusyIndicator::FrameCount> pictures;
        const QColor ink = QApplication::palette().color(QPalette::Highlight);
        for (int f = 0; f < BusyIndicator::FrameCount; ++f) {
            QPixmap pixmap(Size, Size);
            pixmap.fill(Qt::transparent);
            QPainter painter(&pixmap);
            painter.setRenderHint(QPainter::Antialiasing);
            // Six dots on a ring; the one of this frame is the brightest.
            for (int d = 0; d < BusyIndicator::FrameCount; ++d) {
                const qreal angle = d * 2 * M_PI / BusyIndicator::FrameCount - M_PI / 2;
                QColor colour = ink;
                colour.setAlphaF(d == f ? 1.0 : 0.25);
                painter.setBrush(colour);
                painter.setPen(Qt::NoPen);
                painter.drawEllipse(
                    QPointF(Size / 2.0 + 6 * qCos(angle), Size / 2.0 + 6 * qSin(angle)), 2.2, 2.2);
            }
            pictures[f] = pixmap;
        }
        return pictures;
    }();
    return drawn;
}

} // namespace

BusyIndicator::BusyIndicator(QWidget *parent)
    : QLabel(parent)
{
    setFixedSize(Size, Size);
    reset();
}

void BusyIndicator::reset()
{
    m_frame = 0;
    clear();
}

void BusyIndicator::advance()
{
    m_frame = m_frame % FrameCount + 1; // frames are numbered 1 to 6
    setPixmap(frames()[m_frame - 1]);
}
