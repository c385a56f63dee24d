#include "core/exchange/netscapeexport.h"
#include "core/model/bookediting.h"
#include "recordbytes.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {
const QDateTime moment(QDate(2004, 10, 5), QTime(14, 3, 22));
// 5 October 2004 14:03:22 as local wall-clock seconds since 1970.
const QByteArray stamp = "1096985002";
const QByteArray head = "<!DOCTYPE NETSCAPE-Bookmark-file-1>\r\n"
                        "<!--This is an automatically generated file.It will be read and "
                        "overwritten. Do Not Edit! -->\r\n"
                        "<Title>Bookmarks</Title>\r\n"
                        "<H1>Bookmarks (5. Oct 2004, 14:03:22)</H1>";
} // namespace

class NetscapeExportTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void timestampIsLocalWallClockSeconds()
    {
        QCOMPARE(NetscapeExport::timestamp(QDateTime(QDate(1970, 1, 2), QTime(0, 0, 1))), 86401);
        QCOMPARE(NetscapeExport::timestamp(moment), stamp.toLongLong());
    }

    void emptyArchiveHasOnlyTheFixedLines()
    {
        QTemporaryDir dir;
        Book book(dir.path());
        QCOMPARE(NetscapeExport::archiveBytes(book, moment), head + "<DL>\r\n</DL>\r\n");
    }

    void archiveIsWrittenRawWithConvertedDescriptions()
    {
        QTemporaryDir dir;
        Book book(dir.path());
        Thema *news = BookEditing::addFolder(book, u"Nachrichten & \"Mehr\""_s, 0);
        BookEditing::addFolder(book, u"Leer"_s, 1)->colBookmark.reset();
        BookEditing::addBookmark(book, *news, u"<FEED />Heise"_s,
            u"https://www.heise.de/rss/heise.rdf"_s, BookEditing::Duplicates::Ask);
        Bookmark *described = BookEditing::addBookmark(book, *news, u"Zeit <online>"_s,
            u"https://zeit.de/?a=1&b=2"_s, BookEditing::Duplicates::Ask)
                                  .bookmark;
        described->Info = u"a\r\nb\r\n"_s;

        const QByteArray expected = head
            + "<DL>\r\n"
              "<DT><H3 FOLDED ADD_DATE=\""
            + stamp
            + "\">Nachrichten & \"Mehr\"</H3><DL><P>\r\n<DT><A "
              "HREF=\"https://www.heise.de/rss/heise.rdf\" ADD_DATE=\""
            + stamp + "\" LAST_VISIT=\"" + stamp + "\" LAST_MODIFIED=\"" + stamp
            + "\"><FEED />Heise</A>\r\n<DT><A HREF=\"https://zeit.de/?a=1&b=2\" ADD_DATE=\"" + stamp
            + "\" LAST_VISIT=\"" + stamp + "\" LAST_MODIFIED=\"" + stamp
            + "\">Zeit <online></A>\r\n<DD>a\r<BR>\r\nb\r\r\n</DL><P>\r\n"
              "<DT><H3 FOLDED ADD_DATE=\""
            + stamp + "\">Leer</H3><DL><P>\r\n</DL><P>\r\n</DL>\r\n";
        QCOMPARE(NetscapeExport::archiveBytes(book, moment), expected);

        const QString path = dir.filePath(u"out.html"_s);
        QString error;
        QVERIFY(NetscapeExport::writeArchive(path, book, moment, &error));
        QCOMPARE(RecordBytes::readFile(path), expected);
    }

    void folderExportLacksTheOuterList()
    {
        QTemporaryDir dir;
        Book book(dir.path());
        Thema *folder = BookEditing::addFolder(book, u"Ümläute"_s, 0);
        BookEditing::addBookmark(
            book, *folder, u"Straße"_s, u"file:///home/"_s, BookEditing::Duplicates::Ask)
            .bookmark->Info
            = u"eine Zeile"_s;
        const QByteArray expected = head + "\r\n<DT><H3 FOLDED ADD_DATE=\"" + stamp + "\">"
            + u"Ümläute"_s.toUtf8() + "</H3><DL><P>\r\n<DT><A HREF=\"file:///home/\" ADD_DATE=\""
            + stamp + "\" LAST_VISIT=\"" + stamp + "\" LAST_MODIFIED=\"" + stamp + "\">"
            + u"Straße"_s.toUtf8() + "</A>\r\n<DD>eine Zeile\r\n</DL><P>\r\n";
        QCOMPARE(NetscapeExport::folderBytes(*folder, moment), expected);
    }
};

QTEST_GUILESS_MAIN(NetscapeExportTest)
#include "netscapeexport_test.moc"
