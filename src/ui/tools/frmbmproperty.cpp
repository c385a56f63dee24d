#include "ui/tools/frmbmproperty.h"

#include "core/base/feedmark.h"
#include "core/base/uitexts.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

frmBMProperty::frmBMProperty(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmBMProperty"));
    setWindowTitle(uiText(1300));
    Text1 = new QLineEdit(this);
    Text2 = new QLineEdit(QStringLiteral("http://"), this);
    Text3 = new QPlainTextEdit(this);
    auto *form = new QFormLayout;
    form->addRow(uiText(1301), Text1);
    form->addRow(uiText(1302).trimmed(), Text2);
    form->addRow(uiText(1303), Text3);

    auto *options = new QGroupBox(uiText(1304), this);
    Check1 = new QCheckBox(uiText(713), options);
    Check2 = new QCheckBox(uiText(714), options);
    Check1->setChecked(true);
    Check2->setChecked(true);
    auto *optionsLayout = new QVBoxLayout(options);
    optionsLayout->addWidget(Check1);
    optionsLayout->addWidget(Check2);
    Check3 = new QCheckBox(uiText(1305), this);

    auto *buttons = new QDialogButtonBox(this);
    Ok = buttons->addButton(uiText(717), QDialogButtonBox::AcceptRole);
    Cancel = buttons->addButton(uiText(716), QDialogButtonBox::RejectRole);
    Ok->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &frmBMProperty::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmBMProperty::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(options);
    layout->addWidget(Check3);
    layout->addWidget(buttons);
}

void frmBMProperty::TakeBookmark(const Bookmark &bookmark)
{
    setWindowTitle(uiText(1300) + QStringLiteral(" - [") + bookmark.Titel + u']');
    Text1->setText(FeedMark::displayTitle(bookmark.Titel));
    Text2->setText(bookmark.URL);
    QString info = bookmark.Info;
    Text3->setPlainText(info.replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
    Check1->setChecked(bookmark.Adresszeile != 0);
    Check2->setChecked(bookmark.Toolbar != 0);
    Check3->setChecked(FeedMark::isFeedTitle(bookmark.Titel));
}

QString frmBMProperty::titel() const
{
    return (Check3->isChecked() ? FeedMark::mark() : QString()) + Text1->text();
}

void frmBMProperty::applyTo(Bookmark &bookmark) const
{
    bookmark.Titel = titel();
    bookmark.URL = Text2->text();
    // The archive keeps line breaks as CR LF.
    QString info = Text3->toPlainText();
    bookmark.Info = info.replace(u'\n', QStringLiteral("\r\n"));
    bookmark.Adresszeile = Check1->isChecked() ? ArchiveFiles::True : ArchiveFiles::False;
    bookmark.Toolbar = Check2->isChecked() ? ArchiveFiles::True : ArchiveFiles::False;
}

void frmBMProperty::accept()
{
    if (Text1->text().isEmpty()) {
        QMessageBox::critical(this, uiText(100), uiText(2214));
        Text1->setFocus();
        return;
    }
    if (m_addressCheck && !m_addressCheck(Text2->text()))
        return;
    QDialog::accept();
}
