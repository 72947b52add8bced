// SPDX-License-Identifier: MIT
#include "http/client.h"
#include "scriptedserver.h"

#include <thread>

#include <QElapsedTimer>
#include <QTest>

using std::chrono::milliseconds;

namespace
{

const std::string goodStart = "HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n";

ScriptedServer::Script Always(const ScriptedServer::Answer& answer)
{
    return [answer](const std::string&) { return answer; };
}

} // namespace

/// Servers that take long or send too much, and people who do not want to wait: every request ends.
class TestClientPatience : public QObject
{
    Q_OBJECT

private slots:
    void serverThatIsSilentIsGivenUp();
    void serverThatStopsInTheMiddleIsGivenUp();
    void serverThatSendsAByteNowAndThenIsGivenUp();
    void serverThatSendsSteadilyIsWaitedForWithoutATimeLimit();
    void timeLimitHoldsForTheWholeExchange();
    void answerThatIsTooLargeIsGivenUp();
    void answerOfTheLargestSizeIsTaken();
    void takerIsSparedFromWhatIsTooMuch();
    void smallAnswerThatUnpacksToALargeOneIsGivenUp();

    void cancellingEndsARequestThatWaits();
    void cancellingEndsEveryRequestFromThenOn();
    void cancellingEndsADownload();
    void givingUpOneRequestLeavesTheOthers();

private:
    static void setUp(http::Client& client, const ScriptedServer& server);
};

/// The client of a server, with little patience for one that is slow.
void TestClientPatience::setUp(http::Client& client, const ScriptedServer& server)
{
    QVERIFY(client.setServer(server.address()));
    http::Limits limits;
    limits.slowSeconds = 1;
    client.setLimits(limits);
}

void TestClientPatience::serverThatIsSilentIsGivenUp()
{
    const ScriptedServer server(Always({"", 0, true}));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    QElapsedTimer timer;
    timer.start();
    const auto reply = client.send({.timeout = milliseconds(300)});
    QCOMPARE(reply.fault.code, int(http::faultcode::timedOut));
    QVERIFY(reply.fault.msg.find(server.address()) != std::string::npos);
    QVERIFY(timer.elapsed() >= 300 && timer.elapsed() < 10000);
}

void TestClientPatience::serverThatStopsInTheMiddleIsGivenUp()
{
    const ScriptedServer server(Always({goodStart + "some", 0, true}));
    http::Client client;
    setUp(client, server);
    const auto reply = client.send({.timeout = milliseconds(0)});
    QCOMPARE(reply.fault.code, int(http::faultcode::timedOut));
}

void TestClientPatience::serverThatSendsAByteNowAndThenIsGivenUp()
{
    const ScriptedServer server(Always({goodStart + std::string(100000, 'x'), 50, false}));
    http::Client client;
    setUp(client, server);
    const auto reply = client.send({.timeout = milliseconds(0)});
    QCOMPARE(reply.fault.code, int(http::faultcode::timedOut));
}

void TestClientPatience::serverThatSendsSteadilyIsWaitedForWithoutATimeLimit()
{
    // Three seconds at a hundred thousand bytes a second, where 100 are enough: a server that is not let run
    // for a while by a busy machine has still sent enough.
    const ScriptedServer server(
        Always({.bytes = "HTTP/1.1 200 OK\r\nContent-Length: 300000\r\n\r\n" + std::string(300000, 'x'),
                .millisecondsBetweenPieces = 10,
                .pieceSize = 1000}));
    http::Client client;
    setUp(client, server);
    http::Limits limits;
    limits.slowSeconds = 2;
    limits.slowBytes = 100;
    client.setLimits(limits);
    const auto reply = client.send({.timeout = milliseconds(0)});
    QCOMPARE(QByteArray::fromStdString(reply.fault.msg), QByteArray());
    QCOMPARE(reply.body.size(), std::size_t(300000));
}

void TestClientPatience::timeLimitHoldsForTheWholeExchange()
{
    const ScriptedServer server(Always({goodStart + std::string(100000, 'x'), 1, false}));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    const auto reply = client.send({.timeout = milliseconds(500)});
    QCOMPARE(reply.fault.code, int(http::faultcode::timedOut));
}

void TestClientPatience::answerThatIsTooLargeIsGivenUp()
{
    const ScriptedServer server(Always(ScriptedServer::reply(200, std::string(100001, 'x'))));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    const auto reply = client.send({.largestReply = 100000});
    QCOMPARE(reply.fault.code, int(http::faultcode::badReply));
    QVERIFY(reply.fault.msg.find("larger") != std::string::npos);
    QVERIFY(reply.body.size() <= 100000);
}

void TestClientPatience::answerOfTheLargestSizeIsTaken()
{
    const ScriptedServer server(Always(ScriptedServer::reply(200, std::string(100000, 'x'))));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    const auto reply = client.send({.largestReply = 100000});
    QVERIFY(!reply.fault);
    QCOMPARE(reply.body.size(), std::size_t(100000));
}

void TestClientPatience::takerIsSparedFromWhatIsTooMuch()
{
    const ScriptedServer server(Always(ScriptedServer::reply(200, std::string(3U << 20U, 'x'))));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    std::size_t taken = 0;
    const auto reply = client.send({.largestReply = 1U << 20U, .take = [&](std::span<const std::byte> bytes) {
                                        taken += bytes.size();
                                        return true;
                                    }});
    QCOMPARE(reply.fault.code, int(http::faultcode::badReply));
    QVERIFY(taken <= 1U << 20U);
}

void TestClientPatience::smallAnswerThatUnpacksToALargeOneIsGivenUp()
{
    // A zlib stream behind Qt's own four bytes: a million times the same byte.
    const auto packed = qCompress(QByteArray(1000000, 'x')).mid(4);
    QVERIFY(packed.size() < 2000);
    const ScriptedServer server(
        Always(ScriptedServer::reply(200, packed.toStdString(), "Content-Encoding: deflate\r\n")));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    QCOMPARE(client.send({}).body.size(), std::size_t(1000000));
    const auto reply = client.send({.largestReply = 100000});
    QCOMPARE(reply.fault.code, int(http::faultcode::badReply));
    QVERIFY(reply.body.size() <= 100000);
}

void TestClientPatience::cancellingEndsARequestThatWaits()
{
    const ScriptedServer server(Always({"", 0, true}));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    http::Reply reply;
    std::thread waiting([&] { reply = client.send({.timeout = milliseconds(60000)}); });
    while (server.paths().empty())
        std::this_thread::sleep_for(milliseconds(5));
    QElapsedTimer timer;
    timer.start();
    client.cancel();
    waiting.join();
    QCOMPARE(reply.fault.code, int(http::faultcode::cancelled));
    QVERIFY2(timer.elapsed() < 5000, "a cancelled request ends at once, give or take a busy machine");
    QVERIFY2(server.paths().size() == 1, "and is not tried again");
}

void TestClientPatience::cancellingEndsEveryRequestFromThenOn()
{
    const ScriptedServer server(Always({"", 0, true}));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    client.cancel();
    QVERIFY(client.isCancelled());
    for (int i = 0; i < 2; ++i)
        QCOMPARE(client.send({.timeout = milliseconds(60000)}).fault.code, int(http::faultcode::cancelled));
}

void TestClientPatience::cancellingEndsADownload()
{
    const ScriptedServer server(Always({goodStart + std::string(50000, 'x'), 0, true}));
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    const auto reply = client.send({.timeout = milliseconds(0), .take = [&](std::span<const std::byte>) {
                                        client.cancel();
                                        return true;
                                    }});
    QCOMPARE(reply.fault.code, int(http::faultcode::cancelled));
}

void TestClientPatience::givingUpOneRequestLeavesTheOthers()
{
    const ScriptedServer server([](const std::string& path) {
        return path == "/slow" ? ScriptedServer::Answer{"", 0, true} : ScriptedServer::reply(200, "good");
    });
    http::Client client;
    QVERIFY(client.setServer(server.address()));
    std::atomic<bool> isGivenUp = false;
    http::Reply reply;
    std::thread waiting([&] {
        reply = client.send({.path = "/slow", .timeout = milliseconds(60000), .isGivenUp = &isGivenUp});
    });
    while (server.paths().empty())
        std::this_thread::sleep_for(milliseconds(5));
    isGivenUp = true;
    waiting.join();
    QCOMPARE(reply.fault.code, int(http::faultcode::cancelled));
    QVERIFY(!client.isCancelled());
    QCOMPARE(client.send({.path = "/quick"}).body, std::string("good"));
}

QTEST_GUILESS_MAIN(TestClientPatience)
#include "test_clientpatience.moc"
