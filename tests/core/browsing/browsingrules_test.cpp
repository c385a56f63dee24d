#include "core/base/uitexts.h"
#include "core/browsing/linkstoopen.h"
#include "core/browsing/newwindowpolicy.h"
#include "core/browsing/usercommand.h"
#include "core/browsing/zoomsteps.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

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
        QTest::newRow("each address once in page order, letter case telling addresses apart")
            << QList<QStringList> {anchor("http://h/b"), anchor("http://h/a"), anchor("http://h/b"),
                   anchor(" http://h/a "), anchor("http://h/B")}
            << QStringList {u"http://h/b"_s, u"http://h/a"_s, u"http://h/B"_s};
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
        // Switches as "open back ref", the allowed site, the user-command mark (none,
        // set 1 s or 3 s before), who asked, and the decision with the mark after it.
        QTest::addColumn<QString>("switches");
        QTest::addColumn<bool>("siteAllowed");
        QTest::addColumn<int>("markAgeMs");
        QTest::addColumn<bool>("userInitiated");
        QTest::addColumn<bool>("background");
        QTest::addColumn<Placement>("placement");
        QTest::addColumn<bool>("keepOpener");
        QTest::addColumn<bool>("popup");
        QTest::addColumn<bool>("markAfter");
        const int none = -1;
        const auto row = [](const char *name) { return &QTest::newRow(name); };
        *row("page's window in front") << u"open"_s << false << none << false << false
                                       << Placement::InFront << false << true << false;
        *row("page's window behind, with a reference")
            << u"open back ref"_s << false << none << false << false << Placement::Behind << true
            << true << false;
        *row("switched off") << u"back ref"_s << false << none << false << false
                             << Placement::Refuse << false << false << false;
        *row("switched off but the site is allowed")
            << u""_s << true << none << false << false << Placement::InFront << false << true
            << false;
        *row("fresh user command refuses and is cleared")
            << u"open ref"_s << false << 1000 << false << false << Placement::Refuse << false
            << false << false;
        *row("allowed site still waits for the user command")
            << u"open"_s << true << 1000 << false << false << Placement::Refuse << false << false
            << false;
        *row("refusal by the switch clears the user command too")
            << u""_s << false << 1000 << false << false << Placement::Refuse << false << false
            << false;
        *row("user command expired after three seconds")
            << u"open"_s << false << 3000 << false << false << Placement::InFront << false << true
            << false;
        *row("user's click opens while switched off, not a popup")
            << u"ref"_s << false << none << true << false << Placement::InFront << true << false
            << false;
        *row("user's click clears a fresh command and opens")
            << u"open back"_s << false << 1000 << true << false << Placement::InFront << false
            << false << false;
        *row("user's middle-click opens behind") << u""_s << false << none << true << true
                                                 << Placement::Behind << false << false << false;
    }

    void newWindowDecision()
    {
        QFETCH(QString, switches);
        QFETCH(bool, siteAllowed);
        QFETCH(int, markAgeMs);
        QFETCH(bool, userInitiated);
        QFETCH(bool, background);
        const QStringList on = switches.split(u' ');
        NewWindowPolicy policy;
        policy.AllowOpenWin = on.contains(u"open"_s);
        policy.AllowWinInBack = on.contains(u"back"_s);
        policy.AllowWinRef = on.contains(u"ref"_s);
        if (siteAllowed)
            policy.AllowedSites.insert(u"popups.example"_s);
        const qint64 now = 1000000;
        UserCommand::clear();
        if (markAgeMs >= 0)
            UserCommand::mark(now - markAgeMs);
        const NewWindowPolicy::Decision decision
            = policy.decide({userInitiated, background, u"https://Popups.Example/page"_s}, now);
        QTEST(decision.placement, "placement");
        QTEST(decision.keepOpener, "keepOpener");
        QTEST(decision.popup, "popup");
        QTEST(UserCommand::pending(now), "markAfter");
    }

    void userCommandEndsWithTheNextNavigation()
    {
        UserCommand::mark();
        QVERIFY(UserCommand::pending());
        UserCommand::navigationDone();
        QVERIFY(!UserCommand::pending());
        QCOMPARE(UserCommandPending, qint16(0));
    }

    void allowedSitesSurviveOnDiskAndIgnoreJunk()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(NewWindowPolicy::allowedSitesFileName());
        NewWindowPolicy saved;
        saved.AllowedSites = {u"a.example"_s, u"b.example"_s};
        QVERIFY(saved.saveAllowedSites(path));
        QFile file(path);
        QVERIFY(file.open(QIODevice::Append));
        file.write("  C.Example  \nwith blank\n" + QByteArray(300, 'x') + "\n\n");
        file.close();
        NewWindowPolicy loaded;
        loaded.loadAllowedSites(path);
        QCOMPARE(
            loaded.AllowedSites, (QSet<QString> {u"a.example"_s, u"b.example"_s, u"c.example"_s}));
        QVERIFY(loaded.allowsSite(QUrl(u"http://C.example:8080/x"_s)));
        QVERIFY(!loaded.allowsSite(QUrl(u"file:///tmp/x.html"_s)));
    }

    void zoomKeysStepBelowAHundredAndStopAtTheEnds()
    {
        const QList<QList<int>> rows = {// current, direction, next
            {100, -1, 90}, {90, -1, 80}, {67, -1, 50}, {50, -1, 50}, {90, 1, 100}, {100, 1, 125},
            {300, 1, 350}, {400, 1, 400}, {110, -1, 100}, {110, 1, 125}, {33, 1, 50},
            {250, 0, 100}};
        for (const QList<int> &row : rows)
            QCOMPARE(ZoomSteps::next(row.at(0), row.at(1)), row.at(2));
        QVERIFY(ZoomSteps::keySteps().size() == ZoomSteps::menuSteps().size() + 5);
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
