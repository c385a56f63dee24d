#pragma once

#include <QList>
#include <QString>

// The intervals a window may refresh itself at, in seconds; 0 means off.
namespace RefreshInterval {

// Shorter than this, a page would be reloaded before it has finished loading.
constexpr int MinimumSeconds = 5;
constexpr int MaximumSeconds = 24 * 60 * 60;

// The usual choices: 30 s, 1, 5, 15 and 60 minutes.
const QList<int> &presets();
// Off stays off; anything else is brought into the allowed range.
int bounded(int seconds);
// How an interval reads: "30 s", "5 min", "1 min 30 s".
QString label(int seconds);

} // namespace RefreshInterval
