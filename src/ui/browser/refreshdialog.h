#pragma once

#include <QDialog>

class QCheckBox;
class QLabel;
class QSpinBox;

// The refresh-interval dialog of one window: off, or an interval in seconds, with
// buttons for the usual choices, and whether a changed page marks the window's tab.
class RefreshDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit RefreshDialog(QWidget *parent = nullptr);

    // The chosen interval in seconds, 0 when the refresh is off.
    int seconds() const;
    void setSeconds(int seconds);
    bool marksChanges() const;
    void setMarksChanges(bool on);

private:
    void showReading();

    QCheckBox *m_on;
    QSpinBox *m_seconds;
    QLabel *m_reading;
    QCheckBox *m_mark;
};
