#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <algorithm>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

// An ordered collection whose items can also be found by a string key, as the archive
// keeps its folders and bookmarks: insertion order is the order of the files, the key
// is how the rest of the program names an item. Items live on the heap, so a reference
// to one stays valid while others are added or removed.
template<typename T> class KeyedList final
{
public:
    KeyedList() = default;
    KeyedList(KeyedList &&) noexcept = default;
    KeyedList &operator=(KeyedList &&) noexcept = default;

    qsizetype count() const { return qsizetype(m_items.size()); }
    bool isEmpty() const { return m_items.empty(); }

    T &at(qsizetype index) { return *m_items.at(size_t(index)).item; }
    const T &at(qsizetype index) const { return *m_items.at(size_t(index)).item; }
    const QString &keyAt(qsizetype index) const { return m_items.at(size_t(index)).key; }

    bool contains(const QString &key) const { return m_index.contains(key); }
    qsizetype indexOf(const QString &key) const { return m_index.value(key, -1); }
    T *find(const QString &key)
    {
        const qsizetype index = indexOf(key);
        return index < 0 ? nullptr : &at(index);
    }

    // Appends under a key that is not in use yet; returns nullptr when it is.
    T *add(const QString &key, T item) { return insert(count(), key, std::move(item)); }

    // Inserts before `index` (0 puts the item first, count() appends).
    T *insert(qsizetype index, const QString &key, T item)
    {
        // One look-up: the slot is made, or found taken.
        const qsizetype before = m_index.size();
        qsizetype &slot = m_index[key];
        if (m_index.size() == before)
            return nullptr;
        index = std::clamp<qsizetype>(index, 0, count());
        slot = index;
        m_items.insert(m_items.begin() + index, Entry {key, std::make_unique<T>(std::move(item))});
        if (index != count() - 1)
            reindexFrom(index);
        return m_items.at(size_t(index)).item.get();
    }

    void removeAt(qsizetype index)
    {
        m_index.remove(m_items.at(size_t(index)).key);
        m_items.erase(m_items.begin() + index);
        reindexFrom(index);
    }

    bool remove(const QString &key)
    {
        const qsizetype index = indexOf(key);
        if (index < 0)
            return false;
        removeAt(index);
        return true;
    }

    void clear()
    {
        m_items.clear();
        m_index.clear();
    }

    // Reorders the items stably by a key computed once for each item (not once for each
    // comparison), compared with a "less than" on keys.
    template<typename KeyOf, typename Less> void sortByKey(KeyOf keyOf, Less less)
    {
        using Key = std::decay_t<decltype(keyOf(std::declval<const T &>()))>;
        std::vector<std::pair<Key, Entry>> keyed;
        keyed.reserve(m_items.size());
        for (Entry &entry : m_items)
            keyed.emplace_back(keyOf(*entry.item), std::move(entry));
        std::stable_sort(keyed.begin(), keyed.end(),
            [&less](const auto &a, const auto &b) { return less(a.first, b.first); });
        for (size_t i = 0; i < keyed.size(); ++i)
            m_items[i] = std::move(keyed[i].second);
        reindexFrom(0);
    }

    void reserve(qsizetype size)
    {
        m_items.reserve(size_t(size));
        m_index.reserve(size);
    }

private:
    struct Entry
    {
        QString key;
        std::unique_ptr<T> item;
    };

    void reindexFrom(qsizetype from)
    {
        for (qsizetype i = from; i < count(); ++i)
            m_index.insert(m_items[size_t(i)].key, i);
    }

    std::vector<Entry> m_items;
    QHash<QString, qsizetype> m_index;
};
