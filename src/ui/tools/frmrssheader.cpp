#include "ui/tools/frmrssheader.h"

#include "core/base/uitexts.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {
// The labels are the tags themselves, shown as written rather than read as markup.
QLabel *tagLabel(const char *tag, QWidget *parent)
{
    auto *label = new QLabel(QLatin1String(tag), parent);
    label->setTextFormat(Qt::PlainText);
    return label;
}
} // namespace

frmRSSHeader::frmRSSHeader(const QString &targetFile, QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmRSSHeader"));
    setWindowTitle(QStringLiteral("RSS Channel-Tags"));
    const XmlExports::RssHeader presets;
    auto *channel = new QGroupBox(uiText(1069), this);
    auto *channelForm = new QFormLayout(channel);
    Text1 = new QLineEdit(presets.channelTitle, channel);
    Text3 = new QLineEdit(presets.channelLink, channel);
    Text2 = new QLineEdit(presets.channelDescription, channel);
    channelForm->addRow(tagLabel("<title>", this), Text1);
    channelForm->addRow(tagLabel("<link>", this), Text3);
    channelForm->addRow(tagLabel("<description>", this), Text2);

    Check2 = new QCheckBox(QStringLiteral("<image>"), this);
    auto *image = new QGroupBox(this);
    auto *imageForm = new QFormLayout(image);
    Text4 = new QLineEdit(presets.imageUrl, image);
    Text5 = new QLineEdit(presets.imageTitle, image);
    Text6 = new QLineEdit(presets.imageLink, image);
    imageForm->addRow(tagLabel("<url>", this), Text4);
    imageForm->addRow(tagLabel("<title>", this), Text5);
    imageForm->addRow(tagLabel("<link>", this), Text6);
    image->setEnabled(false);
    connect(Check2, &QCheckBox::toggled, image, &QWidget::setEnabled);

    Check1 = new QCheckBox(uiText(1066), this);
    Option1 = new QRadioButton(uiText(1067), this);
    Option2 = new QRadioButton(uiText(1068), this);
    Option1->setChecked(true);
    Text7 = new QLineEdit(targetFile, this);
    Text7->setReadOnly(true);

    auto *buttons = new QDialogButtonBox(this);
    Ok = buttons->addButton(uiText(717), QDialogButtonBox::AcceptRole);
    Cancel = buttons->addButton(uiText(716), QDialogButtonBox::RejectRole);
    Ok->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &frmRSSHeader::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmRSSHeader::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(channel);
    layout->addWidget(Check2);
    layout->addWidget(image);
    layout->addWidget(Check1);
    layout->addWidget(Option1);
    layout->addWidget(Option2);
    layout->addWidget(Text7);
    layout->addWidget(buttons);
}

XmlExports::RssHeader frmRSSHeader::header() const
{
    XmlExports::RssHeader header;
    header.channelTitle = Text1->text();
    header.channelLink = Text3->text();
    header.channelDescription = Text2->text();
    header.withImage = Check2->isChecked();
    header.imageUrl = Text4->text();
    header.imageTitle = Text5->text();
    header.imageLink = Text6->text();
    return header;
}

bool frmRSSHeader::openAfterwards() const
{
    return Check1->isChecked();
}

bool frmRSSHeader::openAsFeed() const
{
    return Option1->isChecked();
}

void frmRSSHeader::accept()
{
    const XmlExports::RssHeaderCheck check = XmlExports::checkRssHeader(header());
    if (!check.ok()) {
        QMessageBox::critical(this, uiText(100), check.message);
        QLineEdit *fields[] = {nullptr, Text1, Text3, Text4, Text5, Text6};
        if (QLineEdit *field = fields[check.field])
            field->setFocus();
        return;
    }
    QDialog::accept();
}
