#include "core/feeds/feedfetcher.h"

#include "core/base/uitexts.h"
#include "core/feeds/feeddocument.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QRegularExpression>

FeedFetcher::FeedFetcher(QNetworkAccessManager *manager, QObject *parent)
    : QObject(parent)
    , m_manager(manager)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &FeedFetcher::timedOut);
}

FeedFetcher::~FeedFetcher()
{
    abort();
}

void FeedFetcher::fetch(const QUrl &url)
{
    abort();
    m_bytes.clear();
    m_charset.clear();
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
        fail(FeedError::tooLarge());
        return;
    }
    m_bytes += m_reply->read(FeedDocument::MaxBytes + 1 - m_bytes.size());
    if (FeedDocument::isTooLarge(m_bytes.size()))
        fail(FeedError::tooLarge());
}

void FeedFetcher::complete()
{
    QNetworkReply *reply = m_reply.data();
    if (!reply)
        return;
    readAvailable();
    if (!m_reply)
        return; // too large, already reported
    if (reply->error() == QNetworkReply::OperationCanceledError
        || reply->error() == QNetworkReply::TimeoutError) {
        timedOut(); // the transfer's own time-out; abort() cancels without a report
        return;
    }
    if (reply->error() != QNetworkReply::NoError) {
        fail({reply->errorString(), 0, FeedError::Problem::Network});
        return;
    }
    m_timer.stop();
    m_reply.clear();
    reply->deleteLater();
    static const QRegularExpression charset(QStringLiteral("charset\\s*=\\s*\"?([A-Za-z0-9._:-]+)"),
        QRegularExpression::CaseInsensitiveOption);
    const QString type = reply->header(QNetworkRequest::ContentTypeHeader).toString();
    m_charset = charset.match(type).captured(1).toLatin1();
    const QByteArray bytes = std::exchange(m_bytes, QByteArray());
    Q_EMIT finished(bytes, FeedError());
}

void FeedFetcher::timedOut()
{
    fail({uiText(2090).arg(m_timeoutMs / 1000.0), 0, FeedError::Problem::Timeout});
}

void FeedFetcher::fail(const FeedError &error)
{
    abort();
    m_bytes.clear();
    Q_EMIT finished(QByteArray(), error);
}
