#include "ui/frame/mdiform1.h"

#include "core/base/appinfo.h"
#include "core/base/commandline.h"
#include "core/base/uitexts.h"
#include "core/prefs/prefer.h"
#include "ui/browser/frmbrowser.h"
#include "ui/browser/infobar.h"
#include "ui/frame/framemenus.h"
#include "ui/frame/tabstrip.h"
#include "ui/frame/twips.h"

#include <QCloseEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>
#include <QVBoxLayout>

MDIForm1::MDIForm1(QWidget *parent)
    : QMainWindow(parent)
{
    // Until start-up names it, the frame carries a caption no search can match.
    setCaption(QStringLiteral("---"));
    setObjectName(QStringLiteral("MDIForm1"));
    m_central = new QWidget(this);
    m_mdi = new QMdiArea(m_central);
    m_mdi->setObjectName(QStringLiteral("mdiArea"));
    // Arranged windows fill the area exactly; scroll bars would take their share.
    m_mdi->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_mdi->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_mdi->setActivationOrder(QMdiArea::ActivationHistoryOrder);
    m_tabs = new TabStrip(m_central);
    m_infoBar = new InfoBar(m_central);
    m_infoBar->setObjectName(QStringLiteral("frameInfoBar"));
    setCentralWidget(m_central);
    layoutTabStrip();

    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("status"));
    statusBar()->addWidget(m_status, 1);

    m_menus = new FrameMenus(this);

    connect(m_mdi, &QMdiArea::subWindowActivated, this, [this] { TabSync(); });
    connect(m_tabs, &TabStrip::tabLeftClicked, this, [this](const QString &key) {
        frmBrowser *window = browser(key);
        QMdiSubWindow *sub = subWindowOf(window);
        if (!sub)
            return;
        if (sub->isMinimized())
            sub->showNormal();
        m_mdi->setActiveSubWindow(sub);
    });
    connect(m_tabs, &TabStrip::tabCloseClicked, this, [this](const QString &key) {
        if (QMdiSubWindow *sub = subWindowOf(browser(key)))
            sub->close();
    });
    connect(m_tabs, &TabStrip::tabRightClicked, this,
        [this](const QPoint &at) { m_menus->showTabContextMenu(at); });
    setAcceptDrops(true);
}

MDIForm1::~MDIForm1()
{
    // The windows die with the frame; their registry entries need no upkeep then.
    m_destroying = true;
}

void MDIForm1::layoutTabStrip()
{
    delete m_central->layout();
    auto *layout = new QVBoxLayout(m_central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    const bool bottom = prefer().TabAlign() != 1;
    m_tabs->setShape(bottom ? QTabBar::RoundedSouth : QTabBar::RoundedNorth);
    if (bottom) {
        layout->addWidget(m_infoBar);
        layout->addWidget(m_mdi, 1);
        layout->addWidget(m_tabs);
    } else {
        layout->addWidget(m_tabs);
        layout->addWidget(m_infoBar);
        layout->addWidget(m_mdi, 1);
    }
    m_tabs->setVisible(prefer().TabStrip() != 0);
}

void MDIForm1::SetTabAlign(qint16 align)
{
    prefer().setTabAlign(align);
    layoutTabStrip();
    m_tabs->setBoldCaptions(prefer().TabFontBold() != 0);
    m_tabs->setButtonStyle(prefer().TabButton() != 0);
    m_tabs->setShape(align != 1 ? QTabBar::RoundedSouth : QTabBar::RoundedNorth);
    m_menus->syncChecks();
    m_tabs->update();
}

void MDIForm1::SetTabButton(bool buttons)
{
    prefer().setTabButton(buttons ? -1 : 0);
    m_tabs->setButtonStyle(buttons);
    m_tabs->setShape(prefer().TabAlign() != 1 ? QTabBar::RoundedSouth : QTabBar::RoundedNorth);
    m_menus->syncChecks();
}

void MDIForm1::ApplyPreferences()
{
    const Prefer &p = prefer();
    statusBar()->setVisible(p.StatusBar() != 0);
    AddressBarDefault = p.Adresszeile() != 0;
    ToolbarDefault = p.Toolbar() != 0;
    NewWindowPolicy policy;
    policy.AllowOpenWin = p.AllowOpenWin() != 0;
    policy.AllowResizeWin = p.AllowResizeWin() != 0;
    policy.AllowWinInBack = p.AllowWinInBack() != 0;
    policy.AllowWinRef = p.AllowWinRef() != 0;
    policy.loadAllowedSites(AppInfo::dataFile(NewWindowPolicy::allowedSitesFileName()));
    setPolicy(policy);
    SetTabAlign(p.TabAlign());
    emit preferencesApplied();
}

void MDIForm1::setCaption(const QString &caption)
{
    m_caption = caption;
    setWindowTitle(caption);
}

void MDIForm1::changeEvent(QEvent *event)
{
    // A maximised child window appends " - [its title]" to the frame's caption, which
    // already names the active page: the frame keeps its own caption.
    if (event->type() == QEvent::WindowTitleChange && windowTitle() != m_caption)
        setWindowTitle(m_caption);
    QMainWindow::changeEvent(event);
}

void MDIForm1::setStatusText(const QString &text)
{
    m_status->setText(text);
}

QString MDIForm1::statusText() const
{
    return m_status->text();
}

QAction *MDIForm1::menuAction(const QString &name) const
{
    return m_menus->action(name);
}

void MDIForm1::AddToHistory(const QString &url, const QString &title)
{
    HistoryItem item;
    item.SetItem(url, title, QDateTime::currentDateTime());
    m_history.append(item);
    const int keep = qMax<int>(1, prefer().HistoryRows());
    while (m_history.size() > keep)
        m_history.removeFirst();
    emit historyChanged();
}

void MDIForm1::handleHandOver(const QString &rawLine)
{
    if (isMinimized())
        showNormal();
    show();
    raise();
    activateWindow();
    if (rawLine.isEmpty() || CommandLine::markerSum(rawLine) < 1)
        return;
    OpenNewBrowser(CommandLine::addressToOpen(rawLine));
}

void MDIForm1::Unload()
{
    if (m_unloaded)
        return;
    m_unloaded = true;
    if (SecondInstance)
        return;
    const Qt::WindowStates state = windowState();
    if (!(state & (Qt::WindowMaximized | Qt::WindowMinimized | Qt::WindowFullScreen))) {
        prefer().setMdiHeight(Twips::fromPixels(height(), this));
        prefer().setMdiWidth(Twips::fromPixels(width(), this));
    }
    prefer().setMdiState(state & Qt::WindowMinimized                 ? 1
            : (state & (Qt::WindowMaximized | Qt::WindowFullScreen)) ? 2
                                                                     : 0);
    prefer().SavePref(AppInfo::dataFile(QStringLiteral("Pref.vtp")));
}

void MDIForm1::closeEvent(QCloseEvent *event)
{
    Unload();
    event->accept();
}

void MDIForm1::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MDIForm1::dropEvent(QDropEvent *event)
{
    // One new window per dropped file.
    for (const QUrl &url : event->mimeData()->urls())
        OpenNewBrowser(url.isLocalFile() ? url.toLocalFile() : url.toString());
    event->acceptProposedAction();
}

void MDIForm1::setFullScreen(bool on)
{
    if (on) {
        m_stateBeforeFullScreen = windowState();
        menuBar()->hide();
        statusBar()->hide();
        m_tabs->hide();
        if (QMdiSubWindow *sub = m_mdi->activeSubWindow())
            sub->showMaximized();
        showFullScreen();
        return;
    }
    setWindowState(m_stateBeforeFullScreen);
    menuBar()->show();
    statusBar()->setVisible(prefer().StatusBar() != 0);
    m_tabs->setVisible(prefer().TabStrip() != 0);
}
