#include "app/tool/toolcontext.h"
#include "core/feeds/feeddocument.h"
#include "core/feeds/feedfetcher.h"
#include "core/feeds/feedpage.h"
#include "core/feeds/feedparser.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QUrl>

namespace {

// "feed render SOURCE [--link-text TEXT]": prints the page of a feed file or address.
int renderFeed(ToolContext &context)
{
    QString linkText = FeedPage::defaultLinkText();
    context.takeOption(QStringLiteral("--link-text"), &linkText);
    if (context.arguments.size() != 1)
        return context.fail(ToolContext::UsageError,
            QStringLiteral("usage: feed render SOURCE [--link-text TEXT]"));
    const QString source = context.arguments.constFirst();

    QUrl url(source);
    const QString scheme = url.scheme().toLower();
    if (scheme != u"http" && scheme != u"https") {
        const QFileInfo file(scheme == u"file" ? url.toLocalFile() : source);
        if (!file.isFile() || !file.isReadable())
            return context.fail(
                ToolContext::DataError, QStringLiteral("cannot read %1").arg(source));
        url = QUrl::fromLocalFile(file.absoluteFilePath());
    }

    QNetworkAccessManager manager;
    FeedFetcher fetcher(&manager);
    QEventLoop loop;
    QByteArray bytes;
    FeedError error;
    QObject::connect(&fetcher, &FeedFetcher::finished, &loop,
        [&](const QByteArray &fetched, const FeedError &fetchError) {
            bytes = fetched;
            error = fetchError;
            loop.quit();
        });
    fetcher.fetch(url);
    loop.exec();
    if (!error.reason.isEmpty())
        return context.fail(
            ToolContext::DataError, QStringLiteral("cannot read %1: %2").arg(source, error.reason));

    const FeedParseResult result = FeedParser::parse(bytes, fetcher.charset());
    context.out << FeedPage::forResult(result, source, linkText);
    context.out.flush();
    return ToolContext::Success;
}

} // namespace

int runFeedCommand(ToolContext &context)
{
    const QString action = context.arguments.isEmpty() ? QString() : context.arguments.takeFirst();
    if (action == u"render")
        return renderFeed(context);
    return context.fail(
        ToolContext::UsageError, QStringLiteral("usage: feed render SOURCE [--link-text TEXT]"));
}
