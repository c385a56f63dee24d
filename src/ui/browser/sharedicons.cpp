#include "ui/browser/sharedicons.h"

#include <QApplication>
#include <QHash>

namespace SharedIcons {

QIcon themedOr(const QString &theme, const QString &key, const std::function<QIcon()> &fallback)
{
    static QHash<QString, QIcon> icons;
    auto found = icons.find(key);
    if (found == icons.end())
        found
            = icons.insert(key, QIcon::hasThemeIcon(theme) ? QIcon::fromTheme(theme) : fallback());
    return *found;
}

QIcon themed(const QString &theme, QStyle::StandardPixmap fallback)
{
    return themedOr(theme, theme + u'/' + QString::number(int(fallback)),
        [fallback] { return QApplication::style()->standardIcon(fallback); });
}

} // namespace SharedIcons
