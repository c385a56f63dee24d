#pragma once

#include "core/exchange/xmlexports.h"

#include <QDialog>

class QCheckBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

// The channel of an RSS export: its title, link and description, an optional image,
// and whether the written file is opened, as a feed or as an XML file.
class frmRSSHeader final : public QDialog
{
    Q_OBJECT

public:
    explicit frmRSSHeader(const QString &targetFile, QWidget *parent = nullptr);

    XmlExports::RssHeader header() const;
    bool openAfterwards() const;
    bool openAsFeed() const;

    QLineEdit *Text1 = nullptr; // channel <title>
    QLineEdit *Text2 = nullptr; // channel <description>
    QLineEdit *Text3 = nullptr; // channel <link>
    QCheckBox *Check2 = nullptr; // <image>
    QLineEdit *Text4 = nullptr; // image <url>
    QLineEdit *Text5 = nullptr; // image <title>
    QLineEdit *Text6 = nullptr; // image <link>
    QCheckBox *Check1 = nullptr;
    QRadioButton *Option1 = nullptr;
    QRadioButton *Option2 = nullptr;
    QLineEdit *Text7 = nullptr;
    QPushButton *Ok = nullptr;
    QPushButton *Cancel = nullptr;

public slots:
    // The first refused field says so and keeps the dialog open with what was typed.
    void accept() override;
};
