#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTimer>

#include <functional>
#include <utility>

// Answering the program's modal dialogs from a test, while they wait in their own loop.

// Runs `act` on the next modal dialog of type T once it shows.
template<typename T> void whenShown(QObject *context, std::function<void(T *)> act)
{
    auto *poll = new QTimer(context);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, act] {
        if (auto *dialog = qobject_cast<T *>(QApplication::activeModalWidget())) {
            poll->stop();
            poll->deleteLater();
            act(dialog);
        }
    });
    poll->start(10);
}
// While it lives, answers every message box with the button of that text, and keeps
// how many there were and the last one's text.
struct Answerer
{
    // The innermost one answers: a box inside a dialog that an outer one waits for.
    explicit Answerer(const QString &button)
        : outer(std::exchange(innermost, this))
    {
        QObject::connect(&poll, &QTimer::timeout, &poll, [this, button] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box || !box->isVisible() || innermost != this)
                return;
            ++count;
            text = box->text();
            for (QAbstractButton *candidate : box->buttons()) {
                if (candidate->text() == button)
                    return candidate->click();
            }
            box->reject();
        });
        poll.start(10);
    }
    ~Answerer() { innermost = outer; }
    static inline Answerer *innermost = nullptr;
    Answerer *outer;
    QTimer poll;
    int count = 0;
    QString text;
};
