#include "core/base/uitexts.h"
#include "core/search/opensearch.h"
#include "core/search/searchenginelist.h"
#include "core/search/searchformfile.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using Status = SearchFormFile::Result::Status;

namespace {
const QUrl base(u"https://example.org/dir/search.html"_s);

SearchEngine engine(const char *machine, const char *group, const char *address, bool checked)
{
    return {
        QString::fromUtf8(machine), QString::fromUtf8(group), QString::fromUtf8(address), checked};
}
} // namespace

class SearchEnginesTest final : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

private slots:
    void initTestCase() { UiTexts::load(UiTexts::Language::German); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void shippedPageGivesTwentyEnginesInTheirGroups()
    {
        const auto result = SearchFormFile::readFile(
            QStringLiteral(VANTRELL_SOURCE_DIR "/resources/search.html"));
        QCOMPARE(result.status, Status::Read);
        QCOMPARE(result.skipped, 0);
        QCOMPARE(result.engines.size(), 20);
        QSet<QString> groups;
        for (const SearchEngine &engine : result.engines) {
            groups.insert(engine.group);
            QVERIFY2(engine.address.startsWith(u"https://"_s), qPrintable(engine.address));
            QCOMPARE(engine.address.count(u"%s"_s), 1);
        }
        QCOMPARE(groups,
            QSet<QString>(
                {u"Web"_s, u"Encyclopaedia"_s, u"Maps"_s, u"Shopping"_s, u"Code"_s, u"News"_s}));
        QCOMPARE(result.engines.at(0),
            engine("DuckDuckGo", "Web", "https://duckduckgo.com/?q=%s", true));
        QCOMPARE(result.engines.at(4),
            engine("Wikipedia (Deutsch)", "Encyclopaedia",
                "https://de.wikipedia.org/w/index.php?title=Spezial%3ASuche&search=%s", true));
    }

    void formsBecomeEnginesByTheirTitleActionAndFields_data()
    {
        QTest::addColumn<QByteArray>("html");
        QTest::addColumn<int>("status");
        QTest::addColumn<QStringList>("engines"); // machine|group|address
        QTest::addColumn<int>("skipped");

        const auto row = [](const char *name, const QByteArray &html, Status status,
                             const QStringList &engines, int skipped = 0) {
            QTest::newRow(name) << html << int(status) << engines << skipped;
        };
        row("relative action, hidden fields in order, query of the action replaced",
            "<fieldset><legend> Nach\n schlagen </legend><form title='A' action='find?x=1#f'>"
            "<input type=hidden name='a b' value='c&d'><input name=q>"
            "<input type=hidden name=z value=1><input type=submit name=go value=Go>"
            "</form></fieldset>",
            Status::Read, {u"A|Nach schlagen|https://example.org/dir/find?a%20b=c%26d&q=%s&z=1"_s});
        row("inner fieldset wins, outside of fieldsets is the other group",
            "<fieldset><legend>Out</legend><fieldset><legend>In</legend>"
            "<form title=A action='https://a/'><input type=search name=q></form></fieldset>"
            "<form title=B action='https://b/' method=GET><input type=text name=s></form>"
            "</fieldset><form title=C action='https://c/'><input name=t></form>",
            Status::Read,
            {u"A|In|https://a/?q=%s"_s, u"B|Out|https://b/?s=%s"_s,
                u"C|Weitere|https://c/?t=%s"_s});
        row("forms that make no engine are left out and counted",
            "<form action='https://a/'><input name=q></form>"
            "<form title=P action='https://a/' method=post><input name=q></form>"
            "<form title=J action='javascript:alert(1)'><input name=q></form>"
            "<form title=F action='ftp://a/'><input name=q></form>"
            "<form title=N action='https://a/'><input type=checkbox name=q><input></form>"
            "<form title=K action='https://k/'><input name=q></form>"
            "<form title=K action='https://other/'><input name=q></form>",
            Status::Read, {u"K|Weitere|https://k/?q=%s"_s}, 6);
        row("no forms at all", "<p>nothing here</p>", Status::NoEngines, {});
        row("empty file", "", Status::NoEngines, {});
        row("binary garbage", QByteArray("\x00\xff\xfe<\x01form\x00", 9) + QByteArray(300, '\x80'),
            Status::NoEngines, {});
        row("nested too deeply", QByteArray("<div>").repeated(5000), Status::TooDeep, {});
        row("too many elements", QByteArray("<br>").repeated(200000), Status::TooLarge, {});
        row("too many bytes", QByteArray(3 * 1024 * 1024, ' '), Status::TooLarge, {});
    }
    void formsBecomeEnginesByTheirTitleActionAndFields()
    {
        QFETCH(QByteArray, html);
        QFETCH(int, status);
        QFETCH(QStringList, engines);
        QFETCH(int, skipped);
        const auto result = SearchFormFile::parse(html, base);
        QCOMPARE(int(result.status), status);
        QStringList found;
        for (const SearchEngine &engine : result.engines)
            found << engine.machine + u'|' + engine.group + u'|' + engine.address;
        QCOMPARE(found, engines);
        QCOMPARE(result.skipped, skipped);
    }

    void manyFormsStopAtTheLimit()
    {
        QByteArray html;
        for (int i = 0; i < 520; ++i)
            html += "<form title=E" + QByteArray::number(i)
                + " action='https://e/'><input name=q></form>";
        const auto result = SearchFormFile::parse(html, base);
        QCOMPARE(result.engines.size(), 500);
        QCOMPARE(result.skipped, 20);
    }

    void badFilesAreToldInWords()
    {
        const QString missing = m_dir.filePath(u"none.html"_s);
        auto result = SearchFormFile::readFile(missing);
        QCOMPARE(result.status, Status::Missing);
        QCOMPARE(result.message(missing), uiText(1510) + u' ' + missing);
        result = SearchFormFile::readFile(m_dir.path());
        QCOMPARE(result.status, Status::Unreadable);
        QCOMPARE(result.message(m_dir.path()), uiText(2600).arg(m_dir.path(), uiText(2605)));
        QVERIFY(SearchFormFile::parse("<p>", base).message(u"x"_s).contains(u"x"_s));
        QVERIFY(SearchFormFile::Result().message(u"x"_s).isEmpty());
    }

    void termIsTrimmedAndPercentEncoded()
    {
        const SearchEngine engine {u"E"_s, u"G"_s, u"https://e/?a=%25s&q=%s"_s, true};
        QCOMPARE(engine.addressFor(u"  Grüße & 100% /x?y#z+ "_s),
            u"https://e/?a=%25s&q=Gr%C3%BC%C3%9Fe%20%26%20100%25%20%2Fx%3Fy%23z%2B"_s);
    }

    void listKeepsChecksAcrossRereadsAndRuns()
    {
        const QString path = m_dir.filePath(u"SearchEngines.ini"_s);
        QFile::remove(path);
        {
            SearchEngineList list(path);
            QSignalSpy checks(&list, &SearchEngineList::checksChanged);
            list.setEngines({engine("A", "Web", "https://a/?q=%s", true),
                engine("B", "Code", "https://b/?q=%s", false),
                engine("C", "Web", "https://c/?q=%s", false)});
            QCOMPARE(list.groups(), QStringList({u"Web"_s, u"Code"_s}));
            QVERIFY(list.setData(
                list.index(1, SearchEngineList::Check), Qt::Checked, Qt::CheckStateRole));
            list.setChecked(0, false);
            list.setChecked(2, true);
            list.setChecked(7, true); // no such row: nothing happens
            QCOMPARE(checks.count(), 4);
            list.setGroupFilter(u"Web"_s);
            QCOMPARE(list.index(1, SearchEngineList::Check).data(Qt::CheckStateRole).toInt(),
                int(Qt::Checked));
            QCOMPARE(list.index(2, SearchEngineList::Machine).data().toString(), u"C"_s);
        }
        SearchEngineList again(path);
        QCOMPARE(again.groupFilter(), u"Web"_s);
        QCOMPARE(again.engines(),
            QList<SearchEngine>({engine("A", "Web", "https://a/?q=%s", false),
                engine("B", "Code", "https://b/?q=%s", true),
                engine("C", "Web", "https://c/?q=%s", true)}));
        QCOMPARE(again.checkedIn(u"Web"_s), QList<SearchEngine>({again.engines().at(2)}));
        QCOMPARE(again.checkedIn(QString()).size(), 2);
        // A changed page: known names keep the user's choice, new ones bring their own.
        again.setEngines({engine("C", "News", "https://c2/?q=%s", false),
            engine("A", "Web", "https://a/?q=%s", true),
            engine("D", "Web", "https://d/?q=%s", true)});
        QCOMPARE(again.engines(),
            QList<SearchEngine>({engine("C", "News", "https://c2/?q=%s", true),
                engine("A", "Web", "https://a/?q=%s", false),
                engine("D", "Web", "https://d/?q=%s", true)}));
    }

    void openSearchDescriptionsGiveAnAddedEngine_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<QString>("expected"); // machine|address, or the error

        const QByteArray head = "<?xml version='1.0'?><OpenSearchDescription "
                                "xmlns='http://a9.com/-/spec/opensearch/1.1/'>";
        QTest::newRow("html url after others, parameters filled")
            << head
                + "<ShortName> Ex  Search </ShortName>"
                  "<Url type='application/rss+xml' template='https://ex/rss?q={searchTerms}'/>"
                  "<Url type='text/html' method='post' template='https://ex/post'/>"
                  "<Url type='text/html' template='https://ex/s?q={searchTerms}&amp;"
                  "p={startPage?}&amp;ie={inputEncoding}&amp;n={count}&amp;x={ex:y?}&amp;"
                  "l={language}'/></OpenSearchDescription>"
            << u"Ex Search|https://ex/s?q=%s&p=&ie=UTF-8&n=20&x=&l=*"_s;
        QTest::newRow("template made a proper address") << head
                + "<ShortName>W</ShortName><Url type='text/html' "
                  "template='http://w/über {searchTerms}'/></OpenSearchDescription>"
                                                        << u"W|http://w/%C3%BCber%20%s"_s;
        const QString unusable = uiText(2613);
        QTest::newRow("no name") << head
                + "<Url type='text/html' template='https://e/?q={searchTerms}'/>"
                  "</OpenSearchDescription>"
                                 << unusable;
        QTest::newRow("no term") << head
                + "<ShortName>N</ShortName><Url type='text/html' "
                  "template='https://e/'/></OpenSearchDescription>"
                                 << unusable;
        QTest::newRow("script address") << head
                + "<ShortName>J</ShortName><Url type='text/html' "
                  "template='javascript:alert({searchTerms})'/></OpenSearchDescription>"
                                        << unusable;
        QTest::newRow("another document") << QByteArray("<html><body>no</body></html>") << unusable;
        QTest::newRow("entities refused")
            << QByteArray("<!DOCTYPE x [<!ENTITY a 'aaaa'>]><OpenSearchDescription/>") << unusable;
        QTest::newRow("too large") << head + QByteArray(300 * 1024, ' ') << uiText(2611);
    }
    void openSearchDescriptionsGiveAnAddedEngine()
    {
        QFETCH(QByteArray, xml);
        QFETCH(QString, expected);
        QString error;
        const std::optional<SearchEngine> engine = OpenSearch::parse(xml, &error);
        QCOMPARE(engine ? engine->machine + u'|' + engine->address : error, expected);
        if (engine) {
            QVERIFY(engine->added);
            QCOMPARE(engine->group, uiText(2612));
        }
        QVERIFY(!OpenSearch::parse("<OpenSearchDescription><ShortName>x", &error));
        QVERIFY(!error.isEmpty());
        QVERIFY(OpenSearch::isDescriptionType(u" Application/OpenSearchDescription+XML"_s));
    }

    void addedEnginesOutliveRereadsOfThePage()
    {
        const QString path = m_dir.filePath(u"added.ini"_s);
        SearchEngineList list(path);
        list.setEngines({engine("A", "Web", "https://a/?q=%s", false)});
        SearchEngine added = engine("X", "Hinzugefügt", "https://x/?q=%s", false);
        added.added = true;
        list.add(added);
        added.checked = true;
        QCOMPARE(list.engines().last(), added);
        list.setEngines({engine("B", "Web", "https://b/?q=%s", false)});
        QCOMPARE(SearchEngineList(path).engines(),
            QList<SearchEngine>({engine("B", "Web", "https://b/?q=%s", false), added}));
        // A page engine of the same name takes its place.
        list.setEngines({engine("X", "Web", "https://x2/?q=%s", false)});
        QCOMPARE(
            list.engines(), QList<SearchEngine>({engine("X", "Web", "https://x2/?q=%s", true)}));
    }

    void damagedListFileLosesOnlyWhatIsUnusable()
    {
        const QString path = m_dir.filePath(u"damaged.ini"_s);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(
            "\x01\x02garbage\n[engines]\nsize=99999999\n1\\machine=A\n1\\address=https://a/?q=%s\n"
            "1\\checked=true\n2\\machine=\n2\\address=https://b/?q=%s\n3\\machine=C\n"
            "3\\address=https://c/\n");
        file.close();
        SearchEngineList list(path);
        QCOMPARE(list.engines(), QList<SearchEngine>({engine("A", "", "https://a/?q=%s", true)}));
    }
};

QTEST_GUILESS_MAIN(SearchEnginesTest)
#include "searchengines_test.moc"
