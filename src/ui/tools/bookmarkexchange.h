#pragma once

#include "core/exchange/bookmarkexport.h"
#include "core/exchange/netscapeimport.h"

#include <QModelIndex>
#include <QObject>

#include <atomic>
#include <functional>
#include <memory>

class BookmarkTool;
class QThread;
class QTimer;

// Export of the archive or a folder through the save dialog, and the import of a
// browser bookmark file, parsed and written on a worker thread and shown in one step.
class BookmarkExchange final : public QObject
{
    Q_OBJECT

public:
    using Format = BookmarkExport::Format;

    explicit BookmarkExchange(BookmarkTool *tool);
    ~BookmarkExchange() override;

    // Asks for a file with a title and a filter and returns its path, empty when the
    // user cancelled. The save and open dialogs by default.
    using FileChooser = std::function<QString(const QString &title, const QString &filter)>;
    void setSaveChooser(FileChooser chooser) { m_chooseSave = std::move(chooser); }
    void setOpenChooser(FileChooser chooser) { m_chooseOpen = std::move(chooser); }

    // The archive (root node) or the folder of a folder node.
    void exportTo(Format format, const QModelIndex &node);
    // Asks for a file and imports it; the result replaces the archive's folders.
    void importArchive();
    // Imports a file without asking for it; the user is still asked before an existing
    // archive is replaced.
    void importFile(const QString &path);
    bool importRunning() const { return m_worker != nullptr; }
    void cancelImport() { m_cancel = true; }

    static QString dialogTitle(Format format, bool folder);
    static QString filter(Format format);

signals:
    // Percent done, while the import runs.
    void importProgress(int percent);
    // The import has ended; the text says how (imported, cancelled or why not).
    void importFinished(const QString &message);

private:
    // Yes/No: open the written file in a new window.
    void offerToShow(const QString &path);

    BookmarkTool *m_tool;
    FileChooser m_chooseSave;
    FileChooser m_chooseOpen;
    QThread *m_worker = nullptr;
    QTimer *m_poll = nullptr;
    std::atomic<bool> m_cancel = false;
    std::atomic<int> m_percent = 0;
};
