#include "core/model/uniqsortstrcollection.h"

namespace {
bool ordinalLess(const QString &a, const QString &b)
{
    return QString::compare(a, b, Qt::CaseSensitive) < 0;
}
} // namespace

bool UniqSortStrCollection::same(const QString &a, const QString &b) const
{
    if (m_mode == 1)
        return a == b;
    return a.toUpper() == b.toUpper();
}

UniqSortStrCollection::SearchResult UniqSortStrCollection::search(const QString &s) const
{
    int lo = 1;
    int hi = int(m_sorted.size());
    do {
        const int mid = (hi - lo) / 2 + lo;
        if (same(sortedAt(mid), s))
            return {true, mid};
        if (ordinalLess(s, sortedAt(mid)))
            hi = mid;
        else
            lo = mid;
    } while (hi - lo >= 2);

    if (same(sortedAt(lo), s))
        return {true, lo};
    if (same(sortedAt(hi), s))
        return {true, hi};
    return {false, ordinalLess(s, sortedAt(lo)) ? lo : hi};
}

bool UniqSortStrCollection::Add(const QString &s)
{
    if (s.isEmpty())
        return false;
    if (m_sorted.isEmpty()) {
        m_sorted.append(s);
        m_arrival.append(s);
        return true;
    }
    const SearchResult result = search(s);
    if (result.found)
        return false;
    const int index
        = ordinalLess(s, sortedAt(result.position)) ? result.position - 1 : result.position;
    m_sorted.insert(index, s);
    m_arrival.append(s);
    return true;
}

bool UniqSortStrCollection::FindString(const QString &s, int mode)
{
    m_mode = mode == 1 ? 1 : 0;
    if (m_sorted.isEmpty())
        return false;
    return search(s).found;
}
