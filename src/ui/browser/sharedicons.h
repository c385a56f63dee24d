#pragma once

#include <QIcon>
#include <QStyle>

#include <functional>

// Icons are made once and shared by every window: a QIcon is a shared handle, so each
// window holds a reference to the same pictures instead of decoding its own.
namespace SharedIcons {

// The desktop theme's icon of this name, or what fallback() makes where the theme has
// none. Kept under `key`, which names the fallback as well as the theme.
QIcon themedOr(const QString &theme, const QString &key, const std::function<QIcon()> &fallback);

// The desktop theme's icon of this name, or the style's standard picture where the
// theme has none.
QIcon themed(const QString &theme, QStyle::StandardPixmap fallback);

} // namespace SharedIcons
