#include "core/inspection/inspectionhtml.h"

#include "core/base/uitexts.h"
#include "core/feeds/feedhtmlcleaner.h"

namespace InspectionHtml {

QString page(const QString &title, const QString &body)
{
    return u"<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>" + text(title)
        + u"</title><style>"
          "body{font-family:sans-serif;font-size:13px;margin:12px;color:#222}"
          "h1{font-size:18px}h2{font-size:15px;margin:18px 0 6px;border-bottom:1px solid #ccc}"
          "table{border-collapse:collapse}td,th{border:1px solid #ddd;padding:3px 6px;"
          "vertical-align:top;text-align:left}th{background:#f0f0f0}"
          "td.thumb img{max-width:120px;max-height:90px}a{color:#1a4fa0;word-break:break-all}"
          ".note{color:#666}ul{margin:2px 0;padding-left:20px}.lvl{color:#888;font-size:11px}"
          "</style></head><body>\n"
        + body + u"\n</body></html>\n";
}

QString text(const QString &pageText, int limit)
{
    if (pageText.size() <= limit)
        return FeedHtmlCleaner::escape(pageText);
    return FeedHtmlCleaner::escape(pageText.left(limit)) + u'…';
}

QString link(const QString &address)
{
    if (address.isEmpty() || FeedHtmlCleaner::isUnsafeUrl(address))
        return text(address, 200);
    return u"<a href=\"" + FeedHtmlCleaner::escape(address) + u"\" target=\"_blank\">"
        + text(address, 200) + u"</a>";
}

QString moreNote(int total, int shown)
{
    if (total <= shown)
        return {};
    return u"<p class=\"note\">" + text(uiText(2574).arg(total - shown)) + u"</p>";
}

} // namespace InspectionHtml
