#include "engine/downloads.h"

#include "core/base/uitexts.h"
#include "engine/webpage.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>
#include <QWebEngineDownloadRequest>
#include <QWebEngineProfile>

Downloads::Downloads(QWebEngineProfile *profile, QObject *parent)
    : QObject(parent)
{
    m_chooser = [](const QString &suggested) {
        return QFileDialog::getSaveFileName(nullptr, uiText(2010), suggested);
    };
    connect(profile, &QWebEngineProfile::downloadRequested, this,
        [this](QWebEngineDownloadRequest *download) {
            if (auto *page = qobject_cast<WebPage *>(download->page());
                page && page->refusesDownloads) {
                download->cancel();
                emit page->downloadRefused(download->url());
                return;
            }
            if (download->isSavePageDownload()) {
                download->accept(); // the path was chosen by the save command
                return;
            }
            QString folder = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
            if (folder.isEmpty())
                folder = QDir::homePath();
            const QString path = m_chooser(folder + u'/' + download->downloadFileName());
            if (path.isEmpty()) {
                download->cancel();
                return;
            }
            const QFileInfo target(path);
            download->setDownloadDirectory(target.absolutePath());
            download->setDownloadFileName(target.fileName());
            const QString name = target.fileName();
            connect(download, &QWebEngineDownloadRequest::receivedBytesChanged, this,
                [this, download, name] {
                    const qint64 total = download->totalBytes();
                    const qint64 percent = total > 0 ? download->receivedBytes() * 100 / total : 0;
                    emit statusText(uiText(2100).arg(name).arg(percent));
                });
            connect(download, &QWebEngineDownloadRequest::isFinishedChanged, this,
                [this, download, path, name] {
                    const bool ok
                        = download->state() == QWebEngineDownloadRequest::DownloadCompleted;
                    emit statusText(ok ? uiText(2012).arg(name)
                                       : uiText(2013).arg(name, download->interruptReasonString()));
                    emit finished(path, ok);
                });
            download->accept();
        });
}
