#include "ui/browser/browsertoolbar.h"

#include "core/base/uitexts.h"
#include "core/browsing/addressinput.h"
#include "core/browsing/usercommand.h"
#include "core/feeds/feedlist.h"
#include "core/prefs/prefer.h"
#include "ui/browser/drivemenu.h"
#include "ui/browser/frmbrowser.h"
#include "ui/browser/toolbaricons.h"
#include "ui/desktop/mailprogram.h"
#include "ui/desktop/networkdrives.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QMenu>
#include <QPointer>
#include <QStandardPaths>
#include <QToolBar>
#include <QToolButton>

namespace {
// Drop-down entries and their texts.
const QHash<QString, int> &entryTexts()
{
    static const QHash<QString, int> texts = {{QStringLiteral("Refresh"), 600},
        {QStringLiteral("Roundtrip"), 605}, {QStringLiteral("RoundtripFrame"), 606},
        {QStringLiteral("GetHome"), 1027}, {QStringLiteral("BrowserSearch"), 1500},
        {QStringLiteral("DocSearch"), 1514}, {QStringLiteral("Cloneit"), 616},
        {QStringLiteral("Startit"), 201}, {QStringLiteral("StartBlank"), 209},
        {QStringLiteral("OpenallA"), 617}, {QStringLiteral("ClosePopups"), 426},
        {QStringLiteral("CloseallWin"), 411}, {QStringLiteral("CloseOthers"), 422},
        {QStringLiteral("mailer"), 608}, {QStringLiteral("sendurl"), 614},
        {QStringLiteral("ppreview"), 613}, {QStringLiteral("print"), 612}};
    return texts;
}

QStringList keys(std::initializer_list<const char *> names)
{
    QStringList list;
    for (const char *name : names)
        list.append(QLatin1String(name));
    return list;
}

const QString FeedEntryKey = QStringLiteral("FeedItem");
} // namespace

BrowserToolbar::BrowserToolbar(frmBrowser *window, QToolBar *bar)
    : QObject(bar)
    , m_window(window)
    , m_bar(bar)
{
    addButton(QStringLiteral("Back"), uiText(602));
    addButton(QStringLiteral("Forward"), uiText(601));
    addButton(QStringLiteral("Stop"), uiText(603));
    addButton(
        QStringLiteral("Refresh"), uiText(604), keys({"Refresh", "Roundtrip", "RoundtripFrame"}));
    addButton(QStringLiteral("Home"), prefer().HomeUrl().trimmed(), keys({"GetHome"}));
    addButton(QStringLiteral("Search"),
        AddressInput::searchStartPage(prefer().SearchEngine().trimmed()),
        keys({"BrowserSearch", "DocSearch"}));
    addButton(QStringLiteral("Clone"), uiText(201),
        keys({"Cloneit", "Startit", "StartBlank", "OpenallA", "ClosePopups", "CloseallWin",
            "CloseOthers"}));
    QAction *drive = addButton(QStringLiteral("Drive"), uiText(607));
    auto *driveList = new QMenu(m_bar);
    m_driveMenu = new DriveMenu(driveList);
    drive->setMenu(driveList);
    connect(driveList, &QMenu::triggered, this, &BrowserToolbar::menuClick);
    addButton(QStringLiteral("Mail"), uiText(608), keys({"mailer", "sendurl"}));
    addButton(QStringLiteral("history"), uiText(800));
    addButton(QStringLiteral("Bookm"), uiText(609));
    addButton(QStringLiteral("Save"), uiText(611));
    addButton(QStringLiteral("Print"), uiText(612), keys({"ppreview", "print"}));
    QAction *feeds = addButton(QStringLiteral("Feed"), uiText(2051));
    auto *feedList = new QMenu(m_bar);
    feeds->setMenu(feedList);
    connect(feedList, &QMenu::triggered, this, &BrowserToolbar::menuClick);
    feeds->setEnabled(false);

    // The button menus open from their arrow; "Drive" and "Feed" are only a list.
    for (QAction *button : std::as_const(m_buttons)) {
        if (auto *tool = qobject_cast<QToolButton *>(m_bar->widgetForAction(button));
            tool && button->menu()) {
            const bool listOnly = button == drive || button == feeds;
            tool->setPopupMode(listOnly ? QToolButton::InstantPopup : QToolButton::MenuButtonPopup);
        }
    }
    // Features this build does not have yet are shown, disabled, with a tool tip saying so.
    for (const char *key : {"BrowserSearch"})
        markUnavailable(entry(QLatin1String(key)));
    button(QStringLiteral("history"))->setEnabled(false);
}

QAction *BrowserToolbar::addButton(
    const QString &key, const QString &tip, const QStringList &entries)
{
    auto *action = new QAction(ToolbarIcons::icon(key), tip, m_bar);
    action->setObjectName(key);
    action->setToolTip(tip);
    m_bar->addAction(action);
    m_buttons.insert(key, action);
    m_order.append(key);
    connect(action, &QAction::triggered, this, [this, key] { buttonClick(key); });
    if (!entries.isEmpty()) {
        auto *menu = new QMenu(m_bar);
        menu->setToolTipsVisible(true);
        for (const QString &name : entries)
            addEntry(menu, name, entryTexts().value(name));
        action->setMenu(menu);
        connect(menu, &QMenu::triggered, this, &BrowserToolbar::menuClick);
    }
    return action;
}

void BrowserToolbar::addEntry(QMenu *menu, const QString &key, int textId)
{
    QAction *action = menu->addAction(uiText(textId));
    action->setObjectName(key);
    m_entries.insert(key, action);
}

void BrowserToolbar::markUnavailable(QAction *action)
{
    action->setEnabled(false);
    action->setToolTip(uiText(2045));
}

QMenu *BrowserToolbar::menuOf(const QString &buttonKey) const
{
    QAction *action = button(buttonKey);
    return action ? action->menu() : nullptr;
}

void BrowserToolbar::setHomeTip(const QString &tip)
{
    button(QStringLiteral("Home"))->setToolTip(tip);
}

void BrowserToolbar::setHistoryAvailable(bool available)
{
    button(QStringLiteral("history"))->setEnabled(available);
}

void BrowserToolbar::showFeeds(const FeedList &feeds)
{
    QMenu *menu = menuOf(QStringLiteral("Feed"));
    menu->clear();
    for (int i = 0; i < feeds.GetFeedCount(); ++i) {
        QString title = feeds.GetFeedTitelByInd(i).trimmed();
        if (title.isEmpty())
            title = feeds.GetFeedUrlByInd(i);
        QAction *action = menu->addAction(title.replace(u'&', QStringLiteral("&&")));
        action->setObjectName(FeedEntryKey);
        action->setData(feeds.GetFeedUrlByInd(i));
        action->setToolTip(feeds.GetFeedUrlByInd(i));
    }
    QAction *feedButton = button(QStringLiteral("Feed"));
    feedButton->setEnabled(feeds.GetFeedCount() > 0);
    feedButton->setToolTip(feeds.GetFeedCount() > 0 ? uiText(2050) : uiText(2051));
}

void BrowserToolbar::buttonClick(const QString &key)
{
    UserCommand::mark();
    frmBrowser *w = m_window;
    if (key == u"Back") {
        w->GoBack();
    } else if (key == u"Forward") {
        w->GoForward();
    } else if (key == u"Stop") {
        w->Stop();
    } else if (key == u"Refresh") {
        w->Refresh();
    } else if (key == u"Home") {
        w->GoHome();
    } else if (key == u"Search") {
        w->FeedSourceUrl.clear();
        w->Navigate(AddressInput::searchStartPage(prefer().SearchEngine().trimmed()));
    } else if (key == u"Clone") {
        emit windowCommand(WindowCommand::Start);
    } else if (key == u"Mail") {
        startMail();
    } else if (key == u"Bookm") {
        emit windowCommand(WindowCommand::Bookmarks);
    } else if (key == u"history") {
        emit windowCommand(WindowCommand::History);
    } else if (key == u"Save") {
        w->WebSave();
    } else if (key == u"Print") {
        w->WebPrint();
    } else if (key == u"Drive" || key == u"Feed") {
        if (auto *tool = qobject_cast<QToolButton *>(m_bar->widgetForAction(button(key))))
            tool->showMenu();
    }
}

void BrowserToolbar::menuClick(QAction *entry)
{
    UserCommand::mark();
    frmBrowser *w = m_window;
    if (!entry || !w->isBrowserVisible())
        return;
    const QString key = entry->objectName();
    if (key == u"mailer") {
        startMail();
    } else if (key == u"sendurl") {
        w->LinkMailto();
    } else if (key == u"ppreview") {
        w->WebPrintPreview();
    } else if (key == u"print") {
        w->WebPrint();
    } else if (key == u"Refresh") {
        w->SetRefresh();
    } else if (key == u"BrowserSearch") {
        notAvailable();
    } else if (key == u"Roundtrip") {
        w->StartRoundtrip();
    } else if (key == u"RoundtripFrame") {
        w->StartFrameRoundtrip();
    } else if (key == u"Cloneit") {
        emit windowCommand(WindowCommand::Clone);
    } else if (key == u"ClosePopups") {
        emit windowCommand(WindowCommand::ClosePopups);
    } else if (key == u"CloseallWin") {
        emit windowCommand(WindowCommand::CloseAll);
    } else if (key == u"CloseOthers") {
        emit windowCommand(WindowCommand::CloseOthers);
    } else if (key == u"Startit") {
        emit windowCommand(WindowCommand::Start);
    } else if (key == u"StartBlank") {
        emit windowCommand(WindowCommand::StartBlank);
    } else if (key == u"OpenallA") {
        emit windowCommand(WindowCommand::OpenAllLinks);
    } else if (key == u"GetHome") {
        w->SetHomepage();
    } else if (key == u"DocSearch") {
        w->showFindBar();
    } else if (key == FeedEntryKey) {
        w->LoadFeed(FeedList::addressToOpen(entry->data().toString(), w->LocationURL()));
    } else if (key == u"Browse") {
        const QString desktop = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
        const QString folder = QFileDialog::getExistingDirectory(
            w, uiText(620), QDir(desktop).exists() ? desktop : QDir::homePath());
        if (!folder.isEmpty()) {
            w->FeedSourceUrl.clear();
            w->Navigate(folder);
        }
    } else if (key == u"Map" || key == u"Disconnect") {
        QPointer<BrowserToolbar> self = this;
        const auto rebuild = [self] {
            if (self)
                self->m_driveMenu->rebuild();
        };
        if (key == u"Map")
            NetworkDrives::map(w, rebuild);
        else
            NetworkDrives::disconnect(w, rebuild);
    } else {
        // A drive entry: an entry without a root path does nothing.
        const QString root = entry->data().toString();
        if (root.isEmpty())
            return;
        w->FeedSourceUrl.clear();
        w->Navigate(root);
    }
}

void BrowserToolbar::startMail()
{
    if (!MailProgram::start())
        emit statusText(MailProgram::failureText());
}

void BrowserToolbar::notAvailable()
{
    emit statusText(uiText(2045));
}
