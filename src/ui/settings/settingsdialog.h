#pragma once

#include "core/prefs/prefrules.h"

#include <QDialog>
#include <QHash>

class Prefer;
class QAbstractButton;
class QLabel;
class QLineEdit;
class QListWidget;
class QStackedWidget;

// Every preference on pages a user understands. The editors start with the values of
// the preferences; only OK or Apply stores them and saves the file, so Cancel leaves
// everything as it was. Values are checked as they are typed: a refused one keeps the
// dialog open, a warned one is stored as written. The frame's own size and state are
// on no page: the frame stores them itself when it closes.
class SettingsDialog final : public QDialog
{
    Q_OBJECT

public:
    SettingsDialog(Prefer &preferences, const QString &prefPath, const QString &dataFolder,
        QWidget *parent = nullptr);

    // The page "use current page" takes: its address and the home title that goes
    // with it (the feed mark when the window shows a feed).
    void setCurrentPage(const QString &address, const QString &homeTitle);

    // Stores every editor into the preferences and saves them. False, with the reason
    // shown in the dialog, when a value is refused or the file cannot be written.
    bool apply();
    // The dialog's last word at its foot, for the user and for tests.
    QString message() const;
    // The verdict shown beside an editor.
    PrefRules::Check checkOf(const QString &field) const { return m_checks.value(field); }

    void accept() override;

signals:
    // The preferences were stored and saved: what shows them should follow.
    void applied();

private:
    void load();
    void store();
    void addPage(QWidget *page, const QString &title);
    // Checks the editor of `field` as it changes, and as `alsoOn` is switched.
    void watch(const QString &field, std::function<PrefRules::Check(const QString &)> rule,
        QAbstractButton *alsoOn = nullptr);
    void showCheck(const QString &field, const PrefRules::Check &check);
    bool hasRefusal();

    Prefer &m_prefs;
    QString m_prefPath;
    QString m_homeTitle;
    QString m_currentAddress;
    QString m_currentTitle;
    QListWidget *m_pageList = nullptr;
    QStackedWidget *m_pages = nullptr;
    QLabel *m_message = nullptr;
    QHash<QString, PrefRules::Check> m_checks;
};
