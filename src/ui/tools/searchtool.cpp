#include "ui/tools/searchtool.h"

#include "core/base/appinfo.h"
#include "core/base/uitexts.h"
#include "core/feeds/feedfetcher.h"
#include "core/prefs/prefer.h"
#include "core/search/opensearch.h"
#include "core/search/searchenginelist.h"
#include "core/search/searchformfile.h"
#include "engine/pageview.h"
#include "ui/browser/feedloader.h"
#include "ui/browser/frmbrowser.h"
#include "ui/frame/mdiform1.h"
#include "ui/tools/bandicon.h"

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QRegularExpression>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QTimer>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>

SearchTool::SearchTool(MDIForm1 *frame, QWidget *parent)
    : QWidget(parent)
    , m_frame(frame)
    , m_engines(new SearchEngineList(AppInfo::dataFile(QStringLiteral("SearchEngines.ini")), this))
    , m_filtered(new QSortFilterProxyModel(this))
    , m_watcher(new QFileSystemWatcher(this))
    , m_settle(new QTimer(this))
{
    m_filtered->setSourceModel(m_engines);
    m_filtered->setFilterKeyColumn(SearchEngineList::Group);

    m_band = new QToolBar(this);
    m_band->setObjectName(QStringLiteral("search"));
    m_band->setIconSize(QSize(16, 16));
    m_band->addWidget(new QLabel(uiText(1501), m_band));
    m_term = new QLineEdit(m_band);
    m_term->setObjectName(QStringLiteral("Text1"));
    m_term->setPlaceholderText(uiText(2610));
    m_term->setClearButtonEnabled(true);
    m_term->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_band->addWidget(m_term);
    QAction *go = m_band->addAction(
        bandIcon("system-search", QStyle::SP_DialogOpenButton, this), uiText(1512));
    go->setObjectName(QStringLiteral("start"));
    connect(go, &QAction::triggered, this, &SearchTool::start);
    connect(m_term, &QLineEdit::returnPressed, this, &SearchTool::start);
    QAction *add = m_band->addAction(
        bandIcon("list-add", QStyle::SP_FileDialogNewFolder, this), uiText(2614));
    add->setObjectName(QStringLiteral("add"));
    connect(add, &QAction::triggered, this, &SearchTool::addFromActiveWindow);

    m_list = new QTreeView(this);
    m_list->setObjectName(QStringLiteral("ListView2"));
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setModel(m_filtered);
    m_list->header()->setSectionResizeMode(SearchEngineList::Check, QHeaderView::ResizeToContents);
    m_list->header()->setSectionResizeMode(
        SearchEngineList::Machine, QHeaderView::ResizeToContents);
    m_list->header()->setStretchLastSection(true);
    m_split = new QSplitter(Qt::Vertical, this);
    m_split->addWidget(m_list);

    // CoolBar2: the band "group" with the group filter, below the content.
    auto *coolBar = new QWidget(this);
    coolBar->setObjectName(QStringLiteral("CoolBar2"));
    auto *groupBand = new QToolBar(coolBar);
    groupBand->setObjectName(QStringLiteral("group"));
    groupBand->addWidget(new QLabel(uiText(1502), groupBand));
    m_groups = new QComboBox(groupBand);
    m_groups->setObjectName(QStringLiteral("Combo1"));
    m_groups->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    groupBand->addWidget(m_groups);
    auto *row = new QHBoxLayout(coolBar);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(groupBand);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_split, 1);
    layout->addWidget(coolBar);

    connect(m_groups, &QComboBox::currentIndexChanged, this, &SearchTool::applyGroupFilter);
    connect(m_engines, &SearchEngineList::checksChanged, this, [this] { tell(countText()); });
    connect(m_list, &QTreeView::doubleClicked, this, [this](const QModelIndex &index) {
        const int row = m_filtered->mapToSource(index).row();
        m_engines->setChecked(row, !m_engines->engines().at(row).checked);
    });
    // An editor saves in several steps; the page is read once they are done.
    m_settle->setSingleShot(true);
    m_settle->setInterval(150);
    connect(m_settle, &QTimer::timeout, this, [this] {
        const QFileInfo info(m_path);
        if (info.exists() != m_readStamp.isValid() || info.lastModified() != m_readStamp
            || info.size() != m_readSize)
            reload();
        else
            watch(m_path);
    });
    connect(m_watcher, &QFileSystemWatcher::fileChanged, m_settle, qOverload<>(&QTimer::start));
    connect(
        m_watcher, &QFileSystemWatcher::directoryChanged, m_settle, qOverload<>(&QTimer::start));
    // The settings may name another page.
    connect(frame, &MDIForm1::preferencesApplied, this, [this] {
        if (prefer().SearchEngineFile() != m_path)
            reload();
    });
    reload();
}

void SearchTool::reload()
{
    m_path = prefer().SearchEngineFile();
    const QFileInfo info(m_path);
    m_readStamp = info.exists() ? info.lastModified() : QDateTime();
    m_readSize = info.exists() ? info.size() : -1;
    const SearchFormFile::Result result = SearchFormFile::readFile(m_path);
    if (result.status == SearchFormFile::Result::Read) {
        m_engines->setEngines(result.engines);
        tell(countText());
    } else {
        QString message = result.message(m_path);
        if (m_engines->rowCount() > 0)
            message += u' ' + uiText(2607);
        tell(message);
    }
    fillGroups();
    watch(m_path);
    if (m_page)
        showPage();
}

void SearchTool::watch(const QString &path)
{
    // The folder too: an editor that replaces the file, and a file that comes back.
    if (!m_watcher->files().isEmpty())
        m_watcher->removePaths(m_watcher->files());
    if (!m_watcher->directories().isEmpty())
        m_watcher->removePaths(m_watcher->directories());
    const QFileInfo info(path);
    if (info.exists())
        m_watcher->addPath(info.absoluteFilePath());
    if (info.absoluteDir().exists())
        m_watcher->addPath(info.absolutePath());
}

void SearchTool::fillGroups()
{
    const QSignalBlocker quiet(m_groups);
    m_groups->clear();
    m_groups->addItem(uiText(1505), QString());
    for (const QString &group : m_engines->groups())
        m_groups->addItem(group, group);
    m_groups->setCurrentIndex(std::max(0, m_groups->findData(m_engines->groupFilter())));
    applyGroupFilter();
}

void SearchTool::applyGroupFilter()
{
    const QString group = m_groups->currentData().toString();
    m_engines->setGroupFilter(group);
    m_filtered->setFilterRegularExpression(group.isEmpty()
            ? QRegularExpression()
            : QRegularExpression(
                QRegularExpression::anchoredPattern(QRegularExpression::escape(group))));
}

void SearchTool::start()
{
    const QString term = m_term->text().trimmed();
    if (term.isEmpty()) {
        tell(uiText(1508));
        m_term->setFocus();
        return;
    }
    const QString group = m_engines->groupFilter();
    const QList<SearchEngine> chosen = m_engines->checkedIn(group);
    if (chosen.isEmpty()) {
        tell(group.isEmpty() ? uiText(1509) : uiText(2609).arg(group));
        return;
    }
    for (const SearchEngine &engine : chosen)
        m_frame->NewBrowser(engine.addressFor(term));
    tell(uiText(2608).arg(chosen.size()).arg(term));
}

void SearchTool::tell(const QString &text)
{
    m_lastStatus = text;
    emit statusText(text);
}

QString SearchTool::countText() const
{
    return uiText(2606).arg(m_engines->rowCount()).arg(m_engines->checkedIn(QString()).size());
}

void SearchTool::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_page)
        return;
    // WebBrowser2 is made only when the tool is first shown: most runs never show it.
    m_page = new PageView(m_split);
    m_page->setObjectName(QStringLiteral("WebBrowser2"));
    // Searches sent from the page open in browser windows of the frame.
    m_page->setNewWindowHandler([this](const PageView::NewWindowRequest &request, bool *) {
        m_frame->NewBrowser(request.url.toString());
        return static_cast<PageView *>(nullptr);
    });
    m_split->addWidget(m_page);
    m_split->setSizes({height() / 2, height() / 2});
    showPage();
}

void SearchTool::showPage()
{
    if (QFileInfo::exists(m_path))
        m_page->load(QUrl::fromLocalFile(QFileInfo(m_path).absoluteFilePath()));
    else
        m_page->setHtml(QStringLiteral("<p>")
                + QString(uiText(1510) + u' ' + m_path).toHtmlEscaped() + QStringLiteral("</p>"),
            QUrl());
}

void SearchTool::addFromActiveWindow()
{
    frmBrowser *window = m_frame->activeBrowser();
    if (!window) {
        tell(uiText(2615));
        return;
    }
    const QUrl pageUrl = window->page()->url();
    // The answer may come after the pane has gone.
    window->page()->linkElements(
        [self = QPointer<SearchTool>(this), pageUrl](const QList<QStringList> &links) {
            if (self)
                self->fetchDescription(pageUrl, links);
        });
}

void SearchTool::fetchDescription(const QUrl &pageUrl, const QList<QStringList> &links)
{
    QUrl description;
    for (const QStringList &link : links) {
        if (OpenSearch::isDescriptionType(link.value(0))) {
            description = pageUrl.resolved(QUrl(link.value(2).trimmed()));
            break;
        }
    }
    // Only a description from the web: a page may not have a local file read.
    if (!description.isValid()
        || !(description.scheme() == u"http" || description.scheme() == u"https")) {
        tell(uiText(2616).arg(pageUrl.toDisplayString()));
        return;
    }
    if (!m_fetcher) {
        m_fetcher = new FeedFetcher(FeedLoader::network(), this);
        m_fetcher->setTimeout(15000);
    }
    // Each fetch reports once; a new one replaces the one under way.
    disconnect(m_fetcher, nullptr, this, nullptr);
    connect(m_fetcher, &FeedFetcher::finished, this,
        [this, pageUrl](const QByteArray &bytes, const FeedError &error) {
            QString reason = error.reason;
            std::optional<SearchEngine> engine;
            if (error.problem == FeedError::Problem::None)
                engine = OpenSearch::parse(bytes, &reason);
            if (!engine) {
                tell(uiText(2617).arg(pageUrl.toDisplayString(), reason));
                return;
            }
            m_engines->add(*engine);
            fillGroups();
            tell(uiText(2618).arg(engine->machine, engine->group));
        });
    m_fetcher->fetch(description);
}
