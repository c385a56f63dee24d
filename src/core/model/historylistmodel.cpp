#include "core/model/historylistmodel.h"

#include "core/base/uitexts.h"

void HistoryListModel::refresh(const QList<HistoryItem> &history)
{
    beginResetModel();
    m_rows.clear();
    m_rows.reserve(history.size());
    for (const HistoryItem &item : history)
        m_rows.append({item.URL(), item.Title(), formatVisit(item.UrlDate()), false});
    m_checked = 0;
    endResetModel();
    emit checksChanged(0);
}

void HistoryListModel::setAllChecked(bool checked)
{
    for (Row &row : m_rows)
        row.checked = checked;
    m_checked = checked ? int(m_rows.size()) : 0;
    if (!m_rows.isEmpty())
        emit dataChanged(index(0, Check), index(int(m_rows.size()) - 1, Check));
    emit checksChanged(m_checked);
}

QStringList HistoryListModel::checkedAddresses() const
{
    QStringList addresses;
    for (const Row &row : m_rows) {
        if (row.checked)
            addresses.append(row.url);
    }
    return addresses;
}

QString HistoryListModel::addressAt(int row) const
{
    return row >= 0 && row < m_rows.size() ? m_rows.at(row).url : QString();
}

QString HistoryListModel::formatVisit(const QDateTime &when)
{
    return when.toString(QStringLiteral("dd.MM.yyyy - hh:mm:ss"));
}

int HistoryListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int HistoryListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant HistoryListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const Row &row = m_rows.at(index.row());
    if (role == Qt::CheckStateRole && index.column() == Check)
        return row.checked ? Qt::Checked : Qt::Unchecked;
    if (role == TagRole)
        return QString(u' ' + QString::number(index.row() + 1));
    if (role == FilterRole)
        return QString(row.url + u'\n' + row.title);
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    switch (index.column()) {
    case Check:
        return QStringLiteral(" ");
    case Adresse:
        return row.url;
    case Titel:
        return row.title;
    default:
        return row.when;
    }
}

bool HistoryListModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || index.column() != Check || role != Qt::CheckStateRole)
        return false;
    const bool checked = value.toInt() == Qt::Checked;
    Row &row = m_rows[index.row()];
    if (row.checked == checked)
        return true;
    row.checked = checked;
    m_checked += checked ? 1 : -1;
    emit dataChanged(index, index, {Qt::CheckStateRole});
    emit checksChanged(m_checked);
    return true;
}

QVariant HistoryListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section == Check)
        return {};
    return uiText(section == Adresse ? 809 : section == Titel ? 810 : 811);
}

Qt::ItemFlags HistoryListModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (index.column() == Check)
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}
