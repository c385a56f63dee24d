// The page commands of a browser window: history, save, print, mail, source, home
// page and zoom. Errors of these commands are swallowed: they leave the window as it was.
#include "core/base/appinfo.h"
#include "core/base/uitexts.h"
#include "core/browsing/savename.h"
#include "core/prefs/prefer.h"
#include "ui/browser/browsertoolbar.h"
#include "ui/browser/busyindicator.h"
#include "ui/browser/feedloader.h"
#include "ui/browser/frmbrowser.h"
#include "ui/browser/printpreview.h"

#include <QAction>
#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QStandardPaths>
#include <QTimer>
#include <QUrlQuery>

#include <memory>

void frmBrowser::GoBack()
{
    if (page()->canGoBack())
        page()->back();
}

void frmBrowser::GoForward()
{
    if (page()->canGoForward())
        page()->forward();
}

void frmBrowser::Stop()
{
    stopRefresh();
    m_busyPoll->stop();
    m_busy->reset();
    if (m_feedLoader)
        m_feedLoader->abort();
    if (m_roundtrip)
        m_roundtrip->stop();
    if (page()->isLoading())
        page()->stop();
    emit tabRefreshRequested();
}

void frmBrowser::Refresh()
{
    // A feed page is generated once; refreshing it loads the feed anew.
    if (!FeedSourceUrl.isEmpty())
        LoadFeed(FeedSourceUrl);
    else
        page()->reload();
}

void frmBrowser::GoHome()
{
    // A home title marks the home page as a feed.
    if (!prefer().HomeTitle().isEmpty()) {
        LoadFeed(prefer().HomeUrl().trimmed());
        return;
    }
    FeedSourceUrl.clear();
    Navigate(prefer().HomeUrl().trimmed());
}

void frmBrowser::WebSave()
{
    if (LocationURL().isEmpty())
        return;
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    QString name = LocationName();
    name.replace(u'/', u'_');
    // The three ways to keep a page, each with the suffix its file gets.
    const QStringList filters = {uiText(2124), uiText(2125), uiText(2126)};
    QString chosen = filters.first();
    const QString path = QFileDialog::getSaveFileName(this, uiText(611),
        folder + u'/' + name + QStringLiteral(".html"), filters.join(QStringLiteral(";;")),
        &chosen);
    if (path.isEmpty())
        return;
    const auto format = PageView::SaveFormat(std::max<qsizetype>(0, filters.indexOf(chosen)));
    const bool archive = format == PageView::SaveFormat::Archive;
    page()->savePage(
        SaveName::withSuffix(path, archive ? SaveName::Kind::Archive : SaveName::Kind::Html),
        format);
}

void frmBrowser::WebPrint()
{
    if (LocationURL().isEmpty())
        return;
    auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    QPrintDialog dialog(printer.get(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    // The view frees the printer, even when the window closes before the engine is done.
    page()->print(std::move(printer));
}

void frmBrowser::WebPrintPreview()
{
    if (LocationURL().isEmpty())
        return;
    if (m_previewPending)
        return;
    // The engine lays the page out for paper first; the program stays usable meanwhile.
    m_previewPending = true;
    QApplication::setOverrideCursor(Qt::BusyCursor);
    auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    page()->printToPdf(printer->pageLayout(), [this, printer](const QByteArray &pdf) {
        m_previewPending = false;
        QApplication::restoreOverrideCursor();
        if (!PrintPreview::exec(pdf, printer.get(), this))
            emit statusText(uiText(2127));
    });
}

void frmBrowser::LinkMailto()
{
    QUrl mail(QStringLiteral("mailto:"));
    QUrlQuery query;
    query.addQueryItem(
        QStringLiteral("subject"), QString::fromUtf8(QUrl::toPercentEncoding(LocationName())));
    query.addQueryItem(
        QStringLiteral("body"), QString::fromUtf8(QUrl::toPercentEncoding(LocationURL())));
    mail.setQuery(query);
    // The system's mail program takes the title and the address.
    QDesktopServices::openUrl(mail);
}

void frmBrowser::ViewSource(const QString &url)
{
    page()->load(QUrl(QStringLiteral("view-source:") + url));
}

std::pair<QString, QString> frmBrowser::homePageEntry() const
{
    if (!FeedSourceUrl.isEmpty())
        return {FeedSourceUrl, QStringLiteral("<FEED />") + LocationURL()};
    return {LocationURL(), QString()};
}

void frmBrowser::SetHomepage()
{
    const auto [address, title] = homePageEntry();
    prefer().setHomeTitle(title);
    prefer().setHomeUrl(address);
    prefer().SavePref(AppInfo::dataFile(QStringLiteral("Pref.vtp")));
    m_commands->setHomeTip(prefer().HomeUrl().trimmed());
}

void frmBrowser::SetZoomFactor(int percent)
{
    // Zoom applies to HTML documents only; anything else keeps its zoom.
    QPointer<frmBrowser> self = this;
    page()->runScript(
        QStringLiteral("document.contentType"), [self, percent](const QVariant &type) {
            if (!self || !type.toString().contains(u"html"))
                return;
            self->ZoomFactor = static_cast<qint16>(percent);
            self->page()->setZoomPercent(percent);
        });
}

void frmBrowser::SetTextSize(int step)
{
    page()->setTextSize(step);
}
