// SPDX-License-Identifier: MIT
#include "apidescription.h"
#include "conversionclient.h"

#include "smartdb/data/projectfile.h"

#include <memory>
#include <string_view>

#include <QTemporaryDir>
#include <QTest>

namespace
{

const std::string guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";
const std::string jobs = "/workers/{worker}/jobs";

std::string Replaced(std::string text, std::string_view part, std::string_view by)
{
    const auto place = text.find(part);
    return place == std::string::npos ? text : text.replace(place, part.size(), by);
}

/// A body that the request takes, as far as one fits all.
std::string BodyFor(const std::string& path)
{
    const bool isBytes = path.find("/model/") != std::string::npos;
    return isBytes ? "glTF" : R"({"percent":1,"reason":"r","files":{"model.glb":4}})";
}

} // namespace

/// Holds what server/openapi.yaml tells of the requests of workers against the running server: the statuses
/// that stand there can be seen, all of them and no other.
class TestOpenApiWorkers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void workersHaveRequests();
    void describedStatusesAreThoseSeen_data();
    void describedStatusesAreThoseSeen();
    void methodThatIsNotDescribedIsRefused();

private:
    [[nodiscard]] unsigned send(const Operation& operation, const std::string& key, const std::string& worker,
                                const std::string& job, const std::string& offset = "0") const;
    /// A job that the worker "w" has.
    [[nodiscard]] std::string takenJob();
    [[nodiscard]] std::set<unsigned> statusesOf(const Operation& operation);

    std::vector<Operation> m_operations;
    QTemporaryDir m_project;
    std::unique_ptr<RealServer> m_server;
    std::unique_ptr<ConversionClient> m_client;
    std::string m_key;
};

void TestOpenApiWorkers::initTestCase()
{
    m_operations = ReadOperations(OPENAPI, true);
    const auto folder = ZRSmartDB::ProjectFolder(m_project.path().toStdString(), guid);
    ZRSmartDB::ProjectHead head;
    head.guid = guid;
    head.name = "n";
    head.type = "BIM";
    ZRSmartDB::ProjectFile::create(folder, head);
    m_server = std::make_unique<RealServer>(TORVO_SERVER);
    m_server->publish(guid, "BIM", folder);
    m_client = std::make_unique<ConversionClient>(*m_server, guid);
    QProcess key;
    key.start(TORVO_SERVER, {"worker-key", "--data", m_server->folder()});
    QVERIFY(key.waitForFinished());
    m_key = key.readAllStandardOutput().trimmed().toStdString();
}

void TestOpenApiWorkers::cleanupTestCase()
{
    m_client.reset();
    m_server.reset();
}

unsigned TestOpenApiWorkers::send(const Operation& operation, const std::string& key,
                                  const std::string& worker, const std::string& job,
                                  const std::string& offset) const
{
    http::Client client;
    if (!client.setServer(m_server->address()))
        return 0;
    client.setToken(key);
    auto path = Replaced(operation.path, "{worker}", worker);
    path = Replaced(path, "{job}", job);
    path = Replaced(path, "{offset}", offset);
    path = Replaced(path, "{path}", "model.glb");
    return client
        .send({.method = operation.method,
               .path = "/api/v1" + path,
               .contentType = "application/json",
               .body = BodyFor(path)})
        .status;
}

std::string TestOpenApiWorkers::takenJob()
{
    // One job of a project runs at a time.
    for (const auto& job : m_client->jobs())
        (void)m_client->send("DELETE", "/conversions/" + job.toObject().value("id").toString().toStdString());
    const auto job = m_client->order("kyv", "n");
    return send({"POST", jobs, true, {}}, m_key, "w", {}) == 200 ? job : std::string();
}

std::set<unsigned> TestOpenApiWorkers::statusesOf(const Operation& operation)
{
    std::set<unsigned> seen{send(operation, m_server->token(), "w", takenJob()),
                            send(operation, m_key, "no_name", takenJob())};
    if (operation.path == jobs) {
        (void)takenJob();
        seen.insert(send(operation, m_key, "v", {}));
        (void)m_client->send("DELETE",
                             "/conversions/" +
                                 m_client->jobs().first().toObject().value("id").toString().toStdString());
        (void)m_client->order("kyv", "n");
        seen.insert(send(operation, m_key, "v", {}));
        return seen;
    }
    seen.insert(send(operation, m_key, "v", takenJob()));
    const auto job = takenJob();
    if (operation.path.ends_with("/publish")) {
        seen.insert(send(operation, m_key, "w", job));
        (void)send({"PUT", jobs + "/{job}/model/{offset}/{path}", true, {}}, m_key, "w", job);
    }
    if (operation.path.find("/model/") != std::string::npos)
        seen.insert(send(operation, m_key, "w", job, "9"));
    seen.insert(send(operation, m_key, "w", job));
    return seen;
}

void TestOpenApiWorkers::workersHaveRequests()
{
    QCOMPARE(m_operations.size(), std::size_t(7));
}

void TestOpenApiWorkers::describedStatusesAreThoseSeen_data()
{
    QTest::addColumn<int>("number");
    for (std::size_t i = 0; i < m_operations.size(); ++i)
        QTest::newRow(m_operations[i].name().c_str()) << static_cast<int>(i);
}

void TestOpenApiWorkers::describedStatusesAreThoseSeen()
{
    QFETCH(int, number);
    const auto& operation = m_operations[static_cast<std::size_t>(number)];
    const auto seen = statusesOf(operation);
    for (const auto status : seen)
        QVERIFY2(operation.statuses.contains(status), std::to_string(status).c_str());
    for (const auto status : operation.statuses)
        QVERIFY2(seen.contains(status), std::to_string(status).c_str());
}

void TestOpenApiWorkers::methodThatIsNotDescribedIsRefused()
{
    for (const auto& operation : m_operations) {
        auto other = operation;
        other.method = "PATCH";
        QCOMPARE(send(other, m_key, "w", "any"), 405U);
    }
}

QTEST_GUILESS_MAIN(TestOpenApiWorkers)
#include "test_openapiworkers.moc"
