#include "core/desktop/defaultbrowser.h"

#include "core/base/uitexts.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>

namespace {
const char recordName[] = "PreviousBrowser.txt";
// An xdg command that does not answer in this time is taken as failed.
const int commandMilliseconds = 20000;

QMap<QString, QString> readRecord(const QString &path)
{
    QMap<QString, QString> record;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text) || file.size() > 4096)
        return record;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    for (const QString &line : lines) {
        const qsizetype equals = line.indexOf(u'=');
        if (equals > 0 && DefaultBrowser::types().contains(line.left(equals)))
            record.insert(line.left(equals), line.mid(equals + 1).trimmed());
    }
    return record;
}
} // namespace

DefaultBrowser::DefaultBrowser(QString dataFolder, QString desktopId)
    : m_dataFolder(std::move(dataFolder))
    , m_desktopId(std::move(desktopId))
{ }

const QStringList &DefaultBrowser::types()
{
    static const QStringList list
        = {QStringLiteral("x-scheme-handler/http"), QStringLiteral("x-scheme-handler/https"),
            QStringLiteral("text/html"), QStringLiteral("application/xhtml+xml")};
    return list;
}

QString DefaultBrowser::recordPath() const
{
    return m_dataFolder + u'/' + QLatin1String(recordName);
}

bool DefaultBrowser::hasPrevious() const
{
    return !readRecord(recordPath()).isEmpty();
}

QString DefaultBrowser::previousBrowser() const
{
    return readRecord(recordPath()).value(types().constFirst());
}

DefaultBrowser::Run DefaultBrowser::run(const QString &program, const QStringList &arguments)
{
    Run result;
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForStarted(commandMilliseconds)) {
        result.error = process.errorString();
        return result;
    }
    if (!process.waitForFinished(commandMilliseconds)) {
        process.kill();
        process.waitForFinished(1000);
        result.error = process.errorString();
        return result;
    }
    result.out = QString::fromLocal8Bit(process.readAllStandardOutput()).trimmed();
    result.error = QString::fromLocal8Bit(process.readAllStandardError()).trimmed();
    result.ok = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    if (!result.ok && result.error.isEmpty())
        result.error = program + u' ' + arguments.join(u' ');
    return result;
}

QMap<QString, QString> DefaultBrowser::currentDefaults() const
{
    QMap<QString, QString> current;
    for (const QString &type : types()) {
        const Run query = run(
            QStringLiteral("xdg-mime"), {QStringLiteral("query"), QStringLiteral("default"), type});
        current.insert(type, query.ok ? query.out : QString());
    }
    return current;
}

bool DefaultBrowser::isDefault() const
{
    const Run query = run(QStringLiteral("xdg-mime"),
        {QStringLiteral("query"), QStringLiteral("default"), types().constFirst()});
    return query.ok && query.out == m_desktopId;
}

bool DefaultBrowser::desktopRuns()
{
    for (const char *name :
        {"XDG_CURRENT_DESKTOP", "DESKTOP_SESSION", "DISPLAY", "WAYLAND_DISPLAY"})
        if (!qEnvironmentVariableIsEmpty(name))
            return true;
    return false;
}

DefaultBrowser::Result DefaultBrowser::setHandler(
    const QString &desktopId, const QStringList &handled) const
{
    const Run set = run(
        QStringLiteral("xdg-mime"), QStringList {QStringLiteral("default"), desktopId} + handled);
    if (set.ok)
        return {};
    return {desktopRuns() ? Outcome::CommandFailed : Outcome::NoDesktop, set.error};
}

DefaultBrowser::Result DefaultBrowser::makeDefault()
{
    if (QStandardPaths::findExecutable(QStringLiteral("xdg-mime")).isEmpty())
        return {Outcome::XdgUtilsMissing, {}};
    if (QStandardPaths::locate(QStandardPaths::ApplicationsLocation, m_desktopId).isEmpty())
        return {Outcome::DesktopFileMissing, m_desktopId};

    // The handlers of now are kept unless they are ours already (a second change must
    // not make Vantrell its own predecessor).
    const QMap<QString, QString> previous = currentDefaults();
    if (std::any_of(previous.cbegin(), previous.cend(),
            [this](const QString &handler) { return handler != m_desktopId; })) {
        QMap<QString, QString> record = readRecord(recordPath());
        for (auto it = previous.cbegin(); it != previous.cend(); ++it) {
            if (it.value() != m_desktopId || !record.contains(it.key()))
                record.insert(it.key(), it.value() == m_desktopId ? QString() : it.value());
        }
        QSaveFile file(recordPath());
        QByteArray bytes;
        for (auto it = record.cbegin(); it != record.cend(); ++it)
            bytes += (it.key() + u'=' + it.value() + u'\n').toUtf8();
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
            return {Outcome::RecordUnwritable, file.errorString()};
    }

    // The desktop's own way first (it knows KDE's and GNOME's settings); xdg-mime then
    // covers the generic desktops and the page types xdg-settings leaves out.
    if (!QStandardPaths::findExecutable(QStringLiteral("xdg-settings")).isEmpty())
        run(QStringLiteral("xdg-settings"),
            {QStringLiteral("set"), QStringLiteral("default-web-browser"), m_desktopId});
    const Result set = setHandler(m_desktopId, types());
    if (!set.ok())
        return set;
    if (!isDefault())
        return {desktopRuns() ? Outcome::CommandFailed : Outcome::NoDesktop, {}};
    return {};
}

DefaultBrowser::Result DefaultBrowser::restorePrevious()
{
    if (QStandardPaths::findExecutable(QStringLiteral("xdg-mime")).isEmpty())
        return {Outcome::XdgUtilsMissing, {}};
    const QMap<QString, QString> record = readRecord(recordPath());
    if (record.isEmpty())
        return {Outcome::NothingToRestore, {}};

    const QString browser = record.value(types().constFirst());
    if (!browser.isEmpty()
        && !QStandardPaths::findExecutable(QStringLiteral("xdg-settings")).isEmpty())
        run(QStringLiteral("xdg-settings"),
            {QStringLiteral("set"), QStringLiteral("default-web-browser"), browser});
    for (auto it = record.cbegin(); it != record.cend(); ++it) {
        // A type that had no default before gets none again.
        if (it.value().isEmpty()) {
            if (!forgetUserDefault(it.key()))
                return {Outcome::CommandFailed, it.key()};
            continue;
        }
        const Result set = setHandler(it.value(), {it.key()});
        if (!set.ok())
            return set;
    }
    QFile::remove(recordPath());
    return {};
}

// xdg-mime can set a default but not take one away: the line naming Vantrell goes from
// the user's mimeapps.list.
bool DefaultBrowser::forgetUserDefault(const QString &type) const
{
    const QString path = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/mimeapps.list");
    QFile file(path);
    if (!file.exists())
        return true;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    file.close();
    QStringList kept;
    bool inDefaults = false;
    for (const QString &line : lines) {
        const QString trimmed = line.trimmed();
        if (trimmed.startsWith(u'['))
            inDefaults = trimmed == u"[Default Applications]";
        const bool ours = inDefaults && trimmed.startsWith(type + u'=')
            && trimmed.mid(type.size() + 1).split(u';', Qt::SkipEmptyParts)
                == QStringList {m_desktopId};
        if (!ours)
            kept.append(line);
    }
    QSaveFile out(path);
    const QByteArray bytes = kept.join(u'\n').toUtf8();
    return out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size() && out.commit();
}

QString DefaultBrowser::message(const Result &result) const
{
    switch (result.outcome) {
    case Outcome::Done:
        return QString();
    case Outcome::XdgUtilsMissing:
        return uiText(2401);
    case Outcome::DesktopFileMissing:
        return uiText(2402).arg(result.detail);
    case Outcome::NoDesktop:
        return uiText(2403);
    case Outcome::CommandFailed:
        return uiText(2404).arg(result.detail);
    case Outcome::NothingToRestore:
        return uiText(2405);
    case Outcome::RecordUnwritable:
        return uiText(2001).arg(QDir::toNativeSeparators(recordPath()), result.detail);
    }
    return QString();
}
