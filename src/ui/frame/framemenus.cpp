#include "ui/frame/framemenus.h"

#include "core/base/appinfo.h"
#include "core/base/uitexts.h"
#include "core/browsing/zoomsteps.h"
#include "core/model/layout.h"
#include "core/prefs/prefer.h"
#include "ui/browser/frmbrowser.h"
#include "ui/desktop/defaultbrowserdialog.h"
#include "ui/desktop/mailprogram.h"
#include "ui/dialogs/aboutbox.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/openalllinks.h"
#include "ui/frame/pageinspection.h"
#include "ui/frame/statuspanels.h"
#include "ui/frame/tabstrip.h"
#include "ui/frame/windowsets.h"
#include "ui/settings/settingsdialog.h"

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QMenu>
#include <QMenuBar>
#include <QShortcutEvent>
#include <QStatusBar>

#include <algorithm>

FrameMenus::FrameMenus(MDIForm1 *frame)
    : QObject(frame)
    , m_frame(frame)
    , m_openAllLinks(new OpenAllLinks(frame))
    , m_statusPanels(new StatusPanels(frame->statusBar()))
{
    buildFileMenu();
    buildToolsMenu();
    buildViewMenu();
    buildWindowMenu();
    buildActionsMenu();
    buildHelpMenu();
    buildContextMenus();
    buildShortcuts();
    syncChecks();
    syncEnabled();
}

QAction *FrameMenus::add(
    QMenu *menu, const QString &name, int textId, Handler handler, bool checkable)
{
    auto *entry = new QAction(uiText(textId), m_frame);
    entry->setObjectName(name);
    entry->setCheckable(checkable);
    if (handler)
        connect(entry, &QAction::triggered, this, [handler] { handler(); });
    if (menu)
        menu->addAction(entry);
    m_actions.insert(name, entry);
    return entry;
}

QAction *FrameMenus::addCopy(QMenu *menu, const QString &copyName, const QString &original)
{
    QAction *source = m_actions.value(original);
    auto *entry = new QAction(source->text(), m_frame);
    entry->setObjectName(copyName);
    entry->setCheckable(source->isCheckable());
    connect(entry, &QAction::triggered, source, [source] { source->trigger(); });
    menu->addAction(entry);
    m_actions.insert(copyName, entry);
    m_copies[original].append(copyName);
    return entry;
}

void FrameMenus::withActive(const std::function<void(frmBrowser *)> &command) const
{
    if (frmBrowser *window = m_frame->activeBrowser())
        command(window);
}

void FrameMenus::buildFileMenu()
{
    QMenu *menu = m_frame->menuBar()->addMenu(uiText(200));
    // A new window waits for an address: the field has the focus, its text selected.
    add(menu, QStringLiteral("mn_HomeBrowser"), 201, [this] {
        m_frame->OpenStartPage()->focusAddress();
    })->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_T));
    add(menu, QStringLiteral("mn_BrowserBlank"), 209, [this] {
        m_frame->NewBrowser(QString(), QStringLiteral("about:blank"))->focusAddress();
    })->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_N));
    menu->addSeparator();
    add(menu, QStringLiteral("mn_save"), 205, [this] {
        withActive([](frmBrowser *w) { w->WebSave(); });
    })->setShortcut(QKeySequence::Save);
    add(menu, QStringLiteral("mn_print"), 206, [this] {
        withActive([](frmBrowser *w) { w->WebPrint(); });
    })->setShortcut(QKeySequence::Print);
    add(menu, QStringLiteral("mn_ppreview"), 207,
        [this] { withActive([](frmBrowser *w) { w->WebPrintPreview(); }); });
    add(menu, QStringLiteral("mn_Send"), 208,
        [this] { withActive([](frmBrowser *w) { w->LinkMailto(); }); });
    menu->addSeparator();
    add(menu, QStringLiteral("mn_Einstellungen"), 202, [this] { openSettings(); });
    add(menu, QStringLiteral("mn_IEProp"), 203, nullptr);
    menu->addSeparator();
    add(menu, QStringLiteral("mn_Exit"), 204, [this] {
        m_frame->close();
    })->setShortcut(QKeySequence::Quit);
}

void FrameMenus::openSettings()
{
    // One settings dialog at a time; asking again brings it forward.
    if (auto *open = m_frame->findChild<SettingsDialog *>()) {
        open->raise();
        open->activateWindow();
        return;
    }
    auto *dialog = new SettingsDialog(prefer(), AppInfo::dataFile(QStringLiteral("Pref.vtp")),
        AppInfo::dataFolderPath(), m_frame);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    if (frmBrowser *window = m_frame->activeBrowser()) {
        const auto [address, title] = window->homePageEntry();
        dialog->setCurrentPage(address, title);
    }
    connect(dialog, &SettingsDialog::applied, m_frame, &MDIForm1::ApplyPreferences);
    dialog->open();
}

void FrameMenus::buildToolsMenu()
{
    QMenu *menu = m_frame->menuBar()->addMenu(uiText(300));
    // The tools pane connects to these when it is attached to the frame.
    add(menu, QStringLiteral("mn_Bookmarks"), 301, nullptr)
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_B));
    add(menu, QStringLiteral("mn_Historie"), 302, nullptr)
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_H));
    menu->addSeparator();
    add(menu, QStringLiteral("mn_Email"), 305, [this] {
        if (!MailProgram::start())
            m_frame->setStatusText(MailProgram::failureText());
    });
}

void FrameMenus::buildViewMenu()
{
    QMenu *menu = m_frame->menuBar()->addMenu(uiText(311));
    add(
        menu, QStringLiteral("mn_RegisterOben"), 307, [this] { m_frame->SetTabAlign(1); }, true);
    // Bottom is stored as 3, the code the settings dialog writes too.
    add(
        menu, QStringLiteral("mn_RegisterUnten"), 308, [this] { m_frame->SetTabAlign(3); }, true);
    add(
        menu, QStringLiteral("mn_RegisterButton"), 309, [this] { m_frame->SetTabButton(true); },
        true);
    add(
        menu, QStringLiteral("mn_RegisterTabs"), 310, [this] { m_frame->SetTabButton(false); },
        true);
    menu->addSeparator();
    QMenu *text = menu->addMenu(uiText(314));
    const char *textNames[]
        = {"mn_TextMin", "mn_TextSmall", "mn_TextNormal", "mn_TextLarge", "mn_TextMax"};
    for (int step = 0; step < 5; ++step) {
        add(
            text, QLatin1String(textNames[step]), 315 + step,
            [this, step] { withActive([step](frmBrowser *w) { w->SetTextSize(step); }); }, true);
    }
    QMenu *zoom = menu->addMenu(uiText(320));
    for (int percent : ZoomSteps::menuSteps()) {
        QAction *entry = add(
            zoom, QStringLiteral("mn_Z") + QString::number(percent), 320,
            [this, percent] {
                withActive([percent](frmBrowser *w) { w->SetZoomFactor(percent); });
            },
            true);
        entry->setText(QString::number(percent) + u'%');
    }
    // Each menu checks the step of the active window when it opens.
    connect(text, &QMenu::aboutToShow, this, [this, text] {
        const frmBrowser *w = m_frame->activeBrowser();
        const QList<QAction *> entries = text->actions();
        for (int step = 0; step < entries.size(); ++step)
            entries.at(step)->setChecked(w && w->page()->textSize() == step);
    });
    connect(zoom, &QMenu::aboutToShow, this, [this, zoom] {
        const frmBrowser *w = m_frame->activeBrowser();
        for (QAction *entry : zoom->actions())
            entry->setChecked(w && entry->objectName() == u"mn_Z" + QString::number(w->ZoomFactor));
    });
    menu->addSeparator();
    add(menu, QStringLiteral("mn_Standardbrowser"), 312,
        [this] { DefaultBrowserDialog::run(m_frame, AppInfo::dataFolderPath()); });
}

void FrameMenus::buildWindowMenu()
{
    m_windowMenu = m_frame->menuBar()->addMenu(uiText(400));
    QMenu *menu = m_windowMenu;
    add(
        menu, QStringLiteral("mn_Kaskadiert"), 403,
        [this] { m_frame->Arrange(MDIForm1::Arrangement::Cascade); }, true);
    add(
        menu, QStringLiteral("mn_Untereinander"), 401,
        [this] { m_frame->Arrange(MDIForm1::Arrangement::OneBelowAnother); }, true);
    add(
        menu, QStringLiteral("mn_Nebeneinander"), 402,
        [this] { m_frame->Arrange(MDIForm1::Arrangement::SideBySide); }, true);
    menu->addSeparator();
    // Both offer the layout archive beside the layout files; the tools pane serves the
    // archive's entries, which wait disabled until it does.
    auto *saveMenu = new QMenu(m_frame);
    add(menu, QStringLiteral("mn_Anordnung_save"), 404, nullptr)->setMenu(saveMenu);
    add(saveMenu, QStringLiteral("mn_Anordnung_saveArchive"), 2650, nullptr)->setEnabled(false);
    add(saveMenu, QStringLiteral("mn_Anordnung_saveFile"), 2651, [this] {
        QString path = QFileDialog::getSaveFileName(
            m_frame, uiText(1563), QString(), uiText(1562) + QStringLiteral(" (*.wlt)"));
        // Only .wlt files are written as layouts; a name typed without it gets it.
        if (!path.isEmpty() && !Layout::isLayoutFileName(path))
            path += QStringLiteral(".wlt");
        QString problem;
        if (!path.isEmpty())
            m_frame->setStatusText(
                WindowSets::saveLayoutFile(*m_frame, path, &problem) ? uiText(1135) : problem);
    });
    m_layoutMenu = new QMenu(m_frame);
    m_layoutMenu->setObjectName(QStringLiteral("mn_Anordnung_loadMenu"));
    add(menu, QStringLiteral("mn_Anordnung_load"), 405, nullptr)->setMenu(m_layoutMenu);
    add(m_layoutMenu, QStringLiteral("mn_Anordnung_loadFile"), 2652, [this] {
        const QString path = QFileDialog::getOpenFileName(
            m_frame, uiText(1564), QString(), uiText(1562) + QStringLiteral(" (*.wlt)"));
        QString problem;
        if (!path.isEmpty())
            WindowSets::openLayoutFile(*m_frame, path, &problem);
        if (!problem.isEmpty())
            m_frame->setStatusText(problem);
    });
    menu->addSeparator();
    add(menu, QStringLiteral("mn_Adresszeile"), 407, [this] {
        withActive([](frmBrowser *w) { w->setAddressBarVisible(!w->addressBarVisible()); });
    });
    add(menu, QStringLiteral("mn_toolbar"), 408,
        [this] { withActive([](frmBrowser *w) { w->setToolbarVisible(!w->toolbarVisible()); }); });
    add(menu, QStringLiteral("mn_beides"), 409, [this] {
        withActive([](frmBrowser *w) {
            const bool show = !(w->addressBarVisible() && w->toolbarVisible());
            w->setAddressBarVisible(show);
            w->setToolbarVisible(show);
        });
    });
    add(menu, QStringLiteral("mn_ToogleToolbars"), 423, [this] {
        m_frame->ToolbarDefault = !m_frame->ToolbarDefault;
        for (frmBrowser *w : m_frame->browsers())
            w->setToolbarVisible(m_frame->ToolbarDefault);
    });
    add(menu, QStringLiteral("mn_ToggleAdressRow"), 424, [this] {
        m_frame->AddressBarDefault = !m_frame->AddressBarDefault;
        for (frmBrowser *w : m_frame->browsers())
            w->setAddressBarVisible(m_frame->AddressBarDefault);
    });
    add(menu, QStringLiteral("mn_RefreshAll"), 425, [this] {
        for (frmBrowser *w : m_frame->browsers())
            w->Refresh();
    });
    menu->addSeparator();
    using Switch = NewWindowPolicy::Switch;
    const auto flip
        = [this](Switch which) { m_frame->setPolicySwitch(which, !m_frame->policy().isOn(which)); };
    add(
        menu, QStringLiteral("mn_EnablePopup"), 412,
        [this] { m_frame->setPolicySwitch(Switch::AllowOpenWin, true); }, true);
    add(
        menu, QStringLiteral("mn_DisablePopup"), 413,
        [this] { m_frame->setPolicySwitch(Switch::AllowOpenWin, false); }, true);
    add(
        menu, QStringLiteral("mn_PopupToBack"), 414, [flip] { flip(Switch::AllowWinInBack); },
        true);
    add(
        menu, QStringLiteral("mn_PopupResize"), 415, [flip] { flip(Switch::AllowResizeWin); },
        true);
    add(
        menu, QStringLiteral("mn_PopupReferenz"), 420, [flip] { flip(Switch::AllowWinRef); }, true);
    menu->addSeparator();
    add(menu, QStringLiteral("mn_ClosePopups"), 426, [this] { m_frame->ClosePopups(); });
    add(menu, QStringLiteral("mn_CloseAllOtherWin"), 422,
        [this] { m_frame->CloseOtherBrowsers(nullptr); });
    add(menu, QStringLiteral("mn_Alleschlie_en"), 411, [this] { m_frame->CloseAll(); });
    add(menu, QStringLiteral("mn_CloseWindow"), 410, [this] {
        if (frmBrowser *w = m_frame->activeBrowser())
            w->parentWidget()->close();
    })->setShortcuts(QKeySequence::Close);
    menu->addSeparator();
    add(menu, QStringLiteral("mn_FirstWindow"), 416,
        [this] { m_frame->activateWindowAt(0, false); });
    // Shift+Tab arrives as Backtab; the menu shows the keys as users know them.
    add(menu, QStringLiteral("mn_PreviousWindow"), 417,
        [this] { m_frame->activateWindowAt(-1, true); })
        ->setShortcuts({QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab),
            QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab)});
    add(menu, QStringLiteral("mn_NextWindow"), 418, [this] {
        m_frame->activateWindowAt(1, true);
    })->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Tab));
    add(menu, QStringLiteral("mn_LastWindow"), 419,
        [this] { m_frame->activateWindowAt(-1, false); });
    // The open windows are listed below when the menu opens.
    m_windowMenu->addSeparator();
    connect(m_windowMenu, &QMenu::aboutToShow, this, [this] {
        syncEnabled();
        refreshWindowList();
    });
}

void FrameMenus::refreshWindowList()
{
    qDeleteAll(m_windowList);
    m_windowList.clear();
    const frmBrowser *active = m_frame->activeBrowser();
    int number = 0;
    for (frmBrowser *window : m_frame->browsers()) {
        ++number;
        const QString caption = TabStrip::escapeCaption(window->Caption());
        auto *entry = new QAction(
            number < 10 ? u'&' + QString::number(number) + u' ' + caption : caption, m_windowMenu);
        entry->setCheckable(true);
        entry->setChecked(window == active);
        const QString key = TabStrip::keyOf(window->ID);
        connect(entry, &QAction::triggered, this,
            [this, key] { emit m_frame->tabStrip()->tabLeftClicked(key); });
        m_windowMenu->addAction(entry);
        m_windowList.append(entry);
    }
}

void FrameMenus::buildActionsMenu()
{
    QMenu *menu = m_frame->menuBar()->addMenu(uiText(619));
    add(menu, QStringLiteral("mn_CloneBrowser"), 616, [this] { m_frame->CloneActive(); });
    add(menu, QStringLiteral("mn_OpenAllLinks"), 617,
        [this] { withActive([this](frmBrowser *w) { m_openAllLinks->run(w); }); });
    add(menu, QStringLiteral("mn_SetHomepage"), 618,
        [this] { withActive([](frmBrowser *w) { w->SetHomepage(); }); });
    add(menu, QStringLiteral("mn_HTMLCode"), 1122,
        [this] { withActive([](frmBrowser *w) { w->ViewSource(w->LocationURL()); }); });
    menu->addSeparator();
    add(menu, QStringLiteral("mn_PictureList"), 427, [this] {
        withActive([this](frmBrowser *w) { PageInspection::showPictures(m_frame, w); });
    });
    add(menu, QStringLiteral("mn_DocStruct"), 428, [this] {
        withActive([this](frmBrowser *w) { PageInspection::showStructure(m_frame, w); });
    });
    menu->addSeparator();
    add(menu, QStringLiteral("mn_VisitallLinks"), 605,
        [this] { withActive([](frmBrowser *w) { w->StartRoundtrip(); }); });
    add(menu, QStringLiteral("mn_VisitallLinksInFrame"), 606,
        [this] { withActive([](frmBrowser *w) { w->StartFrameRoundtrip(); }); });
    add(menu, QStringLiteral("mn_SetRefresh"), 600,
        [this] { withActive([](frmBrowser *w) { w->SetRefresh(); }); });
}

void FrameMenus::buildHelpMenu()
{
    QMenu *menu = m_frame->menuBar()->addMenu(uiText(2070));
    add(menu, QStringLiteral("mn_About"), 2072, [this] {
        AboutBox box(AppInfo::dataFolderPath(), m_frame);
        box.exec();
    })->setMenuRole(QAction::AboutRole);
}

void FrameMenus::buildShortcuts()
{
    const auto shortcut
        = [this](const QString &name, const QList<QKeySequence> &keys, Handler handler) {
              QAction *entry = add(nullptr, name, 100, std::move(handler));
              entry->setShortcuts(keys);
              entry->setShortcutContext(Qt::WindowShortcut);
              m_frame->addAction(entry);
          };
    const QKeySequence altD(Qt::ALT | Qt::Key_D);
    QList<QKeySequence> addressKeys
        = {QKeySequence(Qt::CTRL | Qt::Key_L), QKeySequence(Qt::Key_F6)};
    // Where a menu title takes Alt+D ("&Datei"), the menu bar's Alt+D goes to the address
    // field while a window is open, as in other browsers; a second owner of the key would
    // make it ambiguous. The menu stays one Alt or F10 away.
    const QList<QAction *> titles = m_frame->menuBar()->actions();
    if (std::any_of(titles.cbegin(), titles.cend(), [&altD](const QAction *title) {
            return QKeySequence::mnemonic(title->text()) == altD;
        }))
        m_frame->menuBar()->installEventFilter(this);
    else
        addressKeys.append(altD);
    shortcut(QStringLiteral("key_address"), addressKeys,
        [this] { withActive([](frmBrowser *w) { w->focusAddress(); }); });
    shortcut(QStringLiteral("key_find"), {QKeySequence(Qt::CTRL | Qt::Key_F)},
        [this] { withActive([](frmBrowser *w) { w->showFindBar(); }); });
    shortcut(QStringLiteral("key_refresh"),
        {QKeySequence(Qt::Key_F5), QKeySequence(Qt::CTRL | Qt::Key_R)},
        [this] { withActive([](frmBrowser *w) { w->Refresh(); }); });
    shortcut(QStringLiteral("key_back"), {QKeySequence(Qt::ALT | Qt::Key_Left)},
        [this] { withActive([](frmBrowser *w) { w->GoBack(); }); });
    shortcut(QStringLiteral("key_forward"), {QKeySequence(Qt::ALT | Qt::Key_Right)},
        [this] { withActive([](frmBrowser *w) { w->GoForward(); }); });
    shortcut(QStringLiteral("key_stop"), {QKeySequence(Qt::Key_Escape)},
        [this] { withActive([](frmBrowser *w) { w->Stop(); }); });
    const auto zoomBy = [this](int direction) {
        withActive([direction](frmBrowser *w) {
            w->SetZoomFactor(ZoomSteps::next(w->ZoomFactor, direction));
        });
    };
    shortcut(QStringLiteral("key_zoomIn"),
        {QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)},
        [zoomBy] { zoomBy(1); });
    shortcut(QStringLiteral("key_zoomOut"), {QKeySequence(Qt::CTRL | Qt::Key_Minus)},
        [zoomBy] { zoomBy(-1); });
    shortcut(QStringLiteral("key_zoomReset"), {QKeySequence(Qt::CTRL | Qt::Key_0)},
        [zoomBy] { zoomBy(0); });
}

bool FrameMenus::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Shortcut && m_frame->activeBrowser()
        && static_cast<QShortcutEvent *>(event)->key() == QKeySequence(Qt::ALT | Qt::Key_D)) {
        m_frame->activeBrowser()->focusAddress();
        return true;
    }
    return QObject::eventFilter(watched, event);
}
