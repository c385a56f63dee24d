#pragma once

#include <QByteArray>

class QPrinter;
class QWidget;

// The print preview of a page. It shows the PDF the engine made of the page for paper
// and draws its pages itself, so the dialog can be closed at any moment: nothing in it
// waits for the engine. Printing from it prints the same pages.
namespace PrintPreview {

// Shows the preview of `pdf` for `printer` and returns when the user closes it; false
// when the PDF cannot be read.
bool exec(const QByteArray &pdf, QPrinter *printer, QWidget *parent);

} // namespace PrintPreview
