#include "core/feeds/feedlist.h"

#include <QUrl>

void FeedList::collect(const QList<QStringList> &linkElements, const QString &pageUrl)
{
    static const QString rss = QStringLiteral("application/rss+xml").toUpper();
    static const QString xml = QStringLiteral("text/xml").toUpper();
    m_entries.clear();
    for (const QStringList &link : linkElements) {
        const QString type = link.value(0).toUpper();
        if (type != rss && type != xml)
            continue;
        QString url = link.value(2);
        if (url.startsWith(QStringLiteral("//"))) {
            // A network-path reference keeps its own host and takes the page's scheme.
            url = QUrl(pageUrl).scheme() + u':' + url;
        } else if (url.startsWith(u'/')) {
            url = GetServerStr(pageUrl) + url;
        }
        m_entries.append(Entry {link.value(1), url});
    }
}

QString FeedList::GetServerStr(const QString &url)
{
    const QUrl address(url);
    if (!address.isValid() || address.scheme().isEmpty())
        return QString();
    return address
        .adjusted(
            QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment)
        .toString();
}

QString FeedList::addressToOpen(const QString &listed, const QString &pageUrl)
{
    const QUrl written(listed.trimmed());
    if (!written.scheme().isEmpty() || pageUrl.isEmpty())
        return listed;
    return QUrl(pageUrl).resolved(written).toString();
}
