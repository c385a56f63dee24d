#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

// Network locations mounted and unmounted through GVfs ("gio mount"). Where GVfs is
// missing the commands are unavailable and the drive menu shows them disabled.
class NetworkDrives final : public QObject
{
    Q_OBJECT

public:
    // True when "gio" is on the path and answers and the GVfs daemon is installed;
    // asked once per run.
    static bool isAvailable();
    // The addresses of the network locations mounted now ("smb://server/share/").
    static QStringList mountedLocations();
    // Folders under which GVfs shows its mounts as files, one per mounted location.
    static QStringList mountFolders();

    // Asks for an address and mounts it; `done` runs once the attempt has ended.
    static void map(QWidget *parent, const std::function<void()> &done);
    // Asks which location to unmount and unmounts it; `done` runs afterwards.
    static void disconnect(QWidget *parent, const std::function<void()> &done);

private:
    static void runGio(QWidget *parent, const QStringList &arguments, int failureText,
        const QString &location, const std::function<void()> &done);
};
