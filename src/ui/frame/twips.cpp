#include "ui/frame/twips.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace {
qreal logicalDpi(const QWidget *widget)
{
    const QScreen *screen
        = widget && widget->screen() ? widget->screen() : QGuiApplication::primaryScreen();
    return screen ? screen->logicalDotsPerInch() : 96.0;
}
} // namespace

namespace Twips {

int toPixels(int twips, const QWidget *onScreenOf)
{
    return qRound(twips * logicalDpi(onScreenOf) / 1440.0);
}

qint16 fromPixels(int pixels, const QWidget *onScreenOf)
{
    const qint64 twips = qRound64(pixels * 1440.0 / logicalDpi(onScreenOf));
    return static_cast<qint16>(qBound(qint64(-32768), twips, qint64(32767)));
}

} // namespace Twips
