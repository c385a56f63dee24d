#pragma once

#include <QString>
#include <QStringList>

// A set of strings without duplicates, kept both in the order in which they arrived
// and in ascending ordinal order. Used wherever the links of a page are gathered.
//
// Whether two strings are the same depends on the comparison mode: exactly equal
// (mode 1), or equal once both are upper-cased (any other mode, the initial state).
// The sorted order, and with it the binary search, is always ordinal and
// case-sensitive, so under the case-blind mode a variant that the search path does
// not pass is accepted as a new string. That behaviour is intended.
class UniqSortStrCollection final
{
public:
    // Appends `s` to both lists and returns true, unless `s` is empty or already
    // present under the current mode.
    bool Add(const QString &s);
    // Sets the comparison mode (1 when `mode` is 1, else 0) for this and every later
    // call, then tells whether `s` is present. An empty collection holds nothing.
    bool FindString(const QString &s, int mode);
    int Count() const { return int(m_arrival.size()); }

    QStringList StrCollection() const { return m_arrival; }
    void setStrCollection(const QStringList &strings) { m_arrival = strings; }
    QStringList SortedStrCollection() const { return m_sorted; }
    void setSortedStrCollection(const QStringList &strings) { m_sorted = strings; }

private:
    struct SearchResult
    {
        bool found;
        int position; // from 1, in the sorted list
    };
    // Binary search of the sorted list; it must not be empty.
    SearchResult search(const QString &s) const;
    bool same(const QString &a, const QString &b) const;
    const QString &sortedAt(int position) const { return m_sorted.at(position - 1); }

    QStringList m_arrival;
    QStringList m_sorted;
    qint16 m_mode = 0;
};
