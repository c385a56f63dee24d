#include "core/exchange/netscapeimport.h"

#include "core/base/appinfo.h"
#include "core/base/clock.h"
#include "core/base/uitexts.h"
#include "core/html/htmlsource.h"
#include "core/html/htmltext.h"
#include "core/html/parsearena.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <gumbo.h>
#include <memory>
#include <vector>

namespace NetscapeImport {

namespace {
bool isElement(const GumboNode *node)
{
    return node->type == GUMBO_NODE_ELEMENT || node->type == GUMBO_NODE_TEMPLATE;
}

bool isBlankText(const GumboNode *node)
{
    return node->type == GUMBO_NODE_WHITESPACE;
}

// The first child that counts: white-space text between tags is not one.
const GumboNode *firstChild(const GumboNode *element)
{
    const GumboVector &children = element->v.element.children;
    for (unsigned int i = 0; i < children.length; ++i) {
        const auto *child = static_cast<const GumboNode *>(children.data[i]);
        if (!isBlankText(child))
            return child;
    }
    return nullptr;
}

bool hasTag(const GumboNode *node, GumboTag tag)
{
    return node && isElement(node) && node->v.element.tag == tag;
}

const GumboNode *bodyOf(const GumboOutput *output)
{
    const GumboNode *html = output->root;
    if (!html || !isElement(html))
        return nullptr;
    const GumboVector &children = html->v.element.children;
    for (unsigned int i = 0; i < children.length; ++i) {
        const auto *child = static_cast<const GumboNode *>(children.data[i]);
        if (hasTag(child, GUMBO_TAG_BODY))
            return child;
    }
    return nullptr;
}

// The elements below the body in document order, each with the position of its last
// descendant, so that "all descendants of E" is a range of this list.
struct ElementList
{
    std::vector<const GumboNode *> nodes;
    std::vector<int> lastDescendant;
};

ElementList flatten(const GumboNode *body)
{
    ElementList list;
    struct Frame
    {
        const GumboNode *node;
        unsigned int next;
        int index;
    };
    std::vector<Frame> stack {{body, 0, -1}};
    while (!stack.empty()) {
        Frame &frame = stack.back();
        const GumboVector &children = frame.node->v.element.children;
        if (frame.next >= children.length) {
            if (frame.index >= 0)
                list.lastDescendant[size_t(frame.index)] = int(list.nodes.size()) - 1;
            stack.pop_back();
            continue;
        }
        const auto *child = static_cast<const GumboNode *>(children.data[frame.next++]);
        if (!isElement(child))
            continue;
        const int index = int(list.nodes.size());
        list.nodes.push_back(child);
        list.lastDescendant.push_back(index);
        stack.push_back({child, 0, index});
    }
    return list;
}

QString attribute(const GumboNode *element, const char *name)
{
    const GumboAttribute *attr = gumbo_get_attribute(&element->v.element.attributes, name);
    return attr ? QString::fromUtf8(attr->value) : QString();
}

// An HTML parser turns the feed mark "<FEED />" at the start of a title into an
// element named "feed" holding the rest of the title. A title with more than the mark
// gets the mark back as text.
bool startsWithFeedMark(const GumboNode *anchor)
{
    const GumboVector &children = anchor->v.element.children;
    if (children.length == 0)
        return false;
    const auto *first = static_cast<const GumboNode *>(children.data[0]);
    if (!isElement(first) || HtmlText::elementName(first) != u"feed")
        return false;
    return children.length > 1 || first->v.element.children.length > 0;
}

Bookmark bookmarkFrom(const ElementList &list, int anchor, int folderEnd)
{
    const GumboNode *node = list.nodes[size_t(anchor)];
    Bookmark bookmark;
    const QString text = HtmlText::innerText(node);
    bookmark.Titel = startsWithFeedMark(node) ? QStringLiteral("<FEED />") + text : text;
    bookmark.URL = normalisedAddress(attribute(node, "href"));
    // The description is the element right after the anchor (and what it holds), and
    // only when that is not the last element of the folder.
    const int next = list.lastDescendant[size_t(anchor)] + 1;
    if (next < folderEnd && hasTag(list.nodes[size_t(next)], GUMBO_TAG_DD))
        bookmark.Info = HtmlText::innerText(list.nodes[size_t(next)]);
    bookmark.Toolbar = ArchiveFiles::True;
    bookmark.Adresszeile = ArchiveFiles::True;
    return bookmark;
}

// Destroys the parse with the options (and so the memory) it was made with.
struct GumboDeleter
{
    const GumboOptions *options;
    void operator()(GumboOutput *output) const { gumbo_destroy_output(options, output); }
};
} // namespace

qint64 Result::bookmarkCount() const
{
    qint64 count = 0;
    for (const ImportedFolder &folder : folders)
        count += folder.bookmarks.size();
    return count;
}

QString normalisedAddress(const QString &href)
{
    QString url = href.trimmed();
    url.remove(u'\t');
    url.remove(u'\n');
    url.remove(u'\r');
    if (url.startsWith(QStringLiteral("file:///::")))
        url = url.mid(8).replace(u'/', u'\\');
    return url;
}

Result parse(const QByteArray &bytes, const Limits &limits, const Progress &progress)
{
    Result result;
    switch (HtmlSource::fits(bytes, limits.maxFileBytes, limits.maxElements, limits.maxNesting)) {
    case HtmlSource::Fit::TooLarge:
        result.status = Result::TooLarge;
        return result;
    case HtmlSource::Fit::TooDeep:
        result.status = Result::TooDeep;
        return result;
    case HtmlSource::Fit::Fits:
        break;
    }
    const QByteArray utf8 = HtmlSource::toUtf8(bytes, &result.encoding);

    ParseArena arena;
    GumboOptions options = kGumboDefaultOptions;
    options.max_errors = 0; // errors are not needed, and recording them costs a lot
    options.allocator = &ParseArena::allocateIn;
    options.deallocator = &ParseArena::deallocateIn;
    options.userdata = &arena;
    const std::unique_ptr<GumboOutput, GumboDeleter> output(
        gumbo_parse_with_options(&options, utf8.constData(), size_t(utf8.size())),
        GumboDeleter {&options});
    const GumboNode *body = output ? bodyOf(output.get()) : nullptr;
    if (!body) {
        result.status = Result::NoBody;
        return result;
    }

    const ElementList list = flatten(body);
    const int count = int(list.nodes.size());
    std::vector<int> anchors;
    for (int i = 0; i < count; ++i) {
        if (hasTag(list.nodes[size_t(i)], GUMBO_TAG_A))
            anchors.push_back(i);
    }
    // Bookmarks of anchors that several nested folders share are built once.
    std::vector<std::unique_ptr<Bookmark>> built(anchors.size());
    std::vector<int> openFolders; // last descendants of the folders around position i
    qint64 total = 0;
    for (int i = 0; i < count; ++i) {
        while (!openFolders.empty() && openFolders.back() < i)
            openFolders.pop_back();
        const GumboNode *element = list.nodes[size_t(i)];
        if (hasTag(element, GUMBO_TAG_A) && openFolders.empty())
            ++result.anchorsOutsideFolders;
        if (!hasTag(firstChild(element), GUMBO_TAG_H3))
            continue;
        const int end = list.lastDescendant[size_t(i)];
        openFolders.push_back(end);
        if (result.folders.size() >= limits.maxFolders) {
            result.truncated = true;
            continue;
        }
        if (progress && !progress(i, count)) {
            result.status = Result::Cancelled;
            result.folders.clear();
            return result;
        }
        ImportedFolder folder;
        folder.DirName = HtmlText::innerText(firstChild(element));
        folder.Order = qint16(std::min(i + 1, 32767));
        auto from = std::upper_bound(anchors.begin(), anchors.end(), i);
        for (auto it = from; it != anchors.end() && *it <= end; ++it) {
            if (folder.bookmarks.size() >= limits.maxBookmarksPerFolder
                || total >= limits.maxBookmarks) {
                result.truncated = true;
                break;
            }
            std::unique_ptr<Bookmark> &bookmark = built[size_t(it - anchors.begin())];
            if (!bookmark)
                bookmark = std::make_unique<Bookmark>(bookmarkFrom(list, *it, end));
            folder.bookmarks.append(*bookmark);
            folder.bookmarks.last().Nr = qint16(folder.bookmarks.size());
            ++total;
        }
        result.folders.append(std::move(folder));
    }
    if (progress)
        progress(count, count);
    if (result.folders.isEmpty())
        result.status = Result::NoFolder;
    return result;
}

Result readFile(const QString &path, const Limits &limits, const Progress &progress)
{
    Result result;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        result.status = Result::Unreadable;
        result.error = file.errorString();
        return result;
    }
    if (file.size() > limits.maxFileBytes) {
        result.status = Result::TooLarge;
        return result;
    }
    return parse(file.read(limits.maxFileBytes + 1), limits, progress);
}

QString sampleArchivePath()
{
    return AppInfo::sharedFile(QStringLiteral("vtbooksamples.html"));
}

QString backupArchive(const QString &dataFolder, QString *error)
{
    const QDir data(dataFolder);
    // Empty files (an empty index is made on every load) hold nothing to keep.
    const QFileInfoList files = data.entryInfoList({QStringLiteral("*.bkm")}, QDir::Files);
    QStringList worthKeeping;
    for (const QFileInfo &file : files) {
        if (file.size() > 0)
            worthKeeping.append(file.fileName());
    }
    if (worthKeeping.isEmpty())
        return {};
    const QString stamp = Clock::now().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    QString name = QStringLiteral("backups/") + stamp;
    for (int n = 2; data.exists(name); ++n)
        name = QStringLiteral("backups/") + stamp + u'-' + QString::number(n);
    if (!data.mkpath(name)) {
        *error = uiText(2082).arg(data.filePath(name));
        return {};
    }
    const QDir backup(data.filePath(name));
    for (const QString &file : std::as_const(worthKeeping)) {
        if (!QFile::copy(data.filePath(file), backup.filePath(file))) {
            *error = uiText(2083).arg(file, backup.path());
            return {};
        }
    }
    return backup.path();
}

ApplyOutcome replaceArchive(Book &book, const Result &result, const Progress &progress)
{
    ApplyOutcome outcome;
    if (result.folders.isEmpty()) {
        outcome.error = uiText(2084);
        return outcome;
    }
    outcome.backupFolder = backupArchive(book.dataFolder(), &outcome.error);
    if (!outcome.error.isEmpty())
        return outcome;

    KeyedList<Thema> folders;
    folders.reserve(result.folders.size());
    for (qsizetype k = 1; k <= result.folders.size(); ++k) {
        const ImportedFolder &imported = result.folders.at(k - 1);
        Thema folder(book.dataFolder());
        folder.Nr = qint16(k);
        folder.Sequenz = qint32(k);
        folder.FileName = QString::number(k) + QStringLiteral(".bkm");
        folder.initDirName(imported.DirName);
        folder.Order = imported.Order;
        KeyedList<Bookmark> bookmarks;
        bookmarks.reserve(imported.bookmarks.size());
        for (const Bookmark &bookmark : imported.bookmarks)
            bookmarks.add(folder.bookmarkKey(bookmark.Nr), bookmark);
        folder.colBookmark = std::move(bookmarks);
        folder.ItCounter = qint16(imported.bookmarks.size());
        folder.IsEdit = true;
        const FileOutcome saved = folder.SaveBookmarks();
        if (!saved.ok()) {
            outcome.error = saved.error;
            return outcome;
        }
        folders.add(Book::folderKey(folder.Nr), std::move(folder));
        // Once files are being replaced there is no stopping half-way.
        if (progress)
            progress(k, result.folders.size());
    }
    book.colThema = std::move(folders);
    book.ItCounter = qint16(book.colThema.count());
    book.SequenzMax = qint32(book.colThema.count());
    book.IsEdit = true;
    if (!book.SaveAllThema()) {
        outcome.error = book.lastOutcome().error;
        return outcome;
    }
    outcome.ok = true;
    return outcome;
}

} // namespace NetscapeImport
