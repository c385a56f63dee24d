#include "core/browsing/addressinput.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

class AddressInputTest final : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void typedTextOpensAddressOrSearch_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("opened");
        const auto search = [](const char *query) -> QString {
            return u"http://s/find?q="_s + QString::fromLatin1(query) + u"&lang=de"_s;
        };
        QTest::newRow("words") << u"rust borrow checker"_s << search("rust%20borrow%20checker");
        QTest::newRow("blanks around words are trimmed")
            << u"  wetter morgen "_s << search("wetter%20morgen");
        QTest::newRow("umlauts and reserved characters encoded")
            << u"größe & gewicht?"_s << search("gr%C3%B6%C3%9Fe%20%26%20gewicht%3F");
        QTest::newRow("a single word without a dot") << u"intranet"_s << search("intranet");
        QTest::newRow("a colon that is no scheme")
            << u"Hinweis: heute"_s << search("Hinweis%3A%20heute");
        QTest::newRow("a word with a leading dot") << u".profile"_s << search(".profile");
        QTest::newRow("dots only") << u"..."_s << search("...");
        QTest::newRow("words with a dot")
            << u"example.org ist weg"_s << search("example.org%20ist%20weg");
        QTest::newRow("scheme and single word") << u"http://intranet"_s << u"http://intranet"_s;
        QTest::newRow("host and port") << u"intranet:8080"_s << u"intranet:8080"_s;
        QTest::newRow("host, port and path") << u"intranet:8080/wiki"_s << u"intranet:8080/wiki"_s;
        QTest::newRow("IPv6 host and port") << u"[::1]:8080"_s << u"[::1]:8080"_s;
        QTest::newRow("localhost") << u"localhost"_s << u"localhost"_s;
        QTest::newRow("localhost with a path") << u"LOCALHOST/x"_s << u"LOCALHOST/x"_s;
        QTest::newRow("a host with a dot") << u" example.org "_s << u"example.org"_s;
        QTest::newRow("a host with a dot and a path") << u"example.org/x"_s << u"example.org/x"_s;
        QTest::newRow("an address with a blank and a scheme")
            << u"https://example.org/a b"_s << u"https://example.org/a b"_s;
        QTest::newRow("about page") << u"about:blank"_s << u"about:blank"_s;
        QTest::newRow("mail address") << u"mailto:a@example.org"_s << u"mailto:a@example.org"_s;
        QTest::newRow("absolute path with blanks")
            << u"/home/ute/Neue Seite.html"_s << u"/home/ute/Neue Seite.html"_s;
        QTest::newRow("file URL") << u"file:///tmp/a b.html"_s << u"file:///tmp/a b.html"_s;
        QTest::newRow("the program's own pages")
            << u"vantrell://welcome/"_s << u"vantrell://welcome/"_s;
        QTest::newRow("nothing typed") << u"   "_s << QString();
    }

    void typedTextOpensAddressOrSearch()
    {
        QFETCH(QString, typed);
        QTEST(AddressInput::resolve(typed, u" http://s/find?q=%s&lang=de "_s), "opened");
    }

    void engineWithoutPlaceholderGetsTheQueryAppended()
    {
        QCOMPARE(AddressInput::resolve(u"a b"_s, u"https://duckduckgo.com/?q="_s),
            u"https://duckduckgo.com/?q=a%20b"_s);
        QCOMPARE(AddressInput::searchUrl(u"http://s/%s/%s"_s, u"x/y"_s), u"http://s/x%2Fy/x%2Fy"_s);
        // Without an engine a text can only be tried as it is.
        QCOMPARE(AddressInput::resolve(u"a b"_s, u"  "_s), u"a b"_s);
        QCOMPARE(AddressInput::searchStartPage(u"http://s/find?q=%s"_s), u"http://s/find?q="_s);
    }
};

QTEST_GUILESS_MAIN(AddressInputTest)
#include "addressinput_test.moc"
