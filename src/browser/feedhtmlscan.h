#pragma once

#include <QStringView>

// A quick check of feed markup, made before any tree is built: true only when the
// markup is strictly well-formed HTML of allowed elements and attributes, so that a
// browser reads it exactly as written and the cleaner would change nothing. Anything
// unusual (comments, character references in attributes, implied end tags, tables or
// lists out of place) gives false and leaves the decision to the full cleaner.
namespace FeedHtmlScan {

bool isSafeAsWritten(QStringView html);

} // namespace FeedHtmlScan
