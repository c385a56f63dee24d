#include "core/base/singleinstance.h"

#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <memory>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class SingleInstanceTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void secondStartHandsItsLineToTheFirst()
    {
        QTemporaryDir data;
        SingleInstance first(data.path());
        QCOMPARE(first.start(), SingleInstance::Role::First);
        QSignalSpy received(&first, &SingleInstance::commandLineReceived);

        // The second start blocks while it waits for the answer, so it runs on a thread.
        QThread *thread = QThread::create([&data] {
            SingleInstance second(data.path());
            if (second.start() == SingleInstance::Role::Second)
                second.handOver(u"\"/tmp/a b.html\""_s);
        });
        thread->start();
        QTRY_COMPARE_WITH_TIMEOUT(received.size(), 1, 10000);
        QCOMPARE(received.first().first().toString(), u"\"/tmp/a b.html\""_s);
        QVERIFY(thread->wait(10000));
        delete thread;
    }

    void otherDataFolderIsAnotherInstance()
    {
        QTemporaryDir one;
        QTemporaryDir two;
        SingleInstance first(one.path());
        SingleInstance other(two.path());
        QCOMPARE(first.start(), SingleInstance::Role::First);
        QCOMPARE(other.start(), SingleInstance::Role::First);
        QVERIFY(SingleInstance::serverName(one.path()) != SingleInstance::serverName(two.path()));
    }

    void staleSocketOfACrashedInstanceIsReplaced()
    {
        QTemporaryDir data;
        // A socket file that nobody listens on, as a killed instance leaves it.
        const QString path = QDir::tempPath() + u'/' + SingleInstance::serverName(data.path());
        const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof address.sun_path);
        QCOMPARE(::bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
        ::close(fd);
        QVERIFY(QFile::exists(path));

        SingleInstance instance(data.path());
        QCOMPARE(instance.start(), SingleInstance::Role::First);
    }

    void peerThatNeverEndsItsLineIsDropped()
    {
        QTemporaryDir data;
        SingleInstance first(data.path());
        QCOMPARE(first.start(), SingleInstance::Role::First);
        QSignalSpy received(&first, &SingleInstance::commandLineReceived);
        QLocalSocket peer;
        peer.connectToServer(SingleInstance::serverName(data.path()));
        QVERIFY(peer.waitForConnected(5000));
        peer.write(QByteArray(SingleInstance::MaxMessageBytes + 10, 'x'));
        peer.flush();
        QTRY_COMPARE_WITH_TIMEOUT(peer.state(), QLocalSocket::UnconnectedState, 10000);
        QCOMPARE(received.size(), 0);
        QTRY_VERIFY(first.findChildren<QLocalSocket *>().isEmpty());
    }

    void peersStillConnectedWhenTheInstanceEndsAreFreed()
    {
        // Under the sanitizers a peer's buffer that outlives its socket is reported.
        QTemporaryDir data;
        auto first = std::make_unique<SingleInstance>(data.path());
        QCOMPARE(first->start(), SingleInstance::Role::First);
        QLocalSocket peer;
        peer.connectToServer(SingleInstance::serverName(data.path()));
        QVERIFY(peer.waitForConnected(5000));
        peer.write("half a line");
        peer.flush();
        QTRY_COMPARE(first->findChildren<QLocalSocket *>().size(), 1);
        first.reset();
        QTRY_COMPARE(peer.state(), QLocalSocket::UnconnectedState);
    }
};

QTEST_GUILESS_MAIN(SingleInstanceTest)
#include "singleinstance_test.moc"
