#include "ui/frame/pageinspection.h"

#include "core/base/uitexts.h"
#include "core/inspection/picturelist.h"
#include "core/inspection/structurepage.h"
#include "engine/pageinspector.h"
#include "ui/browser/frmbrowser.h"
#include "ui/frame/mdiform1.h"

#include <QPointer>

namespace {
void show(MDIForm1 *frame, bool html, const QString &page)
{
    if (!html) {
        frame->setStatusText(uiText(2575));
        return;
    }
    frmBrowser *window
        = frame->CreateBrowser(MDIForm1::BrowserKind::MDI, QStringLiteral("about:blank"));
    window->page()->showGeneratedPage(page.toUtf8());
}
} // namespace

namespace PageInspection {

void showPictures(MDIForm1 *frame, frmBrowser *window)
{
    QPointer<MDIForm1> guard = frame;
    PageInspector::pictures(window->page(), [guard](const PictureList::Page &page) {
        if (guard)
            show(guard, page.html, page.html ? PictureList::render(page) : QString());
    });
}

void showStructure(MDIForm1 *frame, frmBrowser *window)
{
    QPointer<MDIForm1> guard = frame;
    PageInspector::structure(window->page(), [guard](const DocumentOutline &outline) {
        if (guard)
            show(guard, outline.html, outline.html ? StructurePage::render(outline) : QString());
    });
}

} // namespace PageInspection
