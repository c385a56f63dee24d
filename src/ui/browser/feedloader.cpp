#include "ui/browser/feedloader.h"

#include "core/base/uitexts.h"
#include "core/feeds/feedfetcher.h"
#include "core/feeds/feedhtmlcleaner.h"
#include "core/feeds/feedpage.h"
#include "core/feeds/feedparser.h"
#include "engine/pageview.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QUrl>
#include <QWidget>

namespace {
QString absolute(const QUrl &base, const QString &address)
{
    if (address.isEmpty())
        return address;
    const QUrl url(address);
    return url.isRelative() ? base.resolved(url).toString() : address;
}
} // namespace

FeedLoader::FeedLoader(PageView *page, QWidget *window)
    : QObject(window)
    , m_page(page)
    , m_window(window)
    , m_fetcher(new FeedFetcher(network(), this))
{
    connect(m_fetcher, &FeedFetcher::finished, this, &FeedLoader::finish);
}

FeedLoader::~FeedLoader()
{
    setBusy(false);
}

QNetworkAccessManager *FeedLoader::network()
{
    static QPointer<QNetworkAccessManager> manager;
    if (!manager)
        manager = new QNetworkAccessManager(QCoreApplication::instance());
    return manager;
}

void FeedLoader::load(const QString &feedUrl)
{
    m_url = feedUrl;
    setBusy(true);
    const QString waiting = u"<p style='font-family: Verdana; FONT-SIZE: 8pt'><b>"
        + FeedHtmlCleaner::escape(uiText(1125)) + u"</b></p>";
    if (m_page) {
        // A window that has shown nothing yet has no document to write into.
        if (m_page->url().isEmpty())
            m_page->setHtml(u"<html><body>" + waiting + u"</body></html>", QUrl());
        else
            m_page->setBodyHtml(waiting);
    }
    m_fetcher->fetch(QUrl::fromUserInput(feedUrl));
}

void FeedLoader::abort()
{
    m_fetcher->abort();
    setBusy(false);
}

void FeedLoader::finish(const QByteArray &bytes, const FeedError &error)
{
    setBusy(false);
    if (!m_page)
        return;
    m_targets.clear();
    const QString page = error.reason.isEmpty()
        ? pageFor(bytes, m_fetcher->charset(), m_url, &m_targets)
        : failurePage(m_url, error.reason);
    m_page->showGeneratedPage(page.toUtf8());
    emit shown(m_url);
}

QString FeedLoader::pageFor(const QByteArray &bytes, const QByteArray &charset,
    const QString &feedUrl, QHash<QUrl, QString> *targets)
{
    FeedParseResult result = FeedParser::parse(bytes, charset);
    if (result.status != FeedParseResult::Status::Parsed)
        return FeedPage::forResult(result, feedUrl, FeedPage::defaultLinkText());
    const QUrl base = QUrl::fromUserInput(feedUrl);
    result.feed.imageUrl = absolute(base, result.feed.imageUrl);
    int number = 0;
    for (FeedItem &item : result.feed.items) {
        item.link = absolute(base, item.link);
        ++number;
        if (targets && !item.link.isEmpty() && !targets->contains(QUrl(item.link)))
            targets->insert(QUrl(item.link), QStringLiteral("frm") + QString::number(number));
    }
    QString page = FeedPage::forResult(result, feedUrl, FeedPage::defaultLinkText());
    const qsizetype head = page.indexOf(QLatin1String("<head>"));
    if (head >= 0 && !FeedHtmlCleaner::isUnsafeUrl(base.toString()))
        page.insert(head + 6, u"<base href=\"" + FeedHtmlCleaner::escape(base.toString()) + u"\">");
    return page;
}

QString FeedLoader::failurePage(const QString &feedUrl, const QString &reason)
{
    return u"<html><head><meta http-equiv='Content-Type' content='text/html; charset=utf-8'>"
           u"<title>"
        + FeedHtmlCleaner::escape(feedUrl)
        + u"</title></head><body><p style='font-family: Verdana; FONT-SIZE: 8pt'><b>"
        + FeedHtmlCleaner::escape(uiText(2053).arg(feedUrl, reason)) + u"</b></p></body></html>";
}

void FeedLoader::setBusy(bool busy)
{
    if (busy == m_loading)
        return;
    m_loading = busy;
    if (!m_window)
        return;
    if (busy)
        m_window->setCursor(Qt::BusyCursor);
    else
        m_window->unsetCursor();
}
