#include "core/mail/mailschedule.h"

#include <QTime>

#include <cmath>

namespace MailSchedule {

qint16 clampedInterval(qint16 minutes)
{
    return qBound(qint16(1), minutes, qint16(546));
}

double periodSeconds(qint16 minutes)
{
    return double(qint16(clampedInterval(minutes) * 60));
}

double secondsSinceMidnight(const QTime &time)
{
    return time.msecsSinceStartOfDay() / 1000.0;
}

bool isDue(double pollStart, double now, double period)
{
    return std::fabs(pollStart - now) >= period;
}

} // namespace MailSchedule
