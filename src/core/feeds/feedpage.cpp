#include "core/feeds/feedpage.h"

#include "core/base/uitexts.h"
#include "core/feeds/feedhtmlcleaner.h"

#include <limits>

namespace {

const auto metaTag
    = QLatin1String("<meta http-equiv='Content-Type' content='text/html; charset=utf-8'>");

const auto styleBlock = QLatin1String(
    "<style><!--"
    "body,b,td,font,p,a{font-family: Verdana,Arial,Helvetica,sans-serif,'MS sans serif'; "
    "color: #000000; FONT-SIZE: 8pt}"
    "a,a:link{color:#3183FF; text-Decoration: none; FONT-WEIGHT: bold; FONT-SIZE: 8pt}"
    "a:visited{color:#3183FF; text-Decoration: none; FONT-WEIGHT: bold; FONT-SIZE: 8pt}"
    "a:active{color:#3183FF; text-Decoration: none; FONT-WEIGHT: bold; FONT-SIZE: 8pt}"
    "a:hover{color: black; text-Decoration: none; FONT-WEIGHT: bold; FONT-SIZE: 8pt}"
    "h1{font-family: Verdana,Arial,Helvetica,sans-serif; FONT-WEIGHT: bold; margin-top: 0px; "
    "margin-bottom: 5px; FONT-SIZE: 11pt}"
    "h2{font-family: Verdana,Arial,Helvetica,sans-serif; FONT-WEIGHT: bold; margin-top: 0px; "
    "margin-bottom: 5px; FONT-SIZE: 9pt}"
    "h3{font-family: Verdana,Arial,Helvetica,sans-serif; FONT-WEIGHT: bold; margin-top: 0px; "
    "margin-bottom: 5px; FONT-SIZE: 10pt}"
    "h4{font-family: Verdana,Arial,Helvetica,sans-serif; FONT-WEIGHT: bold; margin-top: 0px; "
    "margin-bottom: 5px; FONT-SIZE: 8pt}"
    ".toggle{border: 1px solid #000000; font-family: 'Courier New',Courier,monospace; "
    "FONT-WEIGHT: bold; FONT-SIZE: 12px; color: #000000; background-color: #FFFFFF}"
    ".itemborder{width: 318px; border-top: 1px solid #C1C1C1; border-left: 1px solid #C1C1C1; "
    "border-bottom: 1px solid #000000; border-right: 1px solid #000000}"
    ".hdborder{width: 318px; border-top: 1px solid #C1C1C1; border-left: 1px solid #C1C1C1; "
    "border-bottom: 1px solid #000000; border-right: 1px solid #000000}"
    ".smallbr{margin-height: 3px}"
    ".dfont{font-size:9pt}"
    "body{margin-left: 10px; margin-right: 10px; margin-top: 16px; margin-bottom: 16px; "
    "background-color: #FFFFFF; scrollbar-face-color: #E0E0E0; "
    "scrollbar-highlight-color: #FFFFFF; scrollbar-shadow-color: #C1C1C1; "
    "scrollbar-arrow-color: #808080; scrollbar-track-color: #F0F0F0}"
    "//--></style>");

const auto toggleScript
    = QLatin1String("<script language='JavaScript'>"
                    "function togglediv(oDiv, oDest, oT){if(oDiv.innerText == '"
                    "-"
                    "'){oDiv.innerText = '"
                    "+"
                    "'; eval(\"oDest.style.display = 'none'\")} else {oDiv.innerText = '"
                    "-"
                    "'; eval(\"oDest.style.display = 'inline'\")} }"
                    "</script></head><body>");

const auto spacerTable = QLatin1String(
    "<table style='visibility: none; border-style: none' border=1 cellspacing='2px' "
    "cellpadding='2px'><tr><td></td></tr></table>");

const auto plainHead = QLatin1String("<html><head>"
                                     "<meta http-equiv='Content-Type' "
                                     "content='text/html; charset=utf-8'>"
                                     "</head><body>");

// An address for an attribute: empty when following it would run script.
QString attributeUrl(const QString &url)
{
    return FeedHtmlCleaner::isUnsafeUrl(url) ? QString() : FeedHtmlCleaner::escape(url);
}

void appendItem(QString &page, const FeedItem &item, qint16 number, const QString &linkText,
    const QString &toggleSign, FeedHtmlCleaner::Budget *budget)
{
    const QString n = QString::number(number);
    page += u"<div class='itemborder'>"
            u"<table border=0 width='318px' cellspacing='0px' cellpadding='5px'>"
            u"<tr><td align=left width='283px'><h3>"
        + FeedHtmlCleaner::clean(item.title, budget)
        + u"</h3></td>"
          u"<td align=center valign=top width='15px'>"
          u"<div onmouseover=\"{this.style.cursor='hand'}\" "
          u"onclick =\"javascript: togglediv(this, dr"
        + n + u", 't" + n + u"');\" class='toggle'>" + toggleSign
        + u"</div></td></tr>"
          u"<tr id='dr"
        + n + u"'><td class='dfont' width='298' colspan=2>";
    const QString description = FeedHtmlCleaner::clean(item.description, budget);
    if (!description.isEmpty())
        page += description + u' ';
    page += u"\r\n<a class='lnk' href=\"" + attributeUrl(item.link) + u"\" target=\"frm" + n
        + u"\">" + linkText + u"</a></td></tr></table></div>" + spacerTable;
}

} // namespace

QString FeedPage::defaultLinkText()
{
    return uiText(2052);
}

QString FeedPage::render(const Feed &feed, const QString &linkText, const QString &toggleSign)
{
    FeedHtmlCleaner::Budget budget;
    // Room for the fixed text and everything the feed brings, so the page grows only once.
    qsizetype expected = 4096 + 2 * feed.title.size() + feed.imageUrl.size();
    for (const FeedItem &item : feed.items)
        expected += 1024 + item.title.size() + item.description.size() + item.link.size();
    QString page;
    page.reserve(expected);
    page += u"<html><head><title>" + FeedHtmlCleaner::toPlainText(feed.title, &budget) + u"</title>"
        + metaTag + styleBlock + toggleScript + u"<center>";

    const QString image = attributeUrl(feed.imageUrl);
    page += u"<div class='hdborder'>"
            u"<table border='0' width='318px' cellspacing='0px' cellpadding='5px'>"
            u"<tr><td><h1>"
        + FeedHtmlCleaner::clean(feed.title, &budget) + u"</h1></td><td valign=top align=right>"
        + (image.isEmpty() ? QStringLiteral("&nbsp;") : u"<img src='" + image + u"'>")
        + u"</td></tr></table></div>" + spacerTable;

    // Items are counted in 16 bits; a feed never shows more than that counter reaches.
    qint16 number = 0;
    for (const FeedItem &item : feed.items) {
        if (number == std::numeric_limits<qint16>::max())
            break;
        ++number;
        appendItem(page, item, number, linkText, toggleSign, &budget);
    }
    page += u"</center></body></html>";
    return page;
}

QString FeedPage::errorPage(const FeedError &error, const QString &sourceUrl)
{
    return plainHead + u"<h1>" + uiText(1061) + u"</h1><b>" + uiText(1062) + u"</b> "
        + FeedHtmlCleaner::escape(error.reason) + u"<br><br><b>" + uiText(1063) + u"</b> "
        + FeedHtmlCleaner::escape(sourceUrl) + u"<br><br><b>" + uiText(1064) + u"</b> "
        + QString::number(error.line) + u"</body></html>";
}

QString FeedPage::unknownTypePage()
{
    return plainHead + u"<p style='font-family: Verdana; FONT-SIZE: 8pt'><b>" + uiText(1060)
        + u"</b></p></body></html>";
}

QString FeedPage::forResult(const FeedParseResult &result, const QString &sourceUrl,
    const QString &linkText, const QString &toggleSign)
{
    switch (result.status) {
    case FeedParseResult::Status::Parsed:
        return render(result.feed, linkText, toggleSign);
    case FeedParseResult::Status::UnknownType:
        return unknownTypePage();
    case FeedParseResult::Status::XmlError:
        break;
    }
    return errorPage(result.error, sourceUrl);
}
