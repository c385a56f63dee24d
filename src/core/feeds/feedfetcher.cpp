#include "core/feeds/feedfetcher.h"

#include "core/feeds/feeddocument.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

FeedFetcher::FeedFetcher(QNetworkAccessManager *manager, QObject *parent)
    : QObject(parent)
    , m_manager(manager)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        fail(QStringLiteral("No complete answer within %1 seconds.").arg(m_timeoutMs / 1000.0));
    });
}

FeedFetcher::~FeedFetcher()
{
    abort();
}

void FeedFetcher::fetch(const QUrl &url)
{
    abort();
    m_bytes.clear();
    QNetworkRequest request(url);
    request.setAttribute(
        QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(10);
    request.setTransferTimeout(m_timeoutMs);
    m_reply = m_manager->get(request);
    m_reply->setReadBufferSize(1 << 20);
    connect(m_reply, &QNetworkReply::readyRead, this, &FeedFetcher::readAvailable);
    connect(m_reply, &QNetworkReply::finished, this, &FeedFetcher::complete);
    m_timer.start(m_timeoutMs);
}

void FeedFetcher::abort()
{
    m_timer.stop();
    if (QNetworkReply *reply = m_reply.data()) {
        m_reply.clear();
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
}

void FeedFetcher::readAvailable()
{
    if (!m_reply)
        return;
    const QVariant announced = m_reply->header(QNetworkRequest::ContentLengthHeader);
    if (announced.isValid() && FeedDocument::isTooLarge(announced.toLongLong())) {
        fail(QStringLiteral("Document is larger than %1 MB.").arg(FeedDocument::MaxBytes >> 20));
        return;
    }
    m_bytes += m_reply->read(FeedDocument::MaxBytes + 1 - m_bytes.size());
    if (FeedDocument::isTooLarge(m_bytes.size()))
        fail(QStringLiteral("Document is larger than %1 MB.").arg(FeedDocument::MaxBytes >> 20));
}

void FeedFetcher::complete()
{
    QNetworkReply *reply = m_reply.data();
    if (!reply)
        return;
    readAvailable();
    if (!m_reply)
        return; // too large, already reported
    if (reply->error() != QNetworkReply::NoError) {
        fail(reply->errorString());
        return;
    }
    m_timer.stop();
    m_reply.clear();
    reply->deleteLater();
    const QByteArray bytes = std::exchange(m_bytes, QByteArray());
    Q_EMIT finished(bytes, FeedError());
}

void FeedFetcher::fail(const QString &reason)
{
    abort();
    m_bytes.clear();
    Q_EMIT finished(QByteArray(), FeedError {reason, 0});
}
