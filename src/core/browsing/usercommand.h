#pragma once

#include <QtGlobal>

// Set by every toolbar command of a browser window before it acts. While it is set
// the next window a page asks for is refused, and that refusal clears it, so a
// command of the user is never answered by a window a page opens at that moment.
inline qint16 UserCommandPending = 0;

// The mark lives only as long as the command it was set for: the next completed
// navigation or a few seconds end it, whichever comes first. Without that, one click
// on a button that loads nothing would refuse the next window of any page, minutes
// later.
namespace UserCommand {

constexpr qint64 LifetimeMs = 3000;

// Milliseconds on a clock that never jumps.
qint64 now();
void mark(qint64 atMs = now());
// Whether the mark is still set at the given moment; an expired mark is cleared.
bool pending(qint64 atMs = now());
void clear();
// A navigation has completed: the command it was for is answered.
void navigationDone();

} // namespace UserCommand
