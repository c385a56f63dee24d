#include "core/browsing/roundtrip.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
QStringList anchor(const char *resolved, const char *written = "x")
{
    return {QString::fromUtf8(resolved), QString::fromUtf8(written), u"http://h/page"_s};
}
} // namespace

class RoundtripTest final : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void pageLinksAreVisitedInPageOrderAndOnlyPages()
    {
        const QList<QStringList> anchors {anchor("http://h/b"), anchor("tel:123"),
            anchor("file:///tmp/d.html"), anchor("ftp://h/x"), anchor("http://h/a")};
        QCOMPARE(Roundtrip::addressesOf(anchors),
            QStringList({u"http://h/b"_s, u"file:///tmp/d.html"_s, u"http://h/a"_s}));
    }

    void pauseHoldsEvenAFailureThenDwellAndTimeOutMoveOn()
    {
        Roundtrip roundtrip({u"a"_s, u"b"_s, u"c"_s}, {20, 20});
        QStringList asked;
        connect(&roundtrip, &Roundtrip::visit, this,
            [&asked](const QString &address) { asked.append(address); });
        roundtrip.start();
        roundtrip.pause();
        roundtrip.loadStarted();
        roundtrip.loadFinished(false);
        QTest::qWait(100);
        QCOMPARE(asked, QStringList {u"a"_s});
        roundtrip.resume(); // the failed address is left at once
        QCOMPARE(asked, QStringList({u"a"_s, u"b"_s}));
        roundtrip.loadStarted();
        roundtrip.loadFinished(true);
        QTRY_COMPARE(asked.size(), 3); // after the dwell time
        roundtrip.loadStarted(); // and never ends: the time-out ends the tour
        QTRY_VERIFY(!roundtrip.isRunning());
        QCOMPARE(roundtrip.visited(), 1);
        QCOMPARE(roundtrip.failed(), 2);
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
