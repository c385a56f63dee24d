#include "frmbrowser.h"

#include "app/uitexts.h"
#include "browser/busyindicator.h"
#include "browser/infobar.h"
#include "browser/lockicon.h"
#include "prefs/prefer.h"

#include <QAction>
#include <QComboBox>
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

frmBrowser::frmBrowser(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_DeleteOnClose);
    brwWebBrowser = new PageView(this);
    infoBar = new InfoBar(this);
    timTimer = new QTimer(this);
    timTimer->setInterval(BusyPollMs);
    connect(timTimer, &QTimer::timeout, this, &frmBrowser::pollTick);
    buildBars();

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(CoolBar1);
    layout->addWidget(infoBar);
    // The page takes all the height the bar leaves; with the bar hidden, all of it.
    layout->addWidget(brwWebBrowser, 1);

    connectPage();
    StartUrl = prefer().HomeUrl().trimmed();
    ZoomFactor = 100;
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
    const auto add = [this](const QString &key, QStyle::StandardPixmap icon, const QString &theme,
                         const QString &tip, void (frmBrowser::*slot)()) {
        QAction *action = tbToolBar->addAction(QIcon::fromTheme(theme, style()->standardIcon(icon)), tip);
        action->setObjectName(key);
        action->setToolTip(tip);
        connect(action, &QAction::triggered, this, slot);
        return action;
    };
    add(QStringLiteral("Back"), QStyle::SP_ArrowBack, QStringLiteral("go-previous"), uiText(602), &frmBrowser::GoBack);
    add(QStringLiteral("Forward"), QStyle::SP_ArrowForward, QStringLiteral("go-next"), uiText(601), &frmBrowser::GoForward);
    add(QStringLiteral("Stop"), QStyle::SP_BrowserStop, QStringLiteral("process-stop"), uiText(603), &frmBrowser::Stop);
    add(QStringLiteral("Refresh"), QStyle::SP_BrowserReload, QStringLiteral("view-refresh"), uiText(604), &frmBrowser::Refresh);
    add(QStringLiteral("Home"), QStyle::SP_DirHomeIcon, QStringLiteral("go-home"), prefer().HomeUrl().trimmed(), &frmBrowser::GoHome);

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
    secureAction = cboAddress->lineEdit()->addAction(LockIcon::make(false), QLineEdit::LeadingPosition);
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
    connect(brwWebBrowser, &PageView::navigationRequested, this, [this](const QUrl &url, bool mainFrame) {
        if (!mainFrame)
            return;
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
    case PageView::Permission::Location: what = 2023; break;
    case PageView::Permission::Notifications: what = 2024; break;
    case PageView::Permission::Camera: what = 2025; break;
    case PageView::Permission::Microphone: what = 2026; break;
    case PageView::Permission::CameraAndMicrophone: what = 2027; break;
    case PageView::Permission::Other: brwWebBrowser->answerPermission(origin, permission, false); return;
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
    for (const char *key : {"history", "Clone", "Cloneit"}) {
        if (QAction *action = toolAction(QLatin1String(key)))
            action->setEnabled(true);
    }
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
    for (QAction *action : tbToolBar->actions()) {
        if (action->objectName() == key)
            return action;
    }
    return nullptr;
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
