#include "core/prefs/searchpresets.h"

const QList<SearchPreset> &SearchPreset::all()
{
    static const QList<SearchPreset> presets = {
        {QStringLiteral("DuckDuckGo"), QStringLiteral("https://duckduckgo.com/?q=%s")},
        {QStringLiteral("Startpage"), QStringLiteral("https://www.startpage.com/do/search?q=%s")},
        {QStringLiteral("Ecosia"), QStringLiteral("https://www.ecosia.org/search?q=%s")},
        {QStringLiteral("Google"), QStringLiteral("https://www.google.com/search?q=%s")},
        {QStringLiteral("Bing"), QStringLiteral("https://www.bing.com/search?q=%s")},
        {QStringLiteral("Wikipedia"),
            QStringLiteral("https://www.wikipedia.org/search-redirect.php?search=%s")},
    };
    return presets;
}
