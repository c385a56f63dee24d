#pragma once

#include <QtGlobal>

// Set by every toolbar command of a browser window before it acts. While it is set
// the next window a page asks for is refused, and that refusal clears it, so a
// command of the user is never answered by a window a page opens at that moment.
inline qint16 UserCommandPending = 0;
