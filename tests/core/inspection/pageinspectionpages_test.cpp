#include "core/base/uitexts.h"
#include "core/inspection/picturelist.h"
#include "core/inspection/structurepage.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using Kind = PictureList::Element::Kind;

namespace {
const QString Hostile = u"\"><img src=x onerror=alert(1)><script>alert(2)</script>"_s;

// No markup written in the page's strings arrives as markup.
void verifyNoPageMarkup(const QString &html)
{
    QVERIFY(!html.contains(u"<script"_s, Qt::CaseInsensitive));
    QVERIFY(!html.contains(u"<img src=x"_s));
    QVERIFY(!html.contains(u"href=\"javascript"_s, Qt::CaseInsensitive));
}
} // namespace

class PageInspectionPagesTest final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { UiTexts::load(UiTexts::Language::English); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void srcsetAndCssValuesGiveTheirAddresses()
    {
        const QUrl base(u"http://h/dir/page"_s);
        QCOMPARE(PictureList::srcsetCandidates(u" a.png 1x, /b.png 2x,c, d.png?x=1,2 300w"_s, base),
            QStringList({u"http://h/dir/a.png"_s, u"http://h/b.png"_s, u"http://h/dir/c"_s,
                u"http://h/dir/d.png?x=1,2"_s}));
        QCOMPARE(PictureList::srcsetCandidates(u"e.png (max-width: 2x, 3), f.png"_s, base),
            QStringList({u"http://h/dir/e.png"_s, u"http://h/dir/f.png"_s}));
        QCOMPARE(
            PictureList::cssUrls(
                u"url(\"http://h/a\\\"b.png\"), linear-gradient(red, blue), url(http://h/c.png)"_s),
            QStringList({u"http://h/a\"b.png"_s, u"http://h/c.png"_s}));
    }

    void eachPictureOnceSortedWithTheSizeOfTheLoadedCandidate()
    {
        const QList<PictureList::Element> elements {
            {Kind::Img, u"http://h/z.png"_s, u"y.png 2x"_s, u"http://h/z.png"_s, u"http://h/"_s,
                u"Zed"_s, 10, 20},
            {Kind::Css, u"url(\"http://h/a.png\")"_s, {}, {}, {}, {}, 0, 0},
            {Kind::Img, u"http://h/z.png"_s, {}, {}, {}, u"Other"_s, 10, 20},
            {Kind::Picture, {}, u"Z.png"_s, {}, u"http://h/"_s, {}, 0, 0}};
        const QList<PictureList::Picture> pictures = PictureList::pictures(elements);
        QStringList addresses;
        for (const PictureList::Picture &picture : pictures)
            addresses.append(picture.address);
        QCOMPARE(addresses,
            QStringList({u"http://h/Z.png"_s, u"http://h/a.png"_s, u"http://h/y.png"_s,
                u"http://h/z.png"_s}));
        QCOMPARE(pictures.at(3).alts, QStringList({u"Zed"_s, u"Other"_s}));
        QCOMPARE(pictures.at(3).width, 10);
        QCOMPARE(pictures.at(2).width, 0); // a candidate the engine did not choose
        QCOMPARE(pictures.at(1).kinds, QStringList {u"CSS"_s});
    }

    void headingsNestUnderTheLastHigherRank_data()
    {
        QTest::addColumn<QList<int>>("levels");
        QTest::addColumn<QList<int>>("depths");
        QTest::newRow("skipped ranks")
            << QList<int> {1, 3, 4, 2, 2, 1} << QList<int> {0, 1, 2, 1, 1, 0};
        QTest::newRow("starting deep") << QList<int> {3, 1, 2} << QList<int> {0, 0, 1};
    }

    void headingsNestUnderTheLastHigherRank()
    {
        QFETCH(QList<int>, levels);
        QFETCH(QList<int>, depths);
        DocumentOutline outline;
        outline.html = true;
        for (int level : levels)
            outline.headings.append({level, u"H"_s + QString::number(level)});
        QCOMPARE(StructurePage::headingDepths(outline.headings), depths);
        // Every list the tree opens is closed, whatever the ranks.
        const QString html = StructurePage::render(outline);
        QCOMPARE(html.count(u"<ul>"_s), html.count(u"</ul>"_s));
        QCOMPARE(html.count(u"<li>"_s), html.count(u"</li>"_s));
    }

    void pictureListShowsPageStringsAsText()
    {
        PictureList::Page page {u"http://h/"_s, Hostile, true, 0,
            {{Kind::Img, u"javascript:alert(3)"_s, {}, {}, {}, Hostile, 0, 0},
                {Kind::Img, u"http://h/a.png?\"x='1'"_s, {}, {}, {}, {}, 5, 6}}};
        const QString pictures = PictureList::render(page);
        verifyNoPageMarkup(pictures);
        QVERIFY(pictures.contains(
            u"<a href=\"http://h/a.png?&quot;x=&#39;1&#39;\" target=\"_blank\">"_s));
        QVERIFY(pictures.contains(u">javascript:alert(3)<"_s)); // shown, not linked
    }
};

QTEST_GUILESS_MAIN(PageInspectionPagesTest)
#include "pageinspectionpages_test.moc"
