#pragma once

#include "core/inspection/documentoutline.h"

#include <QList>
#include <QString>

// The generated page that shows a document's outline: title, headings as a tree, frames,
// forms, links, scripts, style sheets and meta tags.
namespace StructurePage {

// How deep each heading sits in the tree: under the last heading of a higher rank, so
// skipped ranks do not leave empty levels (h1, h3 gives 0, 1).
QList<int> headingDepths(const QList<DocumentOutline::Heading> &headings);

QString render(const DocumentOutline &outline);

} // namespace StructurePage
