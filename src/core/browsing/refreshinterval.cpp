#include "core/browsing/refreshinterval.h"

#include "core/base/uitexts.h"

#include <algorithm>

namespace RefreshInterval {

const QList<int> &presets()
{
    static const QList<int> choices = {30, 60, 5 * 60, 15 * 60, 60 * 60};
    return choices;
}

int bounded(int seconds)
{
    if (seconds <= 0)
        return 0;
    return std::clamp(seconds, MinimumSeconds, MaximumSeconds);
}

QString label(int seconds)
{
    if (seconds <= 0)
        return uiText(903);
    const int minutes = seconds / 60;
    const int rest = seconds % 60;
    if (minutes == 0)
        return uiText(2507).arg(rest);
    if (rest == 0)
        return uiText(2508).arg(minutes);
    return uiText(2508).arg(minutes) + u' ' + uiText(2507).arg(rest);
}

} // namespace RefreshInterval
