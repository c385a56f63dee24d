#include "core/browsing/linkstoopen.h"

#include "core/base/uitexts.h"
#include "core/model/uniqsortstrcollection.h"

#include <QUrl>

namespace LinksToOpen {

namespace {
UniqSortStrCollection collect(const QList<QStringList> &anchors)
{
    UniqSortStrCollection links;
    // Addresses differing only in letter case are different addresses.
    links.FindString(QString(), 1);
    for (const QStringList &anchor : anchors) {
        const QString address = anchor.value(0).trimmed();
        if (address.startsWith(QStringLiteral("javascript:"), Qt::CaseInsensitive)
            || address.startsWith(QStringLiteral("mailto:"), Qt::CaseInsensitive))
            continue;
        // A "#" link to a place in the document that holds it.
        const QUrl target(address);
        const QUrl document(anchor.value(2));
        if (anchor.value(1).trimmed().startsWith(u'#')
            || (target.hasFragment()
                && target.adjusted(QUrl::RemoveFragment)
                    == document.adjusted(QUrl::RemoveFragment)))
            continue;
        links.Add(address);
    }
    return links;
}
} // namespace

QStringList select(const QList<QStringList> &anchors)
{
    return collect(anchors).SortedStrCollection();
}

QStringList inPageOrder(const QList<QStringList> &anchors)
{
    return collect(anchors).StrCollection();
}

bool needsNotice(int openWindows, int links, bool noticeSwitch)
{
    return noticeSwitch && links > 0 && openWindows + links >= NoticeThreshold;
}

QString noticeText(int links)
{
    // The first text ends in two carriage returns, the dialog's paragraph break.
    QString text = uiText(1116);
    text.replace(QStringLiteral("%n"), QString::number(links));
    text += uiText(1117);
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    return text;
}

} // namespace LinksToOpen
