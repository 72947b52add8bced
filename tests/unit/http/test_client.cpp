// SPDX-License-Identifier: MIT
#include "http/client.h"
#include "scriptedserver.h"

#include <algorithm>
#include <thread>

#include <QTest>

Q_DECLARE_METATYPE(ScriptedServer::Answer)

namespace
{

ScriptedServer::Script Always(const ScriptedServer::Answer& answer)
{
    return [answer](const std::string&) { return answer; };
}

/// The value of a header of a request; "-" when the request does not have it.
std::string HeaderOf(const std::string& request, const std::string& name)
{
    const auto begin = request.find("\r\n" + name + ": ");
    if (begin == std::string::npos)
        return "-";
    const auto value = begin + name.size() + 4;
    return request.substr(value, request.find("\r\n", value) - value);
}

} // namespace

/// What goes to a server and what comes of its answers.
class TestClient : public QObject
{
    Q_OBJECT

private slots:
    void bodyAndTagOfAGoodAnswerAreGiven();
    void tagIsFoundHoweverItIsWritten();
    void answerThatNothingHasChangedIsNoFault();
    void answerWithoutABodyIsNoFault();
    void errorAnswerIsItsFault_data();
    void errorAnswerIsItsFault();
    void longErrorAnswerIsCutOff();
    void otherAddressIsNotFollowed();

    void requestCarriesTheLogin();
    void requestWithoutALoginCarriesNone();
    void loginWithALineBreakIsNotSent();
    void requestCarriesItsOwnHeaders();
    void bodyIsSentWithItsKind();
    void bodyIsSentWithAnyMethod();
    void nextRequestCarriesNothingOfTheLast();
    void addressMayEndWithASlash();
    void addressThatIsNoneLeavesTheOneBefore();

    void bytesAreTakenAsTheyCome();
    void takerThatHasEnoughEndsTheRequestWithoutAFault();
    void takerDoesNotSeeErrorAnswers();
    void answersOfSeveralThreadsAreNotMixedUp();

    void nameIsEncodedForAPath_data();
    void nameIsEncodedForAPath();
};

void TestClient::bodyAndTagOfAGoodAnswerAreGiven()
{
    const ScriptedServer server(Always(ScriptedServer::reply(200, "{\"a\": 1}", "ETag: \"17\"\r\n")));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    const auto reply = client.send({.path = "/api/v1/things"});
    QVERIFY(!reply.fault);
    QCOMPARE(reply.status, 200U);
    QCOMPARE(reply.body, std::string("{\"a\": 1}"));
    QCOMPARE(reply.etag, std::string("\"17\""));
    QCOMPARE(server.paths(), std::vector<std::string>{"/api/v1/things"});
}

void TestClient::tagIsFoundHoweverItIsWritten()
{
    const ScriptedServer server(Always(ScriptedServer::reply(200, "", "eTAG:\t W/\"a b\" \r\n")));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    QCOMPARE(client.send({}).etag, std::string("W/\"a b\""));
}

void TestClient::answerThatNothingHasChangedIsNoFault()
{
    const ScriptedServer server(Always(ScriptedServer::reply(304, "")));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    const auto reply = client.send({});
    QVERIFY(!reply.fault);
    QCOMPARE(reply.status, 304U);
}

void TestClient::answerWithoutABodyIsNoFault()
{
    const ScriptedServer server(Always(ScriptedServer::reply(204, "")));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    const auto reply = client.send({.method = "DELETE"});
    QVERIFY(!reply.fault);
    QCOMPARE(reply.status, 204U);
}

void TestClient::errorAnswerIsItsFault_data()
{
    QTest::addColumn<ScriptedServer::Answer>("answer");
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("msg");
    const auto row = [](int status, const char* body, int code, const char* msg) {
        QTest::addRow("%d %s", status, body)
            << ScriptedServer::reply(status, body) << code << QByteArray(msg);
    };
    row(401, R"({"code": 40014, "msg": "login expired"})", 40014, "login expired");
    row(401, "", http::faultcode::loginExpired, "the login has expired");
    row(404, R"({"code": 40400, "msg": "not here"})", 40400, "not here");
    row(404, "<html>Not found</html>", http::faultcode::badReply,
        "the project server answered with an unexpected status 404");
    row(500, R"({"code": 50000, "msg": "broken"})", 50000, "broken");
    row(500, "<html>Oops</html>", http::faultcode::badReply,
        "the project server answered with an unexpected status 500");
    row(503, "", http::faultcode::badReply, "the project server answered with an unexpected status 503");
}

void TestClient::errorAnswerIsItsFault()
{
    QFETCH(ScriptedServer::Answer, answer);
    QFETCH(int, code);
    QFETCH(QByteArray, msg);
    const ScriptedServer server(Always(answer));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    const auto reply = client.send({});
    QCOMPARE(reply.fault.code, code);
    QCOMPARE(QByteArray::fromStdString(reply.fault.msg), msg);
    QVERIFY2(server.paths().size() == 1, "an answer is an answer, and asked for once");
}

void TestClient::longErrorAnswerIsCutOff()
{
    const ScriptedServer server(Always(ScriptedServer::reply(500, std::string(300000, 'x'))));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    const auto reply = client.send({.largestReply = 10});
    QCOMPARE(reply.fault.code, int(http::faultcode::badReply));
    QCOMPARE(reply.body.size(), std::size_t(64) << 10U);
}

void TestClient::otherAddressIsNotFollowed()
{
    const ScriptedServer server(
        Always(ScriptedServer::reply(302, "", "Location: http://127.0.0.1:1/login\r\n")));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    const auto reply = client.send({});
    QCOMPARE(reply.status, 302U);
    QCOMPARE(reply.fault.code, int(http::faultcode::badReply));
}

void TestClient::requestCarriesTheLogin()
{
    const ScriptedServer server(Always(ScriptedServer::reply(200, "")));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    client.setToken("token-1");
    client.setCookies("a=1; b=2");
    QVERIFY(!client.send({}).fault);
    const auto request = server.requests().at(0);
    QCOMPARE(HeaderOf(request, "Authorization"), std::string("Bearer token-1"));
    QCOMPARE(HeaderOf(request, "Cookie"), std::string("a=1; b=2"));
}

void TestClient::requestWithoutALoginCarriesNone()
{
    const ScriptedServer server(Always(ScriptedServer::reply(200, "")));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    QVERIFY(!client.send({}).fault);
    QCOMPARE(HeaderOf(server.requests().at(0), "Authorization"), std::string("-"));
    QCOMPARE(HeaderOf(server.requests().at(0), "Cookie"), std::string("-"));
}

void TestClient::loginWithALineBreakIsNotSent()
{
    const ScriptedServer server(Always(ScriptedServer::reply(200, "")));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    client.setToken("token\r\nX-Smuggled: yes");
    client.setCookies("a=1\nX-Smuggled: yes");
    QVERIFY(!client.send({}).fault);
    const auto request = server.requests().at(0);
    QVERIFY(request.find("Smuggled") == std::string::npos);
    QCOMPARE(HeaderOf(request, "Authorization"), std::string("-"));
    QCOMPARE(HeaderOf(request, "Cookie"), std::string("-"));
}

void TestClient::requestCarriesItsOwnHeaders()
{
    const ScriptedServer server(Always(ScriptedServer::reply(200, "")));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    QVERIFY(!client.send({.headers = {{"If-None-Match", "\"17\""}, {"X-Part", "2"}}}).fault);
    QCOMPARE(HeaderOf(server.requests().at(0), "If-None-Match"), std::string("\"17\""));
    QCOMPARE(HeaderOf(server.requests().at(0), "X-Part"), std::string("2"));
}

void TestClient::bodyIsSentWithItsKind()
{
    const ScriptedServer server(Always(ScriptedServer::reply(200, "")));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    // A body that a text function would take for shorter than it is.
    const std::string body("a\0b", 3);
    QVERIFY(!client.send({.method = "POST", .contentType = "application/octet-stream", .body = body}).fault);
    const auto request = server.requests().at(0);
    QVERIFY(request.starts_with("POST "));
    QVERIFY(request.ends_with("\r\n\r\n" + body));
    QCOMPARE(HeaderOf(request, "Content-Type"), std::string("application/octet-stream"));
    QCOMPARE(HeaderOf(request, "Expect"), std::string("-"));
}

void TestClient::bodyIsSentWithAnyMethod()
{
    const ScriptedServer server(Always(ScriptedServer::reply(200, "")));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    QVERIFY(!client.send({.method = "PUT", .contentType = "text/plain", .body = "new"}).fault);
    QVERIFY(server.requests().at(0).starts_with("PUT "));
    QVERIFY(server.requests().at(0).ends_with("\r\n\r\nnew"));
}

void TestClient::nextRequestCarriesNothingOfTheLast()
{
    const ScriptedServer server(Always(ScriptedServer::reply(200, "")));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    QVERIFY(!client.send({.method = "POST", .headers = {{"X-Part", "2"}}, .body = "old"}).fault);
    QVERIFY(!client.send({}).fault);
    const auto request = server.requests().at(1);
    QVERIFY(request.starts_with("GET "));
    QVERIFY(request.ends_with("\r\n\r\n"));
    QCOMPARE(HeaderOf(request, "X-Part"), std::string("-"));
}

void TestClient::addressMayEndWithASlash()
{
    const ScriptedServer server(Always(ScriptedServer::reply(200, "")));
    http::Client client;
    QVERIFY(client.setServer(server.address() + "//"));
    QVERIFY(!client.send({.path = "/a"}).fault);
    QCOMPARE(server.paths(), std::vector<std::string>{"/a"});
}

void TestClient::addressThatIsNoneLeavesTheOneBefore()
{
    const ScriptedServer server(Always(ScriptedServer::reply(200, "")));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    for (const char* address : {"", "ftp://127.0.0.1", "127.0.0.1:80", "http://", "file:///etc/passwd"})
        QVERIFY2(!client.setServer(address), address);
    QVERIFY(!client.send({}).fault);
}

void TestClient::bytesAreTakenAsTheyCome()
{
    const std::string body(3U << 20U, 'b');
    const ScriptedServer server(Always(ScriptedServer::reply(200, body)));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    std::size_t taken = 0;
    int calls = 0;
    const auto reply = client.send({.take = [&](std::span<const std::byte> bytes) {
        taken += bytes.size();
        ++calls;
        return true;
    }});
    QVERIFY(!reply.fault);
    QCOMPARE(taken, body.size());
    QVERIFY(calls > 1);
    QCOMPARE(reply.body, std::string());
}

void TestClient::takerThatHasEnoughEndsTheRequestWithoutAFault()
{
    const ScriptedServer server(Always(ScriptedServer::reply(200, std::string(3U << 20U, 'b'))));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    int calls = 0;
    const auto reply = client.send({.take = [&](std::span<const std::byte>) {
        ++calls;
        return false;
    }});
    QVERIFY(!reply.fault);
    QCOMPARE(reply.status, 200U);
    QCOMPARE(calls, 1);
}

void TestClient::takerDoesNotSeeErrorAnswers()
{
    const ScriptedServer server(Always(ScriptedServer::reply(404, R"({"code": 40400, "msg": "not here"})")));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    bool isTaken = false;
    const auto reply = client.send({.take = [&](std::span<const std::byte>) { return isTaken = true; }});
    QCOMPARE(reply.fault.code, 40400);
    QVERIFY(!isTaken);
}

void TestClient::answersOfSeveralThreadsAreNotMixedUp()
{
    const ScriptedServer server([](const std::string& path) { return ScriptedServer::reply(200, path); });
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    std::atomic<int> right = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&, i] {
            for (int round = 0; round < 25; ++round) {
                const auto path = "/" + std::to_string(i) + "/" + std::to_string(round);
                right += client.send({.path = path}).body == path ? 1 : 0;
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    QCOMPARE(right.load(), 100);
}

void TestClient::nameIsEncodedForAPath_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("encoded");
    QTest::newRow("plain") << QByteArray("aZ09-_.~") << QByteArray("aZ09-_.~");
    QTest::newRow("marks") << QByteArray("a b/c?d#e%f&g+h") << QByteArray("a%20b%2Fc%3Fd%23e%25f%26g%2Bh");
    QTest::newRow("Chinese") << QByteArray("桥") << QByteArray("%E6%A1%A5");
    QTest::newRow("nothing") << QByteArray() << QByteArray();
    QTest::newRow("line break") << QByteArray("a\r\nb") << QByteArray("a%0D%0Ab");
}

void TestClient::nameIsEncodedForAPath()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, encoded);
    QCOMPARE(QByteArray::fromStdString(http::EncodedName(name.toStdString())), encoded);
}

QTEST_GUILESS_MAIN(TestClient)
#include "test_client.moc"
