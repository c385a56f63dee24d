#include "ui/browser/sharedicons.h"

#include <QApplication>
#include <QHash>

namespace SharedIcons {

QIcon cached(const QString &key, const std::function<QIcon()> &make)
{
    static QHash<QString, QIcon> icons;
    auto found = icons.find(key);
    if (found == icons.end())
        found = icons.insert(key, make());
    return *found;
}

QIcon themed(const QString &theme, QStyle::StandardPixmap fallback)
{
    return cached(theme + u'/' + QString::number(int(fallback)), [&theme, fallback] {
        return QIcon::hasThemeIcon(theme) ? QIcon::fromTheme(theme)
                                          : QApplication::style()->standardIcon(fallback);
    });
}

} // namespace SharedIcons
