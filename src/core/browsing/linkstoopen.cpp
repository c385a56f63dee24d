#include "core/browsing/linkstoopen.h"

#include "core/base/uitexts.h"
#include "core/model/uniqsortstrcollection.h"

#include <QUrl>

namespace LinksToOpen {

bool isSkipped(const QStringList &anchor)
{
    const QString address = anchor.value(0).trimmed();
    if (address.startsWith(QStringLiteral("javascript:"), Qt::CaseInsensitive)
        || address.startsWith(QStringLiteral("mailto:"), Qt::CaseInsensitive))
        return true;
    // A "#" link to a place in the document that holds it.
    const QUrl target(address);
    const QUrl document(anchor.value(2));
    return anchor.value(1).trimmed().startsWith(u'#')
        || (target.hasFragment()
            && target.adjusted(QUrl::RemoveFragment) == document.adjusted(QUrl::RemoveFragment));
}

QStringList select(const QList<QStringList> &anchors)
{
    UniqSortStrCollection links;
    // Addresses differing only in letter case are different addresses.
    links.FindString(QString(), 1);
    for (const QStringList &anchor : anchors) {
        if (!isSkipped(anchor))
            links.Add(anchor.value(0).trimmed());
    }
    // In the order of the page, as a reader meets them.
    return links.StrCollection();
}

QList<TitledLink> toBookmark(const QList<QStringList> &anchors)
{
    QList<TitledLink> links;
    for (const QStringList &anchor : anchors) {
        if (isSkipped(anchor))
            continue;
        const QString address = anchor.value(0).trimmed();
        const QString text = anchor.value(3).simplified();
        links.append({text.isEmpty() ? address : text, address});
    }
    return links;
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
