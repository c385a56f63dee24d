#pragma once

#include <QWidget>

class QLabel;
class QPushButton;
class Roundtrip;

// The slim bar above the page while a roundtrip runs: where it stands ("3 / 27") and
// which address, with pause/resume, next and stop; at the end the summary.
class RoundtripBar final : public QWidget
{
    Q_OBJECT

public:
    explicit RoundtripBar(QWidget *parent = nullptr);

    // Follows the roundtrip until it ends or goes away.
    void follow(Roundtrip *roundtrip);
    QString text() const;
    QPushButton *pauseButton() const { return m_pause; }
    QPushButton *nextButton() const { return m_next; }
    QPushButton *stopButton() const { return m_stop; }

private:
    void update(Roundtrip *roundtrip);
    void showSummary(Roundtrip *roundtrip);

    QLabel *m_label;
    QPushButton *m_pause;
    QPushButton *m_next;
    QPushButton *m_stop;
    QPushButton *m_close;
};
