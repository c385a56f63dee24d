#pragma once

#include <QString>

// A saved page's file name ends in what its format is: a web archive in ".mhtml" (or
// ".mht"), a page in ".html" (or ".htm"). A name that ends otherwise gets the suffix
// added, so that the file opens as what it holds.
namespace SaveName {

enum class Kind { Html, Archive };
QString withSuffix(const QString &path, Kind kind);

} // namespace SaveName
