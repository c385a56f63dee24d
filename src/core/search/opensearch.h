#pragma once

#include "core/search/searchengine.h"

#include <QByteArray>
#include <QString>

#include <optional>

// OpenSearch descriptions, which pages announce with
// <link rel="search" type="application/opensearchdescription+xml" href="...">.
namespace OpenSearch {

constexpr qint64 MaxBytes = 256 * 1024;

// Whether a LINK element's type announces a description.
bool isDescriptionType(const QString &type);

// The engine of a description: its ShortName and the template of its first Url of type
// text/html (sent by get) with {searchTerms} in it. The term goes where {searchTerms}
// was; the other parameters get their usual first values, optional ones none. Nothing,
// with the reason in *error, when the document is no usable description.
std::optional<SearchEngine> parse(const QByteArray &bytes, QString *error);

} // namespace OpenSearch
