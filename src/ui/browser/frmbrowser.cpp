#include "ui/browser/frmbrowser.h"

#include "core/base/uitexts.h"
#include "core/browsing/addressinput.h"
#include "core/browsing/autorefresh.h"
#include "core/browsing/newwindowpolicy.h"
#include "core/browsing/usercommand.h"
#include "core/prefs/prefer.h"
#include "engine/webenginesetup.h"
#include "ui/browser/browsertoolbar.h"
#include "ui/browser/busyindicator.h"
#include "ui/browser/feedloader.h"
#include "ui/browser/findbar.h"
#include "ui/browser/infobar.h"
#include "ui/browser/lockicon.h"
#include "ui/browser/roundtripbar.h"
#include "ui/browser/roundtripdialog.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QCompleter>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPointer>
#include <QStyle>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

namespace {
constexpr int BusyPollMs = 60;
} // namespace

frmBrowser::frmBrowser(const QString &startUrl, QWidget *parent)
    : QWidget(parent)
    , StartUrl(startUrl)
{
    setAttribute(Qt::WA_DeleteOnClose);
    m_page = new PageView(this);
    m_infoBar = new InfoBar(this);
    m_roundtripBar = new RoundtripBar(this);
    m_roundtripAsker = [this](int count, Roundtrip::Timing *timing) {
        return RoundtripDialog::ask(this, count, timing);
    };
    m_busyPoll = new QTimer(this);
    m_busyPoll->setInterval(BusyPollMs);
    connect(m_busyPoll, &QTimer::timeout, this, &frmBrowser::pollTick);
    m_refresh = new AutoRefresh(this);
    connect(m_refresh, &AutoRefresh::due, this, &frmBrowser::refreshNow);
    buildBars();
    m_findBar = new FindBar(m_page, this);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_coolBar);
    layout->addWidget(m_findBar);
    layout->addWidget(m_infoBar);
    layout->addWidget(m_roundtripBar);
    // The page takes all the height the bar leaves; with the bar hidden, all of it.
    layout->addWidget(m_page, 1);

    connectPage();
    ZoomFactor = 100;
    m_page->setNewWindowHandler(
        [this](const PageView::NewWindowRequest &request, bool *keepOpener) {
            return openWindowFor(request, keepOpener);
        });
}

frmBrowser::~frmBrowser()
{
    // The preview's answer will not come now; its busy cursor must not stay.
    if (m_previewPending)
        QApplication::restoreOverrideCursor();
}

void frmBrowser::buildBars()
{
    m_coolBar = new QWidget(this);
    auto *bars = new QVBoxLayout(m_coolBar);
    bars->setContentsMargins(2, 2, 2, 2);
    bars->setSpacing(1);

    m_toolBar = new QToolBar(m_coolBar);
    m_toolBar->setObjectName(QStringLiteral("Toolbar"));
    m_toolBar->setIconSize(QSize(18, 18));
    m_toolBar->setToolButtonStyle(Qt::ToolButtonIconOnly);
    m_commands = new BrowserToolbar(this, m_toolBar);
    connect(m_commands, &BrowserToolbar::windowCommand, this, &frmBrowser::windowCommandRequested);
    connect(m_commands, &BrowserToolbar::statusText, this, &frmBrowser::statusText);

    m_addressBand = new QWidget(m_coolBar);
    m_addressBand->setObjectName(QStringLiteral("Adress"));
    auto *addressRow = new QHBoxLayout(m_addressBand);
    addressRow->setContentsMargins(0, 0, 0, 0);
    m_addressBox = new QComboBox(m_addressBand);
    m_addressBox->setEditable(true);
    m_addressBox->setInsertPolicy(QComboBox::NoInsert);
    // Remembered addresses are offered in a list below the field; the field itself keeps
    // what the user typed until an entry is chosen.
    auto *completer = new QCompleter(m_addressBox->model(), m_addressBox);
    completer->setCompletionMode(QCompleter::PopupCompletion);
    completer->setFilterMode(Qt::MatchContains);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    m_addressBox->setCompleter(completer);
    completer->popup()->installEventFilter(this);
    // A click on a suggestion opens it; the completer has put it into the field by then.
    connect(completer->popup(), &QAbstractItemView::clicked, this, [this] { commitAddress(); });
    m_addressBox->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_addressBox->lineEdit()->installEventFilter(this);
    m_addressBox->lineEdit()->setAcceptDrops(true);
    m_addressBox->setAcceptDrops(true);
    m_addressBox->installEventFilter(this);
    m_secureAction
        = m_addressBox->lineEdit()->addAction(LockIcon::make(false), QLineEdit::LeadingPosition);
    m_secureAction->setToolTip(uiText(1400));
    m_busy = new BusyIndicator(m_addressBand);
    addressRow->addWidget(m_addressBox, 1);
    addressRow->addWidget(m_busy);
    // Choosing an entry of the list navigates as Enter does.
    connect(m_addressBox, qOverload<int>(&QComboBox::activated), this, [this] { commitAddress(); });

    bars->addWidget(m_toolBar);
    bars->addWidget(m_addressBand);
}

void frmBrowser::connectPage()
{
    connect(m_page, &PageView::navigationRequested, this, [this](const QUrl &url, bool mainFrame) {
        if (!mainFrame)
            return;
        // Leaving the feed page, by whatever way, ends showing the feed.
        if (!isGeneratedPage(url))
            FeedSourceUrl.clear();
        startBusyPoll();
        LastRequestUrl = url.toString();
    });
    connect(m_page, &PageView::loadStarted, this, &frmBrowser::startBusyPoll);
    connect(m_page, &PageView::urlChanged, this, &frmBrowser::onNavigateComplete);
    connect(m_page, &PageView::titleChanged, this, [this](const QString &title) {
        Title = title;
        emit tabRefreshRequested();
    });
    connect(m_page, &PageView::linkHovered, this, &frmBrowser::statusText);
    connect(m_page, &PageView::loadFinished, this, [this](bool ok) {
        UserCommand::navigationDone();
        updateSecureState(ok);
        const QString url = LocationURL();
        if (ok && !url.isEmpty())
            emit historyEntry(url, LocationName());
        pollTick();
        CollectXmlFeed();
        refreshLoadFinished(ok);
    });
    connect(m_page, &PageView::closeRequested, this, &frmBrowser::closeRequested);
    // The print dialog runs after the engine's call has returned.
    connect(m_page, &PageView::printRequested, this, &frmBrowser::WebPrint, Qt::QueuedConnection);
    connect(m_page, &PageView::resizeRequested, this, &frmBrowser::resizeRequested);
    connect(m_page, &PageView::fullScreenRequested, this, [this](bool on) {
        m_coolBar->setVisible(!on && (addressBarVisible() || toolbarVisible()));
        emit fullScreenRequested(on);
    });
    connect(m_page, &PageView::permissionRequested, this, &frmBrowser::askPermission);
    connect(m_page, &PageView::certificateRejected, this,
        [this](const QUrl &url, const QString &description) {
            m_infoBar->showMessage(
                uiText(2020).arg(url.host() + QStringLiteral(": ") + description));
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
        m_page->answerPermission(origin, permission, false);
        return;
    }
    QPointer<PageView> view = m_page;
    const QString site = origin.host().isEmpty() ? origin.toString() : origin.host();
    m_infoBar->ask(uiText(2022).arg(site, uiText(what)), [view, origin, permission](bool granted) {
        if (view)
            view->answerPermission(origin, permission, granted);
    });
}

bool frmBrowser::eventFilter(QObject *watched, QEvent *event)
{
    // Enter in the list of suggestions opens what the field shows: the typed text, or the
    // entry the user moved to.
    if (watched == static_cast<QObject *>(m_addressBox->completer()->popup())
        && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            m_addressBox->completer()->popup()->hide();
            commitAddress();
            return true;
        }
    }
    if (watched == m_addressBox->lineEdit() || watched == m_addressBox) {
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
                m_addressBox->setEditText(text);
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
    const QString address = m_addressBox->currentText().trimmed();
    if (address.isEmpty())
        return;
    // Sent off: the address the page arrives at may replace it.
    m_addressBox->lineEdit()->setModified(false);
    Navigate(address);
}

void frmBrowser::Navigate(const QString &url)
{
    emit tabRefreshRequested();
    // Words are searched; the engine's own address resolution decides what an address
    // without a scheme means.
    const QString target
        = url.isEmpty() ? StartUrl : AddressInput::resolve(url, prefer().SearchEngine());
    m_page->load(QUrl::fromUserInput(target, QString(), QUrl::AssumeLocalFile));
}

void frmBrowser::onNavigateComplete(const QUrl &url)
{
    // A feed is shown as a page of the program's own; the user sees the feed's address.
    const QString location = isGeneratedPage(url) ? FeedSourceUrl : url.toString();
    if (!location.isEmpty()) {
        // Most recently used first, no duplicates.
        AddressUpdating = true;
        QLineEdit *field = m_addressBox->lineEdit();
        const bool typing = field->hasFocus() && field->isModified();
        const QString typed = field->text();
        const int cursor = field->cursorPosition();
        const int found
            = m_addressBox->findText(location, Qt::MatchExactly | Qt::MatchCaseSensitive);
        if (found >= 0)
            m_addressBox->removeItem(found);
        m_addressBox->insertItem(0, location);
        m_addressBox->setCurrentIndex(0);
        // What the user is typing stays; a field waiting for input shows the new address
        // selected, so that typing replaces it.
        if (typing) {
            field->setText(typed);
            field->setCursorPosition(cursor);
            field->setModified(true);
        } else if (field->hasFocus()) {
            field->selectAll();
        }
        AddressUpdating = false;
    }
    emit tabRefreshRequested();
}

void frmBrowser::startBusyPoll()
{
    m_busy->reset();
    m_busyPoll->start();
}

void frmBrowser::pollTick()
{
    if (m_page->isLoading()) {
        m_busy->advance();
        return;
    }
    m_busyPoll->stop();
    m_busy->reset();
    const QString title = m_page->title();
    if (!title.isEmpty() && title != Title) {
        Title = title;
        emit tabRefreshRequested();
    }
    for (const char *key : {"Clone", "Cloneit"}) {
        if (QAction *action = toolAction(QLatin1String(key)))
            action->setEnabled(true);
    }
}

void frmBrowser::updateSecureState(bool loaded)
{
    const QUrl url = m_page->url();
    // Certificate errors are refused, so a loaded https page is a verified one.
    Secure = loaded && (url.scheme() == u"https" || url.scheme() == u"wss");
    SecureLockIcon = Secure ? SecureLockLevel::Secure128Bit : SecureLockLevel::Unsecure;
    m_secureAction->setIcon(LockIcon::make(Secure));
    m_secureAction->setToolTip(uiText(1400 + int(SecureLockIcon)));
}

QString frmBrowser::LocationURL() const
{
    const QUrl shown = m_page->url();
    return isGeneratedPage(shown) && !FeedSourceUrl.isEmpty() ? FeedSourceUrl : shown.toString();
}

bool frmBrowser::isGeneratedPage(const QUrl &url)
{
    return url.scheme() == WebEngineSetup::schemeName() && url.host() == u"page";
}

QString frmBrowser::LocationName() const
{
    const QString title = m_page->title();
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

void frmBrowser::setHistoryAvailable(bool available)
{
    m_commands->setHistoryAvailable(available);
}

PageView *frmBrowser::openWindowFor(const PageView::NewWindowRequest &request, bool *keepOpener)
{
    // Each item of a feed page opens in the window named after it ("frm" + its number)
    // and shows there again while that window is open. When pages keep a reference to
    // their windows the engine finds the named window itself; without one it cannot, so
    // the names of the item windows are kept here as well.
    const QString name = !FeedSourceUrl.isEmpty() && m_feedLoader
        ? m_feedLoader->targetOf(request.url)
        : QString();
    if (frmBrowser *named = name.isEmpty() ? nullptr : m_itemWindows.value(name)) {
        named->FeedSourceUrl.clear();
        named->Navigate(request.url.toString());
        emit named->activationRequested();
        return nullptr;
    }
    frmBrowser *created = m_windowOpener ? m_windowOpener(request, keepOpener) : nullptr;
    if (!created)
        reportBlockedWindow(request.url);
    else if (!name.isEmpty())
        m_itemWindows.insert(name, created);
    return created ? created->page() : nullptr;
}

void frmBrowser::reportBlockedWindow(const QUrl &url)
{
    // Never silent: the user sees what was refused and may open it after all.
    const bool blank = url.isEmpty() || url.scheme() == u"about";
    const QString site = NewWindowPolicy::siteOf(QUrl(LocationURL()));
    m_infoBar->offer(blank ? uiText(2121) : uiText(2120).arg(url.toDisplayString()),
        blank ? QString() : uiText(2122), site.isEmpty() ? QString() : uiText(2123),
        [this, url, site, blank](int choice) {
            if (choice == 2)
                emit popupSiteAllowed(site);
            if (choice == 0 || blank || !m_windowOpener)
                return;
            // Asked for by the user now, so it opens whatever the switches say.
            bool keepOpener = false;
            if (frmBrowser *opened = m_windowOpener({url, {}, true, false}, &keepOpener))
                opened->Navigate(url.toString());
        });
}

void frmBrowser::CollectXmlFeed()
{
    const quint64 request = ++m_feedRequest;
    const QString pageUrl = LocationURL();
    QPointer<frmBrowser> self = this;
    m_page->linkElements([self, request, pageUrl](const QList<QStringList> &links) {
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
        m_feedLoader = new FeedLoader(m_page, this);
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
    return !m_addressBand->isHidden();
}

bool frmBrowser::toolbarVisible() const
{
    return !m_toolBar->isHidden();
}

void frmBrowser::setAddressBarVisible(bool visible)
{
    m_addressBand->setVisible(visible);
    m_coolBar->setVisible(addressBarVisible() || toolbarVisible());
    emit barsChanged();
}

void frmBrowser::setToolbarVisible(bool visible)
{
    m_toolBar->setVisible(visible);
    m_coolBar->setVisible(addressBarVisible() || toolbarVisible());
    emit barsChanged();
}

bool frmBrowser::isBrowserVisible() const
{
    return !m_page->isHidden();
}

void frmBrowser::focusAddress()
{
    if (!addressBarVisible())
        setAddressBarVisible(true);
    m_addressBox->lineEdit()->selectAll();
    m_addressBox->setFocus(Qt::ShortcutFocusReason);
}
