#include "core/inspection/picturelist.h"

#include "core/base/uitexts.h"
#include "core/feeds/feedhtmlcleaner.h"
#include "core/inspection/inspectionhtml.h"
#include "core/model/uniqsortstrcollection.h"

#include <QHash>
#include <QRegularExpression>

namespace PictureList {

namespace {
constexpr int MaxRows = 5000;

QString kindName(Element::Kind kind)
{
    switch (kind) {
    case Element::Kind::Img:
        return QStringLiteral("img");
    case Element::Kind::Picture:
        return QStringLiteral("picture");
    case Element::Kind::Input:
        return QStringLiteral("input");
    case Element::Kind::Css:
        break;
    }
    return QStringLiteral("CSS");
}

// A thumbnail may show a picture written into the page (data:image/...), which cannot
// run script; every other unsafe address stays text.
QString thumbnail(const QString &address)
{
    const bool dataImage
        = address.trimmed().startsWith(QStringLiteral("data:image/"), Qt::CaseInsensitive);
    if (FeedHtmlCleaner::isUnsafeUrl(address) && !dataImage)
        return {};
    // Only the thumbnails in view are fetched: a page of thousands of pictures shows at once.
    const QString img
        = u"<img loading=\"lazy\" src=\"" + FeedHtmlCleaner::escape(address) + u"\" alt=\"\">";
    if (dataImage)
        return img;
    return u"<a href=\"" + FeedHtmlCleaner::escape(address) + u"\" target=\"_blank\">" + img
        + u"</a>";
}
} // namespace

QStringList srcsetCandidates(const QString &srcset, const QUrl &base)
{
    // Each candidate is an address up to white space, then descriptors up to a comma.
    QStringList addresses;
    const qsizetype size = srcset.size();
    qsizetype at = 0;
    while (at < size) {
        while (at < size && (srcset.at(at).isSpace() || srcset.at(at) == u','))
            ++at;
        const qsizetype start = at;
        while (at < size && !srcset.at(at).isSpace())
            ++at;
        QString address = srcset.mid(start, at - start);
        const bool ended = address.endsWith(u',');
        while (address.endsWith(u','))
            address.chop(1);
        if (!ended) {
            int depth = 0;
            for (; at < size; ++at) {
                const QChar c = srcset.at(at);
                if (c == u'(')
                    ++depth;
                else if (c == u')' && depth > 0)
                    --depth;
                else if (c == u',' && depth == 0)
                    break;
            }
        }
        if (!address.isEmpty())
            addresses.append(base.resolved(QUrl(address)).toString());
    }
    return addresses;
}

QStringList cssUrls(const QString &value)
{
    static const QRegularExpression url(QStringLiteral(
        R"re(url\(\s*(?:"((?:[^"\\]|\\.)*)"|'((?:[^'\\]|\\.)*)'|([^)\s]*))\s*\))re"));
    static const QRegularExpression escaped(QStringLiteral(R"(\\(.))"));
    QStringList addresses;
    for (auto it = url.globalMatch(value); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        QString address = match.captured(1) + match.captured(2) + match.captured(3);
        address.replace(escaped, QStringLiteral("\\1"));
        if (!address.isEmpty())
            addresses.append(address);
    }
    return addresses;
}

QList<Picture> pictures(const QList<Element> &elements)
{
    UniqSortStrCollection addresses;
    addresses.FindString(QString(), 1); // letter case makes addresses different
    QHash<QString, Picture> found;
    const auto note = [&](const QString &address, const Element &element, bool chosen) {
        addresses.Add(address);
        Picture &picture = found[address];
        picture.address = address;
        if (chosen && picture.width == 0 && element.width > 0) {
            picture.width = element.width;
            picture.height = element.height;
        }
        const QString alt = element.alt.trimmed();
        if (!alt.isEmpty() && !picture.alts.contains(alt))
            picture.alts.append(alt);
        const QString kind = kindName(element.kind);
        if (!picture.kinds.contains(kind))
            picture.kinds.append(kind);
    };
    for (const Element &element : elements) {
        if (element.kind == Element::Kind::Css) {
            for (const QString &address : cssUrls(element.src))
                note(address, element, false);
            continue;
        }
        if (!element.src.isEmpty())
            note(element.src, element, element.current.isEmpty() || element.current == element.src);
        for (const QString &address : srcsetCandidates(element.srcset, QUrl(element.base)))
            note(address, element, address == element.current);
    }
    QList<Picture> sorted;
    for (const QString &address : addresses.SortedStrCollection())
        sorted.append(found.value(address));
    return sorted;
}

QString render(const Page &page)
{
    using namespace InspectionHtml;
    const QString heading = uiText(2550).arg(page.title.isEmpty() ? page.url : page.title);
    QString body = u"<h1>" + text(heading) + u"</h1>\n<p>" + link(page.url) + u"</p>\n";
    const QList<Picture> all = pictures(page.elements);
    if (page.unreadableFrames > 0)
        body += u"<p class=\"note\">" + text(uiText(2553).arg(page.unreadableFrames)) + u"</p>\n";
    if (all.isEmpty())
        return InspectionHtml::page(heading, body + u"<p>" + text(uiText(2552)) + u"</p>");
    body += u"<p>" + text(uiText(2551).arg(all.size())) + u"</p>\n<table><tr><th>"
        + text(uiText(2554)) + u"</th><th>" + text(uiText(2555)) + u"</th><th>" + text(uiText(2556))
        + u"</th><th>" + text(uiText(2557)) + u"</th><th>" + text(uiText(2558)) + u"</th></tr>\n";
    const int shown = qMin(int(all.size()), MaxRows);
    for (int i = 0; i < shown; ++i) {
        const Picture &picture = all.at(i);
        QStringList alts;
        for (const QString &alt : picture.alts)
            alts.append(text(alt));
        const QString size = picture.width > 0
            ? QString::number(picture.width) + u" × " + QString::number(picture.height)
            : text(uiText(2559));
        body += u"<tr><td class=\"thumb\">" + thumbnail(picture.address) + u"</td><td>"
            + link(picture.address) + u"</td><td>" + size + u"</td><td>"
            + alts.join(QStringLiteral("<br>")) + u"</td><td>"
            + picture.kinds.join(QStringLiteral(", ")) + u"</td></tr>\n";
    }
    body += u"</table>\n" + moreNote(int(all.size()), shown);
    return InspectionHtml::page(heading, body);
}

} // namespace PictureList
