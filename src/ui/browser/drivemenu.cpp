#include "ui/browser/drivemenu.h"

#include "core/base/uitexts.h"
#include "ui/desktop/networkdrives.h"

#include <QAction>
#include <QFileInfo>
#include <QMenu>
#include <QStorageInfo>

namespace {
const char VolumeKey[] = "Volume";
} // namespace

DriveMenu::DriveMenu(QMenu *menu)
    : QObject(menu)
    , m_menu(menu)
{
    m_menu->setToolTipsVisible(true);
    rebuild();
}

bool DriveMenu::isPseudoFileSystem(const QByteArray &type, const QString &rootPath)
{
    if (rootPath == u"/")
        return false;
    static const QList<QByteArray> pseudo
        = {"proc", "sysfs", "tmpfs", "devtmpfs", "devpts", "cgroup", "cgroup2", "overlay",
            "squashfs", "securityfs", "pstore", "debugfs", "tracefs", "configfs", "fusectl",
            "mqueue", "hugetlbfs", "bpf", "autofs", "binfmt_misc", "efivarfs", "nsfs", "rpc_pipefs",
            "ramfs", "selinuxfs", "fuse.gvfsd-fuse", "fuse.portal", "fuse.snapfuse", "nfsd"};
    if (pseudo.contains(type))
        return true;
    for (const char *system : {"/proc", "/sys", "/dev", "/run", "/snap", "/var/lib/docker"}) {
        const QString folder = QLatin1String(system);
        if (rootPath == folder || rootPath.startsWith(folder + u'/')) {
            // Removable media are mounted below /run/media.
            return !rootPath.startsWith(QStringLiteral("/run/media/"));
        }
    }
    return false;
}

void DriveMenu::rebuild()
{
    m_menu->clear();
    m_firstCommand = nullptr;
    for (const QStorageInfo &volume : QStorageInfo::mountedVolumes()) {
        if (!volume.isValid() || isPseudoFileSystem(volume.fileSystemType(), volume.rootPath()))
            continue;
        addVolume(volume.displayName(), volume.rootPath());
    }
    for (const QString &folder : NetworkDrives::mountFolders())
        addVolume(QFileInfo(folder).fileName(), folder);

    m_firstCommand = m_menu->addSeparator();
    const auto command = [this](const QString &key, int textId) {
        QAction *entry = m_menu->addAction(uiText(textId));
        entry->setObjectName(key);
        return entry;
    };
    command(QStringLiteral("Browse"), 620);
    m_menu->addSeparator();
    QAction *map = command(QStringLiteral("Map"), 621);
    m_menu->addSeparator();
    QAction *disconnect = command(QStringLiteral("Disconnect"), 622);
    if (!NetworkDrives::isAvailable()) {
        for (QAction *entry : {map, disconnect}) {
            entry->setEnabled(false);
            entry->setToolTip(uiText(2056));
        }
    }
}

QAction *DriveMenu::addVolume(const QString &displayName, const QString &rootPath)
{
    QString text = displayName.toUpper();
    text.replace(u'&', QStringLiteral("&&"));
    auto *entry = new QAction(text, m_menu);
    entry->setObjectName(QLatin1String(VolumeKey));
    entry->setData(rootPath);
    entry->setToolTip(rootPath);
    m_menu->insertAction(m_firstCommand, entry);
    return entry;
}

QList<QAction *> DriveMenu::volumeEntries() const
{
    QList<QAction *> entries;
    for (QAction *entry : m_menu->actions()) {
        if (entry->objectName() == QLatin1String(VolumeKey))
            entries.append(entry);
    }
    return entries;
}
