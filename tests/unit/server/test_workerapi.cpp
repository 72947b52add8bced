// SPDX-License-Identifier: MIT
#include "answeringserver.h"

#include "server/projects/publish.h"
#include "smartdb/data/projectfile.h"

#include <ctime>
#include <fstream>
#include <sstream>

#include <QCryptographicHash>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

namespace
{

const std::string guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";
const std::string archive(std::size_t{3} << 20U, 'k');
const std::string md5 = QCryptographicHash::hash(QByteArray::fromStdString(archive), QCryptographicHash::Md5)
                            .toHex()
                            .toStdString();
const std::string description = R"({"name":"n","type":"MODEL"})";

constexpr std::int64_t lease = 15;

} // namespace

/// The requests of workers on other machines.
class TestWorkerApi : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void withoutAKeyNobodyIsAWorker();
    void wrongKeyIsRefused();
    void tokenOfAnAccountIsNoKey();
    void keyIsNoTokenOfAnAccount();
    void newKeyEndsTheOneBefore();
    void keyIsKeptAsItsDigestForTheOwnerOnly();
    void jobIsToldWithItsArchive();
    void noJobIsNoContent();
    void jobIsTheWorkersForTheTimeOfTheLease();
    void everyRequestRenewsTheLease_data();
    void everyRequestRenewsTheLease();
    void jobOfALostWorkerGoesToTheNext();
    void lostWorkerIsToldSo_data();
    void lostWorkerIsToldSo();
    void archiveComesInPortions();
    void progressIsTold();
    void modelThatHasComeWholeIsPublished();
    void partsOfAModelAreNotPublished();
    void bytesMayBeSentAgain();
    void bytesBehindTheEndOfAFileAreRefused();
    void fileOutsideOfTheModelIsRefused_data();
    void fileOutsideOfTheModelIsRefused();
    void modelThatIsNoneFailsWithTheReason();
    void failureIsToldWithItsReason();
    void jobThatIsGivenBackWaitsAgain();
    void deletedJobTakesWhatHasComeAlong();
    void lostJobTakesWhatHasComeAlong();
    void badBodiesAreRefused_data();
    void badBodiesAreRefused();
    void badNameOfAWorkerIsRefused();

private:
    /// Sends an archive and registers a job for it.
    [[nodiscard]] std::string order(const std::string& task);
    [[nodiscard]] server::Reply ask(const std::string& method, const std::vector<std::string>& path,
                                    const std::string& body = {}, const std::string& worker = "w");
    [[nodiscard]] std::string take(const std::string& worker = "w");
    [[nodiscard]] server::Reply put(const std::string& job, const std::string& file, const std::string& bytes,
                                    const std::string& offset = "0");
    [[nodiscard]] QJsonArray list(const std::string& what);
    /// As if the worker had not been heard of for the time of its lease.
    void loseWorkerOf(const std::string& job);
    [[nodiscard]] std::string publishable(const std::string& job);

    std::unique_ptr<AnsweringServer> m_server;
    std::string m_token;
    std::string m_key;
};

void TestWorkerApi::init()
{
    m_server = std::make_unique<AnsweringServer>();
    m_token = m_server->addAccount("wang");
    (void)m_server->addProject(guid, "wang");
    const QTemporaryDir source;
    const auto folder = ZRSmartDB::ProjectFolder(source.path().toStdString(), guid);
    ZRSmartDB::ProjectHead head;
    head.guid = guid;
    head.name = "n";
    head.type = "BIM";
    ZRSmartDB::ProjectFile::create(folder, head);
    (void)server::PublishFolder(m_server->store(), m_server->packs(), guid, folder);
    m_key = server::WorkerKey(m_server->workerKey()).renew();
}

server::Reply TestWorkerApi::ask(const std::string& method, const std::vector<std::string>& path,
                                 const std::string& body, const std::string& worker)
{
    std::vector<std::string> whole{"workers", worker, "jobs"};
    whole.insert(whole.end(), path.begin(), path.end());
    return m_server->ask(method, whole, m_key, body);
}

std::string TestWorkerApi::order(const std::string& task)
{
    const auto path = guid + '/' + task + "/a.kyv";
    const auto begun =
        m_server->ask("POST", {"projects", guid, "archives"}, m_token,
                      R"({"size":)" + std::to_string(archive.size()) + R"(,"path":")" + path + "\"}");
    const auto id = AnsweringServer::objectOf(begun).value("archive").toString().toStdString();
    (void)m_server->ask("PUT", {"projects", guid, "archives", id, "bytes", "0"}, m_token, archive);
    (void)m_server->ask("POST", {"projects", guid, "archives", id, "finish"}, m_token,
                        R"({"md5":")" + md5 + "\"}");
    const auto added =
        m_server->ask("POST", {"projects", guid, "conversions"}, m_token,
                      R"({"name":"房子","oldModelId":"","status":6,"origin":"1","type":"2","projectId":")" +
                          guid + R"(","md5":")" + md5 + R"(","path":")" + path + "\"}");
    return AnsweringServer::objectOf(added).value("id").toString().toStdString();
}

std::string TestWorkerApi::take(const std::string& worker)
{
    return AnsweringServer::objectOf(ask("POST", {}, "{}", worker)).value("id").toString().toStdString();
}

server::Reply TestWorkerApi::put(const std::string& job, const std::string& file, const std::string& bytes,
                                 const std::string& offset)
{
    return ask("PUT", {job, "model", offset, file}, bytes);
}

QJsonArray TestWorkerApi::list(const std::string& what)
{
    const bool isFailures = what == "failures";
    std::vector<std::string> path{"projects", guid, isFailures ? "conversions" : what};
    if (isFailures)
        path.emplace_back(what);
    const auto key = what == "conversions" ? QStringLiteral("jobs") : QString::fromStdString(what);
    return AnsweringServer::objectOf(m_server->ask("GET", path, m_token)).value(key).toArray();
}

void TestWorkerApi::loseWorkerOf(const std::string& job)
{
    QVERIFY(m_server->store().keepJob(job, "w", 1, std::time(nullptr) - 1));
    m_server->api().tick();
}

std::string TestWorkerApi::publishable(const std::string& job)
{
    (void)put(job, "model.json", description);
    (void)put(job, "model.glb", "glTF");
    return R"({"files":{"model.glb":4,"model.json":)" + std::to_string(description.size()) + "}}";
}

void TestWorkerApi::withoutAKeyNobodyIsAWorker()
{
    std::filesystem::remove(m_server->workerKey());
    QCOMPARE(ask("POST", {}).status, 401U);
    m_key.clear();
    QCOMPARE(ask("POST", {}).status, 401U);
}

void TestWorkerApi::wrongKeyIsRefused()
{
    (void)order("a");
    m_key.back() = m_key.back() == 'a' ? 'b' : 'a';
    const auto reply = ask("POST", {});
    QCOMPARE(reply.status, 401U);
    QCOMPARE(AnsweringServer::codeOf(reply), 40102);
    QCOMPARE(list("conversions").first().toObject().value("status").toString(), QStringLiteral("6"));
}

void TestWorkerApi::tokenOfAnAccountIsNoKey()
{
    m_key = m_token;
    QCOMPARE(AnsweringServer::codeOf(ask("POST", {})), 40102);
}

void TestWorkerApi::keyIsNoTokenOfAnAccount()
{
    const auto reply = m_server->ask("GET", {"projects"}, m_key);
    QCOMPARE(AnsweringServer::codeOf(reply), 40014);
}

void TestWorkerApi::newKeyEndsTheOneBefore()
{
    const auto newKey = server::WorkerKey(m_server->workerKey()).renew();
    QCOMPARE(ask("POST", {}).status, 401U);
    m_key = newKey;
    QCOMPARE(ask("POST", {}).status, 204U);
}

void TestWorkerApi::keyIsKeptAsItsDigestForTheOwnerOnly()
{
    std::ostringstream text;
    text << std::ifstream(m_server->workerKey()).rdbuf();
    QVERIFY(text.str().find(m_key) == std::string::npos);
    using std::filesystem::perms;
    QVERIFY(std::filesystem::status(m_server->workerKey()).permissions() ==
            (perms::owner_read | perms::owner_write));
}

void TestWorkerApi::jobIsToldWithItsArchive()
{
    const auto id = order("a");
    const auto job = AnsweringServer::objectOf(ask("POST", {}));
    QCOMPARE(job, QJsonObject({{"id", QString::fromStdString(id)},
                               {"name", "房子"},
                               {"mode", 0},
                               {"size", static_cast<qint64>(archive.size())},
                               {"md5", QString::fromStdString(md5)},
                               {"leaseSeconds", static_cast<qint64>(lease)}}));
    QCOMPARE(list("conversions").first().toObject().value("status").toString(), QStringLiteral("3"));
}

void TestWorkerApi::noJobIsNoContent()
{
    QCOMPARE(ask("POST", {}).status, 204U);
    (void)order("a");
    QVERIFY(!take().empty());
    QCOMPARE(ask("POST", {}, {}, "v").status, 204U);
}

void TestWorkerApi::jobIsTheWorkersForTheTimeOfTheLease()
{
    const auto id = order("a");
    QCOMPARE(take(), id);
    auto& store = m_server->store();
    store.reviveJobs(std::time(nullptr) + lease - 3, 3, 0);
    QCOMPARE(store.findJob(id)->status, server::JobStatus::running);
    store.reviveJobs(std::time(nullptr) + lease + 1, 3, 0);
    QCOMPARE(store.findJob(id)->status, server::JobStatus::waiting);
}

void TestWorkerApi::everyRequestRenewsTheLease_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QString>("what");
    QTest::newRow("progress") << "PUT"
                              << "progress";
    QTest::newRow("bytes of the archive") << "GET"
                                          << "archive";
    QTest::newRow("bytes of the model") << "PUT"
                                        << "model";
}

void TestWorkerApi::everyRequestRenewsTheLease()
{
    QFETCH(QString, method);
    QFETCH(QString, what);
    const auto id = order("a");
    QCOMPARE(take(), id);
    auto& store = m_server->store();
    QVERIFY(store.keepJob(id, "w", 1, std::time(nullptr)));
    std::vector<std::string> path{id, what.toStdString()};
    if (what == "archive")
        path.emplace_back("0");
    if (what == "model")
        path.insert(path.end(), {"0", "model.glb"});
    QVERIFY(ask(method.toStdString(), path, R"({"percent":1})").status < 300);
    store.reviveJobs(std::time(nullptr) + lease - 3, 3, 0);
    QCOMPARE(store.findJob(id)->status, server::JobStatus::running);
}

void TestWorkerApi::jobOfALostWorkerGoesToTheNext()
{
    const auto id = order("a");
    QCOMPARE(take(), id);
    loseWorkerOf(id);
    QCOMPARE(take("v"), id);
}

void TestWorkerApi::lostWorkerIsToldSo_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QStringList>("path");
    QTest::newRow("archive") << "GET" << QStringList{"archive", "0"};
    QTest::newRow("progress") << "PUT" << QStringList{"progress"};
    QTest::newRow("model") << "PUT" << QStringList{"model", "0", "model.glb"};
    QTest::newRow("publish") << "POST" << QStringList{"publish"};
    QTest::newRow("fail") << "POST" << QStringList{"fail"};
    QTest::newRow("give back") << "DELETE" << QStringList{};
}

void TestWorkerApi::lostWorkerIsToldSo()
{
    QFETCH(QString, method);
    QFETCH(QStringList, path);
    const auto id = order("a");
    QCOMPARE(take(), id);
    loseWorkerOf(id);
    QCOMPARE(take("v"), id);
    std::vector<std::string> names{id};
    for (const auto& name : path)
        names.push_back(name.toStdString());
    const auto reply = ask(method.toStdString(), names, R"({"percent":1,"reason":"r","files":{"a":1}})");
    QCOMPARE(reply.status, 404U);
    QCOMPARE(AnsweringServer::codeOf(reply), 40412);
    QCOMPARE(m_server->store().findJob(id)->status, server::JobStatus::running);
}

void TestWorkerApi::archiveComesInPortions()
{
    const auto id = order("a");
    QCOMPARE(take(), id);
    std::string come;
    while (come.size() < archive.size()) {
        const auto reply = ask("GET", {id, "archive", std::to_string(come.size())});
        QCOMPARE(reply.status, 200U);
        QVERIFY(!reply.body.empty() && reply.body.size() <= (1U << 20U));
        come += reply.body;
    }
    QCOMPARE(come, archive);
    QVERIFY(ask("GET", {id, "archive", std::to_string(come.size())}).body.empty());
}

void TestWorkerApi::progressIsTold()
{
    const auto id = order("a");
    QCOMPARE(take(), id);
    QCOMPARE(ask("PUT", {id, "progress"}, R"({"percent":42.5})").status, 204U);
    const auto progress = m_server->ask("GET", {"conversions", id, "progress"}, m_token);
    QCOMPARE(AnsweringServer::objectOf(progress).value("percent").toDouble(), 42.5);
}

void TestWorkerApi::modelThatHasComeWholeIsPublished()
{
    const auto id = order("a");
    QCOMPARE(take(), id);
    const auto before = m_server->store().head(guid);
    QCOMPARE(ask("POST", {id, "publish"}, publishable(id)).status, 204U);
    QVERIFY(list("conversions").isEmpty());
    QCOMPARE(list("models").size(), 1);
    QCOMPARE(list("models").first().toObject().value("name").toString(), QStringLiteral("房子"));
    QVERIFY(m_server->store().head(guid) != before);
    QVERIFY(std::filesystem::is_empty(m_server->models()));
    QVERIFY(std::filesystem::is_empty(m_server->archives()));
}

void TestWorkerApi::partsOfAModelAreNotPublished()
{
    const auto id = order("a");
    QCOMPARE(take(), id);
    const auto files = publishable(id);
    for (const auto& [file, bytes] :
         {std::pair<std::string, std::string>{"model.glb", "glT"}, {"model.glb", "glTF2"}, {"more", ""}}) {
        QCOMPARE(put(id, file, bytes).status, 204U);
        const auto reply = ask("POST", {id, "publish"}, files);
        QCOMPARE(reply.status, 409U);
        QCOMPARE(AnsweringServer::codeOf(reply), 40911);
    }
    QCOMPARE(m_server->store().findJob(id)->status, server::JobStatus::running);
}

void TestWorkerApi::bytesMayBeSentAgain()
{
    const auto id = order("a");
    QCOMPARE(take(), id);
    (void)put(id, "model.json", description);
    for (const auto& [offset, bytes] :
         {std::pair<std::string, std::string>{"0", "gl"}, {"2", "TF"}, {"2", "TF"}, {"0", "gl"}, {"2", "TF"}})
        QCOMPARE(put(id, "model.glb", bytes, offset).status, 204U);
    const auto files = R"({"files":{"model.glb":4,"model.json":)" + std::to_string(description.size()) + "}}";
    QCOMPARE(ask("POST", {id, "publish"}, files).status, 204U);
    const auto model = list("models").first().toObject().value("id").toString().toStdString();
    const auto file = m_server->ask("GET", {"projects", model, "files", "model.glb"}, m_token);
    QCOMPARE(file.status, 200U);
    QCOMPARE(file.contentLength(), std::uint64_t{4});
}

void TestWorkerApi::bytesBehindTheEndOfAFileAreRefused()
{
    const auto id = order("a");
    QCOMPARE(take(), id);
    for (const char* offset : {"1", "5"}) {
        const auto reply = put(id, "model.glb", "glTF", offset);
        QCOMPARE(reply.status, 409U);
        QCOMPARE(AnsweringServer::codeOf(reply), 40910);
    }
}

void TestWorkerApi::fileOutsideOfTheModelIsRefused_data()
{
    QTest::addColumn<QString>("file");
    for (const char* file : {"..", "../a", "/a", "a/../../b", ""})
        QTest::newRow(file) << file;
}

void TestWorkerApi::fileOutsideOfTheModelIsRefused()
{
    QFETCH(QString, file);
    const auto id = order("a");
    QCOMPARE(take(), id);
    QCOMPARE(AnsweringServer::codeOf(put(id, file.toStdString(), "x")), 40001);
    QVERIFY(std::filesystem::is_empty(m_server->models()));
}

void TestWorkerApi::modelThatIsNoneFailsWithTheReason()
{
    const auto id = order("a");
    QCOMPARE(take(), id);
    (void)put(id, "model.json", "noise");
    QCOMPARE(ask("POST", {id, "publish"}, R"({"files":{"model.json":5}})").status, 204U);
    QCOMPARE(list("failures").size(), 1);
    QVERIFY(!list("failures").first().toObject().value("reason").toString().isEmpty());
    QVERIFY(list("models").isEmpty());
}

void TestWorkerApi::failureIsToldWithItsReason()
{
    const auto id = order("a");
    QCOMPARE(take(), id);
    QCOMPARE(ask("POST", {id, "fail"}, R"({"reason":"no model for you"})").status, 204U);
    QCOMPARE(list("failures").first().toObject().value("reason").toString(),
             QStringLiteral("no model for you"));
    QCOMPARE(list("conversions").first().toObject().value("status").toString(), QStringLiteral("4"));
}

void TestWorkerApi::jobThatIsGivenBackWaitsAgain()
{
    const auto id = order("a");
    QCOMPARE(take(), id);
    QCOMPARE(ask("DELETE", {id}).status, 204U);
    m_server->api().tick();
    QCOMPARE(take("v"), id);
}

void TestWorkerApi::deletedJobTakesWhatHasComeAlong()
{
    const auto id = order("a");
    QCOMPARE(take(), id);
    QCOMPARE(put(id, "model.glb", "glTF").status, 204U);
    QVERIFY(!std::filesystem::is_empty(m_server->models()));
    QCOMPARE(m_server->ask("DELETE", {"conversions", id}, m_token).status, 204U);
    m_server->api().tick();
    QVERIFY(std::filesystem::is_empty(m_server->models()));
}

void TestWorkerApi::lostJobTakesWhatHasComeAlong()
{
    const auto id = order("a");
    QCOMPARE(take(), id);
    QCOMPARE(put(id, "model.glb", "glTF").status, 204U);
    loseWorkerOf(id);
    QVERIFY(std::filesystem::is_empty(m_server->models()));
}

void TestWorkerApi::badBodiesAreRefused_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("body");
    QTest::newRow("no JSON") << "progress"
                             << "noise";
    QTest::newRow("no percentage") << "progress"
                                   << "{}";
    QTest::newRow("a percentage as text") << "progress"
                                          << R"({"percent":"1"})";
    QTest::newRow("no reason") << "fail"
                               << "{}";
    QTest::newRow("no files") << "publish"
                              << R"({"files":{}})";
    QTest::newRow("a file without a size") << "publish"
                                           << R"({"files":{"a":"b"}})";
    QTest::newRow("a file of a negative size") << "publish"
                                               << R"({"files":{"a":-1}})";
}

void TestWorkerApi::badBodiesAreRefused()
{
    QFETCH(QString, what);
    QFETCH(QString, body);
    const auto id = order("a");
    QCOMPARE(take(), id);
    const auto reply = ask(what == "progress" ? "PUT" : "POST", {id, what.toStdString()}, body.toStdString());
    QCOMPARE(reply.status, 400U);
    QCOMPARE(AnsweringServer::codeOf(reply), 40001);
}

void TestWorkerApi::badNameOfAWorkerIsRefused()
{
    for (const auto& name : {std::string(), std::string("a/b"), std::string(65, 'a')})
        QCOMPARE(AnsweringServer::codeOf(ask("POST", {}, {}, name)), 40001);
}

QTEST_GUILESS_MAIN(TestWorkerApi)
#include "test_workerapi.moc"
