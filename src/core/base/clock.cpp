#include "core/base/clock.h"

#include <cmath>

namespace {
QDateTime &fixedMoment()
{
    static QDateTime moment;
    return moment;
}
} // namespace

namespace Clock {

QDateTime now()
{
    return fixedMoment().isValid() ? fixedMoment() : QDateTime::currentDateTime();
}

void setFixed(const QDateTime &moment)
{
    fixedMoment() = moment;
}

} // namespace Clock

namespace AutomationDate {

static const QDate epoch(1899, 12, 30);

double fromDateTime(const QDateTime &moment)
{
    const double days = static_cast<double>(epoch.daysTo(moment.date()));
    const double fraction = moment.time().msecsSinceStartOfDay() / 86400000.0;
    // Before the epoch the fraction still counts forward from midnight.
    return days >= 0 ? days + fraction : days - fraction;
}

QDateTime toDateTime(double value)
{
    const double whole = value >= 0 ? std::floor(value) : std::ceil(value);
    const double fraction = std::abs(value - whole);
    const QDate date = epoch.addDays(static_cast<qint64>(whole));
    return QDateTime(date,
        QTime::fromMSecsSinceStartOfDay(
            static_cast<int>(std::llround(fraction * 86400000.0)) % 86400000));
}

} // namespace AutomationDate
