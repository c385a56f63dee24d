#pragma once

#include <QString>

#include <memory>

class ParseArena;

// Makes the HTML of a feed safe to put into the feed page.
//
// An allow-list cleaner: elements that can run code, load other documents, submit or
// restyle the page (script, style, iframe, frame, object, embed, applet, form and its
// controls, meta, link, base, svg, math, ...) are removed with their content; elements
// not on the list are replaced by their content; attributes not on the list, event
// handlers (on...), and URLs with the javascript:, vbscript: or data: scheme are dropped.
//
// Markup that needs none of this and is well-formed HTML is returned byte for byte as
// the feed wrote it. Otherwise the cleaned tree is written out anew, with every element
// closed, so an item's markup can neither run script nor break out of its box.
class FeedHtmlCleaner final
{
public:
    // How much parsing one page may spend on its markup. Parsing takes time that grows
    // with the square of the nesting depth; markup nested deeper than MaxDepth, or met
    // after the budget is spent, is shown as its text with the tags dropped.
    // The parser's memory comes from one arena for the whole page: a page parses
    // thousands of small pieces of markup.
    class Budget
    {
    public:
        static constexpr int MaxDepth = 500;
        Budget();
        ~Budget();
        Q_DISABLE_COPY_MOVE(Budget)
        bool take(int depth);
        ParseArena &arena();

    private:
        qint64 m_left = 100'000'000; // a few hundred milliseconds of parsing
        std::unique_ptr<ParseArena> m_arena;
    };

    static QString clean(const QString &html, Budget *budget = nullptr);

    // The text of the markup, escaped for use as text (& and < as references); used
    // where markup has no place, such as the page title.
    static QString toPlainText(const QString &html, Budget *budget = nullptr);

    // Escapes & < > " ' as character references, for text and attribute values.
    static QString escape(const QString &text);

    // True for a URL that would run script or embed a document when followed:
    // javascript:, vbscript: or data:, however spaced or cased.
    static bool isUnsafeUrl(const QString &url);
};
