#pragma once

#include <QString>
#include <QStringList>

// Facts about this build and where its data lives.
namespace AppInfo {

QString applicationTitle(); // "Vantrell"
QString versionString(); // major.minor.revision, e.g. 1.0.0
QString frameCaption(); // "Vantrell 1.0"
const QStringList &monthNames(); // "Jan" … "Dec"

// The folder of the user's data: documents folder + "/VantrellData-" + version,
// or the whole path from VANTRELL_DATA_DIR when that is set.
QString dataFolderPath();
// A file of the data folder.
QString dataFile(const QString &name);
// Creates the data folder (every start does this); returns false when it cannot.
bool ensureDataFolder(const QString &path);

// The folder of the running executable; empty before the application object exists.
QString programFolder();

// A file that ships with the program (sample archive, search page, sound). An installed
// program keeps them in PREFIX/share/vantrell beside its PREFIX/bin; the build tree and
// an unpacked copy keep them beside the program. The first folder that holds the file
// wins; when none does, the path names it in the folder where it belongs.
QString sharedFile(const QString &name, const QString &programFolder = AppInfo::programFolder());

} // namespace AppInfo
