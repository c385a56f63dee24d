#include "core/feeds/feedhtmlrules.h"

namespace FeedHtmlRules {

bool isDropped(GumboTag tag)
{
    switch (tag) {
    case GUMBO_TAG_SCRIPT:
    case GUMBO_TAG_STYLE:
    case GUMBO_TAG_IFRAME:
    case GUMBO_TAG_FRAME:
    case GUMBO_TAG_FRAMESET:
    case GUMBO_TAG_NOFRAMES:
    case GUMBO_TAG_OBJECT:
    case GUMBO_TAG_EMBED:
    case GUMBO_TAG_APPLET:
    case GUMBO_TAG_PARAM:
    case GUMBO_TAG_FORM:
    case GUMBO_TAG_INPUT:
    case GUMBO_TAG_BUTTON:
    case GUMBO_TAG_SELECT:
    case GUMBO_TAG_TEXTAREA:
    case GUMBO_TAG_META:
    case GUMBO_TAG_LINK:
    case GUMBO_TAG_BASE:
    case GUMBO_TAG_TITLE:
    case GUMBO_TAG_HEAD:
    case GUMBO_TAG_NOSCRIPT:
    case GUMBO_TAG_NOEMBED:
    case GUMBO_TAG_TEMPLATE:
    case GUMBO_TAG_SVG:
    case GUMBO_TAG_MATH:
    case GUMBO_TAG_XMP:
    case GUMBO_TAG_PLAINTEXT:
    case GUMBO_TAG_CANVAS:
    case GUMBO_TAG_VIDEO:
    case GUMBO_TAG_AUDIO:
        return true;
    default:
        return false;
    }
}

bool isAllowed(GumboTag tag)
{
    switch (tag) {
    case GUMBO_TAG_A:
    case GUMBO_TAG_ABBR:
    case GUMBO_TAG_ACRONYM:
    case GUMBO_TAG_ADDRESS:
    case GUMBO_TAG_B:
    case GUMBO_TAG_BIG:
    case GUMBO_TAG_BLOCKQUOTE:
    case GUMBO_TAG_BR:
    case GUMBO_TAG_CAPTION:
    case GUMBO_TAG_CENTER:
    case GUMBO_TAG_CITE:
    case GUMBO_TAG_CODE:
    case GUMBO_TAG_COL:
    case GUMBO_TAG_COLGROUP:
    case GUMBO_TAG_DD:
    case GUMBO_TAG_DEL:
    case GUMBO_TAG_DFN:
    case GUMBO_TAG_DIV:
    case GUMBO_TAG_DL:
    case GUMBO_TAG_DT:
    case GUMBO_TAG_EM:
    case GUMBO_TAG_FIGCAPTION:
    case GUMBO_TAG_FIGURE:
    case GUMBO_TAG_FONT:
    case GUMBO_TAG_H1:
    case GUMBO_TAG_H2:
    case GUMBO_TAG_H3:
    case GUMBO_TAG_H4:
    case GUMBO_TAG_H5:
    case GUMBO_TAG_H6:
    case GUMBO_TAG_HR:
    case GUMBO_TAG_I:
    case GUMBO_TAG_IMG:
    case GUMBO_TAG_INS:
    case GUMBO_TAG_KBD:
    case GUMBO_TAG_LI:
    case GUMBO_TAG_OL:
    case GUMBO_TAG_P:
    case GUMBO_TAG_PRE:
    case GUMBO_TAG_Q:
    case GUMBO_TAG_S:
    case GUMBO_TAG_SAMP:
    case GUMBO_TAG_SMALL:
    case GUMBO_TAG_SPAN:
    case GUMBO_TAG_STRIKE:
    case GUMBO_TAG_STRONG:
    case GUMBO_TAG_SUB:
    case GUMBO_TAG_SUP:
    case GUMBO_TAG_TABLE:
    case GUMBO_TAG_TBODY:
    case GUMBO_TAG_TD:
    case GUMBO_TAG_TFOOT:
    case GUMBO_TAG_TH:
    case GUMBO_TAG_THEAD:
    case GUMBO_TAG_TR:
    case GUMBO_TAG_TT:
    case GUMBO_TAG_U:
    case GUMBO_TAG_UL:
    case GUMBO_TAG_VAR:
    case GUMBO_TAG_WBR:
        return true;
    default:
        return false;
    }
}

bool isVoid(GumboTag tag)
{
    switch (tag) {
    case GUMBO_TAG_BR:
    case GUMBO_TAG_COL:
    case GUMBO_TAG_HR:
    case GUMBO_TAG_IMG:
    case GUMBO_TAG_WBR:
        return true;
    default:
        return false;
    }
}

bool isUrlAttribute(const QByteArray &name)
{
    return name == "href" || name == "src" || name == "cite" || name == "longdesc"
        || name == "background" || name == "lowsrc" || name == "dynsrc";
}

bool isAllowedAttribute(const QByteArray &name)
{
    static const char *const names[] = {"href", "src", "alt", "title", "width", "height", "align",
        "valign", "border", "cellpadding", "cellspacing", "colspan", "rowspan", "class", "dir",
        "lang", "cite", "datetime", "start", "type", "color", "face", "size", "bgcolor",
        "background", "hspace", "vspace", "nowrap", "summary", "abbr", "scope", "headers", "span",
        "target", "rel", "style", "longdesc", "clear", "reversed", "value", "noshade", "frame",
        "rules", "char", "charoff"};
    for (const char *allowed : names) {
        if (name == allowed)
            return true;
    }
    return false;
}

bool isUnsafeStyle(const QString &style)
{
    QString compact = style.toLower();
    compact.remove(u' ');
    static const char16_t *const words[] = {u"position", u"expression", u"url(", u"javascript:",
        u"behavior", u"binding", u"@import", u"\\"};
    for (const char16_t *word : words) {
        if (compact.contains(QStringView(word)))
            return true;
    }
    return false;
}

} // namespace FeedHtmlRules
