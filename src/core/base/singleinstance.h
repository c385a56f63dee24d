#pragma once

#include <QLockFile>
#include <QObject>
#include <QString>

#include <memory>

class QLocalServer;
class QLocalSocket;

// One running Vantrell per user and data folder. The first start listens on a
// local socket; a later start hands its command line over and ends. A lock file
// makes two first starts at the same moment end as one instance.
class SingleInstance final : public QObject
{
    Q_OBJECT

public:
    enum class Role { First, Second, Failed };

    explicit SingleInstance(const QString &dataFolder, QObject *parent = nullptr);
    ~SingleInstance() override;

    Role start();
    // Second start: sends the raw command line (empty: only bring the first to the
    // front) and waits until the running instance has taken it.
    bool handOver(const QString &rawLine);

    static QString serverName(const QString &dataFolder);
    static constexpr int MaxMessageBytes = 64 * 1024;

    // Takes the hand-over line out of the bytes a peer sent so far: one line, ended by
    // a line feed, within MaxMessageBytes; whatever follows it is dropped with it.
    enum class LineState { Incomplete, Complete, TooLong };
    static LineState takeLine(QByteArray &buffer, QString *line);

signals:
    // The running instance received a command line from a second start.
    void commandLineReceived(const QString &rawLine);

private:
    void acceptConnection();

    QString m_name;
    QLockFile m_lock;
    QLocalServer *m_server = nullptr;
    std::unique_ptr<QLocalSocket> m_client;
};
