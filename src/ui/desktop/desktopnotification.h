#pragma once

#include <QString>

// A message in the desktop's notification area (the freedesktop Notifications service
// on the session bus). Sent without waiting for an answer: a session without such a
// service, or without a bus at all, simply shows nothing.
namespace DesktopNotification {

void show(const QString &summary, const QString &body, const QString &iconName);

} // namespace DesktopNotification
