#pragma once

#include <QStringView>

// A quick look at feed markup, made before any tree is built.
namespace FeedHtmlScan {

// An upper estimate of how deep the elements of the markup nest once parsed: start tags
// of elements with content count until an end tag of the same name closes the innermost
// one. Parsing markup takes time that grows with the square of this depth.
int nestingEstimate(QStringView html);

} // namespace FeedHtmlScan
