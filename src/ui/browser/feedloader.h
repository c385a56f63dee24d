#pragma once

#include "core/feeds/feed.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>

class FeedFetcher;
class PageView;
class QNetworkAccessManager;
class QWidget;

// Loads a feed into one browser window: a waiting text in the page and the busy
// cursor while the feed is fetched, then the generated feed page (or a page that
// says why the feed cannot be shown).
class FeedLoader final : public QObject
{
    Q_OBJECT

public:
    FeedLoader(PageView *page, QWidget *window);
    ~FeedLoader() override;

    // Starts loading, ending a load still under way.
    void load(const QString &feedUrl);
    void abort();
    bool isLoading() const { return m_loading; }

    // The page for a fetched feed: item links and the feed image made absolute against
    // the feed's address, and that address as the base of the page, so relative
    // addresses inside item descriptions resolve as the feed meant them.
    // `targets` receives the window name of each item's link ("frm" + item number).
    // `charset` is the one the server named, which goes before the document's own.
    static QString pageFor(const QByteArray &bytes, const QByteArray &charset,
        const QString &feedUrl, QHash<QUrl, QString> *targets = nullptr);
    // The page shown when the feed cannot be fetched at all.
    static QString failurePage(const QString &feedUrl, const QString &reason);

    static QNetworkAccessManager *network();

    // The window name of an item link of the feed shown last; empty for other addresses.
    QString targetOf(const QUrl &link) const { return m_targets.value(link); }

signals:
    // The feed page has been handed to the view.
    void shown(const QString &feedUrl);

private:
    void finish(const QByteArray &bytes, const FeedError &error);
    void setBusy(bool busy);

    QPointer<PageView> m_page;
    QPointer<QWidget> m_window;
    FeedFetcher *m_fetcher = nullptr;
    QString m_url;
    QHash<QUrl, QString> m_targets;
    bool m_loading = false;
};
