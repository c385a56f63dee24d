#include "core/model/layout.h"
#include "core/model/layoutbook.h"
#include "recordbytes.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

using namespace RecordBytes;

class LayoutTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void missingIndexLoadsNothingAndIsCreated()
    {
        QTemporaryDir dir;
        LayoutBook book(dir.path());
        book.SequenzMax = 5;
        QVERIFY(!book.LoadAllLayouts());
        QCOMPARE(book.SequenzMax, 0);
        QVERIFY(book.IsEmpty());
        QCOMPARE(readFile(dir.filePath(u"WLBook.vtp"_s)), QByteArray());
    }

    void layoutsAreWrittenAsExactRecordsAndReadBack()
    {
        QTemporaryDir dir;
        LayoutBook book(dir.path());
        book.SequenzMax = 8;
        LayoutItem item;
        FensterInfo first;
        first.Titel = QString(600, u'T');
        first.URL = u"https://www.qt.io/"_s;
        first.x = 1234.5f;
        first.y = 1235.5f;
        first.Breite = -0.5f;
        first.Hoehe = 99999.0f; // beyond 16 bits: held at the edge, never wrapped
        first.WindowState = 2;
        first.ToolbarVisible = 0;
        first.AdressbarVisible = -1;
        item.colFensterInfo = {first, FensterInfo()};
        book.AddLayout(std::move(item), u"Morgens"_s, u"Zeitungen"_s, 0);
        QVERIFY(book.SaveAllLayouts());
        QVERIFY(!book.IsEdit);
        QVERIFY(!book.colLayout.at(0).IsEdit);

        QCOMPARE(readFile(dir.filePath(u"WLBook.vtp"_s)),
            le32(9) + le32(1) + padded("Morgens", 255) + padded("WL9.nlt", 2083)
                + padded("Zeitungen", 1024));
        const QByteArray window1 = le16(1) + le16(1234) + le16(1236) + le16(0) + le16(32767)
            + padded("https://www.qt.io/", 2083) + padded(QByteArray(516, 'T'), 516) + le16(0)
            + le16(-1) + le16(2);
        const QByteArray window2 = le16(2) + le16(0) + le16(0) + le16(0) + le16(0)
            + padded("", 2083) + padded("", 516) + le16(-1) + le16(-1) + le16(0);
        QCOMPARE(readFile(dir.filePath(u"WL9.nlt"_s)), window1 + window2);

        LayoutBook again(dir.path());
        QVERIFY(again.LoadAllLayouts());
        QCOMPARE(again.SequenzMax, 9);
        QCOMPARE(again.ItCounter, 1);
        const LayoutItem &read = again.colLayout.at(0);
        QCOMPARE(read.LayoutName, u"Morgens"_s);
        QCOMPARE(read.ItCounter, 2);
        QCOMPARE(read.colFensterInfo.at(0).x, 1234.0f);
        QCOMPARE(read.colFensterInfo.at(0).Titel, QString(516, u'T'));
        QCOMPARE(read.colFensterInfo.at(1).Nr, 2);
        QCOMPARE(again.GetNewKey(), 10);
    }

    void addLayoutInsertsAfterAPositionAndDeleteRemovesItsFile()
    {
        QTemporaryDir dir;
        LayoutBook book(dir.path());
        book.AddLayout(LayoutItem(), u"A"_s, {}, 0);
        book.AddLayout(LayoutItem(), u"B"_s, {}, 0);
        book.AddLayout(LayoutItem(), u"C"_s, {}, 1);
        QCOMPARE(book.colLayout.at(1).LayoutName, u"C"_s);
        QCOMPARE(book.colLayout.at(1).FileName, u"WL3.nlt"_s);
        QVERIFY(book.SaveAllLayouts());
        QVERIFY(QFile::exists(dir.filePath(u"WL3.nlt"_s)));
        QVERIFY(book.DeleteLayout(2));
        QVERIFY(!QFile::exists(dir.filePath(u"WL3.nlt"_s)));
        LayoutBook again(dir.path());
        QVERIFY(again.LoadAllLayouts());
        QCOMPARE(again.colLayout.size(), 2);
        QCOMPARE(again.colLayout.at(1).LayoutName, u"B"_s);
    }

    void layoutFileKeepsEveryWindowDescription()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(u"arbeit.wlt"_s);
        WindowDescription feed;
        feed.left = 100.5;
        feed.top = 101.5;
        feed.width = 6000;
        feed.height = -40000; // clamped, not wrapped
        feed.address = u"https://planet.qt.io/rss.xml"_s;
        feed.addressBarVisible = 0;
        feed.toolbarVisible = -1;
        feed.windowState = 1;
        feed.caption = u"Planet Qt<FEED />"_s;
        QVERIFY(Layout::SaveLayout(path, {feed, WindowDescription()}).ok());
        const QByteArray first = le16(1) + le16(100) + le16(102) + le16(6000) + le16(-32768)
            + padded("https://planet.qt.io/rss.xml", 1024) + le16(0) + le16(-1) + le16(1)
            + padded("Planet Qt<FEED />", 516);
        QCOMPARE(readFile(path).left(Layout::RecordLength), first);
        QCOMPARE(readFile(path).size(), 2 * Layout::RecordLength);

        const Layout::ReadResult read = Layout::LoadLayout(u"  "_s + path);
        QVERIFY(read.outcome.ok());
        QCOMPARE(read.windows.size(), 2);
        QCOMPARE(read.windows.at(0).caption, feed.caption);
        QCOMPARE(read.windows.at(0).height, -32768.0);
        QCOMPARE(read.windows.at(0).windowState, 1);
    }

    void shortLayoutFileIsMovedAside()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(u"kaputt.wlt"_s);
        QVERIFY(writeFile(path, QByteArray(1555, 'x')));
        const Layout::ReadResult read = Layout::LoadLayout(path);
        QVERIFY(read.windows.isEmpty());
        QVERIFY(read.outcome.wasMovedAside());
        QCOMPARE(readFile(read.outcome.movedAsidePath).size(), 1555);
    }
};

QTEST_GUILESS_MAIN(LayoutTest)
#include "layout_test.moc"
