#pragma once

#include <QList>

// Zoom levels of a window. The menu offers eleven steps from 100 to 400 %; the zoom
// keys also reach below 100 %, in the steps other browsers use.
namespace ZoomSteps {

const QList<int> &menuSteps();
const QList<int> &keySteps();
// The next key step above (direction > 0) or below (< 0) the current zoom, which need
// not be a step itself; direction 0 gives 100 %. The ends stay where they are.
int next(int current, int direction);

} // namespace ZoomSteps
