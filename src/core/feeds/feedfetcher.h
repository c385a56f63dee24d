#pragma once

#include "core/feeds/feed.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;

// Fetches the bytes of a feed (http, https or file address) for FeedParser: redirects
// are followed, a feed larger than FeedDocument::MaxBytes is cut off as soon as it
// grows beyond it, and the whole transfer ends after the timeout, so a server that
// sends forever or never answers cannot hold the caller.
class FeedFetcher final : public QObject
{
    Q_OBJECT

public:
    explicit FeedFetcher(QNetworkAccessManager *manager, QObject *parent = nullptr);
    ~FeedFetcher() override;

    void setTimeout(int milliseconds) { m_timeoutMs = milliseconds; }
    int timeout() const { return m_timeoutMs; }

    // Starts a fetch, ending any earlier one without reporting it.
    void fetch(const QUrl &url);
    void abort();
    // The charset the server named in the content type of the last fetch, if any.
    const QByteArray &charset() const { return m_charset; }

Q_SIGNALS:
    // Exactly once per fetch: the bytes, or an error with an empty `bytes`.
    void finished(const QByteArray &bytes, const FeedError &error);

private:
    void readAvailable();
    void complete();
    void timedOut();
    void fail(const FeedError &error);

    QNetworkAccessManager *m_manager;
    QPointer<QNetworkReply> m_reply;
    QByteArray m_bytes;
    QByteArray m_charset;
    QTimer m_timer;
    int m_timeoutMs = 30000;
};
