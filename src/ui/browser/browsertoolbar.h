#pragma once

#include "ui/browser/windowcommand.h"

#include <QHash>
#include <QObject>
#include <QString>

class DriveMenu;
class FeedList;
class QAction;
class QMenu;
class QToolBar;
class frmBrowser;

// The command set of a browser window's toolbar: its buttons and their drop-down
// entries, in order, each named by its key (compared exactly: "Print" is the button,
// "print" the entry). Every command first sets UserCommandPending; entry commands
// are ignored while the window's page view is hidden.
class BrowserToolbar final : public QObject
{
    Q_OBJECT

public:
    BrowserToolbar(frmBrowser *window, QToolBar *bar);

    QAction *button(const QString &key) const { return m_buttons.value(key); }
    // A drop-down entry; drive volumes and feeds are found through their menus.
    QAction *entry(const QString &key) const { return m_entries.value(key); }
    QMenu *menuOf(const QString &buttonKey) const;
    DriveMenu *driveMenu() const { return m_driveMenu; }
    QStringList buttonKeys() const { return m_order; }

    // The two entry points: a button pressed, a drop-down entry chosen.
    void buttonClick(const QString &key);
    void menuClick(QAction *entry);

    // Lists the announced feeds under the "Feed" button, which is enabled when there are any.
    void showFeeds(const FeedList &feeds);
    // "history" is enabled while the history holds an entry.
    void setHistoryAvailable(bool available);
    void setHomeTip(const QString &tip);

signals:
    // A command that acts on other windows, for the frame to run.
    void windowCommand(WindowCommand command);
    void statusText(const QString &text);

private:
    QAction *addButton(const QString &key, const QString &tip, const QStringList &entries = {});
    void addEntry(QMenu *menu, const QString &key, int textId);
    void markUnavailable(QAction *action);
    void startMail();
    void notAvailable();

    frmBrowser *m_window;
    QToolBar *m_bar;
    QHash<QString, QAction *> m_buttons;
    QHash<QString, QAction *> m_entries;
    QStringList m_order;
    DriveMenu *m_driveMenu = nullptr;
};
