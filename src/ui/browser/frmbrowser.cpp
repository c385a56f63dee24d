#include "ui/browser/frmbrowser.h"

#include "core/base/uitexts.h"
#include "core/prefs/prefer.h"
#include "engine/webenginesetup.h"
#include "ui/browser/browsertoolbar.h"
#include "ui/browser/busyindicator.h"
#include "ui/browser/feedloader.h"
#include "ui/browser/findbar.h"
#include "ui/browser/infobar.h"
#include "ui/browser/lockicon.h"
#include "ui/frame/mdiform1.h"

#include <QAction>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QPointer>
#include <QStyle>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

namespace {
constexpr int BusyPollMs = 60;
} // namespace

frmBrowser::frmBrowser(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_DeleteOnClose);
    brwWebBrowser = new PageView(this);
    infoBar = new InfoBar(this);
    timTimer = new QTimer(this);
    timTimer->setInterval(BusyPollMs);
    connect(timTimer, &QTimer::timeout, this, &frmBrowser::pollTick);
    buildBars();
    m_findBar = new FindBar(brwWebBrowser, this);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(CoolBar1);
    layout->addWidget(m_findBar);
    layout->addWidget(infoBar);
    // The page takes all the height the bar leaves; with the bar hidden, all of it.
    layout->addWidget(brwWebBrowser, 1);

    connectPage();
    StartUrl = prefer().HomeUrl().trimmed();
    ZoomFactor = 100;
    // The frame places and wires the window right after creating it.
    QTimer::singleShot(0, this, [this] {
        attachToFrame();
        routeFeedItemWindows();
    });
}

frmBrowser::~frmBrowser() = default;

void frmBrowser::buildBars()
{
    CoolBar1 = new QWidget(this);
    auto *bars = new QVBoxLayout(CoolBar1);
    bars->setContentsMargins(2, 2, 2, 2);
    bars->setSpacing(1);

    tbToolBar = new QToolBar(CoolBar1);
    tbToolBar->setObjectName(QStringLiteral("Toolbar"));
    tbToolBar->setIconSize(QSize(18, 18));
    tbToolBar->setToolButtonStyle(Qt::ToolButtonIconOnly);
    m_commands = new BrowserToolbar(this, tbToolBar);

    addressBand = new QWidget(CoolBar1);
    addressBand->setObjectName(QStringLiteral("Adress"));
    auto *addressRow = new QHBoxLayout(addressBand);
    addressRow->setContentsMargins(0, 0, 0, 0);
    cboAddress = new QComboBox(addressBand);
    cboAddress->setEditable(true);
    cboAddress->setInsertPolicy(QComboBox::NoInsert);
    cboAddress->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    cboAddress->lineEdit()->installEventFilter(this);
    cboAddress->lineEdit()->setAcceptDrops(true);
    cboAddress->setAcceptDrops(true);
    cboAddress->installEventFilter(this);
    secureAction
        = cboAddress->lineEdit()->addAction(LockIcon::make(false), QLineEdit::LeadingPosition);
    secureAction->setToolTip(uiText(1400));
    busy = new BusyIndicator(addressBand);
    addressRow->addWidget(cboAddress, 1);
    addressRow->addWidget(busy);
    // Choosing an entry of the list navigates as Enter does.
    connect(cboAddress, qOverload<int>(&QComboBox::activated), this, [this] { commitAddress(); });

    bars->addWidget(tbToolBar);
    bars->addWidget(addressBand);
}

void frmBrowser::connectPage()
{
    connect(brwWebBrowser, &PageView::navigationRequested, this,
        [this](const QUrl &url, bool mainFrame) {
            if (!mainFrame)
                return;
            // Leaving the feed page, by whatever way, ends showing the feed.
            if (!(url.scheme() == WebEngineSetup::schemeName() && url.host() == u"page"))
                FeedSourceUrl.clear();
            startBusyPoll();
            LastRequestUrl = url.toString();
        });
    connect(brwWebBrowser, &PageView::loadStarted, this, &frmBrowser::startBusyPoll);
    connect(brwWebBrowser, &PageView::urlChanged, this, &frmBrowser::onNavigateComplete);
    connect(brwWebBrowser, &PageView::titleChanged, this, [this](const QString &title) {
        Title = title;
        emit tabRefreshRequested();
    });
    connect(brwWebBrowser, &PageView::linkHovered, this, &frmBrowser::statusText);
    connect(brwWebBrowser, &PageView::loadFinished, this, [this](bool ok) {
        updateSecureState(ok);
        const QString url = LocationURL();
        if (ok && !url.isEmpty())
            emit historyEntry(url, LocationName());
        pollTick();
        CollectXmlFeed();
    });
    connect(brwWebBrowser, &PageView::closeRequested, this, &frmBrowser::closeRequested);
    connect(brwWebBrowser, &PageView::resizeRequested, this, &frmBrowser::resizeRequested);
    connect(brwWebBrowser, &PageView::fullScreenRequested, this, [this](bool on) {
        CoolBar1->setVisible(!on && (addressBarVisible() || toolbarVisible()));
        emit fullScreenRequested(on);
    });
    connect(brwWebBrowser, &PageView::permissionRequested, this, &frmBrowser::askPermission);
    connect(brwWebBrowser, &PageView::certificateRejected, this,
        [this](const QUrl &url, const QString &description) {
            infoBar->showMessage(uiText(2020).arg(url.host() + QStringLiteral(": ") + description));
        });
}

void frmBrowser::askPermission(const QUrl &origin, PageView::Permission permission)
{
    int what = 0;
    switch (permission) {
    case PageView::Permission::Location:
        what = 2023;
        break;
    case PageView::Permission::Notifications:
        what = 2024;
        break;
    case PageView::Permission::Camera:
        what = 2025;
        break;
    case PageView::Permission::Microphone:
        what = 2026;
        break;
    case PageView::Permission::CameraAndMicrophone:
        what = 2027;
        break;
    case PageView::Permission::Other:
        brwWebBrowser->answerPermission(origin, permission, false);
        return;
    }
    QPointer<PageView> view = brwWebBrowser;
    const QString site = origin.host().isEmpty() ? origin.toString() : origin.host();
    infoBar->ask(uiText(2022).arg(site, uiText(what)), [view, origin, permission](bool granted) {
        if (view)
            view->answerPermission(origin, permission, granted);
    });
}

bool frmBrowser::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == cboAddress->lineEdit() || watched == cboAddress) {
        if (event->type() == QEvent::KeyPress) {
            const auto *key = static_cast<QKeyEvent *>(event);
            if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
                commitAddress();
                return true;
            }
        } else if (event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove) {
            auto *drag = static_cast<QDragMoveEvent *>(event);
            if (drag->mimeData()->hasText() || drag->mimeData()->hasUrls()) {
                drag->acceptProposedAction();
                return true;
            }
        } else if (event->type() == QEvent::Drop) {
            // Plain text first; failing that, the first dropped file.
            const QMimeData *data = static_cast<QDropEvent *>(event)->mimeData();
            QString text;
            if (data->hasText())
                text = data->text();
            else if (data->hasUrls() && !data->urls().isEmpty())
                text = data->urls().first().isLocalFile() ? data->urls().first().toLocalFile()
                                                          : data->urls().first().toString();
            if (!text.isEmpty()) {
                cboAddress->setEditText(text);
                commitAddress();
            }
            static_cast<QDropEvent *>(event)->acceptProposedAction();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void frmBrowser::commitAddress()
{
    FeedSourceUrl.clear();
    if (AddressUpdating)
        return;
    startBusyPoll();
    if (!isBrowserVisible())
        return;
    const QString address = cboAddress->currentText().trimmed();
    if (address.isEmpty())
        return;
    Navigate(address);
}

void frmBrowser::Navigate(const QString &url)
{
    emit tabRefreshRequested();
    const QString target = url.isEmpty() ? StartUrl : url;
    // The engine's own address resolution decides what a bare host or a path means.
    brwWebBrowser->load(QUrl::fromUserInput(target, QString(), QUrl::AssumeLocalFile));
}

void frmBrowser::onNavigateComplete(const QUrl &url)
{
    const QString location = url.toString();
    if (!location.isEmpty()) {
        // Most recently used first, no duplicates.
        AddressUpdating = true;
        const int found = cboAddress->findText(location, Qt::MatchExactly | Qt::MatchCaseSensitive);
        if (found >= 0)
            cboAddress->removeItem(found);
        cboAddress->insertItem(0, location);
        cboAddress->setCurrentIndex(0);
        AddressUpdating = false;
    }
    emit tabRefreshRequested();
}

void frmBrowser::startBusyPoll()
{
    busy->reset();
    timTimer->start();
}

void frmBrowser::pollTick()
{
    if (brwWebBrowser->isLoading()) {
        busy->advance();
        return;
    }
    timTimer->stop();
    busy->reset();
    const QString title = brwWebBrowser->title();
    if (!title.isEmpty() && title != Title) {
        Title = title;
        emit tabRefreshRequested();
    }
    for (const char *key : {"Clone", "Cloneit"}) {
        if (QAction *action = toolAction(QLatin1String(key)))
            action->setEnabled(true);
    }
    m_commands->syncHistory();
}

void frmBrowser::updateSecureState(bool loaded)
{
    const QUrl url = brwWebBrowser->url();
    // Certificate errors are refused, so a loaded https page is a verified one.
    Secure = loaded && (url.scheme() == u"https" || url.scheme() == u"wss");
    SecureLockIcon = Secure ? 5 : 0;
    secureAction->setIcon(LockIcon::make(Secure));
    secureAction->setToolTip(uiText(1400 + SecureLockIcon));
}

QString frmBrowser::LocationURL() const
{
    return brwWebBrowser->url().toString();
}

QString frmBrowser::LocationName() const
{
    const QString title = brwWebBrowser->title();
    return title.isEmpty() ? LocationURL() : title;
}

QString frmBrowser::Caption() const
{
    if (!Title.isEmpty())
        return Title;
    return LocationURL();
}

QAction *frmBrowser::toolAction(const QString &key) const
{
    if (QAction *button = m_commands->button(key))
        return button;
    return m_commands->entry(key);
}

MDIForm1 *frmBrowser::frame() const
{
    for (QWidget *parent = parentWidget(); parent; parent = parent->parentWidget()) {
        if (auto *frame = qobject_cast<MDIForm1 *>(parent))
            return frame;
    }
    return nullptr;
}

void frmBrowser::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    attachToFrame();
}

void frmBrowser::attachToFrame()
{
    MDIForm1 *owner = frame();
    if (m_attached || !owner)
        return;
    m_attached = true;
    connect(owner, &MDIForm1::historyChanged, m_commands, &BrowserToolbar::syncHistory);
    m_commands->syncHistory();
}

void frmBrowser::routeFeedItemWindows()
{
    const PageView::NewWindowHandler frameHandler = brwWebBrowser->newWindowHandler();
    if (m_routing || !frameHandler)
        return;
    m_routing = true;
    // Each item of a feed page opens in the window named after it ("frm" + its number)
    // and shows there again while that window is open. When pages keep a reference to
    // their windows the engine finds the named window itself; without one it cannot, so
    // the names of the item windows are kept here as well.
    QPointer<frmBrowser> self = this;
    brwWebBrowser->setNewWindowHandler([self, frameHandler](
                                           const PageView::NewWindowRequest &request,
                                           bool *keepOpener) -> PageView * {
        const QString name = self && !self->FeedSourceUrl.isEmpty() && self->m_feedLoader
            ? self->m_feedLoader->targetOf(request.url)
            : QString();
        if (name.isEmpty())
            return frameHandler(request, keepOpener);
        if (frmBrowser *named = self->m_itemWindows.value(name)) {
            named->FeedSourceUrl.clear();
            named->Navigate(request.url.toString());
            MDIForm1 *owner = named->frame();
            auto *sub = qobject_cast<QMdiSubWindow *>(named->parentWidget());
            if (owner && sub && !owner->policy.AllowWinInBack)
                owner->mdiArea()->setActiveSubWindow(sub);
            return nullptr;
        }
        PageView *created = frameHandler(request, keepOpener);
        if (auto *window = created ? qobject_cast<frmBrowser *>(created->parentWidget()) : nullptr)
            self->m_itemWindows.insert(name, window);
        return created;
    });
}

void frmBrowser::CollectXmlFeed()
{
    const quint64 request = ++m_feedRequest;
    const QString pageUrl = LocationURL();
    QPointer<frmBrowser> self = this;
    brwWebBrowser->linkElements([self, request, pageUrl](const QList<QStringList> &links) {
        // Only the answer for the page shown now counts.
        if (!self || request != self->m_feedRequest)
            return;
        self->m_feeds.collect(links, pageUrl);
        self->m_commands->showFeeds(self->m_feeds);
        emit self->feedsCollected();
    });
}

void frmBrowser::LoadFeed(const QString &url)
{
    if (!m_feedLoader) {
        m_feedLoader = new FeedLoader(brwWebBrowser, this);
        connect(m_feedLoader, &FeedLoader::shown, this, [this](const QString &feedUrl) {
            FeedSourceUrl = feedUrl;
            emit feedShown(feedUrl);
        });
    }
    // The address may be FeedSourceUrl itself (a refresh), which is cleared here.
    const QString address = url;
    FeedSourceUrl.clear();
    startBusyPoll();
    m_feedLoader->load(address);
}

void frmBrowser::showFindBar()
{
    m_findBar->open();
}

bool frmBrowser::addressBarVisible() const
{
    return !addressBand->isHidden();
}

bool frmBrowser::toolbarVisible() const
{
    return !tbToolBar->isHidden();
}

void frmBrowser::setAddressBarVisible(bool visible)
{
    addressBand->setVisible(visible);
    CoolBar1->setVisible(addressBarVisible() || toolbarVisible());
}

void frmBrowser::setToolbarVisible(bool visible)
{
    tbToolBar->setVisible(visible);
    CoolBar1->setVisible(addressBarVisible() || toolbarVisible());
}

bool frmBrowser::isBrowserVisible() const
{
    return !brwWebBrowser->isHidden();
}

void frmBrowser::focusAddress()
{
    if (!addressBarVisible())
        setAddressBarVisible(true);
    cboAddress->lineEdit()->selectAll();
    cboAddress->setFocus(Qt::ShortcutFocusReason);
}
