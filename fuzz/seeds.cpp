// Writes a small valid file of every record format into a folder per harness, as the
// program itself writes them: the starting points of the record harnesses.
#include "core/model/book.h"
#include "core/model/layout.h"
#include "core/model/layoutbook.h"
#include "core/prefs/prefer.h"

#include <QDir>
#include <QFile>

namespace {
void copyInto(const QString &from, const QString &folder, const QString &name)
{
    QDir().mkpath(folder);
    QFile::remove(folder + u'/' + name);
    if (!QFile::copy(from, folder + u'/' + name))
        qFatal("cannot write seed %s", qPrintable(name));
}

Bookmark bookmark(qint16 nr, const QString &title, const QString &url, const QString &info)
{
    Bookmark b;
    b.Nr = nr;
    b.Titel = title;
    b.URL = url;
    b.Info = info;
    b.Toolbar = ArchiveFiles::True;
    return b;
}

FensterInfo window(const QString &title, const QString &url, float x)
{
    FensterInfo w;
    w.Titel = title;
    w.URL = url;
    w.x = x;
    w.y = 120;
    w.Breite = 9000;
    w.Hoehe = 6000;
    w.WindowState = 2;
    return w;
}
} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        qFatal("usage: fuzz_seeds SCRATCH_FOLDER SEEDS_FOLDER");
    const QString scratch = QString::fromLocal8Bit(argv[1]);
    const QString seeds = QString::fromLocal8Bit(argv[2]);
    QDir(scratch).removeRecursively();
    QDir().mkpath(scratch);

    Prefer prefs;
    prefs.setHomeUrl(QStringLiteral("https://www.example.org/start?q=ä"));
    prefs.SavePref(scratch + QStringLiteral("/Pref.vtp"));
    copyInto(scratch + QStringLiteral("/Pref.vtp"), seeds + QStringLiteral("/prefs"),
        QStringLiteral("defaults"));

    Book book(scratch);
    for (qint16 n = 1; n <= 3; ++n) {
        Thema folder(scratch);
        folder.Nr = n;
        folder.Sequenz = book.GetNewKey();
        folder.FileName = QString::number(n) + QStringLiteral(".bkm");
        folder.initDirName(n == 2 ? QStringLiteral("Bücher – neu") : QStringLiteral("Folder"));
        folder.colBookmark.emplace();
        folder.colBookmark->add(folder.bookmarkKey(1),
            bookmark(1, QStringLiteral("Wetter <FEED />"), QStringLiteral("https://a.example/"),
                QStringLiteral("two\r\nlines")));
        folder.colBookmark->add(folder.bookmarkKey(2),
            bookmark(2, QStringLiteral("Zürich"), QStringLiteral("file:///::{20D04FE0}"), {}));
        folder.IsEdit = true;
        book.colThema.add(Book::folderKey(n), std::move(folder));
    }
    book.SaveAllThema();
    copyInto(scratch + QStringLiteral("/Book.bkm"), seeds + QStringLiteral("/bookindex"),
        QStringLiteral("three-folders"));
    copyInto(scratch + QStringLiteral("/2.bkm"), seeds + QStringLiteral("/folder"),
        QStringLiteral("two-bookmarks"));

    LayoutBook layouts(scratch);
    for (int n = 0; n < 2; ++n) {
        LayoutItem item(scratch);
        item.colFensterInfo
            = {window(QStringLiteral("Start"), QStringLiteral("https://b.example/"), 0),
                window(QStringLiteral("Nachrichten"), QStringLiteral("https://c.example/n"), 4500)};
        layouts.AddLayout(std::move(item), QStringLiteral("Layout ") + QString::number(n),
            QStringLiteral("Morgens"), 0);
    }
    layouts.SaveAllLayouts();
    copyInto(scratch + QStringLiteral("/WLBook.vtp"), seeds + QStringLiteral("/layoutindex"),
        QStringLiteral("two-layouts"));
    copyInto(scratch + QStringLiteral("/WL1.nlt"), seeds + QStringLiteral("/layoutfile"),
        QStringLiteral("two-windows"));

    WindowDescription first, second;
    first.address = QStringLiteral("https://d.example/");
    first.caption = QStringLiteral("Feed <FEED />");
    first.width = 8000;
    second.address = QStringLiteral("about:blank");
    second.windowState = 1;
    Layout::SaveLayout(scratch + QStringLiteral("/Windows.wlt"), {first, second});
    copyInto(scratch + QStringLiteral("/Windows.wlt"), seeds + QStringLiteral("/layoutexport"),
        QStringLiteral("two-windows"));
    return 0;
}
