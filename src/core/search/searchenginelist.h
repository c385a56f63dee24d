#pragma once

#include "core/search/searchengine.h"

#include <QAbstractTableModel>
#include <QList>

// The search tool's engines with their check boxes (ListView2: check, machine, group),
// kept in a small file of the data folder together with the group filter, so the list
// and the user's choice outlive the search-form page and the run.
class SearchEngineList final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Check, Machine, Group, ColumnCount };

    // Reads the list kept in the file, if there is one.
    explicit SearchEngineList(const QString &path, QObject *parent = nullptr);

    const QList<SearchEngine> &engines() const { return m_engines; }
    // The engines of a freshly read page replace the list; an engine the list knew by
    // name keeps its check box as the user left it. The list is saved.
    // Engines added from pages stay unless the page now has one of their name.
    void setEngines(const QList<SearchEngine> &engines);
    // Adds an engine, checked, or replaces the one of its name. The list is saved.
    void add(SearchEngine engine);
    void setChecked(int row, bool checked);
    // The groups in list order, each once.
    QStringList groups() const;
    // The checked engines of the group, or of all groups when it is empty.
    QList<SearchEngine> checkedIn(const QString &group) const;

    // The group filter last chosen, empty for all groups.
    QString groupFilter() const { return m_groupFilter; }
    void setGroupFilter(const QString &group);

    bool save() const;
    QString path() const { return m_path; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    void checksChanged();

private:
    void load();

    QString m_path;
    QList<SearchEngine> m_engines;
    QString m_groupFilter;
};
