// SPDX-License-Identifier: MIT
#include "http/client.h"
#include "scriptedserver.h"

#include <QTest>

namespace
{

ScriptedServer::Script Always(const ScriptedServer::Answer& answer)
{
    return [answer](const std::string&) { return answer; };
}

const ScriptedServer::Answer nothing{"", 0, false};
const ScriptedServer::Answer goodAndOpen{"HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\ngood", 0, false, true};

} // namespace

/// What is asked a second time, and above all what is not.
class TestClientRetry : public QObject
{
    Q_OBJECT

private slots:
    void questionThatGotNoAnswerIsAskedAgain();
    void secondAnswerCounts();
    void questionIsNotAskedAThirdTime();
    void changeIsNeverSentTwice_data();
    void changeIsNeverSentTwice();
    void connectionIsUsedAgain();
    void changeIsNotSentTwiceOnAConnectionThatWasUsedBefore_data() { changeIsNeverSentTwice_data(); }
    void changeIsNotSentTwiceOnAConnectionThatWasUsedBefore();
    void changeGoesThroughAfterTheServerHasClosedTheLastConnection();
    void questionWhoseAnswerBrokeOffIsNotAskedAgain();
    void questionThatTimedOutIsNotAskedAgain();
    void answerThatIsAnErrorIsNotAskedForAgain();
    void bytesAreNeverTakenTwice();
    void serverThatIsNotThereIsNamed();
};

void TestClientRetry::questionThatGotNoAnswerIsAskedAgain()
{
    const ScriptedServer server(Always(nothing));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    const auto reply = client.send({.path = "/a"});
    QCOMPARE(reply.fault.code, int(http::faultcode::unreachable));
    QCOMPARE(server.paths(), (std::vector<std::string>{"/a", "/a"}));
}

void TestClientRetry::secondAnswerCounts()
{
    std::atomic<int> calls = 0;
    const ScriptedServer server(
        [&](const std::string&) { return ++calls == 1 ? nothing : ScriptedServer::reply(200, "good"); });
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    client.setToken("token-1");
    const auto reply = client.send({});
    QVERIFY(!reply.fault);
    QCOMPARE(reply.body, std::string("good"));
    QVERIFY2(server.requests().at(1) == server.requests().at(0), "the second question is the first one");
}

void TestClientRetry::questionIsNotAskedAThirdTime()
{
    std::atomic<int> calls = 0;
    const ScriptedServer server(
        [&](const std::string&) { return ++calls <= 2 ? nothing : ScriptedServer::reply(200, "good"); });
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    QCOMPARE(client.send({}).fault.code, int(http::faultcode::unreachable));
    QCOMPARE(calls.load(), 2);
}

void TestClientRetry::changeIsNeverSentTwice_data()
{
    QTest::addColumn<QByteArray>("method");
    for (const char* method : {"POST", "PUT", "PATCH", "DELETE"})
        QTest::newRow(method) << QByteArray(method);
}

void TestClientRetry::changeIsNeverSentTwice()
{
    QFETCH(QByteArray, method);
    const ScriptedServer server(Always(nothing));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    const auto reply = client.send({.method = method.toStdString(), .body = "change"});
    QCOMPARE(reply.fault.code, int(http::faultcode::unreachable));
    QCOMPARE(server.paths().size(), std::size_t(1));
}

void TestClientRetry::connectionIsUsedAgain()
{
    const ScriptedServer server(Always(goodAndOpen));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    for (int i = 0; i < 3; ++i)
        QCOMPARE(client.send({}).body, std::string("good"));
    QCOMPARE(server.paths().size(), std::size_t(3));
    QCOMPARE(server.connectionCount(), 1);
}

void TestClientRetry::changeIsNotSentTwiceOnAConnectionThatWasUsedBefore()
{
    QFETCH(QByteArray, method);
    const ScriptedServer server(
        [](const std::string& path) { return path == "/change" ? nothing : goodAndOpen; });
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    QCOMPARE(client.send({.path = "/question"}).body, std::string("good"));
    const auto reply = client.send({.method = method.toStdString(), .path = "/change", .body = "change"});
    QCOMPARE(reply.fault.code, int(http::faultcode::unreachable));
    QVERIFY2(reply.fault.msg.ends_with(" broke before it answered"), reply.fault.msg.c_str());
    QCOMPARE(server.paths(), (std::vector<std::string>{"/question", "/change"}));
}

void TestClientRetry::changeGoesThroughAfterTheServerHasClosedTheLastConnection()
{
    auto goodAndClosed = goodAndOpen;
    goodAndClosed.takesTheNext = false;
    const ScriptedServer server(Always(goodAndClosed));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    QVERIFY(!client.send({}).fault);
    QTRY_COMPARE(server.closedCount(), 1);
    QVERIFY(!client.send({.method = "POST", .path = "/change", .body = "change"}).fault);
    QCOMPARE(server.paths().size(), std::size_t(2));
}

void TestClientRetry::questionWhoseAnswerBrokeOffIsNotAskedAgain()
{
    const ScriptedServer server(Always({"HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nhalf", 0, false}));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    const auto reply = client.send({});
    QCOMPARE(reply.fault.code, int(http::faultcode::unreachable));
    QVERIFY2(reply.fault.msg.find("broke") != std::string::npos, reply.fault.msg.c_str());
    QCOMPARE(server.paths().size(), std::size_t(1));
}

void TestClientRetry::questionThatTimedOutIsNotAskedAgain()
{
    const ScriptedServer server(Always({"", 0, true}));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    const auto reply = client.send({.timeout = std::chrono::milliseconds(200)});
    QCOMPARE(reply.fault.code, int(http::faultcode::timedOut));
    QCOMPARE(server.paths().size(), std::size_t(1));
}

void TestClientRetry::answerThatIsAnErrorIsNotAskedForAgain()
{
    const ScriptedServer server(Always(ScriptedServer::reply(503, "")));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    QCOMPARE(client.send({}).status, 503U);
    QCOMPARE(server.paths().size(), std::size_t(1));
}

void TestClientRetry::bytesAreNeverTakenTwice()
{
    const ScriptedServer server(Always(nothing));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    const auto reply = client.send({.take = [](std::span<const std::byte>) { return true; }});
    QCOMPARE(reply.fault.code, int(http::faultcode::unreachable));
    QCOMPARE(server.paths().size(), std::size_t(1));
}

void TestClientRetry::serverThatIsNotThereIsNamed()
{
    std::string address;
    {
        const ScriptedServer gone(Always(nothing));
        address = gone.address();
    }
    http::Client client;
    QVERIFY(client.setServer(address));
    const auto reply = client.send({});
    QCOMPARE(reply.fault.code, int(http::faultcode::unreachable));
    QVERIFY2(reply.fault.msg.find(address) != std::string::npos, reply.fault.msg.c_str());
    QCOMPARE(reply.status, 0U);
}

QTEST_GUILESS_MAIN(TestClientRetry)
#include "test_clientretry.moc"
