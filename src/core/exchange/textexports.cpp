#include "core/exchange/textexports.h"

#include "core/base/uitexts.h"
#include "core/exchange/utf8writer.h"

namespace TextExports {

namespace {

QStringView displayTitle(const QString &title)
{
    return FeedMark::isFeedTitle(title) ? QStringView(title).mid(8) : QStringView(title);
}

// Room for the whole listing up front, so that its bytes are not copied while they grow.
qsizetype estimatedSize(const QList<const Thema *> &folders)
{
    qsizetype size = 1024;
    for (const Thema *folder : folders) {
        size += folder->DirName().size() * 3 + 40;
        if (!folder->colBookmark)
            continue;
        for (qsizetype i = 0; i < folder->colBookmark->count(); ++i) {
            const Bookmark &b = folder->colBookmark->at(i);
            size += (b.Titel.size() + b.URL.size() + b.Info.size()) * 9 / 8 + 60;
        }
    }
    return size;
}
} // namespace

QByteArray textBytes(const QList<const Thema *> &folders, bool archive, const QString &heading)
{
    Utf8Writer out(estimatedSize(folders) + heading.size() * 3);
    if (archive && !heading.isEmpty()) {
        out.text(heading);
        out.ascii("\n\n");
    }
    // The labels are encoded once, not once for every bookmark.
    const QByteArray topic = (uiText(1056) + u' ').toUtf8();
    const QByteArray name = (uiText(1301) + u' ').toUtf8();
    const QByteArray url = (uiText(1302) + u' ').toUtf8(); // the label ends in a blank already
    const QByteArray info = (uiText(1303) + u' ').toUtf8();
    const auto label = [&out](const QByteArray &text) { out.raw(text.constData(), text.size()); };
    for (const Thema *folder : folders) {
        label(topic);
        out.text(folder->DirName());
        out.ascii("\r\n\r\n");
        if (folder->colBookmark) {
            for (qsizetype i = 0; i < folder->colBookmark->count(); ++i) {
                const Bookmark &bookmark = folder->colBookmark->at(i);
                if (i > 0)
                    out.ascii("\r\n");
                label(name);
                out.text(displayTitle(bookmark.Titel));
                out.ascii("\r\n");
                label(url);
                out.text(bookmark.URL);
                out.ascii("\r\n");
                label(info);
                out.text(bookmark.Info);
                out.ascii("\r\n");
            }
        }
        out.ascii("\r\n\r\n");
    }
    return out.take();
}

QByteArray htmlBytes(const QList<const Thema *> &folders, bool archive)
{
    Utf8Writer out(estimatedSize(folders));
    if (archive)
        out.ascii("<HTML><TITLE></TITLE><BODY>\r\n");
    else
        out.ascii("<HTML><BODY>\r\n");
    for (const Thema *folder : folders) {
        out.ascii("<H1>");
        out.text(folder->DirName());
        out.ascii("</H1>\r\n");
        if (!folder->colBookmark)
            continue;
        for (qsizetype i = 0; i < folder->colBookmark->count(); ++i) {
            const Bookmark &bookmark = folder->colBookmark->at(i);
            out.ascii("<A HREF='");
            out.text(bookmark.URL);
            out.ascii("'>");
            out.text(displayTitle(bookmark.Titel));
            out.ascii("</A><BR>");
            if (!bookmark.Info.isEmpty()) {
                out.text(bookmark.Info);
                out.ascii("<BR>");
            }
            out.ascii("\r\n");
        }
    }
    out.ascii("</BODY></HTML>\r\n");
    return out.take();
}

} // namespace TextExports
