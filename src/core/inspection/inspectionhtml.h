#pragma once

#include <QString>

// Pieces shared by the generated inspection pages. Every string that comes from a page
// goes through these before it becomes part of the markup.
namespace InspectionHtml {

// A whole page: head with the title and the style block, then the body markup.
QString page(const QString &title, const QString &body);
// Page text as HTML text, cut after `limit` characters.
QString text(const QString &pageText, int limit = 300);
// An address as a link that opens in a new window; an address that would run script is
// shown as text only.
QString link(const QString &address);
// A list of `total` entries of which `shown` are shown: the note for those left out.
QString moreNote(int total, int shown);

} // namespace InspectionHtml
