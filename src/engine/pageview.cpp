#include "engine/pageview.h"

#include "engine/generatedpages.h"
#include "engine/webenginesetup.h"
#include "engine/webpage.h"

#include <QPointer>
#include <QPrinter>
#include <QVBoxLayout>
#include <QWebEngineCertificateError>
#include <QWebEngineDownloadRequest>
#include <QWebEngineFindTextResult>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineHistory>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineView>

namespace {
QWebEnginePage::Feature featureOf(PageView::Permission permission)
{
    switch (permission) {
    case PageView::Permission::Location:
        return QWebEnginePage::Geolocation;
    case PageView::Permission::Notifications:
        return QWebEnginePage::Notifications;
    case PageView::Permission::Camera:
        return QWebEnginePage::MediaVideoCapture;
    case PageView::Permission::Microphone:
        return QWebEnginePage::MediaAudioCapture;
    case PageView::Permission::CameraAndMicrophone:
        return QWebEnginePage::MediaAudioVideoCapture;
    case PageView::Permission::Other:
        break;
    }
    return QWebEnginePage::DesktopVideoCapture;
}

PageView::Permission permissionOf(QWebEnginePage::Feature feature)
{
    switch (feature) {
    case QWebEnginePage::Geolocation:
        return PageView::Permission::Location;
    case QWebEnginePage::Notifications:
        return PageView::Permission::Notifications;
    case QWebEnginePage::MediaVideoCapture:
        return PageView::Permission::Camera;
    case QWebEnginePage::MediaAudioCapture:
        return PageView::Permission::Microphone;
    case QWebEnginePage::MediaAudioVideoCapture:
        return PageView::Permission::CameraAndMicrophone;
    default:
        return PageView::Permission::Other;
    }
}

// Default font sizes of the five text-size steps, smallest to largest.
constexpr int TextSizes[5] = {11, 13, 16, 19, 23};
} // namespace

PageView::PageView(QWidget *parent)
    : QWidget(parent)
    , m_view(new QWebEngineView(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    m_page = new WebPage(WebEngineSetup::profile(), m_view);
    m_view->setPage(m_page);
    attachPage();
    setFocusProxy(m_view);
}

PageView::~PageView()
{
    if (!m_printing && !m_laying)
        return;
    // The engine fails hard when a page goes away in the middle of a print: the view
    // lives on, hidden and on its own, until the print is done, and goes then (with the
    // printer); a layout for paper takes it along when its answer comes.
    QWebEngineView *view = m_view;
    view->disconnect(this);
    view->hide();
    view->setParent(nullptr);
    if (!m_printing)
        return;
    QPrinter *printer = m_printer.release();
    connect(view, &QWebEngineView::printFinished, view, [view, printer] {
        delete printer;
        view->deleteLater();
    });
}

void PageView::attachPage()
{
    connect(m_page, &QWebEnginePage::loadStarted, this, [this] {
        m_loading = true;
        emit loadStarted();
    });
    connect(m_page, &QWebEnginePage::loadFinished, this, [this](bool ok) {
        m_loading = false;
        if (m_zoomPercent != 100)
            m_page->setZoomFactor(m_zoomPercent / 100.0);
        emit loadFinished(ok);
    });
    connect(m_page, &QWebEnginePage::urlChanged, this, &PageView::urlChanged);
    connect(m_page, &QWebEnginePage::titleChanged, this, &PageView::titleChanged);
    connect(m_page, &QWebEnginePage::linkHovered, this, &PageView::linkHovered);
    connect(m_page, &WebPage::navigationAboutToStart, this, &PageView::navigationRequested);
    connect(m_page, &WebPage::downloadRefused, this, &PageView::downloadRefused);
    connect(m_page, &QWebEnginePage::windowCloseRequested, this, &PageView::closeRequested);
    connect(m_page, &QWebEnginePage::geometryChangeRequested, this,
        [this](const QRect &geometry) { emit resizeRequested(geometry.size()); });
    connect(m_page, &WebPage::sizeAsked, this, &PageView::resizeRequested);
    connect(m_page, &QWebEnginePage::featurePermissionRequested, this,
        [this](const QUrl &origin, QWebEnginePage::Feature feature) {
            const Permission permission = permissionOf(feature);
            if (permission == Permission::Other) {
                m_page->setFeaturePermission(
                    origin, feature, QWebEnginePage::PermissionDeniedByUser);
                return;
            }
            emit permissionRequested(origin, permission);
        });
    connect(m_page, &QWebEnginePage::certificateError, this,
        [this](const QWebEngineCertificateError &error) {
            // Refused; the user learns why.
            QWebEngineCertificateError refused = error;
            refused.rejectCertificate();
            emit certificateRejected(error.url(), error.description());
        });
    connect(m_page, &QWebEnginePage::fullScreenRequested, this,
        [this](QWebEngineFullScreenRequest request) {
            request.accept();
            emit fullScreenRequested(request.toggleOn());
        });
    connect(m_page, &QWebEnginePage::newWindowRequested, this,
        [this](QWebEngineNewWindowRequest &request) {
            if (!m_newWindowHandler)
                return; // not taken: the engine refuses it, and the page gets null
            const bool background
                = request.destination() == QWebEngineNewWindowRequest::InNewBackgroundTab;
            NewWindowRequest asked {request.requestedUrl(), request.requestedGeometry(),
                request.isUserInitiated(), background};
            bool keepOpener = true;
            if (PageView *target = m_newWindowHandler(asked, &keepOpener))
                target->adopt(request, keepOpener, m_page->url());
        });
    connect(m_page, &QWebEnginePage::printRequested, this, [this] {
        if (m_showingWritten)
            m_printDeferred = true;
        else
            emit printRequested();
    });
    connect(m_view, &QWebEngineView::printFinished, this, [this](bool ok) {
        m_printing = false;
        m_printer.reset();
        if (m_printDone)
            std::exchange(m_printDone, nullptr)(ok);
    });
}

void PageView::load(const QUrl &url)
{
    m_page->load(url);
}

void PageView::setHtml(const QString &html, const QUrl &baseUrl)
{
    m_page->setHtml(html, baseUrl);
}

void PageView::showGeneratedPage(const QByteArray &html)
{
    const QWebEngineScript toggle = WebEngineSetup::feedToggleScript();
    if (m_page->scripts().find(toggle.name()).isEmpty())
        m_page->scripts().insert(toggle);
    m_page->load(QUrl(GeneratedPages::instance().add(html)));
}

void PageView::back()
{
    m_page->triggerAction(QWebEnginePage::Back);
}

void PageView::forward()
{
    m_page->triggerAction(QWebEnginePage::Forward);
}

void PageView::stop()
{
    m_page->triggerAction(QWebEnginePage::Stop);
}

void PageView::reload()
{
    m_page->triggerAction(QWebEnginePage::Reload);
}

QUrl PageView::url() const
{
    return m_page->url();
}

QString PageView::title() const
{
    return m_page->title();
}

bool PageView::canGoBack() const
{
    return m_page->history()->canGoBack();
}

bool PageView::canGoForward() const
{
    return m_page->history()->canGoForward();
}

void PageView::setZoomPercent(int percent)
{
    m_zoomPercent = percent;
    m_page->setZoomFactor(percent / 100.0);
}

int PageView::zoomPercent() const
{
    return m_zoomPercent;
}

void PageView::setTextSize(int step)
{
    m_textStep = qBound(0, step, 4);
    m_page->settings()->setFontSize(QWebEngineSettings::DefaultFontSize, TextSizes[m_textStep]);
    m_page->settings()->setFontSize(
        QWebEngineSettings::MinimumFontSize, m_textStep > 2 ? TextSizes[m_textStep] - 6 : 0);
}

void PageView::runScript(const QString &script, const std::function<void(const QVariant &)> &result)
{
    if (result)
        m_page->runJavaScript(script, QWebEngineScript::ApplicationWorld, result);
    else
        m_page->runJavaScript(script, QWebEngineScript::ApplicationWorld);
}

void PageView::findText(
    const QString &text, bool backward, const std::function<void(int, int)> &result)
{
    QWebEnginePage::FindFlags flags;
    if (backward)
        flags |= QWebEnginePage::FindBackward;
    m_page->findText(text, flags, [result](const QWebEngineFindTextResult &found) {
        result(found.activeMatch(), found.numberOfMatches());
    });
}

void PageView::clearFind()
{
    m_page->findText(QString());
}

void PageView::setRefusesDownloads(bool refuse)
{
    m_page->refusesDownloads = refuse;
}

void PageView::savePage(const QString &path, SaveFormat format)
{
    switch (format) {
    case SaveFormat::Complete:
        m_page->save(path, QWebEngineDownloadRequest::CompleteHtmlSaveFormat);
        break;
    case SaveFormat::HtmlOnly:
        m_page->save(path, QWebEngineDownloadRequest::SingleHtmlSaveFormat);
        break;
    case SaveFormat::Archive:
        m_page->save(path, QWebEngineDownloadRequest::MimeHtmlSaveFormat);
        break;
    }
}

void PageView::print(std::unique_ptr<QPrinter> printer, std::function<void(bool)> done)
{
    if (m_printing || !printer) {
        if (done)
            done(false);
        return;
    }
    m_printing = true;
    m_printer = std::move(printer);
    m_printDone = std::move(done);
    m_view->print(m_printer.get());
}

void PageView::printToPdf(const QPageLayout &layout, std::function<void(const QByteArray &)> done)
{
    if (m_printing || m_laying) {
        if (done)
            done({});
        return;
    }
    m_laying = true;
    QPointer<PageView> self = this;
    QWebEngineView *view = m_view;
    m_page->printToPdf(
        [self, view, done = std::move(done)](const QByteArray &pdf) {
            if (!self) {
                view->deleteLater(); // left behind by the view that went away
                return;
            }
            self->m_laying = false;
            if (done)
                done(pdf);
        },
        layout);
}

void PageView::answerPermission(const QUrl &origin, Permission permission, bool granted)
{
    m_page->setFeaturePermission(origin, featureOf(permission),
        granted ? QWebEnginePage::PermissionGrantedByUser : QWebEnginePage::PermissionDeniedByUser);
}

QWidget *PageView::focusWidget() const
{
    return m_view->focusProxy() ? m_view->focusProxy() : m_view;
}

namespace {
QList<QStringList> toRows(const QVariant &value)
{
    QList<QStringList> rows;
    for (const QVariant &row : value.toList())
        rows.append(row.toStringList());
    return rows;
}
} // namespace

namespace {
// Collects the anchors of `doc`, and of its same-origin frames when `frames` is set.
// Frames of another origin have no readable document and are skipped.
const QString AnchorWalk = QStringLiteral(
    "var out=[];"
    "function walk(doc,frames){"
    "var as=doc.getElementsByTagName('a');"
    "for(var i=0;i<as.length;i++){var raw=as[i].getAttribute('href');"
    "if(raw!==null)out.push([String(as[i].href),raw,String(doc.URL),"
    "String(as[i].textContent||'').trim()]);}"
    "if(!frames)return;"
    "var fs=doc.querySelectorAll('iframe,frame');"
    "for(var j=0;j<fs.length;j++){var d=null;try{d=fs[j].contentDocument;}catch(e){}"
    "if(d)walk(d,true);}}"
    "var type=String(document.contentType||'');"
    "var html=type.indexOf('html')>=0;");

PageView::DocumentLinks linksOf(const QVariant &value)
{
    const QVariantMap map = value.toMap();
    PageView::DocumentLinks links;
    links.html = map.value(QStringLiteral("html")).toBool();
    links.anchors = toRows(map.value(QStringLiteral("anchors")));
    links.foreignFrame = map.value(QStringLiteral("foreign")).toBool();
    return links;
}
} // namespace

void PageView::documentLinks(const std::function<void(const DocumentLinks &)> &result)
{
    static const QString script = u"(function(){" + AnchorWalk
        + u"if(html)walk(document,true);return {html:html,anchors:out};})()";
    runScript(script, [result](const QVariant &value) { result(linksOf(value)); });
}

void PageView::activeFrameLinks(const std::function<void(const DocumentLinks &)> &result)
{
    // The focus leads from the top document through the focused frame elements.
    static const QString script = u"(function(){" + AnchorWalk
        + u"var doc=document,foreign=false;"
          "for(;;){var a=doc.activeElement;"
          "if(!a||(a.tagName!=='IFRAME'&&a.tagName!=='FRAME'))break;"
          "var d=null;try{d=a.contentDocument;}catch(e){}"
          "if(!d){foreign=true;break;}doc=d;}"
          "if(html&&!foreign)walk(doc,false);"
          "return {html:html,anchors:out,foreign:foreign};})()";
    runScript(script, [result](const QVariant &value) { result(linksOf(value)); });
}

void PageView::linkElements(const std::function<void(const QList<QStringList> &)> &result)
{
    static const QString script
        = QStringLiteral("(function(){var out=[];var ls=document.getElementsByTagName('LINK');"
                         "for(var i=0;i<ls.length;i++){var l=ls[i];"
                         "out.push([l.getAttribute('type')||'',l.getAttribute('title')||'',"
                         "l.getAttribute('href')||'']);}"
                         "return out;})()");
    // Run in the page's own world: the page could only misreport its own links, which it
    // may change anyway, and a world of the program's own would cost every page memory.
    m_page->runJavaScript(script, QWebEngineScript::MainWorld,
        [result](const QVariant &value) { result(toRows(value)); });
}

void PageView::setBodyHtml(const QString &html)
{
    QString literal = html;
    literal.replace(u'\\', QStringLiteral("\\\\")).replace(u'\'', QStringLiteral("\\'"));
    literal.replace(u'\n', QStringLiteral("\\n")).replace(u'\r', QStringLiteral("\\r"));
    runScript(QStringLiteral("if(document.body)document.body.innerHTML='") + literal
            + QStringLiteral("';"),
        nullptr);
}
