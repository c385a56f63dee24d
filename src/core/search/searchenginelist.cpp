#include "core/search/searchenginelist.h"

#include "core/base/uitexts.h"

#include <QHash>
#include <QSet>
#include <QSettings>

namespace {
// Bounds what a damaged or hostile list file can make the tool hold.
constexpr int MaxEngines = 500;
} // namespace

SearchEngineList::SearchEngineList(const QString &path, QObject *parent)
    : QAbstractTableModel(parent)
    , m_path(path)
{
    load();
}

void SearchEngineList::load()
{
    QSettings file(m_path, QSettings::IniFormat);
    m_groupFilter = file.value(QStringLiteral("groupFilter")).toString();
    const int count = std::min(file.beginReadArray(QStringLiteral("engines")), MaxEngines);
    for (int i = 0; i < count; ++i) {
        file.setArrayIndex(i);
        SearchEngine engine;
        engine.machine = file.value(QStringLiteral("machine")).toString();
        engine.group = file.value(QStringLiteral("group")).toString();
        engine.address = file.value(QStringLiteral("address")).toString();
        engine.checked = file.value(QStringLiteral("checked")).toBool();
        engine.added = file.value(QStringLiteral("added")).toBool();
        if (!engine.machine.isEmpty() && engine.address.contains(QStringLiteral("%s")))
            m_engines.append(engine);
    }
    file.endArray();
}

bool SearchEngineList::save() const
{
    QSettings file(m_path, QSettings::IniFormat);
    file.clear();
    file.setValue(QStringLiteral("groupFilter"), m_groupFilter);
    file.beginWriteArray(QStringLiteral("engines"), int(m_engines.size()));
    for (int i = 0; i < m_engines.size(); ++i) {
        file.setArrayIndex(i);
        const SearchEngine &engine = m_engines.at(i);
        file.setValue(QStringLiteral("machine"), engine.machine);
        file.setValue(QStringLiteral("group"), engine.group);
        file.setValue(QStringLiteral("address"), engine.address);
        file.setValue(QStringLiteral("checked"), engine.checked);
        file.setValue(QStringLiteral("added"), engine.added);
    }
    file.endArray();
    file.sync();
    return file.status() == QSettings::NoError;
}

void SearchEngineList::setEngines(const QList<SearchEngine> &engines)
{
    QHash<QString, bool> known;
    for (const SearchEngine &engine : std::as_const(m_engines))
        known.insert(engine.machine, engine.checked);
    QList<SearchEngine> list = engines.mid(0, MaxEngines);
    QSet<QString> names;
    for (SearchEngine &engine : list) {
        engine.checked = known.value(engine.machine, engine.checked);
        names.insert(engine.machine);
    }
    for (const SearchEngine &engine : std::as_const(m_engines)) {
        if (engine.added && !names.contains(engine.machine) && list.size() < MaxEngines)
            list.append(engine);
    }
    beginResetModel();
    m_engines = std::move(list);
    endResetModel();
    save();
    emit checksChanged();
}

void SearchEngineList::add(SearchEngine engine)
{
    engine.checked = true;
    for (int row = 0; row < m_engines.size(); ++row) {
        if (m_engines.at(row).machine == engine.machine) {
            m_engines[row] = engine;
            emit dataChanged(index(row, Check), index(row, Group));
            save();
            emit checksChanged();
            return;
        }
    }
    if (m_engines.size() >= MaxEngines)
        return;
    beginInsertRows({}, int(m_engines.size()), int(m_engines.size()));
    m_engines.append(engine);
    endInsertRows();
    save();
    emit checksChanged();
}

void SearchEngineList::setChecked(int row, bool checked)
{
    if (row < 0 || row >= m_engines.size() || m_engines.at(row).checked == checked)
        return;
    m_engines[row].checked = checked;
    emit dataChanged(index(row, Check), index(row, Check), {Qt::CheckStateRole});
    save();
    emit checksChanged();
}

QStringList SearchEngineList::groups() const
{
    QStringList names;
    for (const SearchEngine &engine : m_engines) {
        if (!names.contains(engine.group))
            names.append(engine.group);
    }
    return names;
}

QList<SearchEngine> SearchEngineList::checkedIn(const QString &group) const
{
    QList<SearchEngine> chosen;
    for (const SearchEngine &engine : m_engines) {
        if (engine.checked && (group.isEmpty() || engine.group == group))
            chosen.append(engine);
    }
    return chosen;
}

void SearchEngineList::setGroupFilter(const QString &group)
{
    if (group == m_groupFilter)
        return;
    m_groupFilter = group;
    save();
}

int SearchEngineList::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_engines.size());
}

int SearchEngineList::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant SearchEngineList::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_engines.size())
        return {};
    const SearchEngine &engine = m_engines.at(index.row());
    if (role == Qt::CheckStateRole && index.column() == Check)
        return engine.checked ? Qt::Checked : Qt::Unchecked;
    if (role == Qt::DisplayRole) {
        if (index.column() == Machine)
            return engine.machine;
        if (index.column() == Group)
            return engine.group;
    }
    if (role == Qt::ToolTipRole)
        return engine.address;
    return {};
}

bool SearchEngineList::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || index.column() != Check || role != Qt::CheckStateRole)
        return false;
    setChecked(index.row(), value.toInt() == Qt::Checked);
    return true;
}

Qt::ItemFlags SearchEngineList::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return index.column() == Check ? flags | Qt::ItemIsUserCheckable : flags;
}

QVariant SearchEngineList::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == Machine ? uiText(1503) : section == Group ? uiText(1504) : QVariant();
}
