#pragma once

#include "core/model/bookmark.h"

#include <QDialog>

#include <functional>

class QCheckBox;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

// The bookmark's properties: name, address, description, the bars to show when it
// opens, and whether it is a feed.
class frmBMProperty final : public QDialog
{
    Q_OBJECT

public:
    // A new bookmark: an empty name and "http://" as the address.
    explicit frmBMProperty(QWidget *parent = nullptr);

    // Fills the dialog from an existing bookmark.
    void TakeBookmark(const Bookmark &bookmark);
    // Writes the dialog's values into the bookmark.
    void applyTo(Bookmark &bookmark) const;
    QString titel() const;

    // Asked on OK with the address; false keeps the dialog open (a duplicate the user
    // did not want).
    void setAddressCheck(std::function<bool(const QString &url)> check)
    {
        m_addressCheck = std::move(check);
    }

    QLineEdit *Text1 = nullptr;
    QLineEdit *Text2 = nullptr;
    QPlainTextEdit *Text3 = nullptr;
    QCheckBox *Check1 = nullptr;
    QCheckBox *Check2 = nullptr;
    QCheckBox *Check3 = nullptr;
    QPushButton *Ok = nullptr;
    QPushButton *Cancel = nullptr;

public slots:
    void accept() override;

private:
    std::function<bool(const QString &)> m_addressCheck;
};
