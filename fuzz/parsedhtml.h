#pragma once

#include "core/html/parsearena.h"

#include <QByteArray>

#include <gumbo.h>

// Bytes parsed as a browser parses them, for checking what a harness produced. The
// memory comes from an arena, as in the program: the parser loses a few bytes on some
// broken markup, which the arena takes back with the rest.
class ParsedHtml final
{
public:
    explicit ParsedHtml(const QByteArray &bytes)
    {
        m_options.allocator = &ParseArena::allocateIn;
        m_options.deallocator = &ParseArena::deallocateIn;
        m_options.userdata = &m_arena;
        m_output = gumbo_parse_with_options(&m_options, bytes.constData(), size_t(bytes.size()));
    }
    ~ParsedHtml() { gumbo_destroy_output(&m_options, m_output); }
    ParsedHtml(const ParsedHtml &) = delete;
    ParsedHtml &operator=(const ParsedHtml &) = delete;

    const GumboNode *root() const { return m_output->root; }

private:
    ParseArena m_arena;
    GumboOptions m_options = kGumboDefaultOptions;
    GumboOutput *m_output = nullptr;
};
