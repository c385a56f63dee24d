#include "ui/tools/historytool.h"

#include "core/base/uitexts.h"
#include "core/model/historylistmodel.h"
#include "ui/frame/mdiform1.h"
#include "ui/tools/bandicon.h"

#include <QAction>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>

HistoryTool::HistoryTool(MDIForm1 *frame, QWidget *parent)
    : QWidget(parent)
    , m_frame(frame)
    , m_model(new HistoryListModel(this))
    , m_filtered(new QSortFilterProxyModel(this))
{
    m_filtered->setSourceModel(m_model);
    m_filtered->setFilterRole(HistoryListModel::FilterRole);
    m_filtered->setFilterKeyColumn(HistoryListModel::Check);
    m_filtered->setFilterCaseSensitivity(Qt::CaseInsensitive);

    m_filter = new QLineEdit(this);
    m_filter->setObjectName(QStringLiteral("filter"));
    m_filter->setPlaceholderText(uiText(2205));
    m_filter->setClearButtonEnabled(true);
    m_filter->installEventFilter(this);
    connect(m_filter, &QLineEdit::textChanged, m_filtered,
        &QSortFilterProxyModel::setFilterFixedString);

    m_list = new QTreeView(this);
    m_list->setObjectName(QStringLiteral("ListView1"));
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setModel(m_filtered);
    m_list->installEventFilter(this);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_filter);
    layout->addWidget(m_list);

    m_band = new QToolBar(this);
    m_band->setObjectName(QStringLiteral("Toolbar2"));
    m_band->setIconSize(QSize(16, 16));
    const auto add
        = [this](const char *key, int tip, const char *theme, QStyle::StandardPixmap fallback) {
              QAction *entry = m_band->addAction(bandIcon(theme, fallback, this), uiText(tip));
              entry->setObjectName(QLatin1String(key));
              return entry;
          };
    connect(add("refresh", 801, "view-refresh", QStyle::SP_BrowserReload), &QAction::triggered,
        this, &HistoryTool::refresh);
    connect(add("start", 802, "document-open", QStyle::SP_DialogOpenButton), &QAction::triggered,
        this, &HistoryTool::start);
    QAction *check = add("check", 803, "edit-select-all", QStyle::SP_DialogApplyButton);
    check->setCheckable(true);
    connect(check, &QAction::triggered, this, &HistoryTool::checkAll);
    button(QStringLiteral("start"))->setEnabled(false);

    connect(m_model, &HistoryListModel::checksChanged, this,
        [this](int checked) { button(QStringLiteral("start"))->setEnabled(checked > 0); });
    connect(m_model, &QAbstractItemModel::dataChanged, this,
        [this](const QModelIndex &from, const QModelIndex &to, const QList<int> &roles) {
            if (from == to && roles.contains(Qt::CheckStateRole))
                emit statusText(m_model->addressAt(from.row()));
        });
    connect(m_list->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
        [this](const QModelIndex &current) {
            emit statusText(m_model->addressAt(m_filtered->mapToSource(current).row()));
        });
    connect(m_list, &QTreeView::doubleClicked, this, [this](const QModelIndex &index) {
        m_frame->OpenNewBrowser(m_model->addressAt(m_filtered->mapToSource(index).row()));
    });
}

QAction *HistoryTool::button(const QString &key) const
{
    return m_band->findChild<QAction *>(key);
}

void HistoryTool::refresh()
{
    m_model->refresh(m_frame->history());
    button(QStringLiteral("check"))->setChecked(false);
    button(QStringLiteral("start"))->setEnabled(false);
    emit statusText(
        uiText(812).replace(QStringLiteral("%n"), QString::number(m_model->rowCount())));
}

void HistoryTool::start()
{
    for (const QString &address : m_model->checkedAddresses())
        m_frame->OpenNewBrowser(address);
}

void HistoryTool::checkAll(bool checked)
{
    button(QStringLiteral("check"))->setChecked(checked);
    m_model->setAllChecked(checked);
}

void HistoryTool::openSelected()
{
    QModelIndexList rows = m_list->selectionModel()->selectedRows();
    if (rows.isEmpty() && m_list->currentIndex().isValid())
        rows.append(m_list->currentIndex());
    std::sort(rows.begin(), rows.end());
    for (const QModelIndex &row : rows)
        m_frame->OpenNewBrowser(m_model->addressAt(m_filtered->mapToSource(row).row()));
}

bool HistoryTool::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            // From the filter field Enter opens the first entry that is left.
            if (watched == m_filter && !m_list->currentIndex().isValid())
                m_list->setCurrentIndex(m_filtered->index(0, 0));
            openSelected();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void HistoryTool::resizeEvent(QResizeEvent *event)
{
    // The text columns share the width: address 45 %, title 35 %, time the rest.
    QWidget::resizeEvent(event);
    const int check = m_list->style()->pixelMetric(QStyle::PM_IndicatorWidth) + 12;
    const int width = std::max(0, m_list->viewport()->width() - check);
    QHeaderView *header = m_list->header();
    header->resizeSection(HistoryListModel::Check, check);
    header->resizeSection(HistoryListModel::Adresse, width * 45 / 100);
    header->resizeSection(HistoryListModel::Titel, width * 35 / 100);
    header->resizeSection(HistoryListModel::DateTime, width - width * 80 / 100);
}
