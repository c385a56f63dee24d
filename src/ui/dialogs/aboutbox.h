#pragma once

#include <QDialog>

// Name, version, the engine and toolkit inside, the data folder (a click opens it) and
// the licences of the program and its libraries.
class AboutBox final : public QDialog
{
    Q_OBJECT

public:
    explicit AboutBox(const QString &dataFolder, QWidget *parent = nullptr);

    // The box's text as rich text.
    static QString text(const QString &dataFolder);
};
