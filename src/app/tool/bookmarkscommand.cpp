#include "app/tool/toolcontext.h"
#include "core/base/clock.h"
#include "core/base/uitexts.h"
#include "core/exchange/bookmarkexport.h"
#include "core/exchange/netscapeexport.h"
#include "core/exchange/netscapeimport.h"
#include "core/exchange/textexports.h"
#include "core/exchange/utf8writer.h"
#include "core/exchange/xmlexports.h"
#include "core/model/bookediting.h"
#include "core/prefs/prefer.h"
#include "core/records/recordfile.h"

#include <QFile>

namespace {
const QString usage = QStringLiteral(
    "usage: bookmarks list\n"
    "       bookmarks add-folder [NAME] | rename-folder OLD NEW | delete-folder NAME\n"
    "       bookmarks add FOLDER TITLE URL [--info TEXT] [--feed] [--no-toolbar]"
    " [--no-address-bar] [--allow-duplicate]\n"
    "       bookmarks delete FOLDER NR | sort [FOLDER]\n"
    "       bookmarks export netscape|xml|rss|text|html FILE [--folder NAME] [--heading TEXT]\n"
    "           [--channel-title T --channel-link L --channel-description D\n"
    "            [--image-url U --image-title T --image-link L]]\n"
    "       bookmarks import FILE [--yes]");

class BookmarksCommand
{
public:
    explicit BookmarksCommand(ToolContext &context)
        : m_context(context)
        , m_book(context.dataFolder)
    { }

    int run()
    {
        ToolContext &c = m_context;
        const QString verb = c.arguments.isEmpty() ? QString() : c.arguments.takeFirst();
        if (verb == u"import")
            return import();
        m_book.LoadAllThema();
        if (const int problem = reportLoad())
            return problem;
        if (verb == u"list" && c.arguments.isEmpty())
            return list();
        if (verb == u"add-folder" && c.arguments.size() <= 1)
            return addFolder();
        if (verb == u"rename-folder" && c.arguments.size() == 2)
            return renameFolder();
        if (verb == u"delete-folder" && c.arguments.size() == 1)
            return deleteFolder();
        if (verb == u"add")
            return add();
        if (verb == u"delete" && c.arguments.size() == 2)
            return remove();
        if (verb == u"sort" && c.arguments.size() <= 1)
            return sort();
        if (verb == u"export")
            return exportTo();
        return c.fail(ToolContext::UsageError, usage);
    }

private:
    int reportLoad()
    {
        const FileOutcome &outcome = m_book.lastOutcome();
        if (outcome.wasMovedAside())
            m_context.err << "vantrell-tool: " << outcome.path
                          << " was not a valid archive file and has been moved to "
                          << outcome.movedAsidePath << Qt::endl;
        if (!outcome.ok())
            return m_context.fail(ToolContext::DataError,
                QStringLiteral("cannot read %1: %2").arg(outcome.path, outcome.error));
        return ToolContext::Success;
    }

    int loadBookmarks(Thema &folder)
    {
        const FileOutcome outcome = m_book.ensureLoaded(folder);
        if (outcome.wasMovedAside())
            m_context.err << "vantrell-tool: " << outcome.path
                          << " was not a valid folder file and has been moved to "
                          << outcome.movedAsidePath << Qt::endl;
        // A refused file name has no path: the message names the folder instead.
        if (!outcome.ok())
            return m_context.fail(ToolContext::DataError,
                QStringLiteral("cannot read folder '%1': %2").arg(folder.DirName(), outcome.error));
        return ToolContext::Success;
    }

    Thema *folderNamed(const QString &name, int *exit)
    {
        Thema *folder = m_book.folderNamed(name);
        if (!folder)
            *exit = m_context.fail(
                ToolContext::DataError, QStringLiteral("there is no folder named '%1'").arg(name));
        else
            *exit = loadBookmarks(*folder);
        return *exit == ToolContext::Success ? folder : nullptr;
    }

    int save()
    {
        if (!m_book.SaveAllThema())
            return m_context.fail(ToolContext::DataError,
                QStringLiteral("cannot write %1: %2")
                    .arg(m_book.lastOutcome().path, m_book.lastOutcome().error));
        return ToolContext::Success;
    }

    int list()
    {
        // Written as UTF-8 bytes a folder at a time, and each folder's bookmarks are let
        // go once listed: a large archive is a few hundred megabytes of records.
        m_context.out.flush();
        QIODevice *device = m_context.out.device();
        Utf8Writer line;
        const auto number = [&line](int n) {
            char digits[12];
            char *at = digits + sizeof digits;
            unsigned int value = n < 0 ? 0u - unsigned(n) : unsigned(n);
            do {
                *--at = char('0' + value % 10);
                value /= 10;
            } while (value > 0);
            if (n < 0)
                *--at = '-';
            line.raw(at, digits + sizeof digits - at);
        };
        int status = ToolContext::Success;
        for (qsizetype i = 0; i < m_book.colThema.count(); ++i) {
            Thema &folder = m_book.colThema.at(i);
            line.ascii("F\t");
            number(folder.Nr);
            line.ascii("\t");
            line.text(folder.DirName());
            line.ascii("\t");
            line.text(folder.FileName);
            line.ascii("\n");
            device->write(line.take());
            const bool wasLoaded = folder.isLoaded();
            // A damaged folder is named and skipped; the others are still listed.
            if (const int problem = loadBookmarks(folder)) {
                status = problem;
                continue;
            }
            for (qsizetype j = 0; j < folder.colBookmark->count(); ++j) {
                const Bookmark &b = folder.colBookmark->at(j);
                line.ascii("B\t");
                number(folder.Nr);
                line.ascii("\t");
                number(b.Nr);
                line.ascii("\t");
                line.text(b.Titel);
                line.ascii("\t");
                line.text(b.URL);
                line.ascii("\t");
                line.text(ToolContext::escaped(b.Info));
                line.ascii("\t");
                number(b.Adresszeile);
                line.ascii("\t");
                number(b.Toolbar);
                line.ascii("\n");
            }
            device->write(line.take());
            if (!wasLoaded)
                folder.colBookmark.reset();
        }
        return status;
    }

    int addFolder()
    {
        QString name = m_context.arguments.value(0);
        if (m_context.arguments.isEmpty()) {
            name = BookEditing::defaultFolderName(m_book);
        } else {
            const auto check = BookEditing::checkFolderName(m_book, nullptr, name);
            if (check != BookEditing::RenameCheck::Accepted)
                return m_context.fail(
                    ToolContext::DataError, BookEditing::renameRefusalText(check, name));
        }
        if (!BookEditing::addFolder(m_book, name, m_book.colThema.count()))
            return m_context.fail(ToolContext::DataError, QStringLiteral("the archive is full"));
        return save();
    }

    int renameFolder()
    {
        Thema *folder = m_book.folderNamed(m_context.arguments.at(0));
        if (!folder)
            return m_context.fail(ToolContext::DataError,
                QStringLiteral("there is no folder named '%1'").arg(m_context.arguments.at(0)));
        const QString name = m_context.arguments.at(1);
        const auto check = BookEditing::renameFolder(m_book, *folder, name);
        if (check != BookEditing::RenameCheck::Accepted)
            return m_context.fail(
                ToolContext::DataError, BookEditing::renameRefusalText(check, name));
        return save();
    }

    int deleteFolder()
    {
        const qsizetype index = m_book.indexOfFolderNamed(m_context.arguments.at(0));
        if (index < 0)
            return m_context.fail(ToolContext::DataError,
                QStringLiteral("there is no folder named '%1'").arg(m_context.arguments.at(0)));
        // The folder that start-up opens (named by its file in the preferences) stays.
        const QString prefsPath = m_context.dataFolder + QStringLiteral("/Pref.vtp");
        if (QFile::exists(prefsPath)) {
            Prefer prefs;
            prefs.LoadPref(prefsPath);
            if (!prefs.GroupFile().isEmpty()
                && prefs.GroupFile().trimmed() == m_book.colThema.at(index).FileName)
                return m_context.fail(ToolContext::DataError, uiText(1039));
        }
        if (!m_book.DeleteThema(qint16(index + 1)))
            return m_context.fail(ToolContext::DataError,
                QStringLiteral("cannot write %1: %2")
                    .arg(m_book.lastOutcome().path, m_book.lastOutcome().error));
        return ToolContext::Success;
    }

    int add()
    {
        ToolContext &c = m_context;
        QString info;
        const bool withInfo = c.takeOption(QStringLiteral("--info"), &info);
        const bool feed = c.takeFlag(QStringLiteral("--feed"));
        const bool noToolbar = c.takeFlag(QStringLiteral("--no-toolbar"));
        const bool noAddressBar = c.takeFlag(QStringLiteral("--no-address-bar"));
        const bool allowDuplicate = c.takeFlag(QStringLiteral("--allow-duplicate"));
        if (c.arguments.size() != 3)
            return c.fail(ToolContext::UsageError, usage);
        int exit = 0;
        Thema *folder = folderNamed(c.arguments.at(0), &exit);
        if (!folder)
            return exit;
        const QString title = (feed ? FeedMark::mark() : QString()) + c.arguments.at(1);
        const auto result = BookEditing::addBookmark(m_book, *folder, title, c.arguments.at(2),
            allowDuplicate ? BookEditing::Duplicates::Allow : BookEditing::Duplicates::Ask);
        switch (result.status) {
        case BookEditing::AddBookmarkResult::Added:
            break;
        case BookEditing::AddBookmarkResult::DuplicateAddress:
            return c.fail(ToolContext::DataError,
                result.question + QStringLiteral(" (--allow-duplicate adds it anyway)"));
        case BookEditing::AddBookmarkResult::FolderFull:
            return c.fail(ToolContext::DataError, QStringLiteral("the folder is full"));
        case BookEditing::AddBookmarkResult::FolderUnreadable:
            return c.fail(ToolContext::DataError, QStringLiteral("the folder cannot be read"));
        }
        if (withInfo)
            result.bookmark->Info = info;
        if (noToolbar)
            result.bookmark->Toolbar = ArchiveFiles::False;
        if (noAddressBar)
            result.bookmark->Adresszeile = ArchiveFiles::False;
        return save();
    }

    int remove()
    {
        int exit = 0;
        Thema *folder = folderNamed(m_context.arguments.at(0), &exit);
        if (!folder)
            return exit;
        bool ok = false;
        const int nr = m_context.arguments.at(1).toInt(&ok);
        const qsizetype index = ok && nr >= 1 && nr <= 32767
            ? folder->colBookmark->indexOf(folder->bookmarkKey(qint16(nr)))
            : -1;
        if (index < 0)
            return m_context.fail(ToolContext::DataError,
                QStringLiteral("folder '%1' has no bookmark %2")
                    .arg(folder->DirName(), m_context.arguments.at(1)));
        BookEditing::removeBookmark(m_book, *folder, index);
        return save();
    }

    int sort()
    {
        if (m_context.arguments.isEmpty()) {
            BookEditing::sortFolders(m_book);
            return save();
        }
        int exit = 0;
        Thema *folder = folderNamed(m_context.arguments.at(0), &exit);
        if (!folder)
            return exit;
        BookEditing::sortBookmarks(m_book, *folder);
        return save();
    }

    int exportTo();
    int import();

    ToolContext &m_context;
    Book m_book;
};

int BookmarksCommand::exportTo()
{
    ToolContext &c = m_context;
    QString folderName, heading;
    const bool oneFolder = c.takeOption(QStringLiteral("--folder"), &folderName);
    c.takeOption(QStringLiteral("--heading"), &heading);
    XmlExports::RssHeader header;
    c.takeOption(QStringLiteral("--channel-title"), &header.channelTitle);
    c.takeOption(QStringLiteral("--channel-link"), &header.channelLink);
    c.takeOption(QStringLiteral("--channel-description"), &header.channelDescription);
    header.withImage = c.takeOption(QStringLiteral("--image-url"), &header.imageUrl);
    c.takeOption(QStringLiteral("--image-title"), &header.imageTitle);
    c.takeOption(QStringLiteral("--image-link"), &header.imageLink);
    static const QStringList formats = {QStringLiteral("netscape"), QStringLiteral("xml"),
        QStringLiteral("rss"), QStringLiteral("text"), QStringLiteral("html")};
    if (c.arguments.size() != 2 || !formats.contains(c.arguments.at(0)))
        return c.fail(ToolContext::UsageError, usage);
    const QString format = c.arguments.at(0);
    const QString path = c.arguments.at(1);

    QList<const Thema *> folders;
    if (oneFolder) {
        int exit = 0;
        const Thema *folder = folderNamed(folderName, &exit);
        if (!folder)
            return exit;
        folders << folder;
    } else {
        for (qsizetype i = 0; i < m_book.colThema.count(); ++i) {
            if (const int problem = loadBookmarks(m_book.colThema.at(i)))
                return problem;
            folders << &m_book.colThema.at(i);
        }
    }
    if (format == u"rss") {
        const XmlExports::RssHeaderCheck check = XmlExports::checkRssHeader(header);
        if (!check.ok())
            return c.fail(ToolContext::UsageError, check.message);
    }

    BookmarkExport::Request request;
    const int formatIndex = int(formats.indexOf(format));
    request.format = BookmarkExport::Format(formatIndex);
    request.folder = oneFolder ? folders.first() : nullptr;
    request.heading = heading;
    request.header = header;
    const QByteArray bytes = BookmarkExport::bytes(m_book, request, Clock::now());
    QString error;
    if (!RecordFile::writeBytes(path, bytes, &error))
        return c.fail(
            ToolContext::DataError, QStringLiteral("cannot write %1: %2").arg(path, error));
    return ToolContext::Success;
}

int BookmarksCommand::import()
{
    ToolContext &c = m_context;
    const bool yes = c.takeFlag(QStringLiteral("--yes"));
    if (c.arguments.size() != 1)
        return c.fail(ToolContext::UsageError, usage);
    const QString path = c.arguments.at(0);
    using NetscapeImport::Result;
    const Result result = NetscapeImport::readFile(path);
    switch (result.status) {
    case Result::Imported:
        break;
    case Result::Unreadable:
        return c.fail(
            ToolContext::DataError, QStringLiteral("cannot read %1: %2").arg(path, result.error));
    case Result::NoBody:
        return c.fail(ToolContext::DataError, QStringLiteral("%1 has no document body").arg(path));
    case Result::NoFolder:
        return c.fail(ToolContext::DataError,
            QStringLiteral(
                "%1 holds no bookmark folder; %2 bookmarks outside folders were not imported")
                .arg(path)
                .arg(result.anchorsOutsideFolders));
    case Result::TooLarge:
        return c.fail(ToolContext::DataError,
            QStringLiteral("%1 is too large to import (too many bytes or elements)").arg(path));
    case Result::TooDeep:
        return c.fail(
            ToolContext::DataError, QStringLiteral("%1 is nested too deeply to import").arg(path));
    case Result::Cancelled:
        return ToolContext::DataError;
    }
    const bool hasArchive = m_book.LoadAllThema();
    if (const int problem = reportLoad())
        return problem;
    if (hasArchive && !yes)
        return c.fail(ToolContext::UsageError,
            QStringLiteral(
                "the archive holds %1 folders; --yes replaces them by the file's folders")
                .arg(m_book.colThema.count()));
    const NetscapeImport::ApplyOutcome applied = NetscapeImport::replaceArchive(m_book, result);
    if (!applied.ok)
        return c.fail(ToolContext::DataError, applied.error);
    c.out << "imported " << result.folders.size() << " folders with " << result.bookmarkCount()
          << " bookmarks (" << result.encoding << ")\n";
    if (result.anchorsOutsideFolders > 0)
        c.out << result.anchorsOutsideFolders << " bookmarks outside folders were left out\n";
    if (result.truncated)
        c.out << "the file exceeds the archive's limits; the rest was left out\n";
    if (!applied.backupFolder.isEmpty())
        c.out << "the previous archive files are in " << applied.backupFolder << '\n';
    c.out.flush();
    return ToolContext::Success;
}
} // namespace

int runBookmarksCommand(ToolContext &context)
{
    return BookmarksCommand(context).run();
}
