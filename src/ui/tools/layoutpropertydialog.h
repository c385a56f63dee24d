#pragma once

#include <QDialog>

class QLineEdit;
class QPlainTextEdit;

// A web layout's name and description, for a new layout and for renaming one.
class LayoutPropertyDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit LayoutPropertyDialog(
        const QString &name, const QString &info, QWidget *parent = nullptr);

    QString name() const;
    QString info() const;

    QLineEdit *nameField = nullptr;
    QPlainTextEdit *infoField = nullptr;

public slots:
    // A layout without a name is refused; the dialog stays open.
    void accept() override;
};
