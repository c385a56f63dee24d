#include "core/browsing/roundtrip.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace {
QStringList anchor(const char *resolved, const char *written = "x")
{
    return {QString::fromUtf8(resolved), QString::fromUtf8(written), u"http://h/page"_s};
}

// A window that loads every address it is asked for and reports each load as the test
// says: true, false, or nothing (a server that never answers).
struct Window
{
    QStringList visited;
    QList<std::optional<bool>> outcomes;

    void drive(Roundtrip &roundtrip)
    {
        QObject::connect(
            &roundtrip, &Roundtrip::visit, &roundtrip,
            [this, &roundtrip](const QString &address) {
                visited.append(address);
                const std::optional<bool> outcome = outcomes.value(visited.size() - 1, true);
                // An end of an earlier load comes late and must not count for this one.
                roundtrip.loadFinished(false);
                roundtrip.loadStarted();
                if (outcome)
                    roundtrip.loadFinished(*outcome);
            },
            Qt::QueuedConnection);
    }
};
} // namespace

class RoundtripTest final : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void pageLinksAreVisitedInPageOrderOnceAndOnlyPages()
    {
        const QList<QStringList> anchors {anchor("http://h/b"), anchor("http://h/a"),
            anchor("http://h/b"), anchor("mailto:x@h"), anchor("javascript:go()"),
            anchor("http://h/page#top", "#top"), anchor("tel:123"), anchor("https://h/c"),
            anchor("file:///tmp/d.html")};
        QCOMPARE(Roundtrip::addressesOf(anchors),
            QStringList(
                {u"http://h/b"_s, u"http://h/a"_s, u"https://h/c"_s, u"file:///tmp/d.html"_s}));
    }

    void visitsEachAddressDwellsAndCountsFailuresAndTimeOuts()
    {
        Roundtrip roundtrip({u"a"_s, u"b"_s, u"c"_s, u"d"_s}, {30, 150});
        Window window;
        window.outcomes = {true, false, std::nullopt, true};
        window.drive(roundtrip);
        QSignalSpy finished(&roundtrip, &Roundtrip::finished);
        roundtrip.start();
        QVERIFY(finished.wait(5000));
        QCOMPARE(window.visited, QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
        QCOMPARE(roundtrip.visited(), 2);
        QCOMPARE(roundtrip.failed(), 2);
        QVERIFY(!roundtrip.wasStopped());
        QCOMPARE(roundtrip.step(), Roundtrip::Step::Finished);
    }

    void aRefusedDownloadFailsOnlyTheAddressWhoseLoadStarted()
    {
        Roundtrip roundtrip({u"a"_s, u"b"_s}, {10'000, 10'000});
        QStringList asked;
        connect(&roundtrip, &Roundtrip::visit, this,
            [&asked](const QString &address) { asked.append(address); });
        roundtrip.start();
        roundtrip.downloadRefused(); // before its load started: an old page's
        QCOMPARE(roundtrip.failed(), 0);
        roundtrip.loadStarted();
        roundtrip.downloadRefused();
        roundtrip.loadFinished(false); // the same load ending: counted once
        QCOMPARE(roundtrip.failed(), 1);
        QCOMPARE(asked, QStringList({u"a"_s, u"b"_s}));
    }
};

QTEST_GUILESS_MAIN(RoundtripTest)
#include "roundtrip_test.moc"
