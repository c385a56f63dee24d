#pragma once

#include <QDateTime>
#include <QList>
#include <QStringList>
#include <QUrl>
#include <QWidget>

class FeedFetcher;
class MDIForm1;
class PageView;
class QComboBox;
class QFileSystemWatcher;
class QLineEdit;
class QSortFilterProxyModel;
class QSplitter;
class QTimer;
class QToolBar;
class QTreeView;
class SearchEngineList;

// The search tool of the tools pane: a meta-search over the engines of the search-form
// page. Its band holds the term (Text1) and "start"; the content shows the engines with
// check boxes (ListView2), the page itself (WebBrowser2) and, below, the group filter
// (CoolBar2 with Combo1). The page is read again whenever it changes on disk.
class SearchTool final : public QWidget
{
    Q_OBJECT

public:
    explicit SearchTool(MDIForm1 *frame, QWidget *parent = nullptr);

    QToolBar *band() const { return m_band; }
    QLineEdit *termField() const { return m_term; }
    QComboBox *groupFilter() const { return m_groups; }
    QTreeView *list() const { return m_list; }
    SearchEngineList *engines() const { return m_engines; }
    // WebBrowser2, made when the tool is first shown.
    PageView *page() const { return m_page; }

    // "start" and Enter: one new window for each checked engine of the group filter.
    void start();
    // Reads the search-form page named in the preferences again.
    void reload();
    // "add": the search engine that the page of the active window announces.
    void addFromActiveWindow();
    // What the tool told last: the pane shows it again when the tool is shown.
    QString lastStatus() const { return m_lastStatus; }

signals:
    void statusText(const QString &text);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void fetchDescription(const QUrl &pageUrl, const QList<QStringList> &links);
    void fillGroups();
    void applyGroupFilter();
    void watch(const QString &path);
    void showPage();
    QString countText() const;
    void tell(const QString &text);

    MDIForm1 *m_frame;
    SearchEngineList *m_engines;
    QSortFilterProxyModel *m_filtered;
    QToolBar *m_band;
    QLineEdit *m_term;
    QComboBox *m_groups;
    QTreeView *m_list;
    QSplitter *m_split;
    PageView *m_page = nullptr;
    QFileSystemWatcher *m_watcher;
    QTimer *m_settle;
    FeedFetcher *m_fetcher = nullptr;
    QString m_path;
    QString m_lastStatus;
    // What the page on disk looked like when it was last read.
    QDateTime m_readStamp;
    qint64 m_readSize = -1;
};
