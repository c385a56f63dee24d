// Kills vantrell-tool at random moments while it saves, again and again, and checks
// after every kill that each data file is whole: either as it was before the command
// or as the command leaves it when it runs to its end, and readable by the program's
// own readers without being moved aside.
//
//   killSafety [KILLS [QUITS]]    (300 and 30 unless told otherwise)
//
// QUITS more kills hit the program itself while it saves the archive on quit (the
// frame closed with the archive edited, the user saying yes to saving).
//
// The data folder lies in the temporary folder, on disk: each atomic save waits for
// its file to reach the disk, so the saving takes much of a command's time.
#include "core/model/book.h"
#include "core/model/layout.h"
#include "core/model/layoutbook.h"
#include "core/prefs/prefer.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>

#include <csignal>
#include <cstdio>

namespace {
using Snapshot = QHash<QString, QByteArray>;

const QString now = QStringLiteral("2026-01-02T03:04:05");

Snapshot snapshot(const QString &folder)
{
    Snapshot files;
    QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            files.insert(QDir(folder).relativeFilePath(path), file.readAll());
    }
    return files;
}

void copyFolder(const QString &from, const QString &to)
{
    QDir(to).removeRecursively();
    QDir().mkpath(to);
    const Snapshot files = snapshot(from);
    for (auto it = files.cbegin(); it != files.cend(); ++it) {
        QDir().mkpath(QFileInfo(to + u'/' + it.key()).absolutePath());
        QFile out(to + u'/' + it.key());
        if (!out.open(QIODevice::WriteOnly) || out.write(it.value()) != it.value().size())
            qFatal("cannot copy %s", qPrintable(it.key()));
    }
}

QStringList toolArguments(const QString &dataFolder, const QStringList &command)
{
    return QStringList {QStringLiteral("--data-dir"), dataFolder, QStringLiteral("--now"), now}
    + command;
}

// A command of the tool, or (an empty list) the program's quit with saving.
struct Run
{
    QString program;
    QStringList arguments;
};

Run runOf(const QString &dataFolder, const QStringList &command)
{
    if (command.isEmpty())
        return {QStringLiteral(VANTRELL_QUITSAVE_PATH), {dataFolder}};
    return {QStringLiteral(VANTRELL_TOOL_PATH), toolArguments(dataFolder, command)};
}

// The program's quit begins only after its start; the time before does not count.
void waitForSaving(QProcess &process)
{
    while (!process.readAllStandardOutput().contains("saving")) {
        if (!process.waitForReadyRead(60000))
            qFatal("the program did not come to its quit");
    }
}

// Runs the command to its end; returns how long it took (the saving alone, for the
// program).
qint64 runToEnd(const QString &dataFolder, const QStringList &command)
{
    const Run run = runOf(dataFolder, command);
    QProcess process;
    process.start(run.program, run.arguments);
    QElapsedTimer timer;
    timer.start();
    if (command.isEmpty()) {
        waitForSaving(process);
        timer.start();
    }
    if (!process.waitForFinished(60000) || process.exitCode() != 0)
        qFatal("%s failed: %s", qPrintable(command.join(u' ')),
            process.readAllStandardError().constData());
    return timer.elapsed();
}

void killAfter(const QString &dataFolder, const QStringList &command, qint64 microseconds)
{
    const Run run = runOf(dataFolder, command);
    QProcess process;
    process.start(run.program, run.arguments);
    if (!process.waitForStarted())
        qFatal("cannot start %s", qPrintable(run.program));
    if (command.isEmpty())
        waitForSaving(process);
    QThread::usleep(quint64(microseconds));
    ::kill(pid_t(process.processId()), SIGKILL);
    process.waitForFinished();
}

// Whether every record file reads whole, none of them moved aside.
QString unreadable(const QString &dataFolder)
{
    Prefer prefs;
    if (QFile::exists(dataFolder + QStringLiteral("/Pref.vtp"))
        && prefs.LoadPref(dataFolder + QStringLiteral("/Pref.vtp")) != Prefer::LoadResult::Loaded)
        return QStringLiteral("Pref.vtp");
    Book book(dataFolder);
    book.LoadAllThema();
    for (qsizetype i = 0; i < book.colThema.count(); ++i)
        book.ensureLoaded(book.colThema.at(i));
    if (!book.movedAsideFiles().isEmpty() || !book.lastOutcome().ok())
        return QStringLiteral("the bookmark archive: ") + book.lastOutcome().path;
    LayoutBook layouts(dataFolder);
    layouts.LoadAllLayouts();
    if (!layouts.movedAsideFiles().isEmpty() || !layouts.lastOutcome().ok())
        return QStringLiteral("the layout archive: ") + layouts.lastOutcome().path;
    return {};
}

QByteArray bookmarkFile(int folders, int bookmarksPerFolder, const QByteArray &word)
{
    QByteArray html = "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<META HTTP-EQUIV=\"Content-Type\" "
                      "CONTENT=\"text/html; charset=UTF-8\">\n<H1>Bookmarks</H1>\n<DL><p>\n";
    for (int f = 1; f <= folders; ++f) {
        html += "<DT><H3>F" + QByteArray::number(f) + "</H3>\n<DL><p>\n";
        for (int b = 1; b <= bookmarksPerFolder; ++b)
            html += "<DT><A HREF=\"https://example.org/" + QByteArray::number(f) + '/'
                + QByteArray::number(b) + "\">" + word + ' ' + QByteArray::number(b) + " für F"
                + QByteArray::number(f) + "</A>\n<DD>Beschreibung\n";
        html += "</DL><p>\n";
    }
    return html + "</DL><p>\n";
}
} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const int toolKills = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 300;
    const int quitKills = argc > 2 ? QString::fromLocal8Bit(argv[2]).toInt() : 30;
    const int kills = toolKills + quitKills;
    QTemporaryDir root(QDir::tempPath() + QStringLiteral("/vantrell-kill-XXXXXX"));
    const QString data = root.filePath(QStringLiteral("data"));
    // What a command leaves when it runs to its end is worked out in memory, where the
    // system offers it: there the disk's waits would only cost time.
    QTemporaryDir memory(QDir(QStringLiteral("/dev/shm")).exists()
            ? QStringLiteral("/dev/shm/vantrell-kill-XXXXXX")
            : QDir::tempPath() + QStringLiteral("/vantrell-kill-XXXXXX"));
    const QString reference = memory.filePath(QStringLiteral("reference"));
    // Two archives, so that each import changes every file.
    const QStringList sources {
        root.filePath(QStringLiteral("a.html")), root.filePath(QStringLiteral("b.html"))};
    const QString windows = root.filePath(QStringLiteral("windows.wlt"));
    QDir().mkpath(data);
    for (const QString &source : sources) {
        QFile file(source);
        const QByteArray word = source == sources.first() ? "Seite" : "Page";
        if (!file.open(QIODevice::WriteOnly) || file.write(bookmarkFile(100, 20, word)) < 0)
            qFatal("cannot write the bookmark file");
    }
    WindowDescription window;
    window.address = QStringLiteral("https://example.org/");
    window.caption = QStringLiteral("Beispiel");
    window.width = 9000;
    window.height = 6000;
    if (!Layout::SaveLayout(windows, {window, window, window}).ok())
        qFatal("cannot write the layout file");
    runToEnd(data,
        {QStringLiteral("bookmarks"), QStringLiteral("import"), sources.at(1),
            QStringLiteral("--yes")});
    // The program makes its preferences file at its first start.
    runToEnd(data,
        {QStringLiteral("prefs"), QStringLiteral("set"), QStringLiteral("HomeUrl"),
            QStringLiteral("https://example.org/")});
    // Each kind of command once to its end, on disk: how long it takes there sets the
    // span in which it is killed.
    const auto commandsFor = [&](int i) {
        const QString n = QString::number(i);
        return QList<QStringList> {
            {QStringLiteral("prefs"), QStringLiteral("set"), QStringLiteral("HomeUrl"),
                QStringLiteral("https://example.org/") + n},
            {QStringLiteral("bookmarks"), QStringLiteral("add"),
                QStringLiteral("F") + QString::number(1 + i % 100), QStringLiteral("T") + n,
                QStringLiteral("https://example.org/t") + n},
            {QStringLiteral("bookmarks"), QStringLiteral("import"), sources.at(i % 2),
                QStringLiteral("--yes")},
            {QStringLiteral("layouts"), QStringLiteral("add"), QStringLiteral("L") + n, windows},
            {QStringLiteral("bookmarks"), QStringLiteral("export"), QStringLiteral("netscape"),
                data + QStringLiteral("/export.html")},
            {}};
    };
    const auto nameOf = [](const QStringList &command) {
        return command.isEmpty() ? QStringLiteral("program: save archive on quit")
                                 : command.mid(0, 2).join(u' ');
    };
    QList<qint64> durations;
    for (const QStringList &command : commandsFor(0))
        durations.append(runToEnd(data, command));

    QRandomGenerator random(20260102);
    int torn = 0, leftovers = 0, misread = 0, untouched = 0, finished = 0;
    QHash<QString, int> perCommand;
    for (int i = 1; i <= kills; ++i) {
        const int kind = i > toolKills ? 5 : int(random.bounded(5));
        const QStringList command = commandsFor(i).at(kind);
        ++perCommand[nameOf(command)];
        // Backups of earlier imports are not what is checked; they only fill the disk.
        QDir(data + QStringLiteral("/backups")).removeRecursively();

        const Snapshot before = snapshot(data);
        copyFolder(data, reference);
        QStringList referenceCommand = command;
        if (command.contains(data + QStringLiteral("/export.html")))
            referenceCommand.last() = reference + QStringLiteral("/export.html");
        runToEnd(reference, referenceCommand);
        QDir(reference + QStringLiteral("/backups")).removeRecursively();
        const Snapshot after = snapshot(reference);

        killAfter(data, command, qint64(random.bounded(quint32(durations.at(kind) * 1200 + 1))));
        QDir(data + QStringLiteral("/backups")).removeRecursively();
        const Snapshot now = snapshot(data);
        for (auto it = now.cbegin(); it != now.cend(); ++it) {
            if (!before.contains(it.key()) && !after.contains(it.key())) {
                // A half-written temporary file of an atomic save: never one of the names
                // the program reads.
                ++leftovers;
                const QString name = QFileInfo(it.key()).fileName();
                std::printf("kill %d (%s) left %s behind\n", i, qPrintable(nameOf(command)),
                    qPrintable(it.key()));
                for (const char *suffix : {".bkm", ".nlt", ".vtp", ".wlt", ".html"}) {
                    if (name.endsWith(QLatin1String(suffix))) {
                        std::fprintf(stderr, "kill %d: leftover %s\n", i, qPrintable(name));
                        ++misread;
                    }
                }
                QFile::remove(data + u'/' + it.key());
                continue;
            }
            if (it.value() != before.value(it.key(), "\x01missing")
                && it.value() != after.value(it.key(), "\x01missing")) {
                std::fprintf(stderr, "kill %d (%s): %s is neither old nor new\n", i,
                    qPrintable(nameOf(command)), qPrintable(it.key()));
                ++torn;
            }
        }
        const Snapshot kept = snapshot(data);
        untouched += kept == before ? 1 : 0;
        finished += kept == after && after != before ? 1 : 0;
        const QString problem = unreadable(data);
        if (!problem.isEmpty()) {
            std::fprintf(stderr, "kill %d (%s): cannot read %s\n", i, qPrintable(nameOf(command)),
                qPrintable(problem));
            ++torn;
        }
    }
    std::printf("kills: %d (before any change: %d, after the last: %d, in between: %d)\n"
                "torn or unreadable files: %d, temporary files left: %d (misreadable: %d)\n",
        kills, untouched, finished, kills - untouched - finished, torn, leftovers, misread);
    for (auto it = perCommand.cbegin(); it != perCommand.cend(); ++it)
        std::printf("  %s: %d\n", qPrintable(it.key()), it.value());
    return torn == 0 && misread == 0 ? 0 : 1;
}
