// SPDX-License-Identifier: MIT
#include "EditorCommon/kyvapi.h"
#include "fakes/logbook.h"
#include "realserver.h"
#include "scriptedserver.h"
#include "smartdb/data/projectfile.h"

#include <memory>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <QUrl>

using EditorCommon::KYVApi;

namespace
{

const QString guid = QStringLiteral("5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01");

/// What a browser sees at an address, without following it anywhere.
http::Reply Visit(const QString& url)
{
    const QUrl address(url);
    http::Client browser;
    if (!browser.setServer("http://" + address.authority().toStdString()))
        return {};
    return browser.send({.path = address.toString(QUrl::RemoveScheme | QUrl::RemoveAuthority).toStdString()});
}

} // namespace

/// The calls that lead to the account's pages, and the one that renames, against the real server and against
/// ones that answer nonsense.
class TestKyvApiPages : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { m_server.reset(); }
    void init();

    void consoleUrlLetsABrowserInOnce();
    void projectUrlLeadsToTheProject();
    void projectUrlEncodesTheGuid();
    void eachUrlHasATicketOfItsOwn();
    void projectUrlWithoutAGuidFails();
    void urlHasTheAddressThatInitGave();
    void urlIsUntouchedOnFailure_data();
    void urlIsUntouchedOnFailure();
    void failureIsLoggedWithItsReason();
    void projectIsRenamed();
    void nameWithMarkupArrivesAsItIs();
    void refusedNameFails_data();
    void refusedNameFails();
    void renameWithoutALoginFails();
    void renameWithoutAServerFails();

private:
    QString nameOnTheServer();

    std::unique_ptr<RealServer> m_server;
};

void TestKyvApiPages::initTestCase()
{
    m_server = std::make_unique<RealServer>(TORVO_SERVER);
    const QTemporaryDir source;
    const auto folder = ZRSmartDB::ProjectFolder(source.path().toStdString(), guid.toStdString());
    ZRSmartDB::ProjectHead head;
    head.guid = guid.toStdString();
    head.name = "n";
    head.type = "BIM";
    ZRSmartDB::ProjectFile::create(folder, head);
    m_server->publish(guid.toStdString(), "BIM", folder);
}

void TestKyvApiPages::init()
{
    KYVApi::init(QString::fromStdString(m_server->address()), QString::fromStdString(m_server->token()));
}

QString TestKyvApiPages::nameOnTheServer()
{
    http::Client client;
    if (!client.setServer(m_server->address()))
        return {};
    client.setToken(m_server->token());
    const auto reply = client.send({.path = "/api/v1/projects/" + guid.toStdString()});
    const auto project = QJsonDocument::fromJson(QByteArray::fromStdString(reply.body)).object();
    return project.value("name").toString();
}

void TestKyvApiPages::consoleUrlLetsABrowserInOnce()
{
    QString url;
    QVERIFY(KYVApi::GetWebConsoleUrl(url));
    QVERIFY(QUrl(url).isValid());
    QCOMPARE(QUrl(url).path(), QString("/web/console"));
    QVERIFY(!url.contains(QString::fromStdString(m_server->token())));
    QCOMPARE(Visit(url).status, 303U);
    QCOMPARE(Visit(url).status, 403U);
}

void TestKyvApiPages::projectUrlLeadsToTheProject()
{
    QString url;
    QVERIFY(KYVApi::GetWebProjUrl(guid, url));
    QCOMPARE(QUrl(url).path(), "/web/projects/" + guid);
    QCOMPARE(Visit(url).status, 303U);
}

void TestKyvApiPages::projectUrlEncodesTheGuid()
{
    QString url;
    QVERIFY(KYVApi::GetWebProjUrl(QStringLiteral("a/b?c#d 楼"), url));
    QVERIFY(url.contains("/web/projects/a%2Fb%3Fc%23d%20%E6%A5%BC?ticket="));
}

void TestKyvApiPages::eachUrlHasATicketOfItsOwn()
{
    QString first;
    QString second;
    QVERIFY(KYVApi::GetWebConsoleUrl(first));
    QVERIFY(KYVApi::GetWebConsoleUrl(second));
    QVERIFY(first != second);
}

void TestKyvApiPages::projectUrlWithoutAGuidFails()
{
    QString url = QStringLiteral("before");
    QVERIFY(!KYVApi::GetWebProjUrl({}, url));
    QCOMPARE(url, QString("before"));
}

void TestKyvApiPages::urlHasTheAddressThatInitGave()
{
    const ScriptedServer proxy(
        [](const std::string&) { return ScriptedServer::reply(200, R"({"ticket":"t&1","expires":1})"); });
    const auto address = QString::fromStdString(proxy.address()) + "/torvo";
    KYVApi::init(address + "/", QStringLiteral("token"));
    QString url;
    QVERIFY(KYVApi::GetWebConsoleUrl(url));
    QCOMPARE(url, address + "/web/console?ticket=t%261");
    QCOMPARE(proxy.paths(), std::vector<std::string>{"/torvo/api/v1/tickets"});
}

void TestKyvApiPages::urlIsUntouchedOnFailure_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("login expired") << 401 << QByteArray(R"({"code":40014,"msg":"expired"})");
    QTest::newRow("server fails") << 500 << QByteArray("oops");
    QTest::newRow("no such call") << 404 << QByteArray(R"({"code":40400,"msg":"missing"})");
    QTest::newRow("no JSON") << 200 << QByteArray("<html>");
    QTest::newRow("no ticket") << 200 << QByteArray("{}");
    QTest::newRow("empty ticket") << 200 << QByteArray(R"({"ticket":""})");
    QTest::newRow("ticket that is no text") << 200 << QByteArray(R"({"ticket":1})");
}

void TestKyvApiPages::urlIsUntouchedOnFailure()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    const ScriptedServer server(
        [&](const std::string&) { return ScriptedServer::reply(status, body.toStdString()); });
    KYVApi::init(QString::fromStdString(server.address()), QStringLiteral("token"));
    QString url = QStringLiteral("before");
    QVERIFY(!KYVApi::GetWebConsoleUrl(url));
    QVERIFY(!KYVApi::GetWebProjUrl(guid, url));
    QCOMPARE(url, QString("before"));
}

void TestKyvApiPages::failureIsLoggedWithItsReason()
{
    const ScriptedServer server(
        [](const std::string&) { return ScriptedServer::reply(401, R"({"code":40014,"msg":"expired"})"); });
    KYVApi::init(QString::fromStdString(server.address()), QStringLiteral("token-1"));
    Fakes::LogBook log;
    QString url;
    QVERIFY(!KYVApi::GetWebConsoleUrl(url));
    QCOMPARE(log.linesWith(QStringLiteral("GetWebConsoleUrl failed: 40014 \"expired\"")).count(), 1);
    QCOMPARE(log.linesWith(QStringLiteral("token-1")).count(), 0);
}

void TestKyvApiPages::projectIsRenamed()
{
    QVERIFY(KYVApi::SetProjNameToService(guid, QStringLiteral("滨江新城")));
    QCOMPARE(nameOnTheServer(), QString("滨江新城"));
    QVERIFY(KYVApi::SetProjNameToService(guid, QStringLiteral("旧城")));
    QCOMPARE(nameOnTheServer(), QString("旧城"));
}

void TestKyvApiPages::nameWithMarkupArrivesAsItIs()
{
    const QString name = QStringLiteral("\"<塔>\" \\ & '楼'");
    QVERIFY(KYVApi::SetProjNameToService(guid, name));
    QCOMPARE(nameOnTheServer(), name);
}

void TestKyvApiPages::refusedNameFails_data()
{
    QTest::addColumn<QString>("project");
    QTest::addColumn<QString>("name");
    QTest::newRow("empty name") << guid << QString();
    QTest::newRow("name of two lines") << guid << QString("a\nb");
    QTest::newRow("unknown project") << QString("unknown") << QString("n");
    QTest::newRow("no project") << QString() << QString("n");
    QTest::newRow("project that climbs") << QString("..") << QString("n");
}

void TestKyvApiPages::refusedNameFails()
{
    QFETCH(QString, project);
    QFETCH(QString, name);
    const auto before = nameOnTheServer();
    QVERIFY(!KYVApi::SetProjNameToService(project, name));
    QCOMPARE(nameOnTheServer(), before);
}

void TestKyvApiPages::renameWithoutALoginFails()
{
    KYVApi::init(QString::fromStdString(m_server->address()), QStringLiteral("invented"));
    const auto before = nameOnTheServer();
    QVERIFY(!KYVApi::SetProjNameToService(guid, QStringLiteral("n2")));
    QCOMPARE(nameOnTheServer(), before);
}

void TestKyvApiPages::renameWithoutAServerFails()
{
    std::string address;
    {
        const ScriptedServer gone([](const std::string&) { return ScriptedServer::reply(200, "{}"); });
        address = gone.address();
    }
    KYVApi::init(QString::fromStdString(address), QStringLiteral("token"));
    QVERIFY(!KYVApi::SetProjNameToService(guid, QStringLiteral("n")));
}

QTEST_GUILESS_MAIN(TestKyvApiPages)
#include "test_kyvapipages.moc"
