#pragma once

#include <QString>

struct GumboInternalNode;

// The text of an element as a browser's innerText gives it: runs of white space
// collapse to one blank, blanks at line starts and ends go, <br> and block elements
// break lines (CR LF, none at the very end), and the contents of pre keep their white
// space.
namespace HtmlText {

QString innerText(const GumboInternalNode *element);

// The element name: the standard name for known tags, the written name otherwise
// (lower case), e.g. "feed" for the feed mark.
QString elementName(const GumboInternalNode *element);

} // namespace HtmlText
