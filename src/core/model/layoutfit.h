#pragma once

#include <QList>
#include <QRect>
#include <QSize>

// Where the windows of a layout go in the area they open in. A layout saved on a larger
// screen is scaled down as a whole, so its windows keep their places relative to each
// other; a window still reaching past an edge is moved in, and shrunk only when it is
// larger than the area. A layout that fits is left exactly as it was saved.
namespace LayoutFit {

QList<QRect> fitInto(const QList<QRect> &windows, const QSize &area);

} // namespace LayoutFit
