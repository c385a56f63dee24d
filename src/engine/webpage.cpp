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
