#include "core/browsing/addressinput.h"

#include <QRegularExpression>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;

class AddressInputTest final : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void typedTextOpensAddressOrSearch_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("opened"); // "?" + query: a search
        for (const char *query : {"rust borrow checker", " wetter  morgen ", "intranet",
                 "Hinweis: heute", ".profile", "example.org ist weg", "größe&gewicht?"})
            QTest::newRow(query) << QString::fromUtf8(query) << u"?"_s;
        for (const char *address : {"http://intranet", "intranet:8080/wiki", "[::1]:8080",
                 "localhost", "LOCALHOST/x", "example.org", "example.org/x",
                 "https://example.org/a b", "about:blank", "mailto:a@example.org",
                 "/home/ute/Neue Seite.html", "file:///tmp/a b.html", "vantrell://welcome/"})
            QTest::newRow(address) << QString::fromUtf8(address) << QString::fromUtf8(address);
    }

    void typedTextOpensAddressOrSearch()
    {
        QFETCH(QString, typed);
        QFETCH(QString, opened);
        const QString engine = u" http://s/find?q=%s&lang=de "_s;
        const QString expected = opened != u"?" ? opened
                                                : u"http://s/find?q="_s
                + QString::fromLatin1(QUrl::toPercentEncoding(typed.trimmed())) + u"&lang=de"_s;
        QCOMPARE(AddressInput::resolve(u"  "_s + typed + u" "_s, engine), expected);
    }

    void queryIsEncodedIntoEveryPlaceholderOrAppended()
    {
        QCOMPARE(AddressInput::searchUrl(u"http://s/%s/%s"_s, u"größe & x/y"_s),
            u"http://s/gr%C3%B6%C3%9Fe%20%26%20x%2Fy/gr%C3%B6%C3%9Fe%20%26%20x%2Fy"_s);
        QCOMPARE(AddressInput::resolve(u"a b"_s, u"https://duckduckgo.com/?q="_s),
            u"https://duckduckgo.com/?q=a%20b"_s);
        // Without an engine a text can only be tried as it is.
        QCOMPARE(AddressInput::resolve(u"a b"_s, u"  "_s), u"a b"_s);
        QCOMPARE(AddressInput::resolve(u"   "_s, u"http://s/?q=%s"_s), QString());
        QCOMPARE(AddressInput::searchStartPage(u"http://s/find?q=%s"_s), u"http://s/find?q="_s);
    }
};

QTEST_GUILESS_MAIN(AddressInputTest)
#include "addressinput_test.moc"
