#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <memory>

// A small HTTP server on 127.0.0.1 for tests: serves fixed pages by path, redirects,
// and the two kinds of server a download must survive (one that never answers, one
// whose body never ends); remembers every path requested.
class LocalHttpServer final : public QTcpServer
{
public:
    struct Page
    {
        QByteArray body;
        QByteArray contentType = "text/html; charset=utf-8";
        QByteArray extraHeaders;
        QByteArray status = "200 OK";
        enum class Kind { Fixed, Silent, Endless } kind = Kind::Fixed;
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
    void setRedirect(const QString &path, const QString &target)
    {
        m_pages.insert(path, Page {{}, {}, "Location: " + target.toUtf8() + "\r\n", "302 Found"});
    }
    // Takes the request and never answers.
    void setSilent(const QString &path)
    {
        m_pages.insert(path, Page {{}, {}, {}, {}, Page::Kind::Silent});
    }
    // Answers with `body` and then `body` again for as long as the client reads.
    void setEndless(const QString &path, const QByteArray &body, const QByteArray &type)
    {
        m_pages.insert(path, Page {body, type, {}, "200 OK", Page::Kind::Endless});
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
        // Owned by the connection, so it goes with the socket.
        const auto buffer = std::make_shared<QByteArray>();
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket, buffer] {
            buffer->append(socket->readAll());
            qsizetype end;
            while ((end = buffer->indexOf("\r\n\r\n")) >= 0) {
                const QList<QByteArray> words = buffer->left(end).split('\n').value(0).split(' ');
                buffer->remove(0, end + 4);
                const QString path = QUrl(QString::fromUtf8(words.value(1))).path();
                m_requests.append(path);
                answer(socket, m_pages.value(path, Page {{}, {}, {}, "404 Not Found"}));
            }
        });
    }

    static void answer(QTcpSocket *socket, const Page &page)
    {
        if (page.kind == Page::Kind::Silent)
            return;
        QByteArray head = "HTTP/1.1 " + page.status + "\r\n";
        if (!page.contentType.isEmpty())
            head += "Content-Type: " + page.contentType + "\r\n";
        if (page.kind == Page::Kind::Fixed)
            head += "Content-Length: " + QByteArray::number(page.body.size()) + "\r\n";
        else
            head += "Connection: close\r\n";
        socket->write(
            head + "Cache-Control: no-store\r\n" + page.extraHeaders + "\r\n" + page.body);
        if (page.kind != Page::Kind::Endless)
            return;
        const QByteArray more = page.body.repeated(64);
        connect(socket, &QTcpSocket::bytesWritten, socket, [socket, more] {
            while (socket->bytesToWrite() < 4 * more.size())
                socket->write(more);
        });
    }

    QHash<QString, Page> m_pages;
    QList<QString> m_requests;
};
