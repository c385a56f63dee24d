#include "core/model/layouttreemodel.h"

#include "core/model/bookediting.h"

#include <algorithm>

LayoutTreeModel::LayoutTreeModel(LayoutBook &book, QObject *parent)
    : QAbstractItemModel(parent)
    , m_book(book)
{ }

bool LayoutTreeModel::reload()
{
    beginResetModel();
    const bool any = m_book.LoadAllLayouts();
    endResetModel();
    return any;
}

QString LayoutTreeModel::problem() const
{
    return m_book.lastOutcome().message();
}

QModelIndex LayoutTreeModel::layoutIndex(qsizetype position) const
{
    return index(int(position), 0);
}

qsizetype LayoutTreeModel::layoutRowOf(const QModelIndex &index) const
{
    if (!index.isValid() || index.model() != this)
        return -1;
    return index.internalId() == 0 ? index.row() : qsizetype(index.internalId()) - 1;
}

const LayoutItem *LayoutTreeModel::layoutAt(const QModelIndex &index) const
{
    const qsizetype row = layoutRowOf(index);
    return row >= 0 && row < m_book.colLayout.size() ? &m_book.colLayout.at(row) : nullptr;
}

const FensterInfo *LayoutTreeModel::windowAt(const QModelIndex &index) const
{
    const LayoutItem *layout = layoutAt(index);
    if (!layout || index.internalId() == 0 || index.row() >= layout->colFensterInfo.size())
        return nullptr;
    return &layout->colFensterInfo.at(index.row());
}

QModelIndex LayoutTreeModel::addLayout(
    const QList<FensterInfo> &windows, const QString &name, const QString &info)
{
    LayoutItem item(m_book.dataFolder());
    item.colFensterInfo = windows;
    const int row = int(m_book.colLayout.size());
    beginInsertRows({}, row, row);
    m_book.AddLayout(std::move(item), name, info, 0);
    endInsertRows();
    m_book.SaveAllLayouts();
    return index(row, 0);
}

bool LayoutTreeModel::deleteLayout(const QModelIndex &index)
{
    const qsizetype row = layoutRowOf(index);
    if (row < 0 || row >= m_book.colLayout.size())
        return false;
    // Window nodes name their layout by row: every node after it changes.
    beginResetModel();
    const bool saved = m_book.DeleteLayout(row + 1);
    endResetModel();
    return saved;
}

bool LayoutTreeModel::setProperties(
    const QModelIndex &index, const QString &name, const QString &info)
{
    const qsizetype row = layoutRowOf(index);
    if (row < 0 || row >= m_book.colLayout.size())
        return false;
    LayoutItem &layout = m_book.colLayout[row];
    layout.LayoutName = name;
    layout.Info = info;
    m_book.IsEdit = true;
    const QModelIndex node = layoutIndex(row);
    emit dataChanged(node, node);
    return m_book.SaveAllLayouts();
}

bool LayoutTreeModel::sortByName()
{
    // The order the bookmark folders sort in, so both archives read alike.
    beginResetModel();
    std::stable_sort(m_book.colLayout.begin(), m_book.colLayout.end(),
        [](const LayoutItem &a, const LayoutItem &b) {
            return BookEditing::sortsBefore(a.LayoutName, b.LayoutName);
        });
    m_book.IsEdit = true;
    endResetModel();
    return m_book.SaveAllLayouts();
}

QModelIndex LayoutTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    if (column != 0 || row < 0 || row >= rowCount(parent))
        return {};
    if (!parent.isValid())
        return createIndex(row, 0, quintptr(0));
    return createIndex(row, 0, quintptr(parent.row() + 1));
}

QModelIndex LayoutTreeModel::parent(const QModelIndex &child) const
{
    if (!child.isValid() || child.internalId() == 0)
        return {};
    return createIndex(int(child.internalId() - 1), 0, quintptr(0));
}

int LayoutTreeModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return int(m_book.colLayout.size());
    if (parent.internalId() != 0 || parent.row() >= m_book.colLayout.size())
        return 0;
    return int(m_book.colLayout.at(parent.row()).colFensterInfo.size());
}

int LayoutTreeModel::columnCount(const QModelIndex &) const
{
    return 1;
}

QVariant LayoutTreeModel::data(const QModelIndex &index, int role) const
{
    const LayoutItem *layout = layoutAt(index);
    if (!layout)
        return {};
    if (const FensterInfo *window = windowAt(index)) {
        switch (role) {
        case Qt::DisplayRole:
            return window->Titel.isEmpty() ? window->URL : window->Titel;
        case Qt::ToolTipRole:
        case AddressRole:
            return window->URL;
        case KindRole:
            return QStringLiteral("Window");
        default:
            return {};
        }
    }
    switch (role) {
    case Qt::DisplayRole:
        return layout->LayoutName;
    case Qt::ToolTipRole:
        return layout->Info.isEmpty() ? layout->LayoutName : layout->Info;
    case KindRole:
        return QStringLiteral("Layout");
    default:
        return {};
    }
}
