#pragma once

#include <QMap>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

// A POP3 server on 127.0.0.1 that says what each case scripts: `says` holds what it
// says on connecting (under "") and the reply to each command ("+OK" to any other).
// After a reply without a line break at its end it hangs up. What it says leaves in
// pieces of `piece` bytes (all at once when 0), `gapMs` apart. By default it is an
// honest server with one message.
class ScriptedPop3Server final : public QTcpServer
{
public:
    QMap<QByteArray, QByteArray> says
        = {{"", "+OK ready\r\n"}, {"LIST", "+OK 1 9\r\n1 9\r\n.\r\n"}};
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
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
                while (socket->canReadLine()) {
                    const QByteArray line = socket->readLine();
                    received += line;
                    say(socket, says.value(line.trimmed().split(' ').first(), "+OK\r\n"), true);
                }
            });
            say(socket, says.value(""), false);
        });
    }

    QString address() const { return QStringLiteral("pop3://127.0.0.1:%1").arg(serverPort()); }

private:
    void say(QTcpSocket *socket, const QByteArray &bytes, bool reply)
    {
        const bool idle = m_pieces.isEmpty();
        for (int at = 0, size = piece > 0 ? piece : int(bytes.size()); at < bytes.size();
             at += size)
            m_pieces.append(bytes.mid(at, size));
        if (reply && !bytes.endsWith('\n'))
            m_pieces.append(QByteArray()); // hang up
        if (idle)
            sendPiece(socket);
    }

    void sendPiece(QTcpSocket *socket)
    {
        if (socket->state() != QTcpSocket::ConnectedState)
            m_pieces.clear();
        if (m_pieces.isEmpty())
            return;
        const QByteArray next = m_pieces.takeFirst();
        if (next.isEmpty())
            socket->disconnectFromHost();
        else
            socket->write(next);
        if (!m_pieces.isEmpty())
            QTimer::singleShot(gapMs, socket, [this, socket] { sendPiece(socket); });
    }

    QList<QByteArray> m_pieces;
};
