#include "ui/desktop/desktopnotification.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>

namespace DesktopNotification {

void show(const QString &summary, const QString &body, const QString &iconName)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    QDBusMessage call
        = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.Notifications"),
            QStringLiteral("/org/freedesktop/Notifications"),
            QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    call << QCoreApplication::applicationName() << uint(0) << iconName << summary << body
         << QStringList() << QVariantMap() << int(-1);
    // The answer (the notification's number, or "no such service") is of no use here.
    bus.send(call);
}

} // namespace DesktopNotification
