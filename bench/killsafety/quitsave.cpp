// The program's own "save the archive on quit", run to be killed: the frame with its
// tools pane opens the archive of the data folder given, the session adds a bookmark
// to every folder, and the frame is closed the way the user closes it, saying yes to
// saving. "saving" on standard output marks the moment the close begins.
//
//   quitSave DATA-FOLDER
#include "core/base/appinfo.h"
#include "core/base/uitexts.h"
#include "core/model/book.h"
#include "core/model/bookediting.h"
#include "core/prefs/prefer.h"
#include "engine/webenginesetup.h"
#include "ui/frame/mdiform1.h"
#include "ui/tools/bookmarktool.h"
#include "ui/tools/frmtools.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

int main(int argc, char **argv)
{
    if (argc < 2)
        return 2;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu --no-sandbox");
    qputenv("VANTRELL_DATA_DIR", argv[1]);
    WebEngineSetup::registerSchemes();
    QApplication app(argc, argv);
    UiTexts::load(UiTexts::Language::German);
    // As at every start, the preferences first: the frame writes them back as it closes.
    prefer().LoadPref(AppInfo::dataFile(QStringLiteral("Pref.vtp")));
    // The engine keeps its own files elsewhere: only the program's data files count here.
    const QTemporaryDir engineFolder;
    WebEngineSetup::profile(engineFolder.path());
    MDIForm1 frame;
    frmTools::attach(&frame);
    auto *tool = frame.findChild<BookmarkTool *>();
    if (!tool)
        return 3;
    tool->load();
    Book &book = tool->book();
    for (qsizetype i = 0; i < book.colThema.count(); ++i) {
        Thema &folder = book.colThema.at(i);
        if (!book.ensureLoaded(folder).ok())
            continue;
        const QString n = QString::number(folder.colBookmark ? folder.colBookmark->count() : 0);
        BookEditing::addBookmark(book, folder, QStringLiteral("Neu ") + n,
            QStringLiteral("https://example.org/neu/") + n, BookEditing::Duplicates::Allow);
    }
    // The user answers the question whether to save with yes.
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
            box->button(QMessageBox::Yes)->click();
    });
    answer.start(5);
    std::printf("saving\n");
    std::fflush(stdout);
    frame.close();
    std::printf("saved\n");
    return book.IsEdit ? 1 : 0;
}
