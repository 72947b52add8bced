// SPDX-License-Identifier: MIT
#include "pageserver.h"

#include "server/accounts/token.h"

#include <ctime>

#include <QDateTime>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTest>

namespace
{

const std::string guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";
const std::string hostile = R"(<script>alert("1")</script> & 'x')";
const std::string jpeg = "\xFF\xD8\xFF\xE0 picture";

} // namespace

/// What the pages hold, and what they keep to themselves.
class TestWebPages : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_server.reset(); }

    void everyPageForbidsForeignContent_data();
    void everyPageForbidsForeignContent();
    void pagesAskNobodyElse_data();
    void pagesAskNobodyElse();
    void pagesAreNotKeptByTheBrowser();
    void assetsAreKeptAndNamedByTheirContent();
    void unknownPageIsToldInWords();
    void otherMethodsAreRefused();
    void consoleListsWhatTheAccountSees();
    void consoleTellsTheStateInWords_data();
    void consoleTellsTheStateInWords();
    void consoleShowsTheLastChangeFirst();
    void consoleWithoutProjectsSaysWhatToDo();
    void projectPageTellsTheFacts();
    void projectWithoutARevisionHasAPage();
    void modelWithoutARecordHasAPage();
    void strangersProjectIsNotFound_data();
    void strangersProjectIsNotFound();
    void namesAreEscaped_data();
    void namesAreEscaped();
    void addressOfAProjectIsEncoded();
    void pictureIsShown();
    void unchangedPictureIsNotSentAgain();
    void fileThatIsNoPictureIsNotSentAsOne();

private:
    std::unique_ptr<PageServer> m_server;
    std::string m_owner;
    std::string m_stranger;
};

void TestWebPages::init()
{
    m_server = std::make_unique<PageServer>();
    m_owner = m_server->addAccount("owner");
    m_stranger = m_server->addAccount("stranger");
    m_server->addProject(guid, "owner", "塔楼");
}

void TestWebPages::everyPageForbidsForeignContent_data()
{
    QTest::addColumn<QStringList>("path");
    QTest::addColumn<bool>("isLoggedIn");
    QTest::addColumn<uint>("status");
    const QString project = QString::fromStdString(guid);
    QTest::newRow("console") << QStringList{"console"} << true << 200U;
    QTest::newRow("project") << QStringList{"projects", project} << true << 200U;
    QTest::newRow("picture") << QStringList{"projects", project, "picture"} << true << 200U;
    QTest::newRow("asset") << QStringList{"assets", "page.js"} << false << 200U;
    QTest::newRow("no login") << QStringList{"console"} << false << 403U;
    QTest::newRow("no such project") << QStringList{"projects", "unknown"} << true << 404U;
    QTest::newRow("no such page") << QStringList{"nothing", "here"} << true << 404U;
    QTest::newRow("no such asset") << QStringList{"assets", "../page.js"} << false << 404U;
}

void TestWebPages::everyPageForbidsForeignContent()
{
    QFETCH(QStringList, path);
    QFETCH(bool, isLoggedIn);
    QFETCH(uint, status);
    m_server->publish(guid, {{"projimage.jpg", jpeg}});
    const auto names = PathOf(path);
    const auto reply = m_server->open(names, {}, isLoggedIn ? m_server->browserOf(m_owner) : std::string());
    QCOMPARE(reply.status, status);
    const auto policy = HeaderOf(reply, "Content-Security-Policy");
    QVERIFY(policy.contains("default-src 'none'"));
    QVERIFY(policy.contains("frame-ancestors 'none'"));
    QVERIFY(!policy.contains("unsafe"));
    QVERIFY(!policy.contains("http"));
    QVERIFY(!policy.contains('*'));
    QCOMPARE(HeaderOf(reply, "X-Content-Type-Options"), QByteArray("nosniff"));
    QCOMPARE(HeaderOf(reply, "Referrer-Policy"), QByteArray("no-referrer"));
}

void TestWebPages::pagesAskNobodyElse_data()
{
    QTest::addColumn<QStringList>("path");
    QTest::newRow("console") << QStringList{"console"};
    QTest::newRow("project") << QStringList{"projects", QString::fromStdString(guid)};
}

void TestWebPages::pagesAskNobodyElse()
{
    QFETCH(QStringList, path);
    m_server->publish(guid, {{"projimage.jpg", jpeg}});
    const auto names = PathOf(path);
    const auto page = QString::fromStdString(m_server->see(names, m_owner).body);
    auto addresses = QRegularExpression(R"re((?:href|src)="([^"]*)")re").globalMatch(page);
    int count = 0;
    while (addresses.hasNext()) {
        const auto address = addresses.next().captured(1);
        QVERIFY2(!address.contains("//") && !address.startsWith('/') && !address.contains(':'),
                 qPrintable(address));
        ++count;
    }
    QVERIFY(count >= 4);
    // What the policy would stop: scripts, styles and handlers in the page itself.
    QVERIFY(!page.contains(QRegularExpression("<style|style=|\\son[a-z]+=|<script>")));
}

void TestWebPages::pagesAreNotKeptByTheBrowser()
{
    QCOMPARE(HeaderOf(m_server->see({"console"}, m_owner), "Cache-Control"), QByteArray("no-store"));
    QCOMPARE(HeaderOf(m_server->see({"projects", guid}, m_owner), "Cache-Control"), QByteArray("no-store"));
    QCOMPARE(HeaderOf(m_server->open({"console"}, "ticket=" + m_server->ticketFor(m_owner)), "Cache-Control"),
             QByteArray("no-store"));
}

void TestWebPages::assetsAreKeptAndNamedByTheirContent()
{
    const auto page = QString::fromStdString(m_server->see({"console"}, m_owner).body);
    for (const char* name : {"style.css", "page.js", "icon.svg"}) {
        const auto reply = m_server->open({"assets", name}, {});
        QCOMPARE(reply.status, 200U);
        QVERIFY(HeaderOf(reply, "Cache-Control").contains("immutable"));
        QVERIFY(reply.body.size() > 100);
        const auto digest = QString::fromStdString(wire::ToHex(wire::DigestOf(reply.body))).left(12);
        QVERIFY(page.contains(QString("assets/%1?v=%2\"").arg(name, digest)));
    }
    QCOMPARE(m_server->open({"assets", "style.css"}, {}).contentType, std::string("text/css; charset=utf-8"));
}

void TestWebPages::unknownPageIsToldInWords()
{
    for (const Path& path :
         {Path{"nothing"}, Path{"projects"}, Path{"projects", guid, "x"}, Path{"health"}}) {
        const auto reply = m_server->open(path, {}, m_server->browserOf(m_owner));
        QCOMPARE(reply.status, 404U);
        QVERIFY(BodyOf(reply).contains("没有这个页面"));
    }
}

void TestWebPages::otherMethodsAreRefused()
{
    const auto cookie = m_server->browserOf(m_owner);
    for (const char* method : {"POST", "PUT", "DELETE", "HEAD", "OPTIONS"}) {
        const auto reply = m_server->open({"console"}, {}, cookie, method);
        QCOMPARE(reply.status, 405U);
        QCOMPARE(HeaderOf(reply, "Allow"), QByteArray("GET"));
    }
}

void TestWebPages::consoleListsWhatTheAccountSees()
{
    auto demo = m_server->addProject("demo", "stranger", "示范城市");
    demo.isDemo = true;
    demo.type = "CIM";
    m_server->store().putProject(demo);
    m_server->addProject("foreign", "stranger", "别人的楼");
    auto model = m_server->addProject("model", "owner", "楼的模型");
    model.parent = guid;
    m_server->store().putProject(model);

    const auto page = BodyOf(m_server->see({"console"}, m_owner));
    QVERIFY(page.contains("<bdi>owner</bdi>"));
    QVERIFY(page.contains("href=\"projects/" + QByteArray::fromStdString(guid) + "\""));
    QVERIFY(page.contains("塔楼</bdi></a></th><td>BIM工程</td>"));
    QVERIFY(page.contains("示范城市</bdi></a> <span class=\"mark\">示例</span></th><td>场景工程</td>"));
    QVERIFY(page.contains("共 2 个工程"));
    QVERIFY(!page.contains("别人的楼"));
    QVERIFY(!page.contains("楼的模型"));
}

void TestWebPages::consoleTellsTheStateInWords_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("hasRevision");
    QTest::addColumn<QByteArray>("words");
    const auto row = [](const char* name, server::ProjectStatus status, bool hasRevision, const char* words) {
        QTest::newRow(name) << static_cast<int>(status) << hasRevision << QByteArray(words);
    };
    row("normal", server::ProjectStatus::normal, true, ">正常<");
    row("nothing yet", server::ProjectStatus::normal, false, ">还没有数据<");
    row("uploading", server::ProjectStatus::uploading, false, ">正在上传中<");
    row("upload failed", server::ProjectStatus::uploadFailed, true, ">上传失败<");
    row("converting", server::ProjectStatus::converting, true, ">正在转换中<");
}

void TestWebPages::consoleTellsTheStateInWords()
{
    QFETCH(int, status);
    QFETCH(bool, hasRevision);
    QFETCH(QByteArray, words);
    if (hasRevision)
        m_server->publish(guid, {{"a", "1"}});
    m_server->store().setStatus(guid, static_cast<server::ProjectStatus>(status));
    QVERIFY(BodyOf(m_server->see({"console"}, m_owner)).contains(words));
    QVERIFY(BodyOf(m_server->see({"projects", guid}, m_owner)).contains(words));
}

void TestWebPages::consoleShowsTheLastChangeFirst()
{
    m_server->addProject("second", "owner", "后来的楼");
    const auto before = BodyOf(m_server->see({"console"}, m_owner));
    QVERIFY(before.indexOf("塔楼") < before.indexOf("后来的楼"));
    QVERIFY(!before.contains("<time"));

    const auto start = QDateTime::currentDateTimeUtc();
    m_server->publish("second", {{"a", "1"}});
    const auto after = QString::fromUtf8(BodyOf(m_server->see({"console"}, m_owner)));
    QVERIFY(after.indexOf("后来的楼") < after.indexOf("塔楼"));
    const auto time = QRegularExpression("<time datetime=\"([^\"]*)\">").match(after).captured(1);
    const auto moment = QDateTime::fromString(time, Qt::ISODate);
    QVERIFY(qAbs(start.secsTo(moment)) <= 60);
}

void TestWebPages::consoleWithoutProjectsSaysWhatToDo()
{
    const auto reply = m_server->see({"console"}, m_stranger);
    QCOMPARE(reply.status, 200U);
    QVERIFY(BodyOf(reply).contains("这个帐号还没有工程"));
    QVERIFY(BodyOf(reply).contains("新建工程并上传"));
}

void TestWebPages::projectPageTellsTheFacts()
{
    auto project = m_server->addProject(guid, "owner", "塔楼");
    project.record = R"({"longitude":"121.4737","latitude":"31.2304","iotCode":"IOT-7"})";
    m_server->store().putProject(project);
    m_server->publish(guid,
                      {{"a", std::string(1500, 'a')}, {"b", std::string(36, 'b')}, {"projimage.jpg", jpeg}});
    const auto page = BodyOf(m_server->see({"projects", guid}, m_owner));
    QVERIFY(page.contains("<h1><bdi>塔楼</bdi></h1>"));
    QVERIFY(page.contains("<dt>工程类型</dt><dd>BIM工程</dd>"));
    QVERIFY(page.contains("经度 121.4737，纬度 31.2304"));
    QVERIFY(page.contains("IOT-7"));
    QVERIFY(page.contains("<dt>文件数</dt><dd>3</dd>"));
    QVERIFY(page.contains("<dt>数据大小</dt><dd>1.5 KB（1,548 字节）</dd>"));
    QVERIFY(page.contains(QByteArray::fromStdString(guid) + "/picture\" alt="));
    QVERIFY(page.contains("<time datetime="));
    QVERIFY(page.contains("href=\"../console\""));
}

void TestWebPages::projectWithoutARevisionHasAPage()
{
    const auto reply = m_server->see({"projects", guid}, m_owner);
    QCOMPARE(reply.status, 200U);
    QVERIFY(BodyOf(reply).contains("没有图片"));
    QVERIFY(BodyOf(reply).contains("未设置"));
    QVERIFY(!BodyOf(reply).contains("文件数"));
    QCOMPARE(m_server->see({"projects", guid, "picture"}, m_owner).status, 404U);
}

void TestWebPages::modelWithoutARecordHasAPage()
{
    auto model = m_server->addProject("model", "owner", "楼的模型");
    model.type = "MODEL";
    model.parent = guid;
    model.record.clear();
    m_server->store().putProject(model);
    const auto reply = m_server->see({"projects", "model"}, m_owner);
    QCOMPARE(reply.status, 200U);
    QVERIFY(BodyOf(reply).contains("<dd>模型</dd>"));
}

void TestWebPages::strangersProjectIsNotFound_data()
{
    QTest::addColumn<QStringList>("path");
    const QString project = QString::fromStdString(guid);
    QTest::newRow("its page") << QStringList{"projects", project};
    QTest::newRow("its picture") << QStringList{"projects", project, "picture"};
    QTest::newRow("none at all") << QStringList{"projects", "unknown"};
    QTest::newRow("a path") << QStringList{"projects", "../../server.db"};
}

void TestWebPages::strangersProjectIsNotFound()
{
    QFETCH(QStringList, path);
    m_server->publish(guid, {{"projimage.jpg", jpeg}});
    const auto names = PathOf(path);
    const auto reply = m_server->see(names, m_stranger);
    QCOMPARE(reply.status, 404U);
    // The same words for what is there and what is not: nobody learns which names are taken.
    QCOMPARE(BodyOf(reply).replace("../../", "../"),
             BodyOf(m_server->see({"projects", "another"}, m_stranger)).replace("../../", "../"));
}

void TestWebPages::namesAreEscaped_data()
{
    QTest::addColumn<QStringList>("path");
    QTest::newRow("console") << QStringList{"console"};
    QTest::newRow("project") << QStringList{"projects", QString::fromStdString(guid)};
}

void TestWebPages::namesAreEscaped()
{
    QFETCH(QStringList, path);
    const auto name = QString::fromStdString(hostile);
    m_server->store().putProject([&] {
        auto project = m_server->addProject(guid, "owner", hostile);
        const QJsonObject record{{"longitude", name}, {"latitude", name}, {"iotCode", name}};
        project.record = QJsonDocument(record).toJson().toStdString();
        return project;
    }());
    server::Account account;
    account.name = "hostile";
    account.loginName = hostile;
    account.organisation = m_server->store().putOrganisation("house", "{}");
    const auto id = m_server->store().addAccount(account).value();
    m_server->store().addSession(server::TokenName("h"), id, std::time(nullptr) + 100);
    auto shared = m_server->store().findProject(m_server->accountId("owner"), guid).value().first;
    shared.organisation = account.organisation;
    m_server->store().putProject(shared);

    const auto names = PathOf(path);
    const auto page = BodyOf(m_server->see(names, "h"));
    const QByteArray escaped = "&lt;script&gt;alert(&quot;1&quot;)&lt;/script&gt; &amp; &#39;x&#39;";
    // Name and login on both pages, the name twice and the record's three texts on the project's.
    QCOMPARE(page.count(escaped), names.size() == 1 ? 2 : 6);
    QVERIFY(!page.contains("<script>alert"));
}

void TestWebPages::addressOfAProjectIsEncoded()
{
    m_server->addProject("a\"b/../c?d", "owner", "n");
    QVERIFY(BodyOf(m_server->see({"console"}, m_owner)).contains("href=\"projects/a%22b%2F..%2Fc%3Fd\""));
}

void TestWebPages::pictureIsShown()
{
    m_server->publish(guid, {{"projimage.jpg", jpeg}});
    const auto reply = m_server->see({"projects", guid, "picture"}, m_owner);
    QCOMPARE(reply.status, 200U);
    QCOMPARE(reply.contentType, std::string("image/jpeg"));
    QCOMPARE(reply.body, jpeg);
}

void TestWebPages::unchangedPictureIsNotSentAgain()
{
    m_server->publish(guid, {{"projimage.jpg", jpeg}});
    server::Request request;
    request.method = "GET";
    request.path = {"projects", guid, "picture"};
    request.isForPage = true;
    request.cookie = m_server->browserOf(m_owner);
    const auto first = m_server->api().answer(request);
    request.ifNoneMatch = HeaderOf(first, "ETag").toStdString();
    QVERIFY(!request.ifNoneMatch.empty());
    const auto second = m_server->api().answer(request);
    QCOMPARE(second.status, 304U);
    QVERIFY(second.body.empty());
    m_server->publish(guid, {{"projimage.jpg", jpeg + "2"}});
    QCOMPARE(m_server->api().answer(request).status, 200U);
}

void TestWebPages::fileThatIsNoPictureIsNotSentAsOne()
{
    m_server->publish(guid, {{"projimage.jpg", "<html><script>alert(1)</script>"}});
    const auto reply = m_server->see({"projects", guid, "picture"}, m_owner);
    QCOMPARE(reply.status, 404U);
    QVERIFY(reply.body.empty());
}

QTEST_GUILESS_MAIN(TestWebPages)
#include "test_webpages.moc"
