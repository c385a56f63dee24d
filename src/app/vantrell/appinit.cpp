#include "app/vantrell/appinit.h"

#include "core/base/appinfo.h"
#include "core/base/commandline.h"
#include "core/base/feedmark.h"
#include "core/base/programoptions.h"
#include "core/base/quitsignals.h"
#include "core/base/singleinstance.h"
#include "core/base/uitexts.h"
#include "core/model/sessionfile.h"
#include "core/prefs/prefer.h"
#include "engine/downloads.h"
#include "engine/webenginesetup.h"
#include "ui/browser/frmbrowser.h"
#include "ui/browser/infobar.h"
#include "ui/desktop/mailwatcher.h"
#include "ui/desktop/passwordstore.h"
#include "ui/frame/appicon.h"
#include "ui/frame/framemenus.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/sessionkeeper.h"
#include "ui/frame/statuspanels.h"
#include "ui/frame/tabstrip.h"
#include "ui/frame/twips.h"
#include "ui/frame/windowsets.h"
#include "ui/tools/frmtools.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QScreen>
#include <QSessionManager>
#include <QStatusBar>
#include <QStyle>
#include <QTextStream>
#include <QTimer>
#include <QTranslator>

#include <memory>

namespace {

// Relative paths of existing files become absolute, so that a running instance in
// another folder finds them.
QStringList commandLineArguments(const QStringList &raw)
{
    QStringList arguments;
    for (const QString &argument : raw) {
        const QFileInfo file(argument);
        arguments.append(!argument.contains(u':') && file.exists() && file.isRelative()
                ? file.absoluteFilePath()
                : argument);
    }
    return arguments;
}

void runStartOption(MDIForm1 &frame, const QString &dataFolder)
{
    QString problem;
    const qint16 option = prefer().LoadOption();
    if (option == 3)
        WindowSets::openBookmarkFolder(frame, dataFolder, prefer().GroupFile(), &problem);
    else if (option == 2)
        WindowSets::openLayoutFile(frame, prefer().Layout(), &problem);
    if (!problem.isEmpty())
        frame.setStatusText(problem);
}

// How long the rest of the start waits at most for the first page to load: built
// before the page is fetched, it would hold the page back by as long as it takes.
constexpr int RestOfStartDelayMs = 300;

// The first window: the command line's address, the start page, or the start page
// rendered as a feed. None when the start page is off and nothing was asked for.
frmBrowser *openFirstWindow(MDIForm1 &frame, const QString &rawLine)
{
    if (rawLine.isEmpty() && prefer().StartBrowser() <= 0 && prefer().StartBrowser() != -1)
        return nullptr;
    frmBrowser *first = nullptr;
    if (!rawLine.isEmpty()) {
        first = frame.NewBrowser(CommandLine::addressToOpen(rawLine));
    } else if (!FeedMark::isFeedStartPageTitle(prefer().HomeTitle())) {
        first = frame.OpenNewBrowser(prefer().HomeUrl().trimmed());
    } else {
        first = frame.CreateBrowser(MDIForm1::BrowserKind::MDI);
        first->LoadFeed(prefer().HomeUrl().trimmed());
    }
    if (first && first->parentWidget())
        first->parentWidget()->showMaximized();
    return first;
}

// The tools pane, the start option's windows, the offer to restore a session and the
// mail check.
void finishStart(MDIForm1 &frame, SessionKeeper &session, const QString &dataFolder,
    const QString &replacedNotice)
{
    frmTools::attach(&frame);
    if (!replacedNotice.isEmpty())
        frame.setStatusText(replacedNotice);
    runStartOption(frame, dataFolder);

    if (session.offerRestore() > 0) {
        // Tests answer the offer as the buttons would.
        const QString answer = qEnvironmentVariable("VANTRELL_RESTORE");
        if (answer == u"yes")
            frame.infoBar()->choose(1);
        else if (answer == u"no")
            frame.infoBar()->choose(2);
    }

    // The mail check; starting the mail program, or a click on the notice, hides it.
    auto *mail = new MailWatcher(&frame);
    StatusPanels *panels = frame.menus()->statusPanels();
    QAction *mailProgram = frame.menuAction(QStringLiteral("mn_Email"));
    QObject::connect(mail, &MailWatcher::statusText, &frame, &MDIForm1::setStatusText);
    QObject::connect(mail, &MailWatcher::mailNotice, panels, &StatusPanels::setMailNotice);
    QObject::connect(panels, &StatusPanels::mailNoticeClicked, mailProgram, &QAction::trigger);
    QObject::connect(mailProgram, &QAction::triggered, mail, &MailWatcher::mailProgramStarted);
    // The passwords may come from the desktop's secret store: the check starts once
    // they are there.
    PasswordStore::load(prefer(), mail, [mail] { mail->start(); });
    QObject::connect(&frame, &MDIForm1::preferencesApplied, mail, &MailWatcher::start);
}

int answerOnTerminal(int argc, char *argv[], ProgramOptions::Request request)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    if (request == ProgramOptions::Request::Version) {
        out << ProgramOptions::versionLine(AppInfo::applicationTitle()) << Qt::endl;
        return 0;
    }
    out << ProgramOptions::helpText(
        QStringLiteral("A web browser that shows many pages at once, each in a window of\n"
                       "its own inside one main frame.\n\n"
                       "The arguments, joined by blanks, name one web address or file to\n"
                       "open. When Vantrell is running already, it opens it there."),
        QStringLiteral("address"), QStringLiteral("A web address or a file to open."));
    return 0;
}

} // namespace

namespace AppInit {

int Main(int argc, char *argv[])
{
    // --help and --version answer on the terminal, without a display.
    const auto request = ProgramOptions::requestOf(ProgramOptions::fromMain(argc, argv));
    if (request != ProgramOptions::Request::Run)
        return answerOnTerminal(argc, argv, request);

    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    WebEngineSetup::registerSchemes();
    WebEngineSetup::chooseCompositing(argc, argv);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vantrell"));
    QApplication::setDesktopFileName(QStringLiteral("vantrell"));
    QApplication::setWindowIcon(AppIcon::make());

    // Data folder, created on every start.
    const QString dataFolder = AppInfo::dataFolderPath();
    AppInfo::ensureDataFolder(dataFolder);
    UiTexts::load(UiTexts::languageForLocale());
    // Qt's own texts (key names in menus, dialogs, standard buttons, the page's context
    // menu) in the program's language, where they are installed; the engine takes its
    // language from the default locale, so pages see the same one.
    const bool german = UiTexts::language() == UiTexts::Language::German;
    QLocale::setDefault(german ? QLocale(QLocale::German, QLocale::Germany)
                               : QLocale(QLocale::English, QLocale::UnitedStates));
    QTranslator qtTexts;
    QTranslator engineTexts;
    const QString translations = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (german && qtTexts.load(QStringLiteral("qtbase_de"), translations))
        QApplication::installTranslator(&qtTexts);
    if (german && engineTexts.load(QStringLiteral("qtwebengine_de"), translations))
        QApplication::installTranslator(&engineTexts);

    const QStringList arguments = commandLineArguments(app.arguments().mid(1));
    const QString rawLine = CommandLine::rawLine(arguments);
    const int markers = CommandLine::markerSum(rawLine, arguments);

    SingleInstance instance(dataFolder);
    const SingleInstance::Role role = instance.start();
    if (role == SingleInstance::Role::Second) {
        // Only a page or file is handed over; otherwise the running one just comes forward.
        return instance.handOver(markers >= 1 ? rawLine : QString()) ? 0 : 1;
    }
    if (role == SingleInstance::Role::Failed) {
        QMessageBox::critical(nullptr, uiText(1113), uiText(2055));
        return 1;
    }

    const QString prefPath = AppInfo::dataFile(QStringLiteral("Pref.vtp"));
    const Prefer::LoadResult loaded = prefer().LoadPref(prefPath);
    if (loaded == Prefer::LoadResult::OldFormat) {
        QMessageBox::critical(
            nullptr, uiText(1113), uiText(1141) + QStringLiteral(" \"") + dataFolder + u'"');
        return 1;
    }

    WebEngineSetup::profile(dataFolder);
    MDIForm1 frame;
    frame.setCaption(AppInfo::frameCaption());
    auto *downloads = new Downloads(WebEngineSetup::profile(), &frame);
    QObject::connect(downloads, &Downloads::statusText, &frame, &MDIForm1::setStatusText);
    QObject::connect(
        &instance, &SingleInstance::commandLineReceived, &frame, &MDIForm1::handleHandOver);

    if (loaded == Prefer::LoadResult::CreatedFresh) {
        // The first start: a good share of the screen, centred, not the stored default.
        const QRect screen = frame.screen()->availableGeometry();
        const QSize size = screen.size() * 0.8;
        frame.setGeometry(QStyle::alignedRect(
            Qt::LeftToRight, Qt::AlignCenter, size.boundedTo(screen.size()), screen));
    } else {
        frame.resize(Twips::toPixels(prefer().MdiWidth(), &frame),
            Twips::toPixels(prefer().MdiHeight(), &frame));
    }
    if (prefer().MdiState() == 2)
        frame.setWindowState(Qt::WindowMaximized);
    frame.ApplyPreferences();

    // The first page is asked for before anything else is built, so the engine can
    // fetch it while the rest of the start runs.
    frmBrowser *first = openFirstWindow(frame, rawLine);
    frame.show();

    // The windows of a session that ended without quitting are offered in addition to
    // those just opened; from then on this session's windows are kept.
    auto *session = new SessionKeeper(frame, AppInfo::dataFile(SessionFile::fileName()));
    const QString replacedNotice = loaded == Prefer::LoadResult::ReplacedInvalid
        ? uiText(2000).arg(prefPath, prefer().movedAsidePath())
        : QString();
    // The rest follows once the first page has loaded, or after a moment when it is slow.
    auto rest
        = [&frame, session, dataFolder, replacedNotice, done = std::make_shared<bool>(false)] {
              if (*done)
                  return;
              *done = true;
              finishStart(frame, *session, dataFolder, replacedNotice);
          };
    if (first) {
        QObject::connect(
            first->page(), &PageView::loadFinished, &frame, rest, Qt::QueuedConnection);
        QTimer::singleShot(RestOfStartDelayMs, &frame, rest);
    } else {
        rest();
    }

    // The system asking the program to quit closes it as the user would.
    QuitSignals quit;
    QObject::connect(&quit, &QuitSignals::quitRequested, &frame, &MDIForm1::close);
    QObject::connect(&app, &QGuiApplication::commitDataRequest, &frame,
        [&frame](QSessionManager &) { frame.Unload(); });
    QObject::connect(&app, &QCoreApplication::aboutToQuit, &frame, &MDIForm1::Unload);
    QObject::connect(&app, &QCoreApplication::aboutToQuit, session, &SessionKeeper::finish);
    return app.exec();
}

} // namespace AppInit
