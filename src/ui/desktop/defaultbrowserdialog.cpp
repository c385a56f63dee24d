#include "ui/desktop/defaultbrowserdialog.h"

#include "core/base/uitexts.h"
#include "core/desktop/defaultbrowser.h"

#include <QMessageBox>
#include <QPushButton>

namespace DefaultBrowserDialog {

void run(QWidget *parent, const QString &dataFolder)
{
    DefaultBrowser browser(dataFolder);
    const bool already = browser.isDefault();
    QMessageBox ask(QMessageBox::Question, uiText(100), uiText(already ? 2406 : 1600),
        QMessageBox::NoButton, parent);
    QPushButton *yes = nullptr;
    if (!already) {
        yes = ask.addButton(uiText(103), QMessageBox::YesRole);
        ask.setDefaultButton(yes);
    }
    QPushButton *restore = nullptr;
    if (browser.hasPrevious()) {
        const QString previous = browser.previousBrowser();
        if (!previous.isEmpty())
            ask.setInformativeText(uiText(2407).arg(previous));
        restore = ask.addButton(uiText(2400), QMessageBox::ActionRole);
    }
    ask.addButton(uiText(already ? 101 : 104), QMessageBox::RejectRole);
    ask.exec();

    const auto report = [parent](bool ok, int done, int failed, const QString &why) {
        if (ok)
            QMessageBox::information(parent, uiText(100), uiText(done));
        else
            QMessageBox::warning(
                parent, uiText(100), uiText(failed) + QStringLiteral("\n\n") + why);
    };
    if (yes && ask.clickedButton() == yes) {
        const DefaultBrowser::Result result = browser.makeDefault();
        report(result.ok(), 1601, 1603, browser.message(result));
    } else if (restore && ask.clickedButton() == restore) {
        const DefaultBrowser::Result result = browser.restorePrevious();
        report(result.ok(), 1602, 2408, browser.message(result));
    }
}

} // namespace DefaultBrowserDialog
