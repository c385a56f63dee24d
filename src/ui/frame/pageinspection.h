#pragma once

class MDIForm1;
class frmBrowser;

// "Show page pictures" and "Show document structure": read the window's page and show
// what was found as a generated page in a new window; the inspected window stays as it is.
namespace PageInspection {

void showPictures(MDIForm1 *frame, frmBrowser *window);
void showStructure(MDIForm1 *frame, frmBrowser *window);

} // namespace PageInspection
