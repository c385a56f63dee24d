#pragma once

#include <QString>

#include <functional>

class Prefer;
class QObject;

// The mail passwords in the desktop's secret store (Secret Service over D-Bus) instead
// of the settings file, where they are only scrambled. Where no secret service runs the
// file keeps them, as before. The store answers asynchronously; nothing here waits.
namespace PasswordStore {

// Finds out once whether a store can be used, and tells `done` (with `context` alive).
// Without a store on the session bus the answer comes at once.
void probe(QObject *context, const std::function<void(bool)> &done);
// The answer of the probe; false before it has come.
bool isAvailable();

// What the settings dialog tells the user about where the passwords are.
QString whereText();

// Probes, then fills the preferences' passwords from the store, moves passwords found only in the
// file into it, and then marks the preferences so that the file keeps no password.
// Calls `done` (with `context` alive) when all is answered; at once without a store.
void load(Prefer &preferences, QObject *context, const std::function<void()> &done);

// Writes the four passwords to the store (an empty one removes its entry). Should the
// store refuse one, the passwords go back into the file at `prefPath` and `problem`
// gets the words for the user.
void save(Prefer &preferences, const QString &prefPath, QObject *context,
    const std::function<void(const QString &)> &problem);

} // namespace PasswordStore
