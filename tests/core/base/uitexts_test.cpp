#include "core/base/uitexts.h"

#include <QDirIterator>
#include <QFile>
#include <QLocale>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// The placeholders of a text, sorted, so that two languages can be compared.
QStringList placeholders(const QString &text)
{
    static const QRegularExpression pattern(u"%(?:n|\\d+)"_s);
    QStringList found;
    for (auto it = pattern.globalMatch(text); it.hasNext();)
        found.append(it.next().captured());
    found.sort();
    return found;
}

// Keyboard accelerators: a single "&"; "&&" shows an ampersand.
int accelerators(QString text)
{
    text.remove(u"&&"_s);
    return int(text.count(u'&'));
}

} // namespace

class UiTextsTest final : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        m_savedLang = qgetenv("VANTRELL_LANG");
    }

    void cleanup()
    {
        qputenv("VANTRELL_LANG", m_savedLang);
        QLocale::setDefault(QLocale::c());
        UiTexts::load(UiTexts::Language::German);
    }

    void everyLineOfBothTablesIsOneUniqueEntryInAscendingOrder_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("de") << u":/texts/de.tsv"_s;
        QTest::newRow("en") << u":/texts/en.tsv"_s;
    }

    void everyLineOfBothTablesIsOneUniqueEntryInAscendingOrder()
    {
        QFETCH(QString, path);
        QFile file(path);
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(path));
        static const QRegularExpression entry(u"^(\\d+)\t[^\r]+$"_s);
        int previous = 0;
        int entries = 0;
        for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n')) {
            if (line.isEmpty() || line.startsWith(u'#'))
                continue;
            const QRegularExpressionMatch match = entry.match(line);
            QVERIFY2(match.hasMatch() && match.captured(1).toInt() > previous, qPrintable(line));
            previous = match.captured(1).toInt();
            ++entries;
        }
        const bool german = path.contains(u"de");
        QCOMPARE(
            UiTexts::table(german ? UiTexts::Language::German : UiTexts::Language::English).size(),
            entries);
    }

    void bothLanguagesHaveTheSameTextsWithMatchingPlaceholdersAndAccelerators()
    {
        const QHash<int, QString> german = UiTexts::table(UiTexts::Language::German);
        const QHash<int, QString> english = UiTexts::table(UiTexts::Language::English);
        QVERIFY(german.size() > 300);

        QList<int> germanIds = german.keys();
        QList<int> englishIds = english.keys();
        std::sort(germanIds.begin(), germanIds.end());
        std::sort(englishIds.begin(), englishIds.end());
        QCOMPARE(germanIds, englishIds);

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

    void everyTextTheProgramAsksForIsInBothTables()
    {
        const QHash<int, QString> german = UiTexts::table(UiTexts::Language::German);
        const QHash<int, QString> english = UiTexts::table(UiTexts::Language::English);
        static const QRegularExpression use(u"uiText\\((\\d+)\\)"_s);
        int uses = 0;
        QDirIterator sources(QStringLiteral(VANTRELL_SOURCE_DIR "/src"), {u"*.cpp"_s}, QDir::Files,
            QDirIterator::Subdirectories);
        while (sources.hasNext()) {
            QFile file(sources.next());
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QString code = QString::fromUtf8(file.readAll());
            for (auto it = use.globalMatch(code); it.hasNext(); ++uses) {
                const int id = it.next().captured(1).toInt();
                QVERIFY2(german.contains(id) && english.contains(id),
                    qPrintable(file.fileName() + u": " + QString::number(id)));
            }
        }
        QVERIFY(uses > 100);
    }

    void piecesKeepTheLineBreaksTheirCallersRelyOn()
    {
        const QHash<int, QString> de = UiTexts::table(UiTexts::Language::German);
        QVERIFY(de.value(1116).endsWith(u"\r\r"));
        QVERIFY(de.value(1038).startsWith(u"\r\n"_s));
        QVERIFY(!de.value(1038).mid(2).contains(u'\r'));
        QVERIFY(UiTexts::table(UiTexts::Language::English).value(1116).endsWith(u"\r\r"));
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
        QCOMPARE(uiText(601), UiTexts::table(UiTexts::Language::English).value(601));
        UiTexts::load(UiTexts::Language::German);
        QCOMPARE(uiText(601), UiTexts::table(UiTexts::Language::German).value(601));
        QVERIFY(!UiTexts::has(99999));
        QCOMPARE(uiText(99999), u"#99999"_s);
    }

private:
    QByteArray m_savedLang;
};

QTEST_GUILESS_MAIN(UiTextsTest)
#include "uitexts_test.moc"
