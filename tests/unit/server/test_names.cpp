// SPDX-License-Identifier: MIT
#include "answeringserver.h"

#include <QJsonArray>
#include <QTest>

namespace
{

const std::string guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";

std::string Named(const std::string& name)
{
    return R"({"name":")" + name + R"("})";
}

} // namespace

/// Who may give a project which name.
class TestNames : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_server.reset(); }

    void ownerRenamesAProject();
    void listOfProjectsIsSentAgainAfterARename();
    void memberOfTheOrganisationRenamesAProject();
    void memberOfAnotherOrganisationFindsNoProject();
    void strangerFindsNoProject();
    void demonstrationProjectIsNotRenamedByThoseWhoOnlySeeIt();
    void modelIsRenamedByTheOwnerOfItsBuilding();
    void modelOfADemonstrationIsNotRenamedByThoseWhoOnlySeeIt();
    void withoutATokenNothingIsRenamed();
    void goodNameIsTakenAsItIs_data();
    void goodNameIsTakenAsItIs();
    void badNameIsRefused_data();
    void badNameIsRefused();
    void otherMethodsAreRefused();

private:
    server::Reply rename(const std::string& token, const std::string& body);
    std::string nameOnTheServer();

    std::unique_ptr<AnsweringServer> m_server;
    std::string m_owner;
    std::string m_stranger;
};

void TestNames::init()
{
    m_server = std::make_unique<AnsweringServer>();
    m_owner = m_server->addAccount("owner");
    m_stranger = m_server->addAccount("stranger");
    m_server->addProject(guid, "owner", "before");
}

server::Reply TestNames::rename(const std::string& token, const std::string& body)
{
    return m_server->ask("PUT", {"projects", guid, "name"}, token, body);
}

std::string TestNames::nameOnTheServer()
{
    return m_server->store().findProject(m_server->accountId("owner"), guid).value().first.name;
}

void TestNames::ownerRenamesAProject()
{
    QCOMPARE(rename(m_owner, Named("城市之光")).status, 204U);
    const auto reply = m_server->ask("GET", {"projects", guid}, m_owner);
    QCOMPARE(AnsweringServer::objectOf(reply).value("name").toString(), QString("城市之光"));
}

void TestNames::listOfProjectsIsSentAgainAfterARename()
{
    const auto before = m_server->ask("GET", {"projects"}, m_owner);
    QCOMPARE(rename(m_owner, Named("after")).status, 204U);
    const auto after = m_server->ask("GET", {"projects"}, m_owner);
    QVERIFY(before.headers != after.headers);
    const auto project = AnsweringServer::objectOf(after).value("projects").toArray().at(0).toObject();
    QCOMPARE(project.value("name").toString(), QString("after"));
}

void TestNames::memberOfTheOrganisationRenamesAProject()
{
    const auto organisation = m_server->store().putOrganisation("house", "{}");
    const auto member = m_server->addAccount("member", organisation);
    auto project = m_server->addProject(guid, "owner", "before");
    project.organisation = organisation;
    m_server->store().putProject(project);
    QCOMPARE(rename(member, Named("after")).status, 204U);
    QCOMPARE(nameOnTheServer(), std::string("after"));
}

void TestNames::memberOfAnotherOrganisationFindsNoProject()
{
    auto project = m_server->addProject(guid, "owner", "before");
    project.organisation = m_server->store().putOrganisation("house", "{}");
    m_server->store().putProject(project);
    const auto other =
        m_server->addAccount("other", m_server->store().putOrganisation("another house", "{}"));
    QCOMPARE(rename(other, Named("after")).status, 404U);
    QCOMPARE(nameOnTheServer(), std::string("before"));
}

void TestNames::strangerFindsNoProject()
{
    const auto reply = rename(m_stranger, Named("after"));
    QCOMPARE(reply.status, 404U);
    QCOMPARE(AnsweringServer::codeOf(reply), 40400);
    QCOMPARE(nameOnTheServer(), std::string("before"));
}

void TestNames::demonstrationProjectIsNotRenamedByThoseWhoOnlySeeIt()
{
    auto project = m_server->addProject(guid, "owner", "before");
    project.isDemo = true;
    m_server->store().putProject(project);
    const auto reply = rename(m_stranger, Named("after"));
    QCOMPARE(reply.status, 403U);
    QCOMPARE(AnsweringServer::codeOf(reply), 40300);
    QCOMPARE(nameOnTheServer(), std::string("before"));
    QCOMPARE(rename(m_owner, Named("after")).status, 204U);
}

void TestNames::modelIsRenamedByTheOwnerOfItsBuilding()
{
    auto model = m_server->addProject("model", "stranger");
    model.parent = guid;
    m_server->store().putProject(model);
    const std::vector<std::string> path{"projects", "model", "name"};
    QCOMPARE(m_server->ask("PUT", path, m_owner, Named("after")).status, 204U);
    QCOMPARE(m_server->ask("PUT", path, m_stranger, Named("again")).status, 404U);
    const auto found = m_server->store().findProject(m_server->accountId("owner"), "model");
    QCOMPARE(found.value().first.name, std::string("after"));
}

void TestNames::modelOfADemonstrationIsNotRenamedByThoseWhoOnlySeeIt()
{
    auto project = m_server->addProject(guid, "owner", "before");
    project.isDemo = true;
    m_server->store().putProject(project);
    auto model = m_server->addProject("model", "owner");
    model.parent = guid;
    m_server->store().putProject(model);
    QCOMPARE(m_server->ask("PUT", {"projects", "model", "name"}, m_stranger, Named("after")).status, 403U);
}

void TestNames::withoutATokenNothingIsRenamed()
{
    QCOMPARE(rename({}, Named("after")).status, 401U);
    QCOMPARE(nameOnTheServer(), std::string("before"));
}

void TestNames::goodNameIsTakenAsItIs_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("one character") << "塔";
    QTest::newRow("markup") << "<b>塔 & \u201c楼\u201d</b>";
    QTest::newRow("blanks around it") << "  塔  ";
    QTest::newRow("beyond the basic plane") << QString::fromUcs4(U"\U0001F3D9");
    QTest::newRow("the longest") << QString(128, QChar(0x5854));
}

void TestNames::goodNameIsTakenAsItIs()
{
    QFETCH(QString, name);
    QCOMPARE(rename(m_owner, Named(name.toStdString())).status, 204U);
    QCOMPARE(QString::fromStdString(nameOnTheServer()), name);
}

void TestNames::badNameIsRefused_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("name");
    QTest::newRow("a list") << QByteArray(R"(["name"])");
    QTest::newRow("another key") << QByteArray(R"({"title":"n"})");
    QTest::newRow("a number") << QByteArray(R"({"name":1})");
    QTest::newRow("null") << QByteArray(R"({"name":null})");
    QTest::newRow("empty") << QByteArray(R"({"name":""})");
    QTest::newRow("only blanks") << QByteArray(R"({"name":"   "})");
    QTest::newRow("only wide blanks") << QByteArray("{\"name\":\"\xE3\x80\x80\"}");
    QTest::newRow("a line break") << QByteArray(R"({"name":"a\nb"})");
    QTest::newRow("a null") << QByteArray(R"({"name":"a\u0000b"})");
    QTest::newRow("delete") << QByteArray(R"({"name":"a\u007fb"})");
    QTest::newRow("a control character of the second range") << QByteArray(R"({"name":"a\u0085b"})");
    QTest::newRow("no UTF-8") << QByteArray("{\"name\":\"\xFF\xFE\"}");
    QTest::newRow("a character too long") << R"({"name":")" + QString(129, QChar(0x5854)).toUtf8() + R"("})";
}

void TestNames::badNameIsRefused()
{
    QFETCH(QByteArray, body);
    const auto reply = rename(m_owner, body.toStdString());
    QCOMPARE(reply.status, 400U);
    QCOMPARE(AnsweringServer::codeOf(reply), 40001);
    QCOMPARE(nameOnTheServer(), std::string("before"));
}

void TestNames::otherMethodsAreRefused()
{
    for (const char* method : {"GET", "POST", "DELETE", "HEAD"})
        QCOMPARE(m_server->ask(method, {"projects", guid, "name"}, m_owner, Named("after")).status, 405U);
    QCOMPARE(nameOnTheServer(), std::string("before"));
}

QTEST_GUILESS_MAIN(TestNames)
#include "test_names.moc"
