#pragma once

#include <QString>

// One engine of the search tool: its name (the key), its group and the address of a
// search, where "%s" stands for the URL-encoded term.
struct SearchEngine
{
    QString machine;
    QString group;
    QString address;
    bool checked = false;
    // Added from a page's OpenSearch description rather than read from the form page.
    bool added = false;

    // The address of a search for the term.
    QString addressFor(const QString &term) const;

    bool operator==(const SearchEngine &other) const
    {
        return machine == other.machine && group == other.group && address == other.address
            && checked == other.checked && added == other.added;
    }
};
