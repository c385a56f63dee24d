#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// "Open all links": which links of a page are opened, and when the user is asked first.
namespace LinksToOpen {

// Windows open + links to open from which the notice is shown.
constexpr int NoticeThreshold = 16;

// The addresses to open from a page's anchors, each given as {resolved address, href as
// written, address of the document that holds it}: no script or mail links, no links to
// a place in the same document, each address once (exact comparison), sorted.
QStringList select(const QList<QStringList> &anchors);
// The same addresses in the order in which they stand on the page.
QStringList inPageOrder(const QList<QStringList> &anchors);

// Whether the notice comes before opening `links` addresses while `openWindows` are open.
bool needsNotice(int openWindows, int links, bool noticeSwitch);

// The notice: how many links will open, and the question.
QString noticeText(int links);

} // namespace LinksToOpen
