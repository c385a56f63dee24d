#include "core/model/layoutbook.h"
#include "core/model/layoutfit.h"
#include "core/model/layouttreemodel.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {
FensterInfo window(const QString &title, const QString &url)
{
    FensterInfo info;
    info.Titel = title;
    info.URL = url;
    info.Breite = 4000;
    info.Hoehe = 3000;
    return info;
}
QStringList names(const LayoutTreeModel &model)
{
    QStringList shown;
    for (int i = 0; i < model.rowCount(); ++i)
        shown << model.index(i, 0).data().toString();
    return shown;
}
} // namespace

class LayoutTreeModelTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void layoutsShowTheirWindowsAndEveryChangeIsSaved()
    {
        QTemporaryDir dir;
        LayoutBook book(dir.path());
        LayoutTreeModel model(book);
        QVERIFY(!model.reload());
        const QModelIndex news = model.addLayout({window(u"Nachrichten"_s, u"https://a.example/"_s),
                                                     window({}, u"https://b.example/"_s)},
            u"Zeitung"_s, u"Morgens"_s);
        model.addLayout({window(u"Wetter"_s, u"https://w.example/"_s)}, u"ärger"_s, {});
        model.addLayout({}, u"Arbeit"_s, {});
        QCOMPARE(model.problem(), QString());
        QCOMPARE(news.data(Qt::ToolTipRole).toString(), u"Morgens"_s);
        QCOMPARE(model.rowCount(news), 2);
        // A window without a title shows its address.
        const QModelIndex untitled = model.index(1, 0, news);
        QCOMPARE(untitled.data().toString(), u"https://b.example/"_s);
        QCOMPARE(model.parent(untitled), news);
        QCOMPARE(model.windowAt(untitled)->URL, u"https://b.example/"_s);
        QCOMPARE(model.layoutAt(untitled)->LayoutName, u"Zeitung"_s);

        // Sorted as read: case and accents aside.
        QVERIFY(model.sortByName());
        QCOMPARE(names(model), (QStringList {u"Arbeit"_s, u"ärger"_s, u"Zeitung"_s}));
        QVERIFY(model.setProperties(model.index(1, 0), u"Büro"_s, u"Werktags"_s));

        // What the tree shows is what the files hold.
        LayoutBook reread(dir.path());
        LayoutTreeModel again(reread);
        QVERIFY(again.reload());
        QCOMPARE(names(again), (QStringList {u"Arbeit"_s, u"Büro"_s, u"Zeitung"_s}));
        QCOMPARE(again.index(1, 0).data(Qt::ToolTipRole).toString(), u"Werktags"_s);
        QCOMPARE(again.rowCount(again.index(2, 0)), 2);

        // Deleting through a window node removes its layout and the layout's file.
        const QString file = dir.filePath(reread.colLayout.at(2).FileName);
        QVERIFY(QFile::exists(file));
        QVERIFY(again.deleteLayout(again.index(0, 0, again.index(2, 0))));
        QVERIFY(!QFile::exists(file));
        QVERIFY(again.reload());
        QCOMPARE(names(again), (QStringList {u"Arbeit"_s, u"Büro"_s}));
    }

    void unwritableArchiveIsReportedAndKeptInTheTree()
    {
        QTemporaryDir dir;
        LayoutBook book(dir.path() + u"/missing/folder"_s);
        LayoutTreeModel model(book);
        model.addLayout({window(u"A"_s, u"https://a.example/"_s)}, u"Eins"_s, {});
        QVERIFY(!model.problem().isEmpty());
        QCOMPARE(names(model), QStringList {u"Eins"_s});
    }

    void layoutIsFittedIntoTheArea_data()
    {
        QTest::addColumn<QList<QRect>>("saved");
        QTest::addColumn<QSize>("area");
        QTest::addColumn<QList<QRect>>("placed");
        const QSize area(1000, 600);
        QTest::newRow("fits: kept exactly") << QList<QRect> {{10, 20, 400, 300},
            {500, 0, 500, 600}} << area << QList<QRect> {{10, 20, 400, 300}, {500, 0, 500, 600}};
        QTest::newRow("twice as large: halved as a whole") << QList<QRect> {{0, 0, 1000, 1200},
            {1000, 0, 1000, 600}} << area << QList<QRect> {{0, 0, 500, 600}, {500, 0, 500, 300}};
        QTest::newRow("wider only: the width ratio scales both ways")
            << QList<QRect> {{0, 0, 2000, 200}} << area << QList<QRect> {{0, 0, 1000, 100}};
        QTest::newRow("left of the area: moved in")
            << QList<QRect> {{-300, -50, 400, 300}} << area << QList<QRect> {{0, 0, 400, 300}};
        QTest::newRow("far off, small: scaled, then still inside")
            << QList<QRect> {{0, 0, 100, 100}, {30000, 100, 50, 50}} << area
            << QList<QRect> {{0, 0, 3, 3}, {998, 3, 2, 2}};
        QTest::newRow("empty window: one pixel, inside")
            << QList<QRect> {{50, 50, 0, 0}} << area << QList<QRect> {{50, 50, 1, 1}};
        QTest::newRow("no area yet: left alone")
            << QList<QRect> {{0, 0, 2000, 2000}} << QSize() << QList<QRect> {{0, 0, 2000, 2000}};
    }

    void layoutIsFittedIntoTheArea()
    {
        QFETCH(QList<QRect>, saved);
        QFETCH(QSize, area);
        QFETCH(QList<QRect>, placed);
        const QList<QRect> fitted = LayoutFit::fitInto(saved, area);
        QCOMPARE(fitted, placed);
        if (!area.isEmpty()) {
            for (const QRect &window : fitted)
                QVERIFY(QRect(QPoint(0, 0), area).contains(window));
        }
    }
};

QTEST_GUILESS_MAIN(LayoutTreeModelTest)
#include "layouttreemodel_test.moc"
