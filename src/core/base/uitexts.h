#pragma once

#include <QHash>
#include <QString>

// The user-interface texts, one per string-table identifier, loaded once at start.
class UiTexts final
{
public:
    enum class Language { German, English };

    // German when the user's locale language is German, English otherwise;
    // VANTRELL_LANG=de|en overrides.
    static Language languageForLocale();
    static void load(Language language);
    static Language language();

    // The text of an identifier; an identifier without text yields "#<id>" so a
    // gap is visible rather than silent.
    static QString text(int id);
    static bool has(int id);
    // Every identifier of the table of a language, for completeness checks.
    static QHash<int, QString> table(Language language);

private:
    static QHash<int, QString> parse(const QByteArray &tsv);
};

// Short form used throughout the program.
inline QString uiText(int id)
{
    return UiTexts::text(id);
}
