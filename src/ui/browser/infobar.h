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
    // A message with up to two choices (an empty label leaves its button out); the
    // callback gets 1 or 2 for the choice taken, 0 when the bar was closed or replaced.
    void offer(const QString &text, const QString &first, const QString &second,
        std::function<void(int)> choice);
    QString text() const;
    // Answers a pending question (as the buttons do).
    void answer(bool yes);
    void choose(int choice);

private:
    QLabel *m_label;
    QPushButton *m_yes;
    QPushButton *m_no;
    QPushButton *m_close;
    std::function<void(int)> m_choice;
};
