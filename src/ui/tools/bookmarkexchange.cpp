#include "ui/tools/bookmarkexchange.h"

#include "core/base/clock.h"
#include "core/base/feedmark.h"
#include "core/base/uitexts.h"
#include "core/model/booktreemodel.h"
#include "core/records/recordfile.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/windowsets.h"
#include "ui/tools/bookmarktool.h"
#include "ui/tools/frmrssheader.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>
#include <QUrl>

namespace {
QString startFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}
} // namespace

BookmarkExchange::BookmarkExchange(BookmarkTool *tool)
    : QObject(tool)
    , m_tool(tool)
    , m_poll(new QTimer(this))
{
    m_chooseSave = [tool](const QString &title, const QString &filter) {
        return QFileDialog::getSaveFileName(tool, title, startFolder(), filter);
    };
    m_chooseOpen = [tool](const QString &title, const QString &filter) {
        return QFileDialog::getOpenFileName(tool, title, startFolder(), filter);
    };
    m_poll->setInterval(50);
    connect(m_poll, &QTimer::timeout, this, [this] { emit importProgress(m_percent); });
}

BookmarkExchange::~BookmarkExchange()
{
    if (m_worker) {
        m_cancel = true;
        m_worker->wait();
    }
}

QString BookmarkExchange::dialogTitle(Format format, bool folder)
{
    switch (format) {
    case Format::Netscape:
        return uiText(folder ? 1006 : 1002);
    case Format::Html:
        return uiText(folder ? 1007 : 1003);
    case Format::Text:
        return uiText(folder ? 1008 : 1004);
    case Format::Xml:
        return uiText(folder ? 1053 : 1052);
    case Format::Rss:
        break;
    }
    return uiText(folder ? 1058 : 1057);
}

QString BookmarkExchange::filter(Format format)
{
    if (format == Format::Text)
        return uiText(1010) + QStringLiteral(" (*.txt)");
    if (format == Format::Xml || format == Format::Rss)
        return uiText(1054) + QStringLiteral(" (*.xml)");
    return uiText(1009) + QStringLiteral(" (*.htm *.html)");
}

void BookmarkExchange::exportTo(Format format, const QModelIndex &node)
{
    BookTreeModel *model = m_tool->model();
    Book &book = m_tool->book();
    const QString tag = model->tagAt(node);
    if (tag.isEmpty())
        return;
    BookmarkExport::Request request;
    request.format = format;
    request.folder = tag == u"Archiv" ? nullptr : model->folderAt(node);
    // Every folder written must have its bookmarks read; one that cannot be read
    // stops the export rather than writing it empty.
    for (qsizetype i = 0; i < book.colThema.count(); ++i) {
        Thema &folder = book.colThema.at(i);
        if (request.folder && request.folder != &folder)
            continue;
        if (const FileOutcome loaded = book.ensureLoaded(folder); !loaded.ok()) {
            QMessageBox::warning(m_tool, uiText(100), loaded.message());
            return;
        }
    }
    const QString path = m_chooseSave(dialogTitle(format, request.folder), filter(format));
    if (path.isEmpty())
        return;
    bool openAfterwards = false, asFeed = false;
    if (format == Format::Rss) {
        frmRSSHeader header(path, m_tool);
        if (header.exec() != QDialog::Accepted)
            return;
        request.header = header.header();
        openAfterwards = header.openAfterwards();
        asFeed = header.openAsFeed();
    }
    QString error;
    if (!RecordFile::writeBytes(path, BookmarkExport::bytes(book, request, Clock::now()), &error)) {
        QMessageBox::warning(m_tool, uiText(100), uiText(2001).arg(path, error));
        return;
    }
    if (!openAfterwards) {
        offerToShow(path);
        return;
    }
    Bookmark written;
    written.URL = QUrl::fromLocalFile(path).toString();
    const QString name = QFileInfo(path).fileName();
    written.Titel = asFeed ? FeedMark::markedTitle(name) : name;
    written.Adresszeile = written.Toolbar = ArchiveFiles::True;
    WindowSets::openBookmark(*m_tool->frame(), written);
}

void BookmarkExchange::offerToShow(const QString &path)
{
    if (QMessageBox::information(m_tool, uiText(100), uiText(1040) + path + uiText(1041),
            QMessageBox::Yes | QMessageBox::No)
        == QMessageBox::Yes)
        m_tool->frame()->OpenNewBrowser(QUrl::fromLocalFile(path).toString());
}

void BookmarkExchange::importArchive()
{
    const QString path = m_chooseOpen(uiText(1005), filter(Format::Netscape));
    if (!path.isEmpty())
        importFile(path);
}

void BookmarkExchange::importFile(const QString &path)
{
    if (m_worker)
        return;
    // Unsaved edits go into the backup rather than being lost with the old folders.
    m_tool->askToSave();
    // The folders are replaced, never merged: the user agrees first (a backup is made).
    const qsizetype folders = m_tool->book().colThema.count();
    if (folders > 0
        && QMessageBox::question(m_tool, uiText(100), uiText(2211).arg(folders),
               QMessageBox::Yes | QMessageBox::No, QMessageBox::No)
            != QMessageBox::Yes)
        return;
    m_cancel = false;
    m_percent = 0;
    // The worker parses the file and writes the backup and the new archive files through
    // an archive of its own; the tree, kept from edits meanwhile, then reads them in one
    // step. Only the atomics and the finished result cross between the threads.
    struct Outcome
    {
        NetscapeImport::Result parsed;
        NetscapeImport::ApplyOutcome applied;
    };
    auto outcome = std::make_shared<Outcome>();
    const QString dataFolder = m_tool->book().dataFolder();
    m_worker = QThread::create([this, path, outcome, dataFolder] {
        outcome->parsed = NetscapeImport::readFile(path, {}, [this](qint64 done, qint64 total) {
            m_percent = total > 0 ? int(done * 100 / total) : 0;
            return !m_cancel;
        });
        if (outcome->parsed.status != NetscapeImport::Result::Imported || m_cancel)
            return;
        Book written(dataFolder);
        written.LoadAllThema();
        outcome->applied = NetscapeImport::replaceArchive(written, outcome->parsed);
    });
    m_tool->setBusy(true);
    connect(m_worker, &QThread::finished, this, [this, outcome, path] {
        m_poll->stop();
        m_worker->deleteLater();
        m_worker = nullptr;
        m_tool->setBusy(false);
        const NetscapeImport::Result &result = outcome->parsed;
        if (result.status == NetscapeImport::Result::Imported && !m_cancel) {
            QApplication::setOverrideCursor(Qt::WaitCursor);
            m_tool->model()->reload();
            QApplication::restoreOverrideCursor();
            emit importFinished(outcome->applied.ok
                    ? uiText(2215).arg(result.folders.size()).arg(result.bookmarkCount())
                    : outcome->applied.error);
            return;
        }
        emit importFinished(result.status == NetscapeImport::Result::Cancelled || m_cancel
                ? uiText(2207)
                : uiText(2002).arg(path,
                    result.status == NetscapeImport::Result::Unreadable     ? result.error
                        : result.status == NetscapeImport::Result::TooLarge ? uiText(2210)
                        : result.status == NetscapeImport::Result::TooDeep
                        ? uiText(2092).arg(NetscapeImport::Limits().maxNesting)
                        : uiText(2084)));
    });
    m_poll->start();
    emit importProgress(0);
    m_worker->start();
}
