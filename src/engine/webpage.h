#pragma once

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

signals:
    void navigationAboutToStart(const QUrl &url, bool mainFrame);
    void downloadRefused(const QUrl &url);

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;
    void javaScriptConsoleMessage(
        JavaScriptConsoleMessageLevel, const QString &, int, const QString &) override
    { }
};
