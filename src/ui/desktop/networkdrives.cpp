#include "ui/desktop/networkdrives.h"

#include "core/base/uitexts.h"

#include <QDir>
#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include <functional>

namespace {
QString gioProgram()
{
    return QStandardPaths::findExecutable(QStringLiteral("gio"));
}

QString runQuietly(const QStringList &arguments, bool *ok)
{
    QProcess gio;
    gio.start(gioProgram(), arguments, QIODevice::ReadOnly);
    const bool finished = gio.waitForFinished(3000);
    if (!finished)
        gio.kill();
    *ok = finished && gio.exitStatus() == QProcess::NormalExit && gio.exitCode() == 0;
    return QString::fromLocal8Bit(gio.readAllStandardOutput());
}

void runGio(QWidget *parent, const QStringList &arguments, int failureText, const QString &location,
    const std::function<void()> &done)
{
    auto *gio = new QProcess(parent);
    // No terminal to ask for a password: a share that needs one fails with gio's reason.
    gio->setStandardInputFile(QProcess::nullDevice());
    QPointer<QWidget> owner = parent;
    QObject::connect(gio, &QProcess::finished, gio,
        [gio, owner, failureText, location, done](int code, QProcess::ExitStatus status) {
            if (status != QProcess::NormalExit || code != 0) {
                QString reason = QString::fromLocal8Bit(gio->readAllStandardError()).trimmed();
                if (reason.isEmpty())
                    reason = gio->errorString();
                QMessageBox::warning(owner, uiText(100), uiText(failureText).arg(location, reason));
            }
            gio->deleteLater();
            done();
        });
    QObject::connect(gio, &QProcess::errorOccurred, gio,
        [gio, owner, failureText, location, done](QProcess::ProcessError error) {
            if (error != QProcess::FailedToStart)
                return;
            QMessageBox::warning(
                owner, uiText(100), uiText(failureText).arg(location, gio->errorString()));
            gio->deleteLater();
            done();
        });
    gio->start(gioProgram(), arguments);
}

} // namespace

namespace NetworkDrives {

bool isAvailable()
{
    static const bool available = [] {
        if (gioProgram().isEmpty())
            return false;
        // "gio" alone mounts nothing: the GVfs daemon does the work.
        const QStringList daemonFolders = {QStringLiteral("/usr/libexec"),
            QStringLiteral("/usr/lib/gvfs"), QStringLiteral("/usr/libexec/gvfs"),
            QStringLiteral("/usr/lib/x86_64-linux-gnu/gvfs")};
        if (QStandardPaths::findExecutable(QStringLiteral("gvfsd"), daemonFolders).isEmpty())
            return false;
        bool ok = false;
        runQuietly({QStringLiteral("mount"), QStringLiteral("--list")}, &ok);
        return ok;
    }();
    return available;
}

QStringList mountedLocations()
{
    if (!isAvailable())
        return {};
    bool ok = false;
    const QString listing = runQuietly({QStringLiteral("mount"), QStringLiteral("--list")}, &ok);
    // "Mount(0): share on server -> smb://server/share/"
    static const QRegularExpression mountLine(
        QStringLiteral("^Mount\\(\\d+\\):.* -> (\\S+)\\s*$"), QRegularExpression::MultilineOption);
    QStringList locations;
    auto matches = mountLine.globalMatch(listing);
    while (matches.hasNext()) {
        const QString location = matches.next().captured(1);
        // Local volumes are listed too; only network locations can be disconnected here.
        if (!location.startsWith(QStringLiteral("file:")) && !locations.contains(location))
            locations.append(location);
    }
    return locations;
}

QStringList mountFolders()
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (runtime.isEmpty())
        return {};
    QStringList folders;
    const QDir gvfs(runtime + QStringLiteral("/gvfs"));
    for (const QFileInfo &entry : gvfs.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name))
        folders.append(entry.absoluteFilePath());
    return folders;
}

void map(QWidget *parent, const std::function<void()> &done)
{
    bool ok = false;
    const QString location = QInputDialog::getText(
        parent, uiText(621), uiText(2057), QLineEdit::Normal, QString(), &ok)
                                 .trimmed();
    if (!ok || location.isEmpty()) {
        done();
        return;
    }
    runGio(parent, {QStringLiteral("mount"), location}, 2058, location, done);
}

void disconnect(QWidget *parent, const std::function<void()> &done)
{
    bool ok = false;
    const QString location
        = QInputDialog::getItem(parent, uiText(622), uiText(2057), mountedLocations(), 0, true, &ok)
              .trimmed();
    if (!ok || location.isEmpty()) {
        done();
        return;
    }
    runGio(parent, {QStringLiteral("mount"), QStringLiteral("--unmount"), location}, 2059, location,
        done);
}

} // namespace NetworkDrives
