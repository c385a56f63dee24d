#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

// Makes Vantrell the desktop's default web browser through xdg-utils and puts the
// previous default back. Before the first change the previous handlers are written to
// the data folder, so the way back survives the session.
class DefaultBrowser final
{
public:
    enum class Outcome {
        Done,
        XdgUtilsMissing, // xdg-mime is not on the PATH
        DesktopFileMissing, // vantrell.desktop is not installed where the desktop looks
        NoDesktop, // the change failed and no desktop session is running
        CommandFailed, // an xdg command failed; detail holds its words
        NothingToRestore,
        RecordUnwritable, // the previous handlers could not be kept; detail holds why
    };
    struct Result
    {
        Outcome outcome = Outcome::Done;
        QString detail;
        bool ok() const { return outcome == Outcome::Done; }
    };

    explicit DefaultBrowser(
        QString dataFolder, QString desktopId = QStringLiteral("vantrell.desktop"));

    // The MIME types and URL schemes a web browser is the default for.
    static const QStringList &types();
    // The desktop file each type opens with now (empty when none).
    QMap<QString, QString> currentDefaults() const;
    bool isDefault() const;
    // Whether a previous default is kept to go back to.
    bool hasPrevious() const;
    // The browser kept as the previous default (its desktop file), or empty.
    QString previousBrowser() const;
    QString recordPath() const;

    Result makeDefault();
    Result restorePrevious();

    // The outcome in the user's words.
    QString message(const Result &result) const;

private:
    struct Run
    {
        bool ok = false;
        QString out;
        QString error;
    };
    static Run run(const QString &program, const QStringList &arguments);
    Result setHandler(const QString &desktopId, const QStringList &types) const;
    bool forgetUserDefault(const QString &type) const;
    static bool desktopRuns();

    QString m_dataFolder;
    QString m_desktopId;
};
