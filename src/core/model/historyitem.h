#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

// One visited page of the history: address, title, moment of the visit and the key
// by which a list of entries is ordered.
class HistoryItem final
{
public:
    // Values of SortSel.
    static constexpr qint16 SortByUrl = 0;
    static constexpr qint16 SortByTitle = 1;
    static constexpr qint16 SortByDate = 2;

    HistoryItem();
    HistoryItem(const QString &url, const QString &title, const QDateTime &urlDate);

    void SetItem(const QString &url, const QString &title, const QDateTime &urlDate);

    QString URL() const { return m_url; }
    void setURL(const QString &value) { m_url = value; }
    QString Title() const { return m_title; }
    void setTitle(const QString &value) { m_title = value; }
    QDateTime UrlDate() const { return m_urlDate; }
    void setUrlDate(const QDateTime &value) { m_urlDate = value; }

    qint16 SortSel() const { return m_sortSel; }
    // Any value outside 0..2 selects the date.
    void setSortSel(int value);

    // Whether `other` has the same value in the field chosen by this entry's SortSel.
    // Texts compare ordinally, letter case included.
    bool isEqual(const HistoryItem &other) const;
    // Whether this entry must stand after `other` under this entry's SortSel: by date
    // when this visit is earlier (newest first), by title or address when this text is
    // ordinally greater (ascending, uppercase before lowercase).
    bool standsAfter(const HistoryItem &other) const;

private:
    QString m_url;
    QString m_title;
    QDateTime m_urlDate;
    qint16 m_sortSel = SortByDate;
};

// Orders the entries by their own SortSel; entries that compare equal keep their order.
void sortHistory(QList<HistoryItem> &items);
// Gives every entry the sort key `sortSel` first, then orders them as above.
void sortHistory(QList<HistoryItem> &items, int sortSel);
