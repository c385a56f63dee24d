#include "core/base/uitexts.h"
#include "core/browsing/linkstoopen.h"
#include "core/browsing/newwindowpolicy.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

using Placement = NewWindowPolicy::Placement;
Q_DECLARE_METATYPE(NewWindowPolicy::Placement)

namespace {
// An anchor of the page http://h/page: {resolved address, href as written, its document}.
QStringList anchor(const char *resolved, const char *written = "x")
{
    return {QString::fromUtf8(resolved), QString::fromUtf8(written), u"http://h/page"_s};
}
} // namespace

class BrowsingRulesTest final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { UiTexts::load(UiTexts::Language::German); }

    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void linksToOpen_data()
    {
        QTest::addColumn<QList<QStringList>>("anchors");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("script and mail links in any letter case are skipped")
            << QList<QStringList> {anchor("JavaScript:void(0)"), anchor("mailto:a@b"),
                   anchor("MAILTO:c@d"), anchor("  javascript:x"), anchor("http://h/a")}
            << QStringList {u"http://h/a"_s};
        QTest::newRow("links to a place in the same document are skipped") << QList<QStringList> {
            anchor("http://h/page#top", "#top"), anchor("http://h/page#part", "/page#part"),
            anchor("http://h/other#part")} << QStringList {u"http://h/other#part"_s};
        QTest::newRow("each address once, letter case telling addresses apart")
            << QList<QStringList> {anchor("http://h/b"), anchor("http://h/a"), anchor("http://h/b"),
                   anchor(" http://h/a "), anchor("http://h/B")}
            << QStringList {u"http://h/B"_s, u"http://h/a"_s, u"http://h/b"_s};
        QTest::newRow("empty addresses and no anchors give nothing")
            << QList<QStringList> {anchor(""), anchor("   ")} << QStringList {};
    }

    void linksToOpen()
    {
        QFETCH(QList<QStringList>, anchors);
        QFETCH(QStringList, expected);
        QCOMPARE(LinksToOpen::select(anchors), expected);
    }

    void noticeFromSixteenWindowsAndLinks_data()
    {
        QTest::addColumn<int>("windows");
        QTest::addColumn<int>("links");
        QTest::addColumn<bool>("noticeSwitch");
        QTest::addColumn<bool>("asked");
        QTest::newRow("15 links and one window") << 1 << 15 << true << true;
        QTest::newRow("14 links and one window") << 1 << 14 << true << false;
        QTest::newRow("one link and fifteen windows") << 15 << 1 << true << true;
        QTest::newRow("many links, notice switched off") << 1 << 40 << false << false;
        QTest::newRow("no links however many windows") << 30 << 0 << true << false;
    }

    void noticeFromSixteenWindowsAndLinks()
    {
        QFETCH(int, windows);
        QFETCH(int, links);
        QFETCH(bool, noticeSwitch);
        QFETCH(bool, asked);
        QCOMPARE(LinksToOpen::needsNotice(windows, links, noticeSwitch), asked);
    }

    void noticeNamesTheNumberAndAsks()
    {
        const QString text = LinksToOpen::noticeText(15);
        QVERIFY2(text.startsWith(u"Es werden 15 Links geöffnet."_s), qPrintable(text));
        QVERIFY2(text.endsWith(u"verursachen.\n\nAlle Links jetzt öffnen ?"_s), qPrintable(text));
        QVERIFY(!text.contains(u'\r'));
    }

    void newWindowDecision_data()
    {
        QTest::addColumn<bool>("allowOpenWin");
        QTest::addColumn<bool>("allowWinInBack");
        QTest::addColumn<bool>("allowWinRef");
        QTest::addColumn<qint16>("pending");
        QTest::addColumn<bool>("userInitiated");
        QTest::addColumn<Placement>("placement");
        QTest::addColumn<bool>("keepOpener");
        QTest::addColumn<qint16>("pendingAfter");
        const qint16 on = -1;
        QTest::newRow("granted in front") << true << false << false << qint16(0) << false
                                          << Placement::InFront << false << qint16(0);
        QTest::newRow("granted behind") << true << true << false << qint16(0) << false
                                        << Placement::Behind << false << qint16(0);
        QTest::newRow("reference kept") << true << false << true << qint16(0) << false
                                        << Placement::InFront << true << qint16(0);
        QTest::newRow("switched off") << false << true << true << qint16(0) << false
                                      << Placement::Refuse << false << qint16(0);
        QTest::newRow("pending command refused and cleared")
            << true << false << true << on << false << Placement::Refuse << false << qint16(0);
        QTest::newRow("any non-zero pending value counts")
            << true << false << false << qint16(1) << false << Placement::Refuse << false
            << qint16(0);
        QTest::newRow("user click clears the pending command")
            << true << true << false << on << true << Placement::Behind << false << qint16(0);
        QTest::newRow("user click while switched off")
            << false << false << false << on << true << Placement::Refuse << false << qint16(0);
    }

    void newWindowDecision()
    {
        QFETCH(bool, allowOpenWin);
        QFETCH(bool, allowWinInBack);
        QFETCH(bool, allowWinRef);
        QFETCH(qint16, pending);
        QFETCH(bool, userInitiated);
        NewWindowPolicy policy;
        policy.set(NewWindowPolicy::Switch::AllowOpenWin, allowOpenWin);
        policy.set(NewWindowPolicy::Switch::AllowWinInBack, allowWinInBack);
        policy.set(NewWindowPolicy::Switch::AllowWinRef, allowWinRef);
        const NewWindowPolicy::Decision decision = policy.decide(userInitiated, pending);
        QTEST(decision.placement, "placement");
        QTEST(decision.keepOpener, "keepOpener");
        QTEST(pending, "pendingAfter");
    }

    void sizingNeedsItsSwitchAndANormalWindow()
    {
        NewWindowPolicy policy;
        QVERIFY(policy.maySize(false));
        QVERIFY(!policy.maySize(true));
        policy.set(NewWindowPolicy::Switch::AllowResizeWin, false);
        QVERIFY(!policy.isOn(NewWindowPolicy::Switch::AllowResizeWin));
        QVERIFY(!policy.maySize(false));
    }
};

QTEST_GUILESS_MAIN(BrowsingRulesTest)
#include "browsingrules_test.moc"
