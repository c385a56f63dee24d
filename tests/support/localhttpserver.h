#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

// A small HTTP server on 127.0.0.1 for tests: serves fixed pages by path and
// remembers every path requested.
class LocalHttpServer final : public QTcpServer
{
public:
    struct Page
    {
        QByteArray body;
        QByteArray contentType = "text/html; charset=utf-8";
        QByteArray extraHeaders;
    };

    LocalHttpServer()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = nextPendingConnection())
                serve(socket);
        });
    }

    void setPage(const QString &path, const QByteArray &body,
        const QByteArray &type = "text/html; charset=utf-8", const QByteArray &extraHeaders = {})
    {
        m_pages.insert(path, Page {body, type, extraHeaders});
    }

    QUrl url(const QString &path) const
    {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(serverPort()).arg(path));
    }

    const QList<QString> &requests() const { return m_requests; }
    int requestCount(const QString &path) const { return int(m_requests.count(path)); }
    void clearRequests() { m_requests.clear(); }

private:
    void serve(QTcpSocket *socket)
    {
        auto *buffer = new QByteArray;
        connect(socket, &QTcpSocket::disconnected, socket, [socket, buffer] {
            delete buffer;
            socket->deleteLater();
        });
        connect(socket, &QTcpSocket::readyRead, this, [this, socket, buffer] {
            buffer->append(socket->readAll());
            while (true) {
                const qsizetype end = buffer->indexOf("\r\n\r\n");
                if (end < 0)
                    return;
                const QByteArray head = buffer->left(end);
                buffer->remove(0, end + 4);
                const QList<QByteArray> words = head.split('\n').value(0).trimmed().split(' ');
                const QString path = QUrl(QString::fromUtf8(words.value(1))).path();
                m_requests.append(path);
                const auto found = m_pages.constFind(path);
                QByteArray reply;
                if (found == m_pages.cend()) {
                    reply = "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n";
                } else {
                    reply = "HTTP/1.1 200 OK\r\nContent-Type: " + found->contentType
                        + "\r\nContent-Length: " + QByteArray::number(found->body.size())
                        + "\r\nCache-Control: no-store\r\n" + found->extraHeaders + "\r\n"
                        + found->body;
                }
                socket->write(reply);
            }
        });
    }

    QHash<QString, Page> m_pages;
    QList<QString> m_requests;
};
