#include "core/model/bookediting.h"
#include "core/model/booktreemodel.h"
#include "core/model/historylistmodel.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class BookTreeModelTest : public QObject
{
    Q_OBJECT

private slots:
    // Three folders on disk: a good one, one whose file is gone, one whose file is cut.
    void unreadFoldersOpenLazilyAndDamagedOnesAreMarked()
    {
        QTemporaryDir dir;
        {
            Book book(dir.path());
            for (const char *name : {"Good", "Gone", "Cut"}) {
                Thema *folder = BookEditing::addFolder(book, QLatin1String(name), 3);
                BookEditing::addBookmark(
                    book, *folder, u"<FEED />News"_s, u"http://a/"_s, BookEditing::Duplicates::Ask);
            }
            QVERIFY(book.SaveAllThema());
        }
        QVERIFY(QFile::remove(dir.filePath(u"2.bkm"_s)));
        QFile cut(dir.filePath(u"3.bkm"_s));
        QVERIFY(cut.open(QIODevice::Append));
        cut.write("x");
        cut.close();

        Book book(dir.path());
        BookTreeModel model(book);
        QVERIFY(model.reload());
        const QModelIndex root = model.index(0, 0);
        QCOMPARE(root.data(BookTreeModel::KeyRole).toString(), u"0@"_s);
        QCOMPARE(model.rowCount(root), 3);
        const QModelIndex good = model.index(0, 0, root);
        QCOMPARE(good.data(BookTreeModel::KeyRole).toString(), u"1@"_s);
        // Nothing of a folder is read before the view opens it.
        QVERIFY(!book.colThema.at(0).isLoaded());
        QVERIFY(model.hasChildren(good) && model.canFetchMore(good));
        QCOMPARE(model.rowCount(good), 0);
        model.fetchMore(good);
        QCOMPARE(model.rowCount(good), 1);
        const QModelIndex feed = model.index(0, 0, good);
        QCOMPARE(feed.data().toString(), u"News"_s);
        QCOMPARE(feed.data(BookTreeModel::ImageRole).toString(), u"xml"_s);
        QCOMPARE(feed.data(BookTreeModel::KeyRole).toString(), u"1@1"_s);
        QCOMPARE(model.indexOfKey(u"1@1"_s), feed);
        QCOMPARE(model.parent(feed), good);

        QVERIFY(good.data(BookTreeModel::DamagedRole).toString().isEmpty());
        QVERIFY(!model.index(1, 0, root).data(BookTreeModel::DamagedRole).toString().isEmpty());
        const QModelIndex damaged = model.index(2, 0, root);
        QVERIFY(!damaged.data(BookTreeModel::DamagedRole).toString().isEmpty());
        // Opening the cut folder moves its file aside; the other folders stay.
        model.fetchMore(damaged);
        QCOMPARE(book.movedAsideFiles().size(), 1);
        QCOMPARE(model.rowCount(root), 3);
    }

    void historyRowsShowTheVisitAndCountChecks()
    {
        HistoryListModel model;
        model.refresh({HistoryItem(u"http://a/"_s, u"A"_s, QDateTime({2004, 3, 1}, {9, 5, 3})),
            HistoryItem(u"http://b/"_s, u"B"_s, QDateTime({2024, 12, 31}, {23, 59, 59}))});
        QCOMPARE(model.index(0, HistoryListModel::DateTime).data().toString(),
            u"01.03.2004 - 09:05:03"_s);
        QCOMPARE(model.index(1, HistoryListModel::Check).data(HistoryListModel::TagRole), u" 2"_s);
        QVERIFY(model.setData(model.index(1, 0), Qt::Checked, Qt::CheckStateRole));
        QCOMPARE(model.checkedAddresses(), QStringList {u"http://b/"_s});
        model.setAllChecked(true);
        QCOMPARE(model.checkedCount(), 2);
        model.refresh({});
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(model.checkedCount(), 0);
    }
};

QTEST_GUILESS_MAIN(BookTreeModelTest)
#include "booktreemodel_test.moc"
