#pragma once

#include <QRect>
#include <QStringList>
#include <QUrl>
#include <QVariant>
#include <QWidget>

#include <functional>
#include <memory>

class QPageLayout;
class QPrinter;
class QWebEngineNewWindowRequest;
class QWebEngineView;
class WebPage;

// One page of the engine as the rest of the program sees it: navigation, title,
// zoom, find, printing, small DOM queries, and the page's own requests (new windows,
// closing, resizing, permissions, certificate errors, full screen).
class PageView final : public QWidget
{
    Q_OBJECT

public:
    enum class Permission {
        Location,
        Notifications,
        Camera,
        Microphone,
        CameraAndMicrophone,
        Other
    };

    struct NewWindowRequest
    {
        QUrl url;
        QRect geometry;
        bool userInitiated = false;
        // The user asked for it behind the others (middle-click, Ctrl+click).
        bool background = false;
    };
    // Returns the view that takes the new page, or nullptr to refuse it. When
    // *keepOpener is left true the new page keeps its reference to the opener.
    using NewWindowHandler = std::function<PageView *(const NewWindowRequest &, bool *keepOpener)>;

    explicit PageView(QWidget *parent = nullptr);
    ~PageView() override;

    void setNewWindowHandler(NewWindowHandler handler) { m_newWindowHandler = std::move(handler); }
    // What pages loaded from now on get from a window.open that will be refused: null,
    // as a script expects, unless pages may open windows, the page's host is among the
    // allowed sites, or the user has just acted in the page.
    void setWindowOpenGuard(bool pagesMayOpen, const QStringList &allowedSites);
    NewWindowHandler newWindowHandler() const { return m_newWindowHandler; }

    void load(const QUrl &url);
    void setHtml(const QString &html, const QUrl &baseUrl);
    // Shows generated HTML of any size with the given base address; the engine's
    // data-URL limit does not apply.
    void showGeneratedPage(const QByteArray &html);
    void back();
    void forward();
    void stop();
    void reload();

    QUrl url() const;
    QString title() const;
    bool isLoading() const { return m_loading; }
    bool canGoBack() const;
    bool canGoForward() const;

    void setZoomPercent(int percent);
    int zoomPercent() const;
    // 0 (smallest) … 4 (largest); 2 is the normal size.
    void setTextSize(int step);
    int textSize() const { return m_textStep; }

    void runScript(const QString &script, const std::function<void(const QVariant &)> &result);
    // Finds text; the callback gets the active match (from 1) and the number of matches.
    void findText(const QString &text, bool backward, const std::function<void(int, int)> &result);
    void clearFind();

    // Small DOM queries, each one script run in the page.
    // Every anchor of the document and of its same-origin frames, in document order:
    // for each one the resolved address, the attribute as written and the address of
    // the document that holds it. `html` tells whether the document is HTML at all.
    struct DocumentLinks
    {
        bool html = false;
        // {resolved href, href attribute, document address, anchor text}
        QList<QStringList> anchors;
        // The active frame belongs to another site and could not be read.
        bool foreignFrame = false;
    };
    void documentLinks(const std::function<void(const DocumentLinks &)> &result);
    // The anchors of the active frame alone: the same-origin frame that has the focus,
    // or the top document when no frame has it.
    void activeFrameLinks(const std::function<void(const DocumentLinks &)> &result);
    // Type, title and href attribute of every LINK element, in document order.
    void linkElements(const std::function<void(const QList<QStringList> &)> &result);
    // Replaces the body of the shown document by the given markup.
    void setBodyHtml(const QString &html);

    // While on, downloads of this page are cancelled (downloadRefused) instead of asked for.
    void setRefusesDownloads(bool refuse);

    enum class SaveFormat {
        Complete, // the page and, in a "_files" folder beside it, what it shows
        HtmlOnly,
        Archive, // one MHTML file
    };
    void savePage(const QString &path, SaveFormat format);
    // Prints the page. The view keeps the printer until the engine is done with it and
    // frees it then, even when the view itself has gone away meanwhile; `done` runs only
    // while the view is there. While a print runs, another one is refused (done(false)).
    void print(std::unique_ptr<QPrinter> printer, std::function<void(bool)> done = nullptr);
    // Lays the page out for paper as the engine prints it and hands the PDF to `done`
    // (empty when it failed). Nothing waits: `done` runs later, and only while the view
    // is there.
    void printToPdf(const QPageLayout &layout, std::function<void(const QByteArray &)> done);

    void answerPermission(const QUrl &origin, Permission permission, bool granted);

    QWidget *focusWidget() const;

signals:
    void loadStarted();
    void loadFinished(bool ok);
    void urlChanged(const QUrl &url);
    void titleChanged(const QString &title);
    void linkHovered(const QString &url);
    void navigationRequested(const QUrl &url, bool mainFrame);
    void closeRequested();
    void resizeRequested(const QSize &size);
    void permissionRequested(const QUrl &origin, PageView::Permission permission);
    void certificateRejected(const QUrl &url, const QString &description);
    void fullScreenRequested(bool on);
    // The page called print().
    void printRequested();
    void downloadRefused(const QUrl &url);

private:
    void attachPage();
    void adopt(QWebEngineNewWindowRequest &request, bool keepOpener, const QUrl &opener);
    void showWrittenPage(const QUrl &base);

    QWebEngineView *m_view = nullptr;
    WebPage *m_page = nullptr;
    NewWindowHandler m_newWindowHandler;
    bool m_loading = false;
    int m_zoomPercent = 100;
    int m_textStep = 2;
    bool m_printing = false;
    // The engine is laying the page out as a PDF.
    bool m_laying = false;
    std::unique_ptr<QPrinter> m_printer;
    std::function<void(bool)> m_printDone;
    // A blank window its opener writes into is kept off screen until the written
    // markup has been loaded as a document of its own; a print asked for meanwhile
    // waits for that.
    bool m_showingWritten = false;
    bool m_printDeferred = false;
};
