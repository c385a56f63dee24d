#include "core/model/layout.h"
#include "core/model/layoutbook.h"
#include "recordbytes.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace RecordBytes;

class LayoutTest : public QObject
{
    Q_OBJECT

private slots:
    void missingIndexLoadsNothingAndIsCreated()
    {
        QTemporaryDir dir;
        LayoutBook book(dir.path());
        book.SequenzMax = 5;
        QVERIFY(!book.LoadAllLayouts());
        QCOMPARE(book.SequenzMax, 0);
        QVERIFY(book.IsEmpty());
        QCOMPARE(readFile(dir.filePath(QStringLiteral("WLBook.vtp"))), QByteArray());
    }

    void layoutsAreWrittenAsExactRecordsAndReadBack()
    {
        QTemporaryDir dir;
        LayoutBook book(dir.path());
        book.SequenzMax = 8;
        LayoutItem item;
        FensterInfo first;
        first.Titel = QString(600, u'T');
        first.URL = QStringLiteral("https://www.qt.io/");
        first.x = 1234.5f;
        first.y = 1235.5f;
        first.Breite = -0.5f;
        first.Hoehe = 99999.0f; // beyond 16 bits: held at the edge, never wrapped
        first.WindowState = 2;
        first.ToolbarVisible = 0;
        first.AdressbarVisible = -1;
        item.colFensterInfo = {first, FensterInfo()};
        book.AddLayout(std::move(item), QStringLiteral("Morgens"), QStringLiteral("Zeitungen"), 0);
        QVERIFY(book.SaveAllLayouts());
        QVERIFY(!book.IsEdit);
        QVERIFY(!book.colLayout.at(0).IsEdit);

        QCOMPARE(readFile(dir.filePath(QStringLiteral("WLBook.vtp"))),
            le32(9) + le32(1) + padded("Morgens", 255) + padded("WL9.nlt", 2083)
                + padded("Zeitungen", 1024));
        const QByteArray window1 = le16(1) + le16(1234) + le16(1236) + le16(0) + le16(32767)
            + padded("https://www.qt.io/", 2083) + padded(QByteArray(516, 'T'), 516) + le16(0)
            + le16(-1) + le16(2);
        const QByteArray window2 = le16(2) + le16(0) + le16(0) + le16(0) + le16(0)
            + padded("", 2083) + padded("", 516) + le16(-1) + le16(-1) + le16(0);
        QCOMPARE(readFile(dir.filePath(QStringLiteral("WL9.nlt"))), window1 + window2);

        LayoutBook again(dir.path());
        QVERIFY(again.LoadAllLayouts());
        QCOMPARE(again.SequenzMax, 9);
        QCOMPARE(again.ItCounter, 1);
        const LayoutItem &read = again.colLayout.at(0);
        QCOMPARE(read.LayoutName, QStringLiteral("Morgens"));
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
        book.AddLayout(LayoutItem(), QStringLiteral("A"), {}, 0);
        book.AddLayout(LayoutItem(), QStringLiteral("B"), {}, 0);
        book.AddLayout(LayoutItem(), QStringLiteral("C"), {}, 1);
        QCOMPARE(book.colLayout.at(1).LayoutName, QStringLiteral("C"));
        QCOMPARE(book.colLayout.at(1).FileName, QStringLiteral("WL3.nlt"));
        QVERIFY(book.SaveAllLayouts());
        QVERIFY(QFile::exists(dir.filePath(QStringLiteral("WL3.nlt"))));
        QVERIFY(book.DeleteLayout(2));
        QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("WL3.nlt"))));
        LayoutBook again(dir.path());
        QVERIFY(again.LoadAllLayouts());
        QCOMPARE(again.colLayout.size(), 2);
        QCOMPARE(again.colLayout.at(1).LayoutName, QStringLiteral("B"));
    }

    void layoutFileKeepsEveryWindowDescription()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("arbeit.wlt"));
        WindowDescription feed;
        feed.left = 100.5;
        feed.top = 101.5;
        feed.width = 6000;
        feed.height = -40000; // clamped, not wrapped
        feed.address = QStringLiteral("https://planet.qt.io/rss.xml");
        feed.addressBarVisible = 0;
        feed.toolbarVisible = -1;
        feed.windowState = 1;
        feed.caption = QStringLiteral("Planet Qt<FEED />");
        QVERIFY(Layout::SaveLayout(path, {feed, WindowDescription()}).ok());
        const QByteArray first = le16(1) + le16(100) + le16(102) + le16(6000) + le16(-32768)
            + padded("https://planet.qt.io/rss.xml", 1024) + le16(0) + le16(-1) + le16(1)
            + padded("Planet Qt<FEED />", 516);
        QCOMPARE(readFile(path).left(Layout::RecordLength), first);
        QCOMPARE(readFile(path).size(), 2 * Layout::RecordLength);

        const Layout::ReadResult read = Layout::LoadLayout(QStringLiteral("  ") + path);
        QVERIFY(read.outcome.ok());
        QCOMPARE(read.windows.size(), 2);
        QCOMPARE(read.windows.at(0).caption, feed.caption);
        QCOMPARE(read.windows.at(0).height, -32768.0);
        QCOMPARE(read.windows.at(0).windowState, 1);
    }

    void shortLayoutFileIsMovedAside()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("kaputt.wlt"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(1555, 'x'));
        file.close();
        const Layout::ReadResult read = Layout::LoadLayout(path);
        QVERIFY(read.windows.isEmpty());
        QVERIFY(read.outcome.wasMovedAside());
        QCOMPARE(readFile(read.outcome.movedAsidePath).size(), 1555);
    }
};

QTEST_GUILESS_MAIN(LayoutTest)
#include "layout_test.moc"
