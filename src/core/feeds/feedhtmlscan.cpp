#include "core/feeds/feedhtmlscan.h"

#include "core/feeds/feedhtmlcleaner.h"

#include <QVarLengthArray>

#include <algorithm>
#include <iterator>

namespace {

bool isNameChar(QChar c)
{
    const char16_t u = c.unicode();
    return (u >= u'a' && u <= u'z') || (u >= u'A' && u <= u'Z') || (u >= u'0' && u <= u'9')
        || u == u'-' || u == u'_' || u == u':';
}

} // namespace

int FeedHtmlScan::nestingEstimate(QStringView html)
{
    static const char16_t *const voidNames[] = {u"area", u"base", u"br", u"col", u"embed", u"hr",
        u"img", u"input", u"keygen", u"link", u"meta", u"param", u"source", u"track", u"wbr",
        u"basefont", u"bgsound", u"frame", u"image", u"isindex"};
    // The open names are views into the markup, compared without regard to case.
    QVarLengthArray<QStringView, 32> open;
    int deepest = 0;
    const qsizetype size = html.size();
    qsizetype at = 0;
    while ((at = html.indexOf(u'<', at)) >= 0) {
        ++at;
        if (html.mid(at).startsWith(u"!--")) {
            const qsizetype end = html.indexOf(u"-->", at);
            at = end < 0 ? size : end + 3;
            continue;
        }
        const bool closing = at < size && html.at(at) == u'/';
        if (closing)
            ++at;
        const qsizetype nameStart = at;
        while (at < size && isNameChar(html.at(at)))
            ++at;
        if (at == nameStart || !html.at(nameStart).isLetter())
            continue;
        const QStringView name = html.mid(nameStart, at - nameStart);
        if (closing) {
            if (!open.isEmpty() && open.last().compare(name, Qt::CaseInsensitive) == 0)
                open.removeLast();
            continue;
        }
        const bool isVoidName
            = std::any_of(std::begin(voidNames), std::end(voidNames), [name](const char16_t *v) {
                  return name.compare(QStringView(v), Qt::CaseInsensitive) == 0;
              });
        if (!isVoidName) {
            open.append(name);
            deepest = qMax(deepest, int(open.size()));
            if (deepest > FeedHtmlCleaner::Budget::MaxDepth)
                return deepest; // too deep already; no need to know how deep
        }
    }
    return deepest;
}
