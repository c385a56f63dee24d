#include "ui/browser/printpreview.h"

#include <QPainter>
#include <QPdfDocument>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QTemporaryFile>

namespace {

// Pages are drawn as pictures; more than this many dots per inch only costs memory.
constexpr int MaxDotsPerInch = 300;

void drawPages(QPdfDocument &document, QPrinter *printer)
{
    QPainter painter(printer);
    const QRect paper = printer->pageLayout().paintRectPixels(printer->resolution());
    const qreal scale = qMin(printer->resolution(), MaxDotsPerInch) / 72.0;
    for (int page = 0; page < document.pageCount(); ++page) {
        if (page > 0)
            printer->newPage();
        const QSizeF points = document.pagePointSize(page);
        const QImage picture = document.render(page, (points * scale).toSize());
        // The page keeps its proportions inside the printable area.
        const QSize fitted = points.toSize().scaled(paper.size(), Qt::KeepAspectRatio);
        painter.drawImage(QRect(QPoint(0, 0), fitted), picture);
    }
}

} // namespace

namespace PrintPreview {

bool exec(const QByteArray &pdf, QPrinter *printer, QWidget *parent)
{
    // The document reads from a file at once; from a device it would read later.
    QTemporaryFile file;
    if (pdf.isEmpty() || !file.open() || file.write(pdf) != pdf.size() || !file.flush())
        return false;
    QPdfDocument document;
    if (document.load(file.fileName()) != QPdfDocument::Error::None || document.pageCount() < 1)
        return false;
    QPrintPreviewDialog preview(printer, parent);
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, &preview,
        [&document](QPrinter *target) { drawPages(document, target); });
    preview.exec();
    return true;
}

} // namespace PrintPreview
