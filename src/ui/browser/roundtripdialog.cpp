#include "ui/browser/roundtripdialog.h"

#include "core/base/uitexts.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QSpinBox>
#include <QVBoxLayout>

namespace RoundtripDialog {

bool ask(QWidget *parent, int count, Roundtrip::Timing *timing)
{
    QDialog dialog(parent);
    dialog.setWindowTitle(uiText(2580));
    auto *layout = new QVBoxLayout(&dialog);
    layout->addWidget(new QLabel(uiText(2581).arg(count), &dialog));
    auto *form = new QFormLayout;
    auto *seconds = new QSpinBox(&dialog);
    seconds->setRange(1, 3600);
    seconds->setValue(qBound(1, timing->dwellMs / 1000, 3600));
    seconds->setSuffix(u' ' + uiText(2593));
    form->addRow(uiText(2582), seconds);
    layout->addLayout(form);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout->addWidget(buttons);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    timing->dwellMs = seconds->value() * 1000;
    return true;
}

} // namespace RoundtripDialog
