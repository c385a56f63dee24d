#pragma once

#include <QByteArray>
#include <QList>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>
#include <memory>

// A POP3 server on 127.0.0.1 that behaves as each case scripts it. By default it
// answers like a small honest server with three messages.
class ScriptedPop3Server final : public QTcpServer
{
public:
    std::function<void(QTcpSocket *)> greet
        = [](QTcpSocket *socket) { socket->write("+OK ready\r\n"); };
    std::function<void(QTcpSocket *, const QByteArray &)> answer
        = [](QTcpSocket *socket, const QByteArray &command) {
              if (command == "LIST")
                  socket->write("+OK 3 300\r\n1 100\r\n2 100\r\n3 100\r\n.\r\n");
              else if (command == "QUIT") {
                  socket->write("+OK bye\r\n");
                  socket->disconnectFromHost();
              } else
                  socket->write("+OK\r\n");
          };
    QByteArray received;
    QList<QPointer<QTcpSocket>> connections;

    ScriptedPop3Server()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = nextPendingConnection()) {
                socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
                connections.append(socket);
                auto pending = std::make_shared<QByteArray>();
                connect(socket, &QTcpSocket::readyRead, this, [this, socket, pending] {
                    const QByteArray bytes = socket->readAll();
                    received += bytes;
                    *pending += bytes;
                    qsizetype end;
                    while ((end = pending->indexOf("\r\n")) >= 0) {
                        const QByteArray line = pending->left(end);
                        pending->remove(0, end + 2);
                        answer(socket, line.split(' ').first());
                    }
                });
                greet(socket);
            }
        });
    }

    QString address() const { return QStringLiteral("pop3://127.0.0.1:%1").arg(serverPort()); }

    bool allClosed() const
    {
        for (const QPointer<QTcpSocket> &socket : connections) {
            if (socket && socket->state() != QAbstractSocket::UnconnectedState)
                return false;
        }
        return true;
    }
};
