// SPDX-License-Identifier: MIT
#include "realserver.h"

#include "http/client.h"
#include "smartdb/data/projectfile.h"

#include <memory>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>
#include <QTest>
#include <QUrl>

namespace
{

const std::string guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";

QJsonObject ObjectOf(const http::Reply& reply)
{
    return QJsonDocument::fromJson(QByteArray::fromStdString(reply.body)).object();
}

} // namespace

/// The real server over its connections: who gets what, and what bad requests get.
class TestServer : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void loginGivesAToken();
    void wrongPasswordIsRefused_data();
    void wrongPasswordIsRefused();
    void everythingButHealthAndLoginWantsAToken_data();
    void everythingButHealthAndLoginWantsAToken();
    void endedSessionIsWorthNothing();
    void projectsAreListed();
    void unchangedStatesAreNotSentAgain();
    void strangerDoesNotSeeTheProject_data();
    void strangerDoesNotSeeTheProject();
    void pathThatClimbsIsRefused_data();
    void pathThatClimbsIsRefused();
    void badRequestIsAnsweredAndTheNextIsServed_data();
    void badRequestIsAnsweredAndTheNextIsServed();
    void halfARequestDoesNotHoldUpOthers();
    void secondServerOnTheSameDataIsRefused();
    void placeToListenThatIsNoneIsRefused_data();
    void placeToListenThatIsNoneIsRefused();

private:
    http::Reply get(const std::string& path, const std::string& token);
    /// What the server says to these bytes, until it closes or has answered.
    QByteArray say(const QByteArray& bytes) const;

    QTemporaryDir m_source;
    std::unique_ptr<RealServer> m_server;
};

void TestServer::initTestCase()
{
    m_server = std::make_unique<RealServer>(TORVO_SERVER);
    m_server->addAccount("stranger", "secret");
    const auto folder = ZRSmartDB::ProjectFolder(m_source.path().toStdString(), guid);
    ZRSmartDB::ProjectHead head;
    head.guid = guid;
    head.name = "n";
    head.type = "BIM";
    ZRSmartDB::ProjectFile::create(folder, head);
    m_server->publish(guid, "BIM", folder);
}

void TestServer::cleanupTestCase()
{
    m_server.reset();
}

http::Reply TestServer::get(const std::string& path, const std::string& token)
{
    http::Client client;
    if (!client.setServer(m_server->address()))
        return {};
    client.setToken(token);
    return client.send({.path = path});
}

QByteArray TestServer::say(const QByteArray& bytes) const
{
    const QUrl address(QString::fromStdString(m_server->address()));
    QTcpSocket socket;
    socket.connectToHost(address.host(), static_cast<quint16>(address.port()));
    if (!socket.waitForConnected(5000))
        return "no connection";
    socket.write(bytes);
    QByteArray answer;
    while (socket.waitForReadyRead(5000)) {
        answer += socket.readAll();
        if (answer.contains("\r\n\r\n"))
            break;
    }
    return answer;
}

void TestServer::loginGivesAToken()
{
    const auto reply = m_server->logIn("wang", "secret");
    QVERIFY(!reply.fault);
    const auto answer = ObjectOf(reply);
    QVERIFY(!answer.value("token").toString().isEmpty());
    QVERIFY(answer.value("expires").toDouble() > 1.7e9);
    QCOMPARE(answer.value("loginName").toString(), QString("wang"));
    QVERIFY(!QString::fromStdString(reply.body).contains("secret"));
}

void TestServer::wrongPasswordIsRefused_data()
{
    QTest::addColumn<QByteArray>("account");
    QTest::addColumn<QByteArray>("password");
    QTest::newRow("wrong password") << QByteArray("stranger") << QByteArray("Secret");
    QTest::newRow("empty password") << QByteArray("stranger") << QByteArray();
    QTest::newRow("unknown account") << QByteArray("nobody") << QByteArray("secret");
    QTest::newRow("a quote") << QByteArray("' OR 1=1 --") << QByteArray("secret");
}

void TestServer::wrongPasswordIsRefused()
{
    QFETCH(QByteArray, account);
    QFETCH(QByteArray, password);
    const auto reply = m_server->logIn(account.toStdString(), password.toStdString());
    QVERIFY(reply.status == 401 || reply.status == 400);
    QVERIFY(reply.fault.code != 40014);
}

void TestServer::everythingButHealthAndLoginWantsAToken_data()
{
    QTest::addColumn<QByteArray>("path");
    for (const char* path : {"/session", "/organisation", "/projects", "/projects/states"})
        QTest::newRow(path) << QByteArray("/api/v1") + path;
    QTest::newRow("a project") << "/api/v1/projects/" + QByteArray::fromStdString(guid);
}

void TestServer::everythingButHealthAndLoginWantsAToken()
{
    QFETCH(QByteArray, path);
    QCOMPARE(get("/api/v1/health", {}).status, 200U);
    for (const char* token :
         {"", "invented", "0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef"}) {
        const auto reply = get(path.toStdString(), token);
        QCOMPARE(reply.status, 401U);
        QCOMPARE(reply.fault.code, 40014);
    }
    QCOMPARE(get(path.toStdString(), m_server->token()).status, 200U);
}

void TestServer::endedSessionIsWorthNothing()
{
    const auto token = ObjectOf(m_server->logIn("wang", "secret")).value("token").toString().toStdString();
    http::Client client;
    QVERIFY(client.setServer(m_server->address()));
    client.setToken(token);
    QCOMPARE(client.send({.method = "DELETE", .path = "/api/v1/session"}).status, 204U);
    QCOMPARE(get("/api/v1/projects", token).fault.code, 40014);
    QCOMPARE(get("/api/v1/projects", m_server->token()).status, 200U);
}

void TestServer::projectsAreListed()
{
    const auto reply = get("/api/v1/projects", m_server->token());
    const auto projects = ObjectOf(reply).value("projects").toArray();
    QCOMPARE(projects.size(), 1);
    QCOMPARE(projects.at(0).toObject().value("guid").toString(), QString::fromStdString(guid));
}

void TestServer::unchangedStatesAreNotSentAgain()
{
    const auto first = get("/api/v1/projects/states", m_server->token());
    QVERIFY(!first.etag.empty());
    http::Client client;
    QVERIFY(client.setServer(m_server->address()));
    client.setToken(m_server->token());
    http::Request request{.path = "/api/v1/projects/states"};
    request.headers.emplace_back("If-None-Match", first.etag);
    const auto second = client.send(request);
    QCOMPARE(second.status, 304U);
    QVERIFY(second.body.empty());
}

void TestServer::strangerDoesNotSeeTheProject_data()
{
    QTest::addColumn<QByteArray>("path");
    const auto project = "/api/v1/projects/" + QByteArray::fromStdString(guid);
    QTest::newRow("its record") << project;
    QTest::newRow("a file") << project + "/files/project.db";
    QTest::newRow("a revision") << project + "/revisions/" + QByteArray(64, 'a');
}

void TestServer::strangerDoesNotSeeTheProject()
{
    QFETCH(QByteArray, path);
    const auto token =
        ObjectOf(m_server->logIn("stranger", "secret")).value("token").toString().toStdString();
    const auto reply = get(path.toStdString(), token);
    QCOMPARE(reply.status, 404U);
    QVERIFY(ObjectOf(get("/api/v1/projects", token)).value("projects").toArray().isEmpty());
}

void TestServer::pathThatClimbsIsRefused_data()
{
    QTest::addColumn<QByteArray>("path");
    const auto project = "/api/v1/projects/" + QByteArray::fromStdString(guid);
    QTest::newRow("plain") << project + "/files/../../../server.db";
    QTest::newRow("encoded") << project + "/files/..%2f..%2fserver.db";
    QTest::newRow("absolute") << project + "/files//etc/passwd";
    QTest::newRow("encoded null") << project + "/files/project.db%00";
    QTest::newRow("half an escape") << project + "/files/a%2";
    QTest::newRow("another file") << project + "/files/unknown";
    QTest::newRow("a key that climbs") << QByteArray("/api/v1/projects/..%2f..%2fserver.db");
    QTest::newRow("no digest") << project + "/revisions/../../x";
}

void TestServer::pathThatClimbsIsRefused()
{
    QFETCH(QByteArray, path);
    const auto answer = say("GET " + path + " HTTP/1.1\r\nHost: x\r\nAuthorization: Bearer " +
                            QByteArray::fromStdString(m_server->token()) + "\r\n\r\n");
    QVERIFY2(answer.startsWith("HTTP/1.1 40"), answer.left(80));
}

void TestServer::badRequestIsAnsweredAndTheNextIsServed_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray json = "Content-Type: application/json\r\n";
    QTest::newRow("noise") << QByteArray("\x01\x02\x03\r\n\r\n");
    QTest::newRow("no version") << QByteArray("GET /\r\n\r\n");
    QTest::newRow("a header of a megabyte")
        << "GET / HTTP/1.1\r\nX: " + QByteArray(1 << 20, 'x') + "\r\n\r\n";
    QTest::newRow("a body that is too large")
        << "POST /api/v1/login HTTP/1.1\r\nHost: x\r\n" + json + "Content-Length: 1000000000\r\n\r\n{";
    QTest::newRow("a negative length")
        << "POST /api/v1/login HTTP/1.1\r\nHost: x\r\n" + json + "Content-Length: -1\r\n\r\n{}";
    QTest::newRow("half a JSON") << "POST /api/v1/login HTTP/1.1\r\nHost: x\r\n" + json +
                                        "Content-Length: 10\r\n\r\n{\"account\"";
    QTest::newRow("JSON of another kind")
        << "POST /api/v1/login HTTP/1.1\r\nHost: x\r\n" + json + "Content-Length: 2\r\n\r\n[]";
    QTest::newRow("values of another kind")
        << "POST /api/v1/login HTTP/1.1\r\nHost: x\r\n" + json +
               "Content-Length: 29\r\n\r\n{\"account\": 1, \"password\": {}}";
    QTest::newRow("deep JSON") << "POST /api/v1/login HTTP/1.1\r\nHost: x\r\n" + json +
                                      "Content-Length: 100000\r\n\r\n" + QByteArray(100000, '[');
    QTest::newRow("another method") << QByteArray("DELETE /api/v1/projects HTTP/1.1\r\nHost: x\r\n\r\n");
    QTest::newRow("no such path") << QByteArray("GET /api/v1/nothing HTTP/1.1\r\nHost: x\r\n\r\n");
}

void TestServer::badRequestIsAnsweredAndTheNextIsServed()
{
    QFETCH(QByteArray, bytes);
    const auto answer = say(bytes);
    // An answer of the 400s, or a closed connection; never a success and never silence for long.
    QVERIFY2(answer.isEmpty() || answer.startsWith("HTTP/1.1 4"), answer.left(80));
    QCOMPARE(get("/api/v1/projects", m_server->token()).status, 200U);
}

void TestServer::halfARequestDoesNotHoldUpOthers()
{
    const QUrl address(QString::fromStdString(m_server->address()));
    std::vector<std::unique_ptr<QTcpSocket>> halves;
    for (int i = 0; i < 100; ++i) {
        halves.push_back(std::make_unique<QTcpSocket>());
        halves.back()->connectToHost(address.host(), static_cast<quint16>(address.port()));
        QVERIFY(halves.back()->waitForConnected(5000));
        halves.back()->write("GET /api/v1/proj");
        halves.back()->flush();
    }
    QCOMPARE(get("/api/v1/projects", m_server->token()).status, 200U);
}

void TestServer::secondServerOnTheSameDataIsRefused()
{
    QProcess second;
    second.start(TORVO_SERVER, {"--data", m_server->folder(), "--listen", "127.0.0.1:0"});
    QVERIFY(second.waitForFinished());
    QVERIFY(second.exitCode() != 0);
    QVERIFY(second.readAllStandardError().contains("another server is running"));
    // The first goes on.
    QCOMPARE(get("/api/v1/health", {}).status, 200U);
}

void TestServer::placeToListenThatIsNoneIsRefused_data()
{
    QTest::addColumn<QString>("place");
    for (const char* place :
         {"127.0.0.1", "127.0.0.1:", "127.0.0.1:http", "127.0.0.1:80 ", "127.0.0.1:65536", "127.0.0.1:-1"})
        QTest::newRow(place) << QString(place);
}

void TestServer::placeToListenThatIsNoneIsRefused()
{
    QFETCH(QString, place);
    const QTemporaryDir folder;
    QProcess server;
    server.start(TORVO_SERVER, {"--data", folder.path(), "--listen", place});
    QVERIFY(server.waitForFinished());
    QCOMPARE(server.exitCode(), 2);
    QVERIFY(server.readAllStandardError().contains("--listen wants ADDRESS:PORT"));
}

QTEST_GUILESS_MAIN(TestServer)
#include "test_server.moc"
