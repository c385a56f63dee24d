#include "core/base/feedmark.h"

namespace FeedMark {

bool isFeedTitle(const QString &title)
{
    return title.startsWith(mark()) && title.size() > mark().size();
}

bool isFeedStartPageTitle(const QString &title)
{
    return title == mark() || title.indexOf(mark()) > 0;
}

QString displayTitle(const QString &title)
{
    return isFeedTitle(title) ? title.mid(mark().size()) : title;
}

QString markedTitle(const QString &title)
{
    return mark() + title;
}

} // namespace FeedMark
