#include "engine/webpage.h"

WebPage::WebPage(QWebEngineProfile *profile, QObject *parent)
    : QWebEnginePage(profile, parent)
{ }

bool WebPage::acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame)
{
    Q_UNUSED(type);
    // Every navigation is announced and none is cancelled here.
    emit navigationAboutToStart(url, isMainFrame);
    return true;
}

void WebPage::javaScriptConsoleMessage(
    JavaScriptConsoleMessageLevel level, const QString &message, int, const QString &)
{
    // Everything else a page writes to its console is its own business.
    static const QString ask = QStringLiteral("vantrell-size ");
    if (!sizesThroughScript || level != InfoMessageLevel || !message.startsWith(ask))
        return;
    const QStringList numbers = message.mid(ask.size()).split(u' ');
    bool wide = false;
    bool high = false;
    const QSize size(numbers.value(0).toInt(&wide), numbers.value(1).toInt(&high));
    if (numbers.size() == 2 && wide && high && !size.isEmpty())
        emit sizeAsked(size);
}
