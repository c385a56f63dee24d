#include "core/base/appinfo.h"

#include "version.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace AppInfo {

QString applicationTitle()
{
    return QStringLiteral("Vantrell");
}

QString versionString()
{
    return QString::number(VANTRELL_VERSION_MAJOR) + u'.' + QString::number(VANTRELL_VERSION_MINOR)
        + u'.' + QString::number(VANTRELL_VERSION_PATCH);
}

QString frameCaption()
{
    return applicationTitle() + u' ' + QString::number(VANTRELL_VERSION_MAJOR) + u'.'
        + QString::number(VANTRELL_VERSION_MINOR);
}

const QStringList &monthNames()
{
    static const QStringList names = {QStringLiteral("Jan"), QStringLiteral("Feb"),
        QStringLiteral("Mar"), QStringLiteral("Apr"), QStringLiteral("May"), QStringLiteral("Jun"),
        QStringLiteral("Jul"), QStringLiteral("Aug"), QStringLiteral("Sep"), QStringLiteral("Oct"),
        QStringLiteral("Nov"), QStringLiteral("Dec")};
    return names;
}

QString dataFolderPath()
{
    const QString overridden = qEnvironmentVariable("VANTRELL_DATA_DIR");
    if (!overridden.isEmpty())
        return QDir::cleanPath(QDir(overridden).absolutePath());
    QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (documents.isEmpty())
        documents = QDir::homePath();
    return QDir::cleanPath(documents + QStringLiteral("/VantrellData-") + versionString());
}

bool ensureDataFolder(const QString &path)
{
    // The documents folder itself may be missing on a fresh account, so the
    // whole path is created, not only its last level.
    return QDir().mkpath(path);
}

QString programFolder()
{
    return QCoreApplication::instance() ? QCoreApplication::applicationDirPath() : QString();
}

QString sharedFile(const QString &name, const QString &programFolder)
{
    const QString installed = QDir::cleanPath(programFolder + QStringLiteral("/../share/vantrell"));
    const QStringList folders = {installed, QDir::cleanPath(programFolder)};
    for (const QString &folder : folders) {
        if (QFileInfo::exists(folder + u'/' + name))
            return folder + u'/' + name;
    }
    return (QFileInfo(installed).isDir() ? installed : folders.last()) + u'/' + name;
}

} // namespace AppInfo

namespace AppInfo {

QString dataFile(const QString &name)
{
    return dataFolderPath() + u'/' + name;
}

} // namespace AppInfo
