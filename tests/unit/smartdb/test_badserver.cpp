// SPDX-License-Identifier: MIT
#include "scriptedserver.h"

#include "ZRSmartDB/zrdbnetaccess.h"
#include "concurrency/task.h"
#include "http/fault.h"
#include "smartdb/database.h"

#include <memory>

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

Q_DECLARE_METATYPE(ScriptedServer::Answer)

namespace
{

using ZRSmartDB::Database;

const auto guid = ZRSmartFormat::GuidFromText(L"5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01");

int CodeOf(const std::wstring& reason)
{
    return QJsonDocument::fromJson(QString::fromStdWString(reason).toUtf8()).object().value("code").toInt();
}

QString MessageOf(const std::wstring& reason)
{
    return QJsonDocument::fromJson(QString::fromStdWString(reason).toUtf8()).object().value("msg").toString();
}

} // namespace

/// Every query and the download against servers that answer badly: a clear error, nothing left behind, and an
/// end.
class TestBadServer : public QObject
{
    Q_OBJECT

private slots:
    void everyQueryFailsWithItsCode_data();
    void everyQueryFailsWithItsCode();
    void downloadFailsWithItsCodeAndLeavesNothing_data() { everyQueryFailsWithItsCode_data(); }
    void downloadFailsWithItsCodeAndLeavesNothing();
    void reasonIsTheOneOfTheThreadThatAsks();
    void unreachableServerIsTold();
    void addressThatIsNoneIsRefused();

private:
    /// A database whose patience is short.
    static std::unique_ptr<Database> databaseOn(const std::string& address);
};

std::unique_ptr<Database> TestBadServer::databaseOn(const std::string& address)
{
    auto database = std::make_unique<Database>();
    http::Limits limits;
    limits.connecting = std::chrono::milliseconds(1000);
    limits.slowBytes = 512;
    limits.slowSeconds = 1;
    database->setLimits(limits);
    return database->setServer(address) ? std::move(database) : nullptr;
}

void TestBadServer::everyQueryFailsWithItsCode_data()
{
    QTest::addColumn<ScriptedServer::Answer>("answer");
    QTest::addColumn<int>("code");
    const auto row = [](const char* name, const ScriptedServer::Answer& answer, int code) {
        QTest::newRow(name) << answer << code;
    };
    const auto json = [](const char* body) { return ScriptedServer::reply(200, body); };
    row("a web page", json("<html><body>Welcome</body></html>"), http::faultcode::badReply);
    row("half a JSON", json("{\"states\": {\"5b0f6a52"), http::faultcode::badReply);
    row("JSON of another kind", json("[1, 2]"), http::faultcode::badReply);
    row("an empty body", json(""), http::faultcode::badReply);
    row("an expired login", ScriptedServer::reply(401, R"({"code": 40014, "msg": "login expired"})"), 40014);
    row("401 without words", ScriptedServer::reply(401, ""), 40014);
    row("404", ScriptedServer::reply(404, R"({"code": 40400, "msg": "not here"})"), 40400);
    row("500", ScriptedServer::reply(500, R"({"code": 50000, "msg": "broken"})"), 50000);
    row("500 as a web page", ScriptedServer::reply(500, "<html>"), http::faultcode::badReply);
    row("nothing", {"", 0, false}, http::faultcode::unreachable);
    row("half an answer", {"HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n{\"sta", 0, false},
        http::faultcode::unreachable);
    row("no HTTP", {"hello\r\n\r\n", 0, false}, http::faultcode::unreachable);
    row("a byte now and then", {"HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n{\"states\": {", 100, true},
        http::faultcode::timedOut);
    row("no end", {"HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n{", 0, true}, http::faultcode::timedOut);
}

void TestBadServer::everyQueryFailsWithItsCode()
{
    QFETCH(ScriptedServer::Answer, answer);
    QFETCH(int, code);
    const ScriptedServer server([&](const std::string&) { return answer; });
    const auto database = databaseOn(server.address());
    auto& net = *database->GetNetAccess();
    const auto reply = std::make_shared<std::wstring>(L"untouched");
    QElapsedTimer timer;
    timer.start();
    const auto state = net.GetStatusByProjId(guid, reply).get();
    const auto type = net.GetProjType(guid, reply).get();
    const auto countries = net.GetCountryList(reply).get();
    const auto regions = net.GetAdministrativeRegion(L"310000", reply).get();
    QCOMPARE(CodeOf(state), code);
    QCOMPARE(CodeOf(type), code);
    if (QTest::currentDataTag() != QByteArray("JSON of another kind")) {
        QCOMPARE(CodeOf(countries), code);
        QCOMPARE(CodeOf(regions), code);
        QCOMPARE(*reply, std::wstring(L"untouched"));
    }
    QVERIFY(!MessageOf(state).isEmpty());
    QVERIFY2(timer.elapsed() < 30000, "a server that does not go on is given up");
}

void TestBadServer::downloadFailsWithItsCodeAndLeavesNothing()
{
    QFETCH(ScriptedServer::Answer, answer);
    QFETCH(int, code);
    const ScriptedServer server([&](const std::string&) { return answer; });
    const auto database = databaseOn(server.address());
    const QTemporaryDir folder;
    const auto dataFolder = folder.path().toStdWString();
    QVERIFY(!database->DownLoadProj(guid, dataFolder));
    std::wstring reason;
    database->GetLastError(reason);
    QCOMPARE(CodeOf(reason), code);
    QCOMPARE(database->OpenProject(guid, dataFolder), nullptr);
    QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList());
}

void TestBadServer::reasonIsTheOneOfTheThreadThatAsks()
{
    const ScriptedServer server(
        [](const std::string&) { return ScriptedServer::reply(500, R"({"code": 50000, "msg": "broken"})"); });
    const auto database = databaseOn(server.address());
    const QTemporaryDir folder;
    QVERIFY(!database->DownLoadProj(guid, folder.path().toStdWString()));
    std::thread([&] {
        std::wstring others;
        database->GetLastError(others);
        QCOMPARE(others, std::wstring());
        // What this one looks for in vain must not replace the reason of the first.
        QCOMPARE(database->OpenProject(guid, folder.path().toStdWString()), nullptr);
    }).join();
    std::wstring reason;
    database->GetLastError(reason);
    QCOMPARE(CodeOf(reason), 50000);
}

void TestBadServer::unreachableServerIsTold()
{
    std::string address;
    {
        const ScriptedServer gone([](const std::string&) { return ScriptedServer::Answer(); });
        address = gone.address();
    }
    const auto database = databaseOn(address);
    const auto reply = std::make_shared<std::wstring>();
    const auto error = database->GetNetAccess()->GetStatusByProjId(guid, reply).get();
    QCOMPARE(CodeOf(error), int(http::faultcode::unreachable));
    QVERIFY(MessageOf(error).contains(QString::fromStdString(address)));
}

void TestBadServer::addressThatIsNoneIsRefused()
{
    Database database;
    for (const char* address : {"", "ftp://127.0.0.1", "127.0.0.1:80", "http://", "file:///etc/passwd"})
        QVERIFY2(!database.setServer(address), address);
    QVERIFY(database.setServer("http://127.0.0.1:8480"));
}

QTEST_GUILESS_MAIN(TestBadServer)
#include "test_badserver.moc"
