// SPDX-License-Identifier: MIT
#include "pageserver.h"

#include "server/accounts/token.h"

#include <ctime>

#include <QRegularExpression>
#include <QTest>

namespace
{

const std::string guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";

} // namespace

/// How a browser is let in, and for how long.
class TestWeb : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_server.reset(); }

    void ticketIsGivenForAMinute();
    void ticketWantsAToken();
    void ticketsDiffer();
    void ticketLetsABrowserInAndLeavesTheAddress_data();
    void ticketLetsABrowserInAndLeavesTheAddress();
    void cookieIsKeptFromScriptsAndOtherSites();
    void cookieOfAnEncryptedConnectionStaysOnSuch();
    void cookieIsNeitherTheTicketNorTheToken();
    void ticketWorksOnce();
    void usedTicketDoesNotEndTheFirstBrowser();
    void expiredTicketIsRefusedInWords();
    void unknownTicketIsRefusedInWords_data();
    void unknownTicketIsRefusedInWords();
    void ticketOfAnEndedSessionIsRefused();
    void headDoesNotUseATicketUp();
    void ticketOfOneAccountShowsNothingOfAnother();
    void browserGoesWithTheSession();
    void browserGoesWithThePassword();
    void browserGoesWhenItsTimeIsUp();
    void tokenAloneIsNoBrowser();
    void withoutACookieNothingIsShown_data();
    void withoutACookieNothingIsShown();
    void cookieIsFoundAmongOthers();
    void pageIsSentNothingLarge();

private:
    std::unique_ptr<PageServer> m_server;
    std::string m_owner;
    std::string m_stranger;
};

void TestWeb::init()
{
    m_server = std::make_unique<PageServer>();
    m_owner = m_server->addAccount("owner");
    m_stranger = m_server->addAccount("stranger");
    m_server->addProject(guid, "owner", "塔楼");
}

void TestWeb::ticketIsGivenForAMinute()
{
    const auto before = std::time(nullptr);
    const auto reply = m_server->ask("POST", {"tickets"}, m_owner);
    QCOMPARE(reply.status, 200U);
    const auto answer = AnsweringServer::objectOf(reply);
    QVERIFY(QRegularExpression("^[0-9a-f]{64}$").match(answer.value("ticket").toString()).hasMatch());
    const auto expires = static_cast<std::time_t>(answer.value("expires").toDouble());
    QVERIFY(expires >= before + 60 && expires <= std::time(nullptr) + 60);
}

void TestWeb::ticketWantsAToken()
{
    for (const char* token : {"", "invented"}) {
        const auto reply = m_server->ask("POST", {"tickets"}, token);
        QCOMPARE(reply.status, 401U);
        QCOMPARE(AnsweringServer::codeOf(reply), 40014);
    }
}

void TestWeb::ticketsDiffer()
{
    QVERIFY(m_server->ticketFor(m_owner) != m_server->ticketFor(m_owner));
}

void TestWeb::ticketLetsABrowserInAndLeavesTheAddress_data()
{
    QTest::addColumn<QStringList>("path");
    QTest::addColumn<QByteArray>("clean");
    QTest::newRow("console") << QStringList{"console"} << QByteArray("console");
    QTest::newRow("a project") << QStringList{"projects", QString::fromStdString(guid)}
                               << QByteArray::fromStdString(guid);
    // The address is one of this server whatever the name is.
    QTest::newRow("a name like an address")
        << QStringList{"projects", "//example.org/x"} << QByteArray("%2F%2Fexample.org%2Fx");
    QTest::newRow("a name with a header in it")
        << QStringList{"projects", "a\r\nX: y"} << QByteArray("a%0D%0AX%3A%20y");
}

void TestWeb::ticketLetsABrowserInAndLeavesTheAddress()
{
    QFETCH(QStringList, path);
    QFETCH(QByteArray, clean);
    const auto names = PathOf(path);
    const auto ticket = m_server->ticketFor(m_owner);
    const auto reply = m_server->open(names, "ticket=" + ticket);
    QCOMPARE(reply.status, 303U);
    QCOMPARE(HeaderOf(reply, "Location"), clean);
    QVERIFY(reply.body.empty());
    QCOMPARE(m_server->open({"console"}, {}, CookieOf(reply)).status, 200U);
}

void TestWeb::cookieIsKeptFromScriptsAndOtherSites()
{
    const auto reply = m_server->open({"console"}, "ticket=" + m_server->ticketFor(m_owner));
    const auto parts = HeaderOf(reply, "Set-Cookie").split(';');
    QVERIFY(parts.contains(" HttpOnly"));
    QVERIFY(parts.contains(" SameSite=Strict"));
    QVERIFY(parts.contains(" Path=/"));
    // Without an age of its own it goes when the browser is closed.
    QVERIFY(!HeaderOf(reply, "Set-Cookie").contains("Max-Age"));
    QVERIFY(!HeaderOf(reply, "Set-Cookie").contains("Expires"));
    QVERIFY(!parts.contains(" Secure"));
}

void TestWeb::cookieOfAnEncryptedConnectionStaysOnSuch()
{
    server::Request request;
    request.method = "GET";
    request.path = {"console"};
    request.isForPage = true;
    request.isEncrypted = true;
    request.query = "ticket=" + m_server->ticketFor(m_owner);
    QVERIFY(HeaderOf(m_server->api().answer(request), "Set-Cookie").split(';').contains(" Secure"));
}

void TestWeb::cookieIsNeitherTheTicketNorTheToken()
{
    const auto ticket = m_server->ticketFor(m_owner);
    const auto cookie = CookieOf(m_server->open({"console"}, "ticket=" + ticket));
    QVERIFY(cookie.find(ticket) == std::string::npos);
    QVERIFY(cookie.find(m_owner) == std::string::npos);
    // Nor does the cookie open the API.
    const auto value = cookie.substr(cookie.find('=') + 1);
    QCOMPARE(m_server->ask("GET", {"projects"}, value).status, 401U);
}

void TestWeb::ticketWorksOnce()
{
    const auto ticket = m_server->ticketFor(m_owner);
    QCOMPARE(m_server->open({"console"}, "ticket=" + ticket).status, 303U);
    const auto second = m_server->open({"console"}, "ticket=" + ticket);
    QCOMPARE(second.status, 403U);
    QVERIFY(HeaderOf(second, "Set-Cookie").isEmpty());
    QVERIFY(BodyOf(second).contains("这个链接已经用过了"));
    QVERIFY(BodyOf(second).contains("请回到程序"));
    QVERIFY(!BodyOf(second).contains("塔楼"));
}

void TestWeb::usedTicketDoesNotEndTheFirstBrowser()
{
    const auto ticket = m_server->ticketFor(m_owner);
    const auto cookie = CookieOf(m_server->open({"console"}, "ticket=" + ticket));
    QCOMPARE(m_server->open({"console"}, "ticket=" + ticket).status, 403U);
    QCOMPARE(m_server->open({"console"}, {}, cookie).status, 200U);
}

void TestWeb::expiredTicketIsRefusedInWords()
{
    m_server->store().addTicket(server::TokenName("late"), server::TokenName(m_owner), std::time(nullptr));
    const auto reply = m_server->open({"projects", guid}, "ticket=late");
    QCOMPARE(reply.status, 403U);
    QVERIFY(HeaderOf(reply, "Set-Cookie").isEmpty());
    QVERIFY(BodyOf(reply).contains("这个链接已经过期"));
    QVERIFY(BodyOf(reply).contains("打开服务端工程"));
}

void TestWeb::unknownTicketIsRefusedInWords_data()
{
    QTest::addColumn<QByteArray>("query");
    QTest::newRow("of another server") << "ticket=" + QByteArray(64, 'a');
    QTest::newRow("cut off") << QByteArray("ticket=0123");
    QTest::newRow("among others") << QByteArray("x=1&ticket=' OR 1=1&y=2");
}

void TestWeb::unknownTicketIsRefusedInWords()
{
    QFETCH(QByteArray, query);
    // Not even a browser that is in already is shown anything: the address is not what it meant to be.
    const auto reply = m_server->open({"console"}, query.toStdString(), m_server->browserOf(m_owner));
    QCOMPARE(reply.status, 403U);
    QVERIFY(HeaderOf(reply, "Set-Cookie").isEmpty());
    QVERIFY(BodyOf(reply).contains("这个链接无效"));
    QVERIFY(BodyOf(reply).contains("控制台"));
}

void TestWeb::ticketOfAnEndedSessionIsRefused()
{
    const auto ticket = m_server->ticketFor(m_owner);
    QCOMPARE(m_server->ask("DELETE", {"session"}, m_owner).status, 204U);
    QCOMPARE(m_server->open({"console"}, "ticket=" + ticket).status, 403U);
}

void TestWeb::headDoesNotUseATicketUp()
{
    const auto ticket = m_server->ticketFor(m_owner);
    QCOMPARE(m_server->open({"console"}, "ticket=" + ticket, {}, "HEAD").status, 405U);
    QCOMPARE(m_server->open({"console"}, "ticket=" + ticket).status, 303U);
}

void TestWeb::ticketOfOneAccountShowsNothingOfAnother()
{
    const auto cookie =
        CookieOf(m_server->open({"projects", guid}, "ticket=" + m_server->ticketFor(m_stranger)));
    QCOMPARE(m_server->open({"projects", guid}, {}, cookie).status, 404U);
    QVERIFY(!BodyOf(m_server->open({"console"}, {}, cookie)).contains("塔楼"));
}

void TestWeb::browserGoesWithTheSession()
{
    const auto cookie = m_server->browserOf(m_owner);
    QCOMPARE(m_server->open({"console"}, {}, cookie).status, 200U);
    QCOMPARE(m_server->ask("DELETE", {"session"}, m_owner).status, 204U);
    QCOMPARE(m_server->open({"console"}, {}, cookie).status, 403U);
}

void TestWeb::browserGoesWithThePassword()
{
    const auto cookie = m_server->browserOf(m_owner);
    QVERIFY(m_server->store().setPassword("owner", {}));
    QCOMPARE(m_server->open({"console"}, {}, cookie).status, 403U);
}

void TestWeb::browserGoesWhenItsTimeIsUp()
{
    const auto now = std::time(nullptr);
    auto& store = m_server->store();
    store.addTicket(server::TokenName("t"), server::TokenName(m_owner), now + 60);
    QVERIFY(store.useTicket(server::TokenName("t"), now, server::TokenName("c"), now + 100) ==
            server::TicketUse::good);
    QVERIFY(store.findBrowser(server::TokenName("c"), now + 99));
    QVERIFY(!store.findBrowser(server::TokenName("c"), now + 100));
}

void TestWeb::tokenAloneIsNoBrowser()
{
    server::Request request;
    request.method = "GET";
    request.path = {"console"};
    request.isForPage = true;
    request.authorization = "Bearer " + m_owner;
    QCOMPARE(m_server->api().answer(request).status, 403U);
    QCOMPARE(m_server->open({"console"}, {}, "torvo_browser=" + m_owner).status, 403U);
}

void TestWeb::withoutACookieNothingIsShown_data()
{
    QTest::addColumn<QByteArray>("cookie");
    QTest::newRow("none") << QByteArray();
    QTest::newRow("empty") << QByteArray("torvo_browser=");
    QTest::newRow("invented") << "torvo_browser=" + QByteArray(64, '0');
    QTest::newRow("another name") << QByteArray("xtorvo_browser=1; torvo=2");
    QTest::newRow("noise") << QByteArray(";;=;torvo_browser;=");
}

void TestWeb::withoutACookieNothingIsShown()
{
    QFETCH(QByteArray, cookie);
    for (const Path& path : {Path{"console"}, Path{"projects", guid}, Path{"projects", guid, "picture"}}) {
        const auto reply = m_server->open(path, {}, cookie.toStdString());
        QCOMPARE(reply.status, 403U);
        QVERIFY(BodyOf(reply).contains("请从程序打开这个页面"));
        QVERIFY(!BodyOf(reply).contains("塔楼"));
    }
}

void TestWeb::cookieIsFoundAmongOthers()
{
    QCOMPARE(m_server->open({"console"}, {}, "a=1; " + m_server->browserOf(m_owner) + "; b=2").status, 200U);
}

void TestWeb::pageIsSentNothingLarge()
{
    server::Request request;
    request.method = "POST";
    request.path = {"projects", guid, "uploads"};
    request.authorization = "Bearer " + m_owner;
    QVERIFY(m_server->api().mayBeLarge(request));
    request.isForPage = true;
    QVERIFY(!m_server->api().mayBeLarge(request));
}

QTEST_GUILESS_MAIN(TestWeb)
#include "test_web.moc"
