#include "core/model/historyitem.h"
#include "core/model/uniqsortstrcollection.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// The addresses in list order, separated by '|'.
QString urls(const QList<HistoryItem> &items)
{
    QStringList out;
    for (const HistoryItem &item : items)
        out.append(item.URL());
    return out.join(u'|');
}

QDateTime at(int hour, int minute = 0)
{
    return QDateTime(QDate(2004, 3, 1), QTime(hour, minute));
}

} // namespace

class CollectionsTest final : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void addRefusesCaseVariantUntilExactModeIsChosen()
    {
        UniqSortStrCollection c;
        QVERIFY(c.Add(u"abc"_s));
        QVERIFY(!c.Add(u"ABC"_s));
        QVERIFY(c.FindString(u"aBc"_s, 0));

        // Exact mode stays in force for later additions.
        QVERIFY(!c.FindString(u"ABC"_s, 1));
        QVERIFY(c.Add(u"ABC"_s));
        QCOMPARE(c.SortedStrCollection().join(u'|'), u"ABC|abc"_s);

        // Any mode other than 1 goes back to the case-blind comparison.
        QVERIFY(c.FindString(u"Abc"_s, 7));
        QVERIFY(!c.Add(u"Abc"_s));
    }

    void caseBlindSearchMissesVariantsOffItsOrdinalPath()
    {
        // Sorted ordinally: B, a, c. The search for "b" passes "a" and "c" only.
        UniqSortStrCollection c;
        QVERIFY(c.Add(u"B"_s));
        QVERIFY(c.Add(u"a"_s));
        QVERIFY(c.Add(u"c"_s));
        QVERIFY(!c.FindString(u"b"_s, 0));
        QVERIFY(c.Add(u"b"_s));
        QCOMPARE(c.SortedStrCollection().join(u'|'), u"B|a|b|c"_s);
    }

    void randomAdditionsStaySortedUniqueAndComplete()
    {
        QRandomGenerator random(20040301);
        const QString alphabet = u"aAbBzZ09/:.-_äÄ"_s;
        for (int round = 0; round < 20; ++round) {
            // Empty strings and duplicates are refused; an empty collection holds nothing.
            UniqSortStrCollection c;
            QVERIFY(!c.FindString(u"a"_s, 0));
            QVERIFY(!c.FindString(QString(), 1));
            QSet<QString> expected;
            QStringList arrival;
            for (int i = 0; i < 300; ++i) {
                QString s;
                const int length = random.bounded(0, 5);
                for (int k = 0; k < length; ++k)
                    s.append(alphabet.at(random.bounded(int(alphabet.size()))));
                const bool isNew = !s.isEmpty() && !expected.contains(s);
                QCOMPARE(c.Add(s), isNew);
                if (isNew) {
                    expected.insert(s);
                    arrival.append(s);
                }
                QCOMPARE(c.FindString(s, 1), !s.isEmpty());
            }
            QCOMPARE(c.StrCollection(), arrival);
            QStringList sorted(expected.cbegin(), expected.cend());
            std::sort(sorted.begin(), sorted.end(), [](const QString &a, const QString &b) {
                return QString::compare(a, b, Qt::CaseSensitive) < 0;
            });
            QCOMPARE(c.SortedStrCollection(), sorted);
            QCOMPARE(c.Count(), int(expected.size()));
        }
    }

    void equalityFollowsTheReceiversSortKeyAndLetterCase()
    {
        HistoryItem first(u"http://x/"_s, u"Title"_s, at(10));
        HistoryItem second;
        second.SetItem(u"http://x/"_s, u"title"_s, at(11));
        first.setSortSel(0);
        QVERIFY(first.isEqual(second));
        first.setSortSel(1);
        QVERIFY(!first.isEqual(second));
        second.setTitle(u"Title"_s);
        QVERIFY(first.isEqual(second));
        first.setSortSel(2);
        QVERIFY(!first.isEqual(second));
        second.setUrlDate(at(10));
        QVERIFY(first.isEqual(second));
    }

    void sortedHistoryRunsNewestFirstByDefault()
    {
        QList<HistoryItem> items {
            HistoryItem(u"ten"_s, u"t"_s, at(10)),
            HistoryItem(u"eleven"_s, u"t"_s, at(11)),
            HistoryItem(u"nine"_s, u"t"_s, at(9)),
            HistoryItem(u"eleven again"_s, u"t"_s, at(11)),
        };
        QVERIFY(items.at(0).standsAfter(items.at(1)));
        QVERIFY(!items.at(1).standsAfter(items.at(0)));
        QVERIFY(!items.at(1).standsAfter(items.at(3)));
        sortHistory(items);
        // Visits of the same moment keep their order.
        QCOMPARE(urls(items), u"eleven|eleven again|ten|nine"_s);
    }

    void sortedHistoryRunsAscendingOrdinallyByTitleOrAddress()
    {
        QList<HistoryItem> items {
            HistoryItem(u"http://b/"_s, u"apple"_s, at(1)),
            HistoryItem(u"http://A/"_s, u"Banana"_s, at(2)),
            HistoryItem(u"http://a/"_s, u"banana"_s, at(3)),
        };
        sortHistory(items, HistoryItem::SortByTitle);
        QCOMPARE(urls(items), u"http://A/|http://b/|http://a/"_s);
        sortHistory(items, HistoryItem::SortByUrl);
        QCOMPARE(urls(items), u"http://A/|http://a/|http://b/"_s);
        // An unknown key sorts by date, newest first.
        sortHistory(items, 9);
        QCOMPARE(urls(items), u"http://a/|http://A/|http://b/"_s);
        QCOMPARE(items.first().SortSel(), HistoryItem::SortByDate);
        for (int outside : {3, -1, 65536}) {
            items.first().setSortSel(outside);
            QCOMPARE(items.first().SortSel(), HistoryItem::SortByDate);
        }
    }
};

QTEST_GUILESS_MAIN(CollectionsTest)
#include "collections_test.moc"
