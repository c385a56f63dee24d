#pragma once

#include <QIcon>
#include <QStyle>
#include <QWidget>

// A command band's image: the desktop theme's where it has one, the style's otherwise,
// so the bands never show bare texts that do not fit.
inline QIcon bandIcon(const char *themeName, QStyle::StandardPixmap fallback, const QWidget *widget)
{
    return QIcon::fromTheme(QLatin1String(themeName), widget->style()->standardIcon(fallback));
}
