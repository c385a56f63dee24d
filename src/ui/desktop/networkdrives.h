#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

// Network locations mounted and unmounted through GVfs ("gio mount"). Where GVfs is
// missing the commands are unavailable and the drive menu shows them disabled.
namespace NetworkDrives {

// True when "gio" is on the path and answers and the GVfs daemon is installed;
// asked once per run.
bool isAvailable();
// The addresses of the network locations mounted now ("smb://server/share/").
QStringList mountedLocations();
// Folders under which GVfs shows its mounts as files, one per mounted location.
QStringList mountFolders();

// Asks for an address and mounts it; `done` runs once the attempt has ended.
void map(QWidget *parent, const std::function<void()> &done);
// Asks which location to unmount and unmounts it; `done` runs afterwards.
void disconnect(QWidget *parent, const std::function<void()> &done);

} // namespace NetworkDrives
