// The windows a page opens: handed back to it, cut from their opener when the user
// wants so, blank ones shown only once what the opener wrote is a document of its own,
// and the guard that gives window.open its answer.
#include "engine/pageview.h"
#include "engine/webpage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QPointer>
#include <QTimer>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineView>

#include <memory>

void PageView::adopt(QWebEngineNewWindowRequest &request, bool keepOpener, const QUrl &opener)
{
    // The opener always gets its window back: it may write into it, and a second
    // request for a window of the same name finds this one.
    const QUrl asked = request.requestedUrl();
    const bool blank = asked.isEmpty() || asked.scheme() == u"about";
    if (blank) {
        // The engine crashes when it shows a blank window whose content the opener
        // wrote into the empty first document. Such a window stays off screen until
        // that markup is loaded as a document of its own, of the opener's origin.
        m_showingWritten = true;
        m_view->hide();
    }
    request.openIn(m_page);
    if (!keepOpener) {
        // The new page loses its view of the opener, as with "noopener"; the opener
        // keeps its reference to the new window.
        QWebEngineScript sever;
        sever.setName(QStringLiteral("no-opener"));
        sever.setSourceCode(QStringLiteral("window.opener = null;"));
        sever.setInjectionPoint(QWebEngineScript::DocumentCreation);
        sever.setWorldId(QWebEngineScript::MainWorld);
        sever.setRunsOnSubFrames(false);
        m_page->scripts().insert(sever);
        m_page->runJavaScript(sever.sourceCode());
        // Cut from its opener, the window is no longer one the engine lets a script size;
        // the size it asks for comes through the console and the frame's rule instead.
        QWebEngineScript sizer;
        sizer.setName(QStringLiteral("size-through-program"));
        sizer.setSourceCode(QStringLiteral(
            "(() => { const ask = console.log.bind(console);"
            " const size = (w, h) => ask('vantrell-size ' + Math.round(w) + ' ' + Math.round(h));"
            " window.resizeTo = (w, h) => size(w, h);"
            " window.resizeBy = (x, y) => size(innerWidth + x, innerHeight + y); })();"));
        sizer.setInjectionPoint(QWebEngineScript::DocumentCreation);
        sizer.setWorldId(QWebEngineScript::MainWorld);
        sizer.setRunsOnSubFrames(false);
        m_page->scripts().insert(sizer);
        m_page->sizesThroughScript = true;
    }
    if (blank)
        QTimer::singleShot(0, this, [this, opener] { showWrittenPage(opener); });
}

void PageView::setWindowOpenGuard(bool pagesMayOpen, const QStringList &allowedSites)
{
    // The engine asks for the new window only after window.open has returned, so the
    // answer a script sees is given here, in the page, by the same rule.
    static const QString name = QStringLiteral("window-open-guard");
    QWebEngineScriptCollection &scripts = m_page->scripts();
    for (const QWebEngineScript &old : scripts.find(name))
        scripts.remove(old);
    QWebEngineScript guard;
    guard.setName(name);
    guard.setSourceCode(
        QStringLiteral(
            "(() => { const mayOpen = %1; const sites = %2; const open = window.open;"
            " window.open = function (...args) { const opened = open.apply(this, args);"
            " const refused = !mayOpen && !sites.includes(location.hostname.toLowerCase())"
            " && !(navigator.userActivation && navigator.userActivation.isActive);"
            " return refused ? null : opened; }; })();")
            .arg(pagesMayOpen ? QStringLiteral("true") : QStringLiteral("false"),
                QString::fromUtf8(QJsonDocument(QJsonArray::fromStringList(allowedSites))
                                      .toJson(QJsonDocument::Compact))));
    guard.setInjectionPoint(QWebEngineScript::DocumentCreation);
    guard.setWorldId(QWebEngineScript::MainWorld);
    guard.setRunsOnSubFrames(true);
    scripts.insert(guard);
}

void PageView::showWrittenPage(const QUrl &base)
{
    // What the opener wrote in the same turn of its script is in the document by now;
    // what it writes later goes into the document loaded here, which is safe to show.
    QPointer<PageView> self = this;
    m_page->toHtml([self, base](const QString &html) {
        if (!self)
            return;
        auto shown = std::make_shared<QMetaObject::Connection>();
        *shown = connect(self->m_page, &QWebEnginePage::loadFinished, self, [self, shown] {
            QObject::disconnect(*shown);
            self->m_showingWritten = false;
            self->m_view->show();
            if (std::exchange(self->m_printDeferred, false))
                emit self->printRequested();
        });
        self->m_page->setHtml(html, base.isValid() ? base : QUrl(QStringLiteral("about:blank")));
    });
}
