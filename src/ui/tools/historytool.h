#pragma once

#include <QWidget>

class HistoryListModel;
class MDIForm1;
class QLineEdit;
class QSortFilterProxyModel;
class QToolBar;
class QTreeView;

// The history tool of the tools pane: the pages visited in this run (ListView1) with
// check boxes, a filter field, and its command band (Toolbar2).
class HistoryTool final : public QWidget
{
    Q_OBJECT

public:
    explicit HistoryTool(MDIForm1 *frame, QWidget *parent = nullptr);

    QToolBar *band() const { return m_band; }
    QTreeView *list() const { return m_list; }
    QLineEdit *filterField() const { return m_filter; }
    HistoryListModel *model() const { return m_model; }
    QAction *button(const QString &key) const;

    // "refresh": the list anew from the frame's history; "check" released, "start" off.
    void refresh();
    // "start": every checked entry in a new window, in list order.
    void start();
    // "check": checks or unchecks every entry.
    void checkAll(bool checked);
    // The selected entries (filtered rows only), each in a new window.
    void openSelected();

signals:
    void statusText(const QString &text);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    MDIForm1 *m_frame;
    HistoryListModel *m_model;
    QSortFilterProxyModel *m_filtered;
    QTreeView *m_list;
    QLineEdit *m_filter;
    QToolBar *m_band;
};
