#include "core/base/uitexts.h"

#include <QFile>
#include <QLocale>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

namespace {

// The placeholders of a text, sorted, so that two languages can be compared.
QStringList placeholders(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("%(?:n|\\d+)"));
    QStringList found;
    for (auto it = pattern.globalMatch(text); it.hasNext();)
        found.append(it.next().captured());
    found.sort();
    return found;
}

// Keyboard accelerators: a single "&"; "&&" shows an ampersand.
int accelerators(QString text)
{
    text.remove(QStringLiteral("&&"));
    return int(text.count(u'&'));
}

} // namespace

class UiTextsTest final : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_savedLang = qgetenv("VANTRELL_LANG"); }

    void cleanup()
    {
        qputenv("VANTRELL_LANG", m_savedLang);
        QLocale::setDefault(QLocale::c());
        UiTexts::load(UiTexts::Language::German);
    }

    void everyLineOfBothTablesIsOneUniqueEntryInAscendingOrder_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("de") << QStringLiteral(":/texts/de.tsv");
        QTest::newRow("en") << QStringLiteral(":/texts/en.tsv");
    }

    void everyLineOfBothTablesIsOneUniqueEntryInAscendingOrder()
    {
        QFETCH(QString, path);
        QFile file(path);
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(path));
        const QString all = QString::fromUtf8(file.readAll());
        int previous = 0;
        int entries = 0;
        const QStringList lines = all.split(u'\n');
        for (int n = 0; n < lines.size(); ++n) {
            const QString &line = lines.at(n);
            if (line.isEmpty() || line.startsWith(u'#'))
                continue;
            const QString where = path + u':' + QString::number(n + 1) + u' ' + line;
            QVERIFY2(!line.endsWith(u'\r'), qPrintable(where));
            const qsizetype tab = line.indexOf(u'\t');
            QVERIFY2(tab > 0, qPrintable(where));
            bool ok = false;
            const int id = line.left(tab).toInt(&ok);
            QVERIFY2(ok && id > previous, qPrintable(where));
            QVERIFY2(tab + 1 < line.size(), qPrintable(where));
            previous = id;
            ++entries;
        }
        QCOMPARE(UiTexts::table(
                     path.contains(u"de") ? UiTexts::Language::German : UiTexts::Language::English)
                     .size(),
            entries);
    }

    void bothLanguagesHaveTheSameTextsWithMatchingPlaceholdersAndAccelerators()
    {
        const QHash<int, QString> german = UiTexts::table(UiTexts::Language::German);
        const QHash<int, QString> english = UiTexts::table(UiTexts::Language::English);
        QVERIFY(german.size() > 300);

        const QList<int> germanIds = german.keys();
        const QList<int> englishIds = english.keys();
        const QSet<int> germanSet(germanIds.cbegin(), germanIds.cend());
        const QSet<int> englishSet(englishIds.cbegin(), englishIds.cend());
        QCOMPARE(QSet<int>(germanSet).subtract(englishSet), QSet<int>());
        QCOMPARE(QSet<int>(englishSet).subtract(germanSet), QSet<int>());

        for (auto it = german.cbegin(); it != german.cend(); ++it) {
            const QString &de = it.value();
            const QString &en = english.value(it.key());
            const QString pair = QString::number(it.key()) + u' ' + de + u" | " + en;
            QVERIFY2(!de.trimmed().isEmpty() && !en.trimmed().isEmpty(), qPrintable(pair));
            QVERIFY2(placeholders(de) == placeholders(en), qPrintable(pair));
            QVERIFY2(accelerators(de) == accelerators(en), qPrintable(pair));
            QVERIFY2(accelerators(de) <= 1, qPrintable(pair));
        }
    }

    void germanTextsReadExactlyAsTheProgramShowsThem()
    {
        const QHash<int, QString> de = UiTexts::table(UiTexts::Language::German);
        // The toolbar's spelling and the dialog's spelling are kept as they are.
        QCOMPARE(de.value(601), QStringLiteral("Vorwärst"));
        QCOMPARE(de.value(415), QStringLiteral("HTML-Seiten dürfen &Fenstergrösse setzen ein/aus"));
        QCOMPARE(de.value(200), QStringLiteral("&Datei"));
        QCOMPARE(de.value(1045), QStringLiteral("Der Ordner muß einen Namen haben !"));
        // The label keeps its trailing blank: the text export puts a second one after it.
        QCOMPARE(de.value(1302), QStringLiteral("URL: "));
        QCOMPARE(de.value(1506), QStringLiteral("search.html"));

        // Two texts come pre-joined with the line breaks their callers rely on.
        QCOMPARE(de.value(1116),
            QStringLiteral("Es werden %n Links geöffnet. Das Öffnen von zu vielen "
                           "Browser-Fenstern kann Probleme mit Systemresourcen verursachen.\r\r"));
        QVERIFY(de.value(1038).startsWith(QStringLiteral("\r\n")));
        QVERIFY(!de.value(1038).mid(2).contains(u'\r'));
        QVERIFY(UiTexts::table(UiTexts::Language::English).value(1116).endsWith(u"\r\r"));

        // Messages assembled from pieces.
        QCOMPARE(de.value(1070) + QStringLiteral("<link>") + de.value(1071),
            QStringLiteral("Feld \"<link>\" ist ungültig oder leer."));
        QCOMPARE(de.value(1040) + QStringLiteral("/tmp/a.txt") + de.value(1041),
            QStringLiteral("Der Export war erfolgreich, möchten Sie die Datei '/tmp/a.txt' "
                           "anzeigen ?"));
        QCOMPARE(de.value(1047) + QStringLiteral("http://x/") + de.value(1048),
            QStringLiteral("Die Url: 'http://x/' existiert bereits, trotzdem hinzufügen ?"));
        QCOMPARE(de.value(1130) + QStringLiteral(" (pop.example.org)"),
            QStringLiteral("Sie haben E-Mail ! (pop.example.org)"));
    }

    void languageFollowsGermanLocalesUnlessOverridden_data()
    {
        QTest::addColumn<QByteArray>("forced");
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<bool>("german");
        const QLocale swiss(QLocale::German, QLocale::Switzerland);
        const QLocale austrian(QLocale::German, QLocale::Austria);
        const QLocale french(QLocale::French, QLocale::France);
        const QLocale american(QLocale::English, QLocale::UnitedStates);
        QTest::newRow("swiss German") << QByteArray() << swiss << true;
        QTest::newRow("Austrian German") << QByteArray() << austrian << true;
        QTest::newRow("French") << QByteArray() << french << false;
        QTest::newRow("American") << QByteArray() << american << false;
        QTest::newRow("forced English on German") << QByteArray("en") << swiss << false;
        QTest::newRow("forced German, any case") << QByteArray("DE") << french << true;
        QTest::newRow("unknown override is ignored") << QByteArray("fr") << austrian << true;
    }

    void languageFollowsGermanLocalesUnlessOverridden()
    {
        QFETCH(QByteArray, forced);
        QFETCH(QLocale, locale);
        QFETCH(bool, german);
        if (forced.isEmpty())
            qunsetenv("VANTRELL_LANG");
        else
            qputenv("VANTRELL_LANG", forced);
        QLocale::setDefault(locale);
        QCOMPARE(UiTexts::languageForLocale(),
            german ? UiTexts::Language::German : UiTexts::Language::English);
    }

    void loadedLanguageAnswersTextsAndShowsGaps()
    {
        UiTexts::load(UiTexts::Language::English);
        QCOMPARE(UiTexts::language(), UiTexts::Language::English);
        QCOMPARE(uiText(601), QStringLiteral("Forward"));
        QCOMPARE(uiText(1113), QStringLiteral("Message"));

        UiTexts::load(UiTexts::Language::German);
        QCOMPARE(uiText(601), QStringLiteral("Vorwärst"));
        QVERIFY(UiTexts::has(1141));

        QVERIFY(!UiTexts::has(99999));
        QCOMPARE(uiText(99999), QStringLiteral("#99999"));
        QCOMPARE(uiText(-4), QStringLiteral("#-4"));
    }

private:
    QByteArray m_savedLang;
};

QTEST_GUILESS_MAIN(UiTextsTest)
#include "uitexts_test.moc"
