#include "engine/webenginesetup.h"

#include "core/base/uitexts.h"
#include "engine/generatedpages.h"

#include <QBuffer>
#include <QFile>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlScheme>
#include <QWebEngineUrlSchemeHandler>
#include <QtWebEngineCore/qtwebenginecoreglobal.h>

static void initPageResources()
{
    Q_INIT_RESOURCE(ui);
}

namespace {

// Read by the engine's rules, the feed page's spacer tables ("visibility: none", which no
// engine knows) showed as small squares between the items, and a long word or a wide
// picture in an item pushed the page wider than the window. The page itself stays as
// written; these rules come first, so the page's own still override them.
QByteArray pageRepairs()
{
    return QByteArrayLiteral("<style>table[style*='visibility: "
                             "none']{visibility:hidden}table[width='318px']{table-layout:fixed}"
                             "td,h3{overflow-wrap:anywhere}img,video,iframe,table{max-width:100%}"
                             "img{height:auto;overflow:hidden}pre{white-space:pre-wrap}</style>");
}

// Serves the pages that ship with the program and the pages it generates.
class OwnSchemeHandler final : public QWebEngineUrlSchemeHandler
{
public:
    using QWebEngineUrlSchemeHandler::QWebEngineUrlSchemeHandler;

    void requestStarted(QWebEngineUrlRequestJob *job) override
    {
        const QUrl url = job->requestUrl();
        QByteArray body;
        if (url.host() == u"welcome") {
            QFile file(UiTexts::language() == UiTexts::Language::German
                    ? QStringLiteral(":/ui/pages/welcome.html")
                    : QStringLiteral(":/ui/pages/welcome-en.html"));
            if (file.open(QIODevice::ReadOnly))
                body = file.readAll();
        } else if (url.host() == u"page") {
            body = GeneratedPages::instance().page(url.path().mid(1));
            // A second wall behind the feed cleaner: no script runs on a generated page,
            // not even the page's own. Coming first, the policy holds for everything after.
            if (!body.isEmpty())
                body.prepend(QByteArrayLiteral(
                                 "<meta http-equiv=\"Content-Security-Policy\" "
                                 "content=\"script-src 'none'; object-src 'none'; base-uri 'self' "
                                 "http: https:\">")
                    + pageRepairs());
        }
        if (body.isEmpty()) {
            job->fail(QWebEngineUrlRequestJob::UrlNotFound);
            return;
        }
        auto *buffer = new QBuffer(job);
        buffer->setData(body);
        job->reply(QByteArrayLiteral("text/html;charset=utf-8"), buffer);
    }
};

QWebEngineProfile *&sharedProfile()
{
    static QWebEngineProfile *profile = nullptr;
    return profile;
}

} // namespace

namespace WebEngineSetup {

QString schemeName()
{
    return QStringLiteral("vantrell");
}

void registerSchemes()
{
    QWebEngineUrlScheme scheme(schemeName().toLatin1());
    scheme.setSyntax(QWebEngineUrlScheme::Syntax::Host);
    // Local to the program: pages of the web cannot reach it, and it has no file access.
    scheme.setFlags(QWebEngineUrlScheme::SecureScheme | QWebEngineUrlScheme::LocalScheme
        | QWebEngineUrlScheme::ContentSecurityPolicyIgnored);
    QWebEngineUrlScheme::registerScheme(scheme);
}

void chooseCompositing(int argc, char *argv[])
{
    if (qEnvironmentVariableIsSet("QT_QUICK_BACKEND"))
        return;
    const QByteArray noGpu = QByteArrayLiteral("--disable-gpu");
    bool withoutGpu = qgetenv("QTWEBENGINE_CHROMIUM_FLAGS").split(' ').contains(noGpu);
    for (int i = 1; i < argc && !withoutGpu; ++i)
        withoutGpu = noGpu == argv[i];
    if (withoutGpu)
        qputenv("QT_QUICK_BACKEND", QByteArrayLiteral("software"));
}

QWebEngineProfile *profile(const QString &dataFolder)
{
    if (sharedProfile())
        return sharedProfile();
    initPageResources();
    auto *created = new QWebEngineProfile(QStringLiteral("vantrell"));
    created->setPersistentStoragePath(dataFolder + QStringLiteral("/engine"));
    created->setCachePath(dataFolder + QStringLiteral("/engine-cache"));
    created->installUrlSchemeHandler(schemeName().toLatin1(), new OwnSchemeHandler(created));
    created->settings()->setAttribute(QWebEngineSettings::FullScreenSupportEnabled, true);
    created->settings()->setAttribute(QWebEngineSettings::JavascriptCanOpenWindows, true);
    created->settings()->setAttribute(QWebEngineSettings::JavascriptCanAccessClipboard, false);
    // A saved page on disk shows its pictures and styles from the web, as in other browsers.
    created->settings()->setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, true);
    sharedProfile() = created;
    return created;
}

// The feed page's boxes open and close as its own toggle script would have them, but
// from the program's side: the page itself may run no script at all.
QWebEngineScript feedToggleScript()
{
    QWebEngineScript script;
    script.setName(QStringLiteral("vantrell-feed-toggle"));
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    script.setInjectionPoint(QWebEngineScript::DocumentReady);
    script.setRunsOnSubFrames(false);
    script.setSourceCode(QStringLiteral(R"(
if (location.protocol === 'vantrell:') {
    document.addEventListener('click', function (event) {
        const sign = event.target.closest && event.target.closest('div.toggle[onclick]');
        const found = sign && /togglediv\(this,\s*(dr\d+)/.exec(sign.getAttribute('onclick'));
        const row = found && document.getElementById(found[1]);
        if (!row)
            return;
        const open = sign.innerText !== '-';
        sign.innerText = open ? '-' : '+';
        row.style.display = open ? 'inline' : 'none';
    });
})"));
    return script;
}

QWebEngineProfile *profile()
{
    return sharedProfile() ? sharedProfile() : QWebEngineProfile::defaultProfile();
}

QString chromiumVersion()
{
    return QString::fromLatin1(qWebEngineChromiumVersion());
}

} // namespace WebEngineSetup
