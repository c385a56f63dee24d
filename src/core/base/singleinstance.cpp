#include "core/base/singleinstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>

#include <memory>

namespace {
constexpr int ConnectTimeoutMs = 2000;
constexpr int ReplyTimeoutMs = 15000;
constexpr int LockTimeoutMs = 20000;
} // namespace

SingleInstance::SingleInstance(const QString &dataFolder, QObject *parent)
    : QObject(parent)
    , m_name(serverName(dataFolder))
    , m_lock(QDir::tempPath() + u'/' + m_name + QStringLiteral(".lock"))
{ }

SingleInstance::~SingleInstance() = default;

QString SingleInstance::serverName(const QString &dataFolder)
{
    QString user = qEnvironmentVariable("USER");
    if (user.isEmpty())
        user = QString::number(qHash(QDir::homePath()));
    const QByteArray folderHash
        = QCryptographicHash::hash(QDir::cleanPath(dataFolder).toUtf8(), QCryptographicHash::Sha1)
              .toHex()
              .left(16);
    return QStringLiteral("vantrell-") + user + u'-' + QString::fromLatin1(folderHash);
}

SingleInstance::Role SingleInstance::start()
{
    // Whoever holds the lock decides alone whether an instance is running.
    m_lock.setStaleLockTime(LockTimeoutMs);
    if (!m_lock.tryLock(LockTimeoutMs))
        return Role::Failed;

    auto client = std::make_unique<QLocalSocket>();
    client->connectToServer(m_name);
    if (client->waitForConnected(ConnectTimeoutMs)) {
        m_client = std::move(client);
        m_lock.unlock();
        return Role::Second;
    }

    // Nobody answers: a socket left behind by a crashed instance is replaced.
    QLocalServer::removeServer(m_name);
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    const bool listening = m_server->listen(m_name);
    m_lock.unlock();
    if (!listening)
        return Role::Failed;
    connect(m_server, &QLocalServer::newConnection, this, &SingleInstance::acceptConnection);
    return Role::First;
}

bool SingleInstance::handOver(const QString &rawLine)
{
    if (!m_client)
        return false;
    QByteArray message = rawLine.toUtf8().left(MaxMessageBytes - 1);
    message.replace('\n', ' ');
    message.append('\n');
    m_client->write(message);
    if (!m_client->waitForBytesWritten(ReplyTimeoutMs))
        return false;
    QByteArray reply;
    while (!reply.contains('\n') && m_client->waitForReadyRead(ReplyTimeoutMs))
        reply.append(m_client->readAll());
    m_client->disconnectFromServer();
    return reply.startsWith("ok");
}

SingleInstance::LineState SingleInstance::takeLine(QByteArray &buffer, QString *line)
{
    const qsizetype end = buffer.indexOf('\n');
    if (end < 0 || end >= MaxMessageBytes)
        return end < 0 && buffer.size() < MaxMessageBytes ? LineState::Incomplete
                                                          : LineState::TooLong;
    *line = QString::fromUtf8(buffer.left(end));
    buffer.clear();
    return LineState::Complete;
}

void SingleInstance::acceptConnection()
{
    while (QLocalSocket *socket = m_server->nextPendingConnection()) {
        socket->setParent(this);
        // The buffer belongs to the connections below, which end with the socket, so it
        // goes with the socket on every path: the peer leaves, its line is too long, it
        // times out, the socket fails, or the instance itself ends.
        const auto buffer = std::make_shared<QByteArray>();
        const auto drop = [socket] {
            socket->abort();
            socket->deleteLater();
        };
        // A peer that never finishes its line is dropped after a while.
        auto *timeout = new QTimer(socket);
        timeout->setSingleShot(true);
        connect(timeout, &QTimer::timeout, socket, drop);
        timeout->start(ReplyTimeoutMs);
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::errorOccurred, socket, drop);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket, buffer, drop] {
            buffer->append(socket->readAll());
            QString line;
            const LineState state = takeLine(*buffer, &line);
            if (state == LineState::TooLong)
                drop();
            if (state != LineState::Complete)
                return;
            emit commandLineReceived(line);
            socket->write("ok\n");
            socket->flush();
        });
    }
}
