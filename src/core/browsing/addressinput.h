#pragma once

#include <QString>

// What a text typed into the address field opens: the text itself when it reads as an
// address, otherwise a search for it with the search engine of the preferences.
namespace AddressInput {

// Whether the text reads as an address. A text with a scheme, an absolute file path, a
// host with a port, "localhost", or a text without blanks whose host part holds a dot
// is an address; every other text (words, a single word such as "intranet") is a query.
bool isAddress(const QString &text);

// The address of a search for `query`. A "%s" in `engine` stands for the percent-encoded
// query; an engine without one gets the encoded query appended.
QString searchUrl(const QString &engine, const QString &query);

// The engine's own page, for the Search command: the address with no query put in.
QString searchStartPage(const QString &engine);

// The address to open for the trimmed text: the text itself, or a search for it. An
// empty text stays empty.
QString resolve(const QString &text, const QString &engine);

} // namespace AddressInput
