#pragma once

#include <QStringView>

// A quick check of feed markup, made before any tree is built: true only when the
// markup is strictly well-formed HTML of allowed elements and attributes, so that a
// browser reads it exactly as written and the cleaner would change nothing. Anything
// unusual (comments, character references in attributes, implied end tags, tables or
// lists out of place) gives false and leaves the decision to the full cleaner.
namespace FeedHtmlScan {

bool isSafeAsWritten(QStringView html);

// An upper estimate of how deep the elements of the markup nest once parsed: start tags
// of elements with content count until an end tag of the same name closes the innermost
// one. Parsing markup takes time that grows with the square of this depth.
int nestingEstimate(QStringView html);

} // namespace FeedHtmlScan
