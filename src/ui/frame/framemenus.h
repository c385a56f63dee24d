#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QStringList>

#include <functional>

class MDIForm1;
class OpenAllLinks;
class QAction;
class StatusPanels;
class QMenu;
class frmBrowser;

// The frame's menus and their context-menu copies. Check marks and enabled states
// are derived from the frame's state, so every copy of an entry always agrees.
class FrameMenus final : public QObject
{
    Q_OBJECT

public:
    explicit FrameMenus(MDIForm1 *frame);

    QAction *action(const QString &name) const { return m_actions.value(name); }
    QStringList copiesOf(const QString &name) const { return m_copies.value(name); }
    void syncChecks();
    void syncEnabled();
    void showTabContextMenu(const QPoint &globalPos);
    QMenu *contextMenu() const { return m_ctxtT; }

    OpenAllLinks *openAllLinks() const { return m_openAllLinks; }
    StatusPanels *statusPanels() const { return m_statusPanels; }
    // "open web layout": the file entry, then the layout archive's layouts.
    QMenu *layoutMenu() const { return m_layoutMenu; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    using Handler = std::function<void()>;
    QAction *add(
        QMenu *menu, const QString &name, int textId, Handler handler, bool checkable = false);
    QAction *addCopy(QMenu *menu, const QString &copyName, const QString &original);
    void withActive(const std::function<void(frmBrowser *)> &command) const;
    void buildFileMenu();
    void openSettings();
    void buildToolsMenu();
    void buildViewMenu();
    void buildWindowMenu();
    void buildActionsMenu();
    void buildHelpMenu();
    void buildContextMenus();
    void buildShortcuts();
    void refreshWindowList();

    MDIForm1 *m_frame;
    QHash<QString, QAction *> m_actions;
    QHash<QString, QStringList> m_copies;
    QMenu *m_windowMenu = nullptr;
    QMenu *m_layoutMenu = nullptr;
    QMenu *m_ctxt = nullptr;
    QMenu *m_ctxtT = nullptr;
    QList<QAction *> m_windowList;
    OpenAllLinks *m_openAllLinks = nullptr;
    StatusPanels *m_statusPanels = nullptr;
};
