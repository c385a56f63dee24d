#pragma once

#include <QDateTime>

// The local clock used for every timestamp the program writes. The command-line
// tool can fix it so that the files it writes are reproducible.
namespace Clock {

QDateTime now();
void setFixed(const QDateTime &moment);

} // namespace Clock

// Automation dates: days since 30 December 1899, the fraction being the time of day.
namespace AutomationDate {

double fromDateTime(const QDateTime &moment);
QDateTime toDateTime(double value);

} // namespace AutomationDate
