#include "core/base/uitexts.h"

#include <QFile>
#include <QLocale>

// The text tables are compiled into a static library; nothing else refers to them,
// so they are registered explicitly before the first read.
static void initTextResources()
{
    Q_INIT_RESOURCE(texts);
}

namespace {
QHash<int, QString> &current()
{
    static QHash<int, QString> texts;
    return texts;
}
UiTexts::Language &currentLanguage()
{
    static UiTexts::Language language = UiTexts::Language::German;
    return language;
}

QString unescape(QStringView text)
{
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c != u'\\' || i + 1 == text.size()) {
            out.append(c);
            continue;
        }
        const QChar next = text.at(++i);
        if (next == u'n')
            out.append(u'\n');
        else if (next == u'r')
            out.append(u'\r');
        else if (next == u't')
            out.append(u'\t');
        else
            out.append(next);
    }
    return out;
}
} // namespace

UiTexts::Language UiTexts::languageForLocale()
{
    const QString forced = qEnvironmentVariable("VANTRELL_LANG").toLower();
    if (forced == u"de")
        return Language::German;
    if (forced == u"en")
        return Language::English;
    return QLocale().language() == QLocale::German ? Language::German : Language::English;
}

QHash<int, QString> UiTexts::parse(const QByteArray &tsv)
{
    // One "ID<TAB>text" per line; "#" starts a comment line; \n \r \t \\ escapes.
    QHash<int, QString> texts;
    const QString all = QString::fromUtf8(tsv);
    for (QStringView line : QStringView(all).split(u'\n')) {
        if (line.endsWith(u'\r'))
            line.chop(1);
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        const qsizetype tab = line.indexOf(u'\t');
        if (tab < 0)
            continue;
        bool ok = false;
        const int id = line.left(tab).toInt(&ok);
        if (ok)
            texts.insert(id, unescape(line.mid(tab + 1)));
    }
    return texts;
}

QHash<int, QString> UiTexts::table(Language language)
{
    initTextResources();
    QFile file(language == Language::German ? QStringLiteral(":/texts/de.tsv")
                                            : QStringLiteral(":/texts/en.tsv"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QHash<int, QString> texts = parse(file.readAll());
    // Two texts are kept pre-joined with the line breaks their callers expect.
    if (texts.contains(1038))
        texts[1038].prepend(QStringLiteral("\r\n"));
    if (texts.contains(1116))
        texts[1116].append(QStringLiteral("\r\r"));
    return texts;
}

void UiTexts::load(Language language)
{
    currentLanguage() = language;
    current() = table(language);
    if (language != Language::German) {
        // An English gap falls back to the German text rather than to nothing.
        const QHash<int, QString> german = table(Language::German);
        for (auto it = german.cbegin(); it != german.cend(); ++it) {
            if (!current().contains(it.key()))
                current().insert(it.key(), it.value());
        }
    }
}

UiTexts::Language UiTexts::language()
{
    return currentLanguage();
}

QString UiTexts::text(int id)
{
    if (current().isEmpty())
        load(languageForLocale());
    const auto it = current().constFind(id);
    return it != current().cend() ? it.value() : u'#' + QString::number(id);
}

bool UiTexts::has(int id)
{
    if (current().isEmpty())
        load(languageForLocale());
    return current().contains(id);
}
