#pragma once

#include "core/model/historyitem.h"

#include <QAbstractTableModel>
#include <QList>

// The history as the tools pane lists it: a check box, the address, the title and the
// time of the visit, one row per entry in the order of the history.
class HistoryListModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Check, Adresse, Titel, DateTime, ColumnCount };
    enum Role {
        TagRole = Qt::UserRole + 1, // the running number as text, " 1" for the first
        FilterRole, // address and title, what the filter field looks in
    };

    using QAbstractTableModel::QAbstractTableModel;

    // Rebuilds the rows from the history; every check is cleared.
    void refresh(const QList<HistoryItem> &history);
    void setAllChecked(bool checked);
    int checkedCount() const { return m_checked; }
    // The checked entries' addresses, in list order.
    QStringList checkedAddresses() const;
    QString addressAt(int row) const;

    // "DD.MM.YYYY - hh:mm:ss"
    static QString formatVisit(const QDateTime &when);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

signals:
    void checksChanged(int checked);

private:
    struct Row
    {
        QString url, title, when;
        bool checked = false;
    };
    QList<Row> m_rows;
    int m_checked = 0;
};
