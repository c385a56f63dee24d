#pragma once

#include <QIcon>
#include <QStyle>

#include <functional>

// Icons are made once and shared by every window: a QIcon is a shared handle, so each
// window holds a reference to the same pictures instead of decoding its own.
namespace SharedIcons {

// The icon kept under this key, made by make() the first time it is asked for.
QIcon cached(const QString &key, const std::function<QIcon()> &make);

// The desktop theme's icon of this name, or the style's standard picture where the
// theme has none.
QIcon themed(const QString &theme, QStyle::StandardPixmap fallback);

} // namespace SharedIcons
