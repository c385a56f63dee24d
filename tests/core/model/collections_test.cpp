#include "core/model/historyitem.h"
#include "core/model/uniqsortstrcollection.h"

#include <QRandomGenerator>
#include <QSet>
#include <QTest>

namespace {

QStringList list(std::initializer_list<const char16_t *> strings)
{
    QStringList out;
    for (const char16_t *s : strings)
        out.append(QString::fromUtf16(s));
    return out;
}

QStringList urls(const QList<HistoryItem> &items)
{
    QStringList out;
    for (const HistoryItem &item : items)
        out.append(item.URL());
    return out;
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
    void keepsArrivalOrderBesideOrdinalSortedOrder()
    {
        UniqSortStrCollection c;
        QVERIFY(c.Add(QStringLiteral("b")));
        QVERIFY(c.Add(QStringLiteral("a")));
        QVERIFY(c.Add(QStringLiteral("c")));
        QVERIFY(c.Add(QStringLiteral("alpha")));
        QVERIFY(c.Add(QStringLiteral("Zeta")));
        QCOMPARE(c.StrCollection(), list({u"b", u"a", u"c", u"alpha", u"Zeta"}));
        // Uppercase letters sort before lowercase ones.
        QCOMPARE(c.SortedStrCollection(), list({u"Zeta", u"a", u"alpha", u"b", u"c"}));
        QCOMPARE(c.Count(), 5);
    }

    void refusesEmptyStringsAndExactDuplicates()
    {
        UniqSortStrCollection c;
        QVERIFY(!c.Add(QString()));
        QCOMPARE(c.Count(), 0);
        QVERIFY(c.Add(QStringLiteral("x")));
        QVERIFY(!c.Add(QStringLiteral("")));
        QVERIFY(!c.Add(QStringLiteral("x")));
        QCOMPARE(c.StrCollection(), list({u"x"}));
        QCOMPARE(c.SortedStrCollection(), list({u"x"}));
    }

    void addRefusesCaseVariantUntilExactModeIsChosen()
    {
        UniqSortStrCollection c;
        QVERIFY(c.Add(QStringLiteral("abc")));
        QVERIFY(!c.Add(QStringLiteral("ABC")));
        QVERIFY(c.FindString(QStringLiteral("aBc"), 0));

        // Exact mode stays in force for later additions.
        QVERIFY(!c.FindString(QStringLiteral("ABC"), 1));
        QVERIFY(c.Add(QStringLiteral("ABC")));
        QCOMPARE(c.SortedStrCollection(), list({u"ABC", u"abc"}));

        // Any mode other than 1 goes back to the case-blind comparison.
        QVERIFY(c.FindString(QStringLiteral("Abc"), 7));
        QVERIFY(!c.Add(QStringLiteral("Abc")));
    }

    void caseBlindSearchMissesVariantsOffItsOrdinalPath()
    {
        // Sorted ordinally: B, a, c. The search for "b" passes "a" and "c" only.
        UniqSortStrCollection c;
        QVERIFY(c.Add(QStringLiteral("B")));
        QVERIFY(c.Add(QStringLiteral("a")));
        QVERIFY(c.Add(QStringLiteral("c")));
        QVERIFY(!c.FindString(QStringLiteral("b"), 0));
        QVERIFY(c.Add(QStringLiteral("b")));
        QCOMPARE(c.SortedStrCollection(), list({u"B", u"a", u"b", u"c"}));
    }

    void findStringOnEmptyCollectionAnswersFalse()
    {
        UniqSortStrCollection c;
        QVERIFY(!c.FindString(QStringLiteral("x"), 0));
        QVERIFY(!c.FindString(QStringLiteral("x"), 1));
        QVERIFY(!c.FindString(QString(), 1));
        QCOMPARE(c.Count(), 0);
    }

    void randomAdditionsStaySortedUniqueAndComplete()
    {
        QRandomGenerator random(20040301);
        const QString alphabet = QStringLiteral("aAbBzZ09/:.-_äÄ");
        for (int round = 0; round < 20; ++round) {
            UniqSortStrCollection c;
            c.FindString(QString(), 1);
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

    void sortSelStartsAtDateAndClampsToIt()
    {
        HistoryItem item;
        QCOMPARE(item.SortSel(), HistoryItem::SortByDate);
        item.setSortSel(0);
        QCOMPARE(item.SortSel(), HistoryItem::SortByUrl);
        item.setSortSel(1);
        QCOMPARE(item.SortSel(), HistoryItem::SortByTitle);
        for (int outside : {3, -1, 65536, -65535}) {
            item.setSortSel(0);
            item.setSortSel(outside);
            QCOMPARE(item.SortSel(), HistoryItem::SortByDate);
        }
        QCOMPARE(HistoryItem(QStringLiteral("u"), QStringLiteral("t"), at(9)).SortSel(),
            HistoryItem::SortByDate);
    }

    void equalityFollowsTheReceiversSortKeyAndLetterCase()
    {
        HistoryItem first(QStringLiteral("http://x/"), QStringLiteral("Title"), at(10));
        HistoryItem second;
        second.SetItem(QStringLiteral("http://x/"), QStringLiteral("title"), at(11));
        first.setSortSel(0);
        QVERIFY(first.isEqual(second));
        first.setSortSel(1);
        QVERIFY(!first.isEqual(second));
        second.setTitle(QStringLiteral("Title"));
        QVERIFY(first.isEqual(second));
        first.setSortSel(2);
        QVERIFY(!first.isEqual(second));
        second.setUrlDate(at(10));
        QVERIFY(first.isEqual(second));
    }

    void sortedHistoryRunsNewestFirstByDefault()
    {
        QList<HistoryItem> items {
            HistoryItem(QStringLiteral("ten"), QStringLiteral("t"), at(10)),
            HistoryItem(QStringLiteral("eleven"), QStringLiteral("t"), at(11)),
            HistoryItem(QStringLiteral("nine"), QStringLiteral("t"), at(9)),
            HistoryItem(QStringLiteral("eleven again"), QStringLiteral("t"), at(11)),
        };
        QVERIFY(items.at(0).standsAfter(items.at(1)));
        QVERIFY(!items.at(1).standsAfter(items.at(0)));
        QVERIFY(!items.at(1).standsAfter(items.at(3)));
        sortHistory(items);
        // Visits of the same moment keep their order.
        QCOMPARE(urls(items), list({u"eleven", u"eleven again", u"ten", u"nine"}));
    }

    void sortedHistoryRunsAscendingOrdinallyByTitleOrAddress()
    {
        QList<HistoryItem> items {
            HistoryItem(QStringLiteral("http://b/"), QStringLiteral("apple"), at(1)),
            HistoryItem(QStringLiteral("http://A/"), QStringLiteral("Banana"), at(2)),
            HistoryItem(QStringLiteral("http://a/"), QStringLiteral("banana"), at(3)),
        };
        sortHistory(items, HistoryItem::SortByTitle);
        QCOMPARE(urls(items), list({u"http://A/", u"http://b/", u"http://a/"}));
        sortHistory(items, HistoryItem::SortByUrl);
        QCOMPARE(urls(items), list({u"http://A/", u"http://a/", u"http://b/"}));
        // An unknown key sorts by date, newest first.
        sortHistory(items, 9);
        QCOMPARE(urls(items), list({u"http://a/", u"http://A/", u"http://b/"}));
        QCOMPARE(items.first().SortSel(), HistoryItem::SortByDate);
    }
};

QTEST_GUILESS_MAIN(CollectionsTest)
#include "collections_test.moc"
