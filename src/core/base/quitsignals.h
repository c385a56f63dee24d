#pragma once

#include <QObject>

class QSocketNotifier;

// Turns SIGTERM and SIGINT into a Qt signal on the main thread, so that the
// program closes exactly as when the user quits.
class QuitSignals final : public QObject
{
    Q_OBJECT

public:
    explicit QuitSignals(QObject *parent = nullptr);

signals:
    void quitRequested();

private:
    QSocketNotifier *m_notifier = nullptr;
};
