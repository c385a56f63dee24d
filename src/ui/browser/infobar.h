#pragma once

#include <QWidget>

#include <functional>

class QLabel;
class QPushButton;

// A message across the top of a page, with an optional question. It never blocks:
// a question left unanswered counts as "no".
class InfoBar final : public QWidget
{
    Q_OBJECT

public:
    explicit InfoBar(QWidget *parent = nullptr);

    void showMessage(const QString &text);
    void ask(const QString &text, std::function<void(bool)> answer);
    QString text() const;
    // Answers a pending question (as the buttons do).
    void answer(bool yes);

private:
    QLabel *m_label;
    QPushButton *m_yes;
    QPushButton *m_no;
    QPushButton *m_close;
    std::function<void(bool)> m_answer;
};
