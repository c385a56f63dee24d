#include "ui/tools/layoutpropertydialog.h"

#include "core/base/uitexts.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>

LayoutPropertyDialog::LayoutPropertyDialog(
    const QString &name, const QString &info, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(uiText(1558));
    nameField = new QLineEdit(name, this);
    nameField->setObjectName(QStringLiteral("Text1"));
    infoField = new QPlainTextEdit(info, this);
    infoField->setObjectName(QStringLiteral("Text2"));
    infoField->setTabChangesFocus(true);
    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(uiText(717), QDialogButtonBox::AcceptRole);
    buttons->addButton(uiText(716), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &LayoutPropertyDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &LayoutPropertyDialog::reject);
    auto *form = new QFormLayout(this);
    form->addRow(uiText(1559), nameField);
    form->addRow(uiText(1560), infoField);
    form->addRow(buttons);
    nameField->selectAll();
}

QString LayoutPropertyDialog::name() const
{
    return nameField->text().trimmed();
}

QString LayoutPropertyDialog::info() const
{
    return infoField->toPlainText().trimmed();
}

void LayoutPropertyDialog::accept()
{
    if (name().isEmpty()) {
        QMessageBox::critical(this, uiText(100), uiText(1561));
        nameField->setFocus();
        return;
    }
    QDialog::accept();
}
