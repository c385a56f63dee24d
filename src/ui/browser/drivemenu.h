#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

class QAction;
class QMenu;

// The drop-down of the "Drive" button: the mounted volumes by display name in upper
// case, each entry carrying its root path, then "Browse", "Map" and "Disconnect".
// Pseudo file systems (proc, sysfs, tmpfs, cgroups, overlays, squashfs images and the
// like) are left out; the root file system is always listed.
class DriveMenu final : public QObject
{
    Q_OBJECT

public:
    explicit DriveMenu(QMenu *menu);

    // Removes every entry and lists the volumes and commands anew.
    void rebuild();
    // Adds one volume entry before the commands; its root path is the entry's data.
    QAction *addVolume(const QString &displayName, const QString &rootPath);

    QMenu *menu() const { return m_menu; }
    QList<QAction *> volumeEntries() const;

    static bool isPseudoFileSystem(const QByteArray &type, const QString &rootPath);

private:
    QMenu *m_menu;
    QAction *m_firstCommand = nullptr;
};
