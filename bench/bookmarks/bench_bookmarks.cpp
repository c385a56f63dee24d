// Times the bookmark archive on a large archive (100 folders of 1,000 bookmarks by
// default) and sets every figure against a baseline measured in the same run: writing
// the same number of bytes as atomically as the program does (QSaveFile) for saving and
// exporting, plain buffered file I/O for reading and for building the bytes of an export,
// and for the import also a bare HTML parse of the same file.
//
// usage: bench_bookmarks [FOLDERS [BOOKMARKS_PER_FOLDER [REPEATS]]]

#include "core/base/clock.h"
#include "core/exchange/netscapeexport.h"
#include "core/exchange/netscapeimport.h"
#include "core/exchange/textexports.h"
#include "core/exchange/xmlexports.h"
#include "core/model/book.h"
#include "core/model/bookediting.h"
#include "core/records/recordfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <functional>
#include <gumbo.h>
#include <vector>

namespace {
double bestOf(int repeats, const std::function<void()> &work)
{
    double best = 1e300;
    for (int i = 0; i < repeats; ++i) {
        QElapsedTimer timer;
        timer.start();
        work();
        best = std::min(best, double(timer.nsecsElapsed()) / 1e6);
    }
    return best;
}

// Plain buffered writing of files of the given sizes.
void writePlain(const QString &folder, const std::vector<qint64> &sizes)
{
    static const std::vector<char> chunk(1 << 16, 'x');
    for (size_t i = 0; i < sizes.size(); ++i) {
        const QByteArray path
            = (folder + QStringLiteral("/plain") + QString::number(i)).toLocal8Bit();
        std::FILE *file = std::fopen(path.constData(), "wb");
        for (qint64 left = sizes[i]; left > 0; left -= qint64(chunk.size()))
            std::fwrite(
                chunk.data(), 1, size_t(std::min<qint64>(left, qint64(chunk.size()))), file);
        std::fclose(file);
    }
}

// The same sizes written as the program writes every file: through QSaveFile, which
// syncs the file to disk before renaming it over the old one.
void writeAtomic(const QString &folder, const std::vector<qint64> &sizes)
{
    for (size_t i = 0; i < sizes.size(); ++i) {
        const QByteArray bytes(sizes[i], 'x');
        RecordFile::writeBytes(folder + QStringLiteral("/atomic") + QString::number(i), bytes);
    }
}

qint64 readPlain(const QStringList &paths)
{
    std::vector<char> buffer(1 << 16);
    qint64 total = 0;
    for (const QString &path : paths) {
        std::FILE *file = std::fopen(path.toLocal8Bit().constData(), "rb");
        size_t got;
        while ((got = std::fread(buffer.data(), 1, buffer.size(), file)) > 0)
            total += qint64(got);
        std::fclose(file);
    }
    return total;
}

QStringList archiveFiles(const QString &folder)
{
    QStringList paths;
    const QDir dir(folder);
    for (const QString &name : dir.entryList({QStringLiteral("*.bkm")}, QDir::Files))
        paths << dir.filePath(name);
    return paths;
}

std::vector<qint64> sizesOf(const QStringList &paths)
{
    std::vector<qint64> sizes;
    for (const QString &path : paths)
        sizes.push_back(QFileInfo(path).size());
    return sizes;
}

qint64 sum(const std::vector<qint64> &sizes)
{
    qint64 total = 0;
    for (qint64 size : sizes)
        total += size;
    return total;
}

// BENCH_ONLY=save|load|export|import runs one part, for profiling.
bool wanted(const char *part)
{
    const QByteArray only = qgetenv("BENCH_ONLY");
    return only.isEmpty() || only == part;
}

void row(const char *what, qint64 bytes, double ms, double baselineMs, const char *baseline)
{
    std::printf("%-34s %10.1f MB %10.1f ms %10.1f ms  %6.2fx  %s\n", what, double(bytes) / 1e6, ms,
        baselineMs, ms / baselineMs, baseline);
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const int folders = argc > 1 ? std::atoi(argv[1]) : 100;
    const int perFolder = argc > 2 ? std::atoi(argv[2]) : 1000;
    const int repeats = argc > 3 ? std::atoi(argv[3]) : 3;
    QTemporaryDir root;
    QDir(root.path()).mkdir(QStringLiteral("archive"));
    QDir(root.path()).mkdir(QStringLiteral("plain"));
    QDir(root.path()).mkdir(QStringLiteral("import"));
    const QString archive = root.filePath(QStringLiteral("archive"));
    const QString plain = root.filePath(QStringLiteral("plain"));

    Book book(archive);
    for (int f = 0; f < folders; ++f) {
        Thema *folder = BookEditing::addFolder(
            book, QStringLiteral("Ordner ") + QString::number(f + 1), book.colThema.count());
        for (int b = 0; b < perFolder; ++b) {
            Bookmark *bookmark = BookEditing::addBookmark(book, *folder,
                QStringLiteral("Lesezeichen %1 im Ordner %2 – Übersicht").arg(b + 1).arg(f + 1),
                QStringLiteral("https://www.example.org/ordner/%1/seite-%2.html")
                    .arg(f + 1)
                    .arg(b + 1),
                BookEditing::Duplicates::Allow)
                                     .bookmark;
            if (b % 3 == 0)
                bookmark->Info
                    = QStringLiteral("Beschreibung der Seite %1\r\nzweite Zeile").arg(b + 1);
        }
    }
    std::printf(
        "archive: %d folders x %d bookmarks, best of %d runs\n\n", folders, perFolder, repeats);
    std::printf("%-34s %13s %13s %13s %7s  %s\n", "operation", "bytes", "time", "baseline", "ratio",
        "baseline");

    // Saving everything.
    const double saveMs = bestOf(repeats, [&] {
        for (qsizetype i = 0; i < book.colThema.count(); ++i)
            book.colThema.at(i).IsEdit = true;
        book.SaveAllThema();
    });
    const QStringList files = archiveFiles(archive);
    const std::vector<qint64> sizes = sizesOf(files);
    const double writeMs = bestOf(repeats, [&] { writeAtomic(plain, sizes); });
    row("SaveAllThema (all folders)", sum(sizes), saveMs, writeMs, "atomic write");

    // Loading everything.
    if (wanted("load")) {
        const double loadMs = bestOf(repeats, [&] {
            Book loaded(archive);
            loaded.LoadAllThema();
            for (qsizetype i = 0; i < loaded.colThema.count(); ++i)
                loaded.ensureLoaded(loaded.colThema.at(i));
        });
        const double readMs = bestOf(repeats, [&] { readPlain(files); });
        row("LoadAllThema + LoadBookmarks", sum(sizes), loadMs, readMs, "plain read");
    }

    // Exports, each generated and written.
    QList<const Thema *> all;
    for (qsizetype i = 0; i < book.colThema.count(); ++i)
        all << &book.colThema.at(i);
    XmlExports::RssHeader header;
    header.channelTitle = QStringLiteral("Alle Lesezeichen");
    header.channelLink = QStringLiteral("https://www.example.org/");
    const QDateTime now = Clock::now();
    const QString netscapePath = root.filePath(QStringLiteral("export.html"));
    struct Export
    {
        const char *name;
        std::function<QByteArray()> bytes;
        QString path;
    };
    const std::vector<Export> exports = {
        {"export netscape", [&] { return NetscapeExport::archiveBytes(book, now); }, netscapePath},
        {"export xml", [&] { return XmlExports::xmlBytes(all, QStringLiteral("Lesezeichen")); },
            root.filePath(QStringLiteral("export.xml"))},
        {"export rss",
            [&] { return XmlExports::rssBytes(all, header, now, QStringLiteral("RSS")); },
            root.filePath(QStringLiteral("export.rss"))},
        {"export text", [&] { return TextExports::textBytes(all, true, QStringLiteral("Alle")); },
            root.filePath(QStringLiteral("export.txt"))},
        {"export html", [&] { return TextExports::htmlBytes(all, true); },
            root.filePath(QStringLiteral("export.htm"))},
    };
    for (const Export &e : exports) {
        if (!wanted("export") && !(wanted("import") && e.path == netscapePath))
            continue;
        const double ms = bestOf(repeats, [&] { RecordFile::writeBytes(e.path, e.bytes()); });
        const std::vector<qint64> size = {QFileInfo(e.path).size()};
        const double atomic = bestOf(repeats, [&] { writeAtomic(plain, size); });
        row(e.name, size[0], ms, atomic, "atomic write");
        const double base = bestOf(repeats, [&] { writePlain(plain, size); });
        const double buildMs = bestOf(repeats, [&] { e.bytes(); });
        row("  of which building the bytes", size[0], buildMs, base, "plain write");
    }

    // Import of the archive's own bookmark file.
    if (!wanted("import"))
        return 0;
    QFile html(netscapePath);
    html.open(QIODevice::ReadOnly);
    const QByteArray htmlBytes = html.readAll();
    const QString importFolder = root.filePath(QStringLiteral("import"));
    const QString backups = importFolder + QStringLiteral("/backups");
    Book imported(importFolder);
    // One import first, so that every timed one replaces an archive and backs it up.
    NetscapeImport::replaceArchive(imported, NetscapeImport::readFile(netscapePath));
    QDir(backups).removeRecursively();
    double parseMs = 1e300;
    double importMs = 1e300;
    for (int i = 0; i < repeats; ++i) {
        QElapsedTimer timer;
        timer.start();
        {
            const NetscapeImport::Result result = NetscapeImport::readFile(netscapePath);
            parseMs = std::min(parseMs, double(timer.nsecsElapsed()) / 1e6);
            NetscapeImport::replaceArchive(imported, result);
        }
        importMs = std::min(importMs, double(timer.nsecsElapsed()) / 1e6);
        // Each run leaves a backup; removing it is not part of the import.
        QDir(backups).removeRecursively();
    }
    const QStringList importFiles = archiveFiles(importFolder);
    const std::vector<qint64> importSizes = sizesOf(importFiles);
    // The same I/O without the import: reading the file, copying the old archive aside as
    // the backup does, and writing the new one atomically.
    const QString copies = root.filePath(QStringLiteral("copies"));
    double importBaseMs = 1e300;
    for (int i = 0; i < repeats; ++i) {
        QDir(root.path()).mkdir(QStringLiteral("copies"));
        QElapsedTimer timer;
        timer.start();
        readPlain({netscapePath});
        for (const QString &file : importFiles)
            QFile::copy(file, copies + u'/' + QFileInfo(file).fileName());
        writeAtomic(plain, importSizes);
        importBaseMs = std::min(importBaseMs, double(timer.nsecsElapsed()) / 1e6);
        QDir(copies).removeRecursively();
    }
    const auto bareParse = [](const QByteArray &bytes) {
        GumboOptions options = kGumboDefaultOptions;
        options.max_errors = 0;
        GumboOutput *output
            = gumbo_parse_with_options(&options, bytes.constData(), size_t(bytes.size()));
        gumbo_destroy_output(&options, output);
    };
    const double gumboMs = bestOf(repeats, [&] { bareParse(htmlBytes); });
    // What any import has to do: read the file into memory, parse it, and let go of both.
    // Freeing the file's bytes is where the allocator tidies up the parser's many small
    // blocks, so this is part of the floor as well.
    const double readParseMs = bestOf(repeats, [&] {
        QFile file(netscapePath);
        file.open(QIODevice::ReadOnly);
        bareParse(file.readAll());
    });
    row("import (read, parse, save)", htmlBytes.size() + 2 * sum(importSizes), importMs,
        importBaseMs, "read + backup copy + atomic write");
    row("import (read, parse, save)", htmlBytes.size(), importMs, readParseMs,
        "read + bare gumbo parse");
    row("import: reading and parsing only", htmlBytes.size(), parseMs, readParseMs,
        "read + bare gumbo parse");
    row("import: reading and parsing only", htmlBytes.size(), parseMs, gumboMs, "bare gumbo parse");
    return 0;
}
