#pragma once

#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <functional>
#include <memory>

// A POP3 server on 127.0.0.1 that behaves as each case scripts it. By default it
// answers like a small honest server with one message. What it says through say()
// leaves in pieces of `piece` bytes (all at once when 0), `gapMs` apart.
class ScriptedPop3Server final : public QTcpServer
{
public:
    std::function<void(QTcpSocket *)> greet = [this](QTcpSocket *s) { say(s, "+OK ready\r\n"); };
    std::function<void(QTcpSocket *, const QByteArray &)> answer
        = [this](QTcpSocket *s, const QByteArray &command) {
              say(s, command == "LIST" ? QByteArray("+OK 1 9\r\n1 9\r\n.\r\n") : "+OK\r\n");
          };
    int piece = 0;
    int gapMs = 5;
    QByteArray received;
    int openConnections = 0;

    ScriptedPop3Server()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket *socket = nextPendingConnection();
            socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
            ++openConnections;
            connect(socket, &QTcpSocket::disconnected, this, [this] { --openConnections; });
            auto line = std::make_shared<QByteArray>();
            connect(socket, &QTcpSocket::readyRead, this, [this, socket, line] {
                const QByteArray bytes = socket->readAll();
                received += bytes;
                *line += bytes;
                for (qsizetype end; (end = line->indexOf("\r\n")) >= 0; line->remove(0, end + 2))
                    answer(socket, line->left(end).split(' ').first());
            });
            greet(socket);
        });
    }

    void say(QTcpSocket *socket, const QByteArray &bytes)
    {
        const bool idle = m_pieces.isEmpty();
        for (int at = 0, size = piece > 0 ? piece : int(bytes.size()); at < bytes.size();
             at += size)
            m_pieces.append(bytes.mid(at, size));
        if (idle)
            sendPiece(socket);
    }

    QString address() const { return QStringLiteral("pop3://127.0.0.1:%1").arg(serverPort()); }

private:
    void sendPiece(QTcpSocket *socket)
    {
        if (socket->state() != QTcpSocket::ConnectedState)
            m_pieces.clear();
        if (m_pieces.isEmpty())
            return;
        socket->write(m_pieces.takeFirst());
        if (!m_pieces.isEmpty())
            QTimer::singleShot(gapMs, socket, [this, socket] { sendPiece(socket); });
    }

    QList<QByteArray> m_pieces;
};
