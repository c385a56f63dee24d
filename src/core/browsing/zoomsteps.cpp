#include "core/browsing/zoomsteps.h"

#include <iterator>

namespace ZoomSteps {

const QList<int> &menuSteps()
{
    // From 300 the steps go to 350 and 400; there is no 325 or 375.
    static const QList<int> steps = {100, 125, 150, 175, 200, 225, 250, 275, 300, 350, 400};
    return steps;
}

const QList<int> &keySteps()
{
    static const QList<int> steps = [] {
        QList<int> all = {50, 67, 75, 80, 90};
        all.append(menuSteps());
        return all;
    }();
    return steps;
}

int next(int current, int direction)
{
    const QList<int> &steps = keySteps();
    if (direction == 0)
        return 100;
    if (direction > 0) {
        for (int step : steps) {
            if (step > current)
                return step;
        }
        return steps.last();
    }
    for (auto step = steps.crbegin(); step != steps.crend(); ++step) {
        if (*step < current)
            return *step;
    }
    return steps.first();
}

} // namespace ZoomSteps
