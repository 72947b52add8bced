// SPDX-License-Identifier: MIT
#include "EditorCommon/kyvapi.h"
#include "fakes/logbook.h"
#include "serverclient.h"

#include <thread>

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

using EditorCommon::KYVApi;
using EditorCommon::ServerClient;

namespace
{

/// A server on a free port that keeps what it is asked and answers "{}".
class ListeningServer : public QTcpServer
{
public:
    ListeningServer()
    {
        if (!listen(QHostAddress::LocalHost))
            qFatal("no free port");
        connect(this, &QTcpServer::newConnection, this, [this] {
            auto* socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
                asked += socket->readAll();
                if (asked.endsWith("\r\n\r\n"))
                    socket->write("HTTP/1.1 200 OK\r\nContent-Length: 2\r\nConnection: close\r\n\r\n{}");
            });
        });
    }

    [[nodiscard]] QString address() const { return QStringLiteral("http://127.0.0.1:%1").arg(serverPort()); }

    QByteArray asked;
};

/// Sends a request as the calls of KYVApi do, while the event loop goes on for the server.
http::Reply Ask(const std::string& path)
{
    http::Reply reply;
    std::atomic<bool> isAnswered = false;
    std::thread caller([&] {
        http::Request request;
        request.path = path;
        reply = ServerClient().send(request);
        isAnswered = true;
    });
    while (!isAnswered)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    caller.join();
    return reply;
}

} // namespace

class TestKyvApi : public QObject
{
    Q_OBJECT

private slots:
    void initSendsNothing();
    void callsAfterInitGoToTheAddressWithTheToken();
    void secondInitTakesThePlaceOfTheFirst();
    void addressThatIsNoneIsLogged();
};

void TestKyvApi::initSendsNothing()
{
    ListeningServer server;
    KYVApi::init(server.address(), QStringLiteral("token-1"));
    QVERIFY(!server.waitForNewConnection(200));
}

void TestKyvApi::callsAfterInitGoToTheAddressWithTheToken()
{
    ListeningServer server;
    KYVApi::init(server.address() + QStringLiteral("/"), QStringLiteral("token-1"));
    QCOMPARE(Ask("/api/v1/console").status, 200U);
    QVERIFY(server.asked.startsWith("GET /api/v1/console HTTP/1.1\r\n"));
    QVERIFY(server.asked.contains("\r\nAuthorization: Bearer token-1\r\n"));
}

void TestKyvApi::secondInitTakesThePlaceOfTheFirst()
{
    ListeningServer first;
    ListeningServer second;
    KYVApi::init(first.address(), QStringLiteral("token-1"));
    KYVApi::init(second.address(), QStringLiteral("token-2"));
    QCOMPARE(Ask("/").status, 200U);
    QCOMPARE(first.asked, QByteArray());
    QVERIFY(second.asked.contains("\r\nAuthorization: Bearer token-2\r\n"));
}

void TestKyvApi::addressThatIsNoneIsLogged()
{
    Fakes::LogBook log;
    KYVApi::init(QStringLiteral("/torvo-server"), QStringLiteral("token-1"));
    QCOMPARE(log.linesWith(QStringLiteral("no address of a project server:")).count(), 1);
    QCOMPARE(log.linesWith(QStringLiteral("token-1")).count(), 0);
}

QTEST_GUILESS_MAIN(TestKyvApi)
#include "test_kyvapi.moc"
