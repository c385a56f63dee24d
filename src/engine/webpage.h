#pragma once

#include <QSize>
#include <QWebEnginePage>

// The engine page with the program's answers to the page's own requests.
class WebPage final : public QWebEnginePage
{
    Q_OBJECT

public:
    explicit WebPage(QWebEngineProfile *profile, QObject *parent = nullptr);

    // While set, downloads of this page are cancelled before anyone is asked where to
    // save them (a roundtrip must not stall on a file dialog).
    bool refusesDownloads = false;
    // Set on a window whose view of its opener was cut: the engine then no longer passes
    // its resizeTo/resizeBy on, and the window's own script asks through the console.
    bool sizesThroughScript = false;

signals:
    void navigationAboutToStart(const QUrl &url, bool mainFrame);
    void downloadRefused(const QUrl &url);
    // The page asked for this size of its window (see sizesThroughScript).
    void sizeAsked(const QSize &size);

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;
    void javaScriptConsoleMessage(
        JavaScriptConsoleMessageLevel level, const QString &message, int, const QString &) override;
};
