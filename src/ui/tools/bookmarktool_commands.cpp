// The bookmark tool's commands: folders, bookmarks from windows and links, properties,
// opening.
#include "core/base/feedmark.h"
#include "core/base/uitexts.h"
#include "core/browsing/roundtrip.h"
#include "core/model/booktreemodel.h"
#include "core/prefs/prefer.h"
#include "ui/browser/frmbrowser.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/windowsets.h"
#include "ui/tools/bookmarktool.h"
#include "ui/tools/frmbmproperty.h"

#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>
#include <QUrl>

void BookmarkTool::AddDirToArchive()
{
    const QModelIndex added = m_model->addFolder(current());
    if (!added.isValid())
        return;
    select(added);
    m_tree->edit(added);
}

void BookmarkTool::renameFolder(const QModelIndex &index)
{
    if (m_model->tagAt(index) == u"Dir")
        m_tree->edit(index);
}

void BookmarkTool::deleteFolder(const QModelIndex &index)
{
    switch (m_model->checkDeleteFolder(index, prefer().GroupFile())) {
    case BookTreeModel::DeleteCheck::StartFolder:
        QMessageBox::warning(this, uiText(100), uiText(1039));
        return;
    case BookTreeModel::DeleteCheck::NotEmpty:
        if (QMessageBox::question(this, uiText(100), uiText(1037),
                QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel)
            != QMessageBox::Ok)
            return;
        break;
    case BookTreeModel::DeleteCheck::Allowed:
        break;
    }
    if (m_model->tagAt(index) == u"Dir" && !m_model->deleteFolder(index))
        emit statusText(m_book.lastOutcome().message());
    updateMenus();
}

int BookmarkTool::addBookmarks(const QList<LinksToOpen::TitledLink> &links)
{
    const QModelIndex target = current();
    if (!m_model->folderAt(target))
        return 0;
    const QPersistentModelIndex folder = m_model->folderIndex(m_model->folderAt(target));
    // Yes to all / No to all answer every further duplicate of this batch.
    std::optional<bool> forAll;
    int added = 0;
    for (const LinksToOpen::TitledLink &link : links) {
        auto result = m_model->addBookmark(folder, link.title, link.url,
            forAll.value_or(false) ? BookEditing::Duplicates::Allow : BookEditing::Duplicates::Ask);
        if (result.status == BookEditing::AddBookmarkResult::DuplicateAddress) {
            if (forAll.has_value())
                continue;
            QMessageBox box(
                QMessageBox::Question, uiText(100), result.question, QMessageBox::NoButton, this);
            QPushButton *yes = box.addButton(uiText(103), QMessageBox::YesRole);
            QPushButton *no = box.addButton(uiText(104), QMessageBox::NoRole);
            QPushButton *yesAll = nullptr, *noAll = nullptr;
            if (links.size() > 1) {
                yesAll = box.addButton(uiText(2212), QMessageBox::YesRole);
                noAll = box.addButton(uiText(2213), QMessageBox::NoRole);
            }
            box.setDefaultButton(no);
            box.exec();
            if (box.clickedButton() == yesAll || box.clickedButton() == noAll)
                forAll = box.clickedButton() == yesAll;
            if (box.clickedButton() != yes && box.clickedButton() != yesAll)
                continue;
            result = m_model->addBookmark(
                folder, link.title, link.url, BookEditing::Duplicates::Allow);
        }
        if (result.bookmark)
            ++added;
        else if (!m_book.lastOutcome().message().isEmpty())
            emit statusText(m_book.lastOutcome().message());
    }
    if (added > 0)
        m_tree->expand(folder);
    return added;
}

namespace {
LinksToOpen::TitledLink windowLink(const frmBrowser *window)
{
    // A window that shows a feed is kept as a feed bookmark of the feed's address.
    if (!window->FeedSourceUrl.isEmpty())
        return {FeedMark::markedTitle(window->Caption()), window->FeedSourceUrl};
    return {window->Caption(), window->LocationURL()};
}
} // namespace

void BookmarkTool::addFromForeground()
{
    if (const frmBrowser *window = m_frame->activeBrowser())
        addBookmarks({windowLink(window)});
}

void BookmarkTool::addFromAllWindows()
{
    QList<LinksToOpen::TitledLink> links;
    for (const frmBrowser *window : m_frame->browsers())
        links.append(windowLink(window));
    addBookmarks(links);
}

void BookmarkTool::addAllLinks()
{
    frmBrowser *window = m_frame->activeBrowser();
    if (!window || !m_model->folderAt(current()))
        return;
    QPointer<BookmarkTool> self = this;
    const QPersistentModelIndex target = current();
    window->page()->documentLinks([self, target](const PageView::DocumentLinks &links) {
        if (!self || !target.isValid() || !links.html)
            return;
        self->select(target);
        self->addBookmarks(LinksToOpen::toBookmark(links.anchors));
    });
}

void BookmarkTool::addWithDialog()
{
    const QPersistentModelIndex target = current();
    if (!m_model->folderAt(target))
        return;
    frmBMProperty dialog(this);
    dialog.setAddressCheck([this, &target](const QString &url) {
        return !m_model->folderHasAddress(target, url)
            || QMessageBox::question(this, uiText(100), BookEditing::duplicateAddressQuestion(url),
                   QMessageBox::Yes | QMessageBox::No)
            == QMessageBox::Yes;
    });
    if (dialog.exec() != QDialog::Accepted || !target.isValid())
        return;
    const auto result = m_model->addBookmark(
        target, dialog.titel(), dialog.Text2->text(), BookEditing::Duplicates::Allow);
    if (!result.bookmark)
        return;
    dialog.applyTo(*result.bookmark);
    const QModelIndex folder = m_model->folderIndex(m_model->folderAt(target));
    const QModelIndex added = m_model->index(m_model->rowCount(folder) - 1, 0, folder);
    m_model->bookmarkChanged(added);
    select(added);
}

void BookmarkTool::editProperties(const QModelIndex &index)
{
    Bookmark *bookmark = m_model->bookmarkAt(index);
    if (!bookmark)
        return;
    frmBMProperty dialog(this);
    dialog.TakeBookmark(*bookmark);
    const QPersistentModelIndex held = index;
    if (dialog.exec() != QDialog::Accepted || !held.isValid())
        return;
    dialog.applyTo(*m_model->bookmarkAt(held));
    m_model->bookmarkChanged(held);
}

void BookmarkTool::deleteBookmark(const QModelIndex &index)
{
    m_model->removeBookmark(index);
    updateMenus();
}

void BookmarkTool::sortSelected()
{
    const QModelIndex index = current();
    if (m_model->tagAt(index) == u"Archiv")
        m_model->sortFolders();
    else
        m_model->sortBookmarks(index);
}

void BookmarkTool::setHome(const QModelIndex &index)
{
    if (const Bookmark *bookmark = m_model->bookmarkAt(index)) {
        prefer().setHomeTitle(bookmark->Titel);
        prefer().setHomeUrl(bookmark->URL);
        emit statusText(bookmark->URL);
    }
}

bool BookmarkTool::mayOpen(const QString &url)
{
    const QString scheme = QUrl(url.trimmed()).scheme().toLower();
    if (scheme == u"javascript") {
        QMessageBox::warning(this, uiText(100), uiText(2208).arg(url));
        return false;
    }
    if (scheme == u"file")
        return QMessageBox::question(this, uiText(100), uiText(2209).arg(url),
                   QMessageBox::Yes | QMessageBox::No, QMessageBox::No)
            == QMessageBox::Yes;
    return true;
}

bool BookmarkTool::OpenBookmark(const QModelIndex &index)
{
    const Bookmark *bookmark = m_model->bookmarkAt(index);
    if (!bookmark || !mayOpen(bookmark->URL))
        return false;
    WindowSets::openBookmark(*m_frame, *m_model->bookmarkAt(index));
    return true;
}

void BookmarkTool::OpenAll(const QModelIndex &index)
{
    Thema *folder = m_model->folderAt(index);
    if (!folder || !m_book.ensureLoaded(*folder).ok() || !folder->colBookmark)
        return;
    const bool running = !m_openQueue.isEmpty();
    for (qsizetype i = 0; i < folder->colBookmark->count(); ++i) {
        const Bookmark &bookmark = folder->colBookmark->at(i);
        if (mayOpen(bookmark.URL))
            m_openQueue.append(bookmark);
    }
    if (!running)
        openNext();
}

void BookmarkTool::openNext()
{
    // One window per turn of the event loop, as "open all links" does.
    if (m_openQueue.isEmpty())
        return;
    WindowSets::openBookmark(*m_frame, m_openQueue.takeFirst());
    if (!m_openQueue.isEmpty())
        QTimer::singleShot(0, this, &BookmarkTool::openNext);
}

void BookmarkTool::startRoundtrip(const QModelIndex &index)
{
    Thema *folder = m_model->folderAt(index);
    if (!folder || !m_book.ensureLoaded(*folder).ok() || !folder->colBookmark)
        return;
    QStringList addresses;
    for (qsizetype i = 0; i < folder->colBookmark->count(); ++i)
        addresses.append(folder->colBookmark->at(i).URL.trimmed());
    // The window starts empty, loading nothing: the tour's first page is its first load,
    // so no blank page still loading is taken for it.
    frmBrowser *window
        = m_frame->CreateBrowser(MDIForm1::BrowserKind::MDI, QStringLiteral("about:blank"));
    window->StartRoundtrip(Roundtrip::pagesOf(addresses));
}
