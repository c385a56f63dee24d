#include "core/model/layoutfit.h"

#include <algorithm>

namespace {

// Moves a window inside the area, shrinking it only where it is larger.
QRect confine(QRect window, const QSize &area)
{
    window.setWidth(std::clamp(window.width(), 1, std::max(1, area.width())));
    window.setHeight(std::clamp(window.height(), 1, std::max(1, area.height())));
    window.moveLeft(std::clamp(window.left(), 0, std::max(0, area.width() - window.width())));
    window.moveTop(std::clamp(window.top(), 0, std::max(0, area.height() - window.height())));
    return window;
}

} // namespace

namespace LayoutFit {

QList<QRect> fitInto(const QList<QRect> &windows, const QSize &area)
{
    if (windows.isEmpty() || area.isEmpty())
        return windows;
    // The arrangement's extent, measured from the area's origin.
    int right = 0, bottom = 0;
    for (const QRect &window : windows) {
        right = std::max(right, window.x() + window.width());
        bottom = std::max(bottom, window.y() + window.height());
    }
    const double scale = std::min({1.0, double(area.width()) / std::max(1, right),
        double(area.height()) / std::max(1, bottom)});
    QList<QRect> fitted;
    fitted.reserve(windows.size());
    for (const QRect &window : windows) {
        QRect placed = window;
        if (scale < 1.0) {
            placed = QRect(qRound(window.x() * scale), qRound(window.y() * scale),
                qRound(window.width() * scale), qRound(window.height() * scale));
        }
        fitted.append(confine(placed, area));
    }
    return fitted;
}

} // namespace LayoutFit
