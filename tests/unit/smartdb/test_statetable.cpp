// SPDX-License-Identifier: MIT
#include "scriptedserver.h"

#include "smartdb/net/statetable.h"

#include <atomic>

#include <QElapsedTimer>
#include <QTest>

using ZRSmartDB::StateTable;

namespace
{

const std::string states =
    R"({"states": {"a": {"status": "1", "head": "h1"}, "b": {"status": "-1", "head": ""}}})";

/// A server whose next answers a test holds back.
class HeldServer
{
public:
    HeldServer()
        : m_server([this](const std::string&) {
            ++asked;
            while (isHeld)
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            return ScriptedServer::reply(status, body);
        })
    {
    }
    ~HeldServer() { isHeld = false; }

    [[nodiscard]] std::string address() const { return m_server.address(); }

    std::atomic<int> asked = 0;
    std::atomic<bool> isHeld = false;
    int status = 200;
    std::string body = states;

private:
    ScriptedServer m_server;
};

} // namespace

class TestStateTable : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void answersFromOneRequest();
    void projectThatIsNotListedIsNotThere();
    void questionsOfManyThreadsAreOneRequest();
    void oldTableIsAskedForAnew();
    void expiredTableIsAskedForAnew();
    void failureIsKeptAsWell();
    void whatIsKnownIsToldWithoutWaiting();
    void serverThatStopsAnsweringIsNotWaitedForLong();
    void serverThatHasKeptSomebodyWaitingIsNotWaitedForAgain();
    void serverThatIsBackIsBelieved();
    void anotherLoginForgetsWhatIsKnown();

private:
    std::unique_ptr<HeldServer> m_server;
    std::unique_ptr<http::Client> m_client;
    std::unique_ptr<StateTable> m_table;
};

void TestStateTable::init()
{
    m_server = std::make_unique<HeldServer>();
    m_client = std::make_unique<http::Client>();
    QVERIFY(m_client->setServer(m_server->address()));
    m_table = std::make_unique<StateTable>(*m_client);
}

void TestStateTable::cleanup()
{
    m_server->isHeld = false;
    m_client->cancel();
    m_table.reset();
    m_client.reset();
    m_server.reset();
}

void TestStateTable::answersFromOneRequest()
{
    const auto a = m_table->find("a");
    const auto b = m_table->find("b");
    QVERIFY(!a.fault && !b.fault);
    QCOMPARE(a.state.status, std::string("1"));
    QCOMPARE(a.state.head, std::string("h1"));
    QCOMPARE(b.state.status, std::string("-1"));
    QCOMPARE(m_server->asked.load(), 1);
}

void TestStateTable::projectThatIsNotListedIsNotThere()
{
    QCOMPARE(m_table->find("unknown").state, ZRSmartDB::ServerState());
    QCOMPARE(ZRSmartDB::ServerState().status, std::string("2"));
}

void TestStateTable::questionsOfManyThreadsAreOneRequest()
{
    m_server->isHeld = true;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([this] { QCOMPARE(m_table->find("a").state.head, std::string("h1")); });
    QTRY_COMPARE(m_server->asked.load(), 1);
    m_server->isHeld = false;
    for (auto& thread : threads)
        thread.join();
    QCOMPARE(m_server->asked.load(), 1);
}

void TestStateTable::oldTableIsAskedForAnew()
{
    QVERIFY(!m_table->find("a").fault);
    QTRY_VERIFY(!m_table->known("a"));
    QVERIFY(!m_table->find("a").fault);
    QCOMPARE(m_server->asked.load(), 2);
}

void TestStateTable::expiredTableIsAskedForAnew()
{
    QVERIFY(!m_table->find("a").fault);
    m_table->expire();
    QVERIFY(!m_table->find("a").fault);
    QCOMPARE(m_server->asked.load(), 2);
}

void TestStateTable::failureIsKeptAsWell()
{
    m_server->status = 500;
    QVERIFY(m_table->find("a").fault);
    QVERIFY(m_table->find("b").fault);
    QCOMPARE(m_server->asked.load(), 1);
}

void TestStateTable::whatIsKnownIsToldWithoutWaiting()
{
    QVERIFY(!m_table->known("a"));
    QVERIFY(!m_table->find("a").fault);
    QCOMPARE(m_table->known("a")->state.head, std::string("h1"));
}

void TestStateTable::serverThatStopsAnsweringIsNotWaitedForLong()
{
    QVERIFY(!m_table->find("a").fault);
    m_server->isHeld = true;
    m_table->expire();
    QElapsedTimer timer;
    timer.start();
    const auto answer = m_table->find("a");
    QVERIFY(timer.elapsed() < 5000);
    // What it said last counts.
    QVERIFY(!answer.fault);
    QCOMPARE(answer.state.head, std::string("h1"));
}

void TestStateTable::serverThatHasKeptSomebodyWaitingIsNotWaitedForAgain()
{
    QVERIFY(!m_table->find("a").fault);
    m_server->isHeld = true;
    m_table->expire();
    static_cast<void>(m_table->find("a"));
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 100; ++i)
        QVERIFY(!m_table->find("a").fault);
    QVERIFY(timer.elapsed() < 500);
}

void TestStateTable::serverThatIsBackIsBelieved()
{
    QVERIFY(!m_table->find("a").fault);
    m_server->isHeld = true;
    m_table->expire();
    static_cast<void>(m_table->find("a"));
    m_server->body = R"({"states": {"a": {"status": "1", "head": "h2"}}})";
    m_server->isHeld = false;
    QTRY_COMPARE(m_table->find("a").state.head, std::string("h2"));
}

void TestStateTable::anotherLoginForgetsWhatIsKnown()
{
    QVERIFY(!m_table->find("a").fault);
    m_server->body = R"({"states": {}})";
    m_table->startAnew();
    QCOMPARE(m_table->find("a").state.status, std::string("2"));
}

QTEST_GUILESS_MAIN(TestStateTable)
#include "test_statetable.moc"
