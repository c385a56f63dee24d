#pragma once

#include <QtGlobal>

class QTime;

// When the mail check polls: a period of whole minutes measured on the
// seconds-since-midnight clock.
namespace MailSchedule {

// The interval the check uses: 1 to 546 minutes. 546 × 60 is the largest period that
// still fits a 16-bit integer; a stored interval outside the range is pulled into it.
qint16 clampedInterval(qint16 minutes);

// The period in seconds for a stored interval, after clamping.
double periodSeconds(qint16 minutes);

double secondsSinceMidnight(const QTime &time);

// True when a poll is due: the absolute distance between the last poll's start and now
// has reached the period. Near midnight the clock starts again at 0; the distance is
// then large, so the first tick after midnight polls.
bool isDue(double pollStart, double now, double period);

} // namespace MailSchedule
