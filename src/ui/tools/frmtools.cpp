#include "ui/tools/frmtools.h"

#include "core/base/appinfo.h"
#include "core/base/uitexts.h"
#include "core/model/historylistmodel.h"
#include "ui/frame/mdiform1.h"
#include "ui/tools/bandicon.h"
#include "ui/tools/bookmarkexchange.h"
#include "ui/tools/bookmarktool.h"
#include "ui/tools/historytool.h"
#include "ui/tools/layouttool.h"
#include "ui/tools/searchtool.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QSettings>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>
#include <QToolBar>
#include <QToolButton>

namespace {
// The tabs in strip order, and the tool each stands for.
const QStringList &tabKeys()
{
    static const QStringList keys = {QStringLiteral("bkarchiv"), QStringLiteral("wlayout"),
        QStringLiteral("history"), QStringLiteral("search")};
    return keys;
}
int tabOfTool(int tool)
{
    return tool == frmTools::History ? 2
        : tool == frmTools::Search   ? 3
        : tool == frmTools::Layouts  ? 1
                                     : 0;
}
} // namespace

frmTools *frmTools::attach(MDIForm1 *frame)
{
    auto *pane = new frmTools(frame);
    frame->addDockWidget(Qt::LeftDockWidgetArea, pane);
    pane->restoreSettings();
    connect(frame->menuAction(QStringLiteral("mn_Bookmarks")), &QAction::triggered, pane,
        [pane] { pane->SelectTool(Bookmarks); });
    connect(frame->menuAction(QStringLiteral("mn_Historie")), &QAction::triggered, pane,
        [pane] { pane->SelectTool(History); });
    // Quitting never loses an edit silently: the frame's close asks, and so does a
    // quit that bypasses it.
    frame->installEventFilter(pane);
    connect(qApp, &QCoreApplication::aboutToQuit, pane, [pane] {
        pane->m_bookmarks->askToSave();
        pane->saveSettings();
    });
    return pane;
}

frmTools::frmTools(MDIForm1 *frame)
    : QDockWidget(uiText(2060), frame)
    , m_frame(frame)
{
    setObjectName(QStringLiteral("frmTools"));
    setFeatures(QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable
        | QDockWidget::DockWidgetFloatable);
    m_bookmarks = new BookmarkTool(frame, this);
    m_history = new HistoryTool(frame, this);
    m_layouts = new LayoutTool(frame, this);
    m_search = new SearchTool(frame, this);

    // CoolBar1: the current tool's band, then "minmax".
    m_bands = new QStackedWidget(this);
    m_bands->addWidget(m_bookmarks->band());
    m_bands->addWidget(m_layouts->band());
    m_bands->addWidget(m_history->band());
    m_bands->addWidget(m_search->band());
    m_minmax = new QToolBar(this);
    m_minmax->setObjectName(QStringLiteral("Toolbar4"));
    m_minmax->setIconSize(QSize(16, 16));
    const auto add
        = [this](const char *key, int tip, const char *theme, QStyle::StandardPixmap fallback) {
              QAction *entry = m_minmax->addAction(bandIcon(theme, fallback, this), uiText(tip));
              entry->setObjectName(QLatin1String(key));
              return entry;
          };
    connect(add("start", 802, "document-open", QStyle::SP_DialogOpenButton), &QAction::triggered,
        this, [this] { currentTool() == Search ? m_search->start() : m_history->start(); });
    m_minmax->addSeparator()->setObjectName(QStringLiteral("sep1"));
    QAction *check = add("check", 803, "edit-select-all", QStyle::SP_DialogApplyButton);
    check->setCheckable(true);
    connect(check, &QAction::triggered, m_history, &HistoryTool::checkAll);
    m_minmax->addSeparator()->setObjectName(QStringLiteral("sep2"));
    connect(add("min", 2068, "go-up", QStyle::SP_TitleBarShadeButton), &QAction::triggered, this,
        [this] { setFolded(true); });
    connect(add("max", 2069, "go-down", QStyle::SP_TitleBarUnshadeButton), &QAction::triggered,
        this, [this] { setFolded(false); });
    auto *coolBar = new QWidget(this);
    coolBar->setObjectName(QStringLiteral("CoolBar1"));
    auto *bandRow = new QHBoxLayout(coolBar);
    bandRow->setContentsMargins(0, 0, 0, 0);
    bandRow->addWidget(m_bands, 1);
    bandRow->addWidget(m_minmax);

    m_content = new QStackedWidget(this);
    m_content->addWidget(m_bookmarks);
    m_content->addWidget(m_layouts);
    m_content->addWidget(m_history);
    m_content->addWidget(m_search);

    m_tabs = new QTabBar(this);
    m_tabs->setObjectName(QStringLiteral("TabStrip1"));
    m_tabs->setShape(QTabBar::RoundedSouth);
    // All four tabs stay in sight in a narrow pane: their captions give way instead.
    m_tabs->setUsesScrollButtons(false);
    m_tabs->setElideMode(Qt::ElideRight);
    for (const int textId : {105, 1550, 800, 1511})
        m_tabs->addTab(uiText(textId));
    for (int i = 0; i < tabKeys().size(); ++i)
        m_tabs->setTabData(i, tabKeys().at(i));

    m_statusBar = new QStatusBar(this);
    m_statusBar->setObjectName(QStringLiteral("StatusBar1"));
    m_statusBar->setSizeGripEnabled(false);
    m_status = new QLabel(m_statusBar);
    m_status->setObjectName(QStringLiteral("status"));
    m_progress = new QProgressBar(m_statusBar);
    m_progress->setMaximumWidth(90);
    m_progress->hide();
    m_cancel = new QToolButton(m_statusBar);
    m_cancel->setText(uiText(102));
    m_cancel->hide();
    m_statusBar->addWidget(m_status, 1);
    m_statusBar->addPermanentWidget(m_progress);
    m_statusBar->addPermanentWidget(m_cancel);

    buildMenuBar();
    m_body = new QWidget(this);
    auto *layout = new QVBoxLayout(m_body);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->setMenuBar(m_menuBar);
    layout->addWidget(coolBar);
    layout->addWidget(m_content, 1);
    layout->addWidget(m_tabs);
    layout->addWidget(m_statusBar);
    setWidget(m_body);

    connect(m_tabs, &QTabBar::currentChanged, this, &frmTools::showTab);
    connect(m_bookmarks, &BookmarkTool::statusText, this, &frmTools::setStatus);
    connect(m_history, &HistoryTool::statusText, this, &frmTools::setStatus);
    connect(m_layouts, &LayoutTool::statusText, this, &frmTools::setStatus);
    connect(m_layouts, &LayoutTool::showRequested, this, [this] { SelectTool(Layouts); });
    connect(m_search, &SearchTool::statusText, this, &frmTools::setStatus);
    connect(m_bookmarks, &BookmarkTool::closeRequested, this, &QWidget::close);
    BookmarkExchange *exchange = m_bookmarks->exchange();
    connect(m_cancel, &QToolButton::clicked, exchange, &BookmarkExchange::cancelImport);
    connect(exchange, &BookmarkExchange::importProgress, this, [this](int percent) {
        m_progress->setValue(percent);
        m_progress->show();
        m_cancel->show();
        m_status->setText(uiText(2206).arg(percent));
    });
    connect(exchange, &BookmarkExchange::importFinished, this, [this](const QString &message) {
        m_progress->hide();
        m_cancel->hide();
        setStatus(message);
    });
    connect(m_history->model(), &HistoryListModel::checksChanged, this, &frmTools::syncButtons);
    showTab(0);
}

void frmTools::buildMenuBar()
{
    m_menuBar = new QMenuBar(this);
    m_menuBar->setNativeMenuBar(false);
    // The archive's entries, each forwarding to its namesake.
    QMenu *archive = m_menuBar->addMenu(uiText(1001));
    for (const char *name : {"mn_Laden", "mn_Speichern", "mn_ExpTxt", "mn_ExpHtml", "mn_ExpXML",
             "mn_ExpRSS", "mn_ExpNetscapeHtml", "mn_ImpNetscapeHtml", "mn_Schlie_en"}) {
        QAction *original = m_bookmarks->action(QLatin1String(name));
        QAction *twin = archive->addAction(original->text());
        twin->setObjectName(QLatin1String(name) + QStringLiteral("_H"));
        connect(twin, &QAction::triggered, original, &QAction::trigger);
    }
    QMenu *window = m_menuBar->addMenu(uiText(400));
    window->setObjectName(QStringLiteral("mn_BkFenster"));
    const auto entry = [this, window](const char *name, int textId, auto act) {
        QAction *added = window->addAction(uiText(textId));
        added->setObjectName(QLatin1String(name));
        connect(added, &QAction::triggered, this, act);
    };
    entry("mn_lo", 2064, [this] { place(Corner::UpperLeft); });
    entry("mn_ro", 2065, [this] { place(Corner::UpperRight); });
    entry("mn_lu", 2066, [this] { place(Corner::LowerLeft); });
    entry("mn_ru", 2067, [this] { place(Corner::LowerRight); });
    window->addSeparator();
    entry("mn_mini", 2068, [this] { setFolded(true); });
    entry("mn_aufklapp", 2069, [this] { setFolded(false); });
}

void frmTools::SelectTool(int tool)
{
    // The search tab first, whatever the tool, so the requested tab is always shown
    // anew, even when it was the current one.
    {
        const QSignalBlocker quiet(m_tabs);
        m_tabs->setCurrentIndex(tabOfTool(Search));
    }
    m_tabs->setCurrentIndex(tabOfTool(tool));
    if (m_tabs->currentIndex() == tabOfTool(Search))
        showTab(m_tabs->currentIndex());
    setFolded(false);
    show();
    raise();
}

int frmTools::currentTool() const
{
    static const int tools[] = {Bookmarks, Layouts, History, Search};
    return tools[std::max(0, m_tabs->currentIndex())];
}

void frmTools::showTab(int index)
{
    // Leaving the archive with unsaved changes asks first.
    if (m_shownTab == 0 && index != 0)
        m_bookmarks->askToSave();
    m_shownTab = index;
    m_bands->setCurrentIndex(index);
    m_content->setCurrentIndex(index);
    if (index == 0 && !m_archiveLoaded) {
        m_archiveLoaded = true;
        m_bookmarks->load();
    }
    if (index == 1 && !m_layoutsLoaded) {
        m_layoutsLoaded = true;
        m_layouts->ViewLayoutArchiv();
    } else if (index == 1) {
        setStatus(uiText(2653).arg(m_layouts->book().colLayout.size()));
    }
    if (index == 2)
        m_history->refresh();
    if (index == 0)
        setStatus(uiText(2216).arg(m_bookmarks->book().colThema.count()));
    if (index == 3)
        setStatus(m_search->lastStatus());
    syncButtons();
}

void frmTools::syncButtons()
{
    // "start" acts on the history or the search, "check" on the history; folded, nothing
    // is there to act on.
    const bool history = m_tabs->currentIndex() == 2 && !m_folded;
    const bool search = m_tabs->currentIndex() == 3 && !m_folded;
    m_minmax->findChild<QAction *>(QStringLiteral("start"))
        ->setEnabled(
            search || (history && m_history->button(QStringLiteral("start"))->isEnabled()));
    QAction *check = m_minmax->findChild<QAction *>(QStringLiteral("check"));
    check->setEnabled(history);
    check->setChecked(m_history->button(QStringLiteral("check"))->isChecked());
    m_bookmarks->band()->findChild<QAction *>(QStringLiteral("edit"))->setEnabled(!m_folded);
    m_layouts->band()->findChild<QAction *>(QStringLiteral("edit"))->setEnabled(!m_folded);
    m_history->button(QStringLiteral("check"))->setEnabled(!m_folded);
    m_minmax->findChild<QAction *>(QStringLiteral("min"))->setEnabled(!m_folded);
    m_minmax->findChild<QAction *>(QStringLiteral("max"))->setEnabled(m_folded);
}

void frmTools::setFolded(bool folded)
{
    m_folded = folded;
    m_content->setVisible(!folded);
    m_tabs->setVisible(!folded);
    if (folded && isFloating())
        resize(width(), m_body->minimumSizeHint().height());
    syncButtons();
}

void frmTools::place(Corner corner)
{
    const bool left = corner == Corner::UpperLeft || corner == Corner::LowerLeft;
    const bool upper = corner == Corner::UpperLeft || corner == Corner::UpperRight;
    // Upper corners take the whole side; lower ones the bottom, in that corner.
    setFloating(false);
    if (upper) {
        m_frame->addDockWidget(left ? Qt::LeftDockWidgetArea : Qt::RightDockWidgetArea, this);
    } else {
        m_frame->setCorner(
            left ? Qt::BottomLeftCorner : Qt::BottomRightCorner, Qt::BottomDockWidgetArea);
        m_frame->setCorner(left ? Qt::BottomRightCorner : Qt::BottomLeftCorner,
            left ? Qt::RightDockWidgetArea : Qt::LeftDockWidgetArea);
        m_frame->addDockWidget(Qt::BottomDockWidgetArea, this);
    }
    show();
}

void frmTools::setStatus(const QString &text)
{
    m_status->setText(text);
}

QString frmTools::settingsPath()
{
    return AppInfo::dataFile(QStringLiteral("ToolsPane.ini"));
}

void frmTools::saveSettings() const
{
    QSettings settings(settingsPath(), QSettings::IniFormat);
    settings.setValue(QStringLiteral("tool"), currentTool());
    settings.setValue(
        QStringLiteral("area"), int(m_frame->dockWidgetArea(const_cast<frmTools *>(this))));
    settings.setValue(QStringLiteral("width"), width());
    settings.setValue(QStringLiteral("folded"), m_folded);
    settings.setValue(QStringLiteral("floating"), isFloating());
    settings.setValue(QStringLiteral("visible"), isVisible());
}

void frmTools::restoreSettings()
{
    QSettings settings(settingsPath(), QSettings::IniFormat);
    const auto area = Qt::DockWidgetArea(
        settings.value(QStringLiteral("area"), int(Qt::LeftDockWidgetArea)).toInt());
    if (area == Qt::RightDockWidgetArea || area == Qt::BottomDockWidgetArea)
        m_frame->addDockWidget(area, this);
    setFloating(settings.value(QStringLiteral("floating"), false).toBool());
    const int width = settings.value(QStringLiteral("width"), 320).toInt();
    m_frame->resizeDocks({this}, {std::clamp(width, 120, 2000)}, Qt::Horizontal);
    const int tool = settings.value(QStringLiteral("tool"), int(Bookmarks)).toInt();
    const bool visible = settings.value(QStringLiteral("visible"), false).toBool();
    if (visible)
        SelectTool(tool >= Bookmarks && tool <= Layouts ? tool : int(Bookmarks));
    else
        hide();
    setFolded(settings.value(QStringLiteral("folded"), false).toBool());
}

void frmTools::closeEvent(QCloseEvent *event)
{
    m_bookmarks->askToSave();
    QDockWidget::closeEvent(event);
}

bool frmTools::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_frame && event->type() == QEvent::Close) {
        m_bookmarks->askToSave();
        saveSettings();
    }
    return QDockWidget::eventFilter(watched, event);
}
