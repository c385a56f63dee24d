#pragma once

#include "core/search/searchengine.h"

#include <QByteArray>
#include <QList>
#include <QUrl>

// Reads the search-form page into engines. Every <form> with method "get" (or none)
// and a title attribute is one engine named by that title; the legend of the nearest
// enclosing <fieldset> is its group. The form's action, resolved against the page's own
// address, must be an http or https address. The first text or search field with a
// name takes the term, hidden fields with a name are sent as written, in page order.
// A form marked data-checked starts checked. A second form of a name already taken is
// left out. Hostile pages are bounded in size, nesting and number of engines.
namespace SearchFormFile {

struct Limits
{
    qint64 maxFileBytes = 2 * 1024 * 1024;
    int maxNesting = 256;
    qint64 maxElements = 100000;
    int maxEngines = 500;
};

struct Result
{
    enum Status { Read, Missing, Unreadable, TooLarge, TooDeep, NoEngines };
    Status status = Read;
    QList<SearchEngine> engines;
    // Forms that were left out: no title, not a get form, no text field, an action
    // that is no web address, a name already taken, or over the limit.
    int skipped = 0;
    QString error; // for Unreadable

    // What went wrong in the program's words, empty when all is well.
    QString message(const QString &path) const;
};

Result parse(const QByteArray &bytes, const QUrl &base, const Limits &limits = {});
Result readFile(const QString &path, const Limits &limits = {});

} // namespace SearchFormFile
