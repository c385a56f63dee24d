#include "core/model/historyitem.h"

#include <algorithm>

HistoryItem::HistoryItem()
    // An entry that was never set carries the zero of the automation date.
    : m_urlDate(QDate(1899, 12, 30), QTime(0, 0))
{ }

HistoryItem::HistoryItem(const QString &url, const QString &title, const QDateTime &urlDate)
    : m_url(url)
    , m_title(title)
    , m_urlDate(urlDate)
{ }

void HistoryItem::SetItem(const QString &url, const QString &title, const QDateTime &urlDate)
{
    m_url = url;
    m_title = title;
    m_urlDate = urlDate;
}

void HistoryItem::setSortSel(int value)
{
    m_sortSel = (value >= SortByUrl && value <= SortByDate) ? qint16(value) : SortByDate;
}

bool HistoryItem::isEqual(const HistoryItem &other) const
{
    switch (m_sortSel) {
    case SortByUrl:
        return QString::compare(m_url, other.m_url, Qt::CaseSensitive) == 0;
    case SortByTitle:
        return QString::compare(m_title, other.m_title, Qt::CaseSensitive) == 0;
    default:
        return m_urlDate == other.m_urlDate;
    }
}

bool HistoryItem::standsAfter(const HistoryItem &other) const
{
    switch (m_sortSel) {
    case SortByUrl:
        return QString::compare(m_url, other.m_url, Qt::CaseSensitive) > 0;
    case SortByTitle:
        return QString::compare(m_title, other.m_title, Qt::CaseSensitive) > 0;
    default:
        return m_urlDate < other.m_urlDate;
    }
}

void sortHistory(QList<HistoryItem> &items)
{
    // `a` goes before `b` exactly when `b` must stand after `a`.
    std::stable_sort(items.begin(), items.end(),
        [](const HistoryItem &a, const HistoryItem &b) { return b.standsAfter(a); });
}

void sortHistory(QList<HistoryItem> &items, int sortSel)
{
    for (HistoryItem &item : items)
        item.setSortSel(sortSel);
    sortHistory(items);
}
