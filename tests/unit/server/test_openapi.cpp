// SPDX-License-Identifier: MIT
#include "apidescription.h"
#include "realserver.h"

#include "smartdb/data/projectfile.h"
#include "wire/manifestdelta.h"
#include "wire/message.h"
#include "wire/projectfolder.h"

#include <functional>
#include <map>
#include <memory>

#include <QCryptographicHash>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

namespace
{

const std::string guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";
const std::string demo = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a02";
const std::string kyvMd5 = QCryptographicHash::hash("kyv", QCryptographicHash::Md5).toHex().toStdString();
constexpr qint64 tooLargeForOneAnswer = (64 << 20) + 1;

QJsonObject ObjectOf(const http::Reply& reply)
{
    return QJsonDocument::fromJson(QByteArray::fromStdString(reply.body)).object();
}

std::string Replaced(std::string text, const std::string& part, const std::string& by)
{
    const auto place = text.find(part);
    return place == std::string::npos ? text : text.replace(place, part.size(), by);
}

QJsonObject UploadedProject()
{
    return {{"type", "BIM"},  {"name", "n"},   {"parent", ""},      {"longitude", ""},
            {"latitude", ""}, {"iotCode", ""}, {"earthConfig", ""}, {"proj4", ""}};
}

} // namespace

/// Holds server/openapi.yaml against the running server: what it describes is there, and the server gives the
/// statuses that stand in it, all of them and no other.
class TestOpenApi : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { m_server.reset(); }

    void descriptionIsRead();
    void describedRequestIsAnswered_data() { rowForEachOperation(); }
    void describedRequestIsAnswered();
    void describedStatusesAreThoseSeen_data() { rowForEachOperation(); }
    void describedStatusesAreThoseSeen();
    void methodThatIsNotDescribedIsRefused_data();
    void methodThatIsNotDescribedIsRefused();

private:
    using Ask = std::function<http::Reply()>;

    void rowForEachOperation();
    [[nodiscard]] const Operation& operationOf(const QString& name) const;
    void publishDemo(const std::filesystem::path& folder);
    [[nodiscard]] std::string loginOf(const std::string& account) const;

    /// The path of a request to things that are there.
    [[nodiscard]] std::string filled(const std::string& path) const;
    /// The body that begins the upload of a new project with one database, whose pieces the server has or
    /// not.
    [[nodiscard]] std::string uploadBody(bool hasPieces, const std::string& base = {}) const;
    /// The body that begins the upload of a new project whose files are told later.
    [[nodiscard]] static std::string aheadBody();
    [[nodiscard]] std::string begunUpload(const std::string& body) const;
    [[nodiscard]] std::vector<Ask> requestsForUploads() const;
    [[nodiscard]] std::vector<Ask> requestsForCommits() const;
    /// Path of an archive of three bytes of a project that was begun, with its digest; its bytes have come or
    /// not.
    [[nodiscard]] std::string begunArchive(const std::string& project, bool isWhole) const;
    [[nodiscard]] std::string addedJob(const std::string& project) const;
    [[nodiscard]] std::string jobBody(const std::string& project, const std::string& md5) const;
    [[nodiscard]] std::vector<Ask> requestsForArchives() const;
    [[nodiscard]] std::vector<Ask> requestsForFinishing() const;
    [[nodiscard]] std::vector<Ask> requestsForJobs() const;
    [[nodiscard]] http::Reply send(const std::string& method, const std::string& path,
                                   const std::string& token, const std::string& body = {},
                                   const std::string& tag = {}) const;
    [[nodiscard]] http::Reply sendLogin(const std::string& body) const;
    [[nodiscard]] std::string runs(std::uint32_t repetitions) const;

    /// The requests that show what an operation can answer.
    [[nodiscard]] std::vector<Ask> requestsOf(const Operation& operation) const;
    [[nodiscard]] std::vector<Ask> requestsForLogin() const;
    [[nodiscard]] std::vector<Ask> requestsWithATag(const std::string& path) const;

    std::vector<Operation> m_operations;
    std::unique_ptr<RealServer> m_server;
    std::string m_stranger;
    std::string m_root;
    wire::FileEntry m_database; ///< of the project, which the server has
    mutable int m_uploads = 0;
    mutable int m_archives = 0;
};

void TestOpenApi::initTestCase()
{
    m_operations = ReadOperations(OPENAPI, false);
    m_server = std::make_unique<RealServer>(TORVO_SERVER);
    m_server->addAccount("stranger", "secret");
    m_stranger = loginOf("stranger");

    const QTemporaryDir source;
    const auto folder = ZRSmartDB::ProjectFolder(source.path().toStdString(), guid);
    ZRSmartDB::ProjectHead head;
    head.guid = guid;
    head.name = "n";
    head.type = "BIM";
    ZRSmartDB::ProjectFile::create(folder, head);
    QFile large(QString::fromStdString((folder / "large").string()));
    QVERIFY(large.open(QIODevice::WriteOnly) && large.resize(tooLargeForOneAnswer));
    large.close();
    m_server->publish(guid, "BIM", folder);
    publishDemo(folder);
    m_root =
        ObjectOf(send("GET", "/projects/" + guid, m_server->token())).value("head").toString().toStdString();
    QCOMPARE(m_root.size(), std::size_t{64});
    const auto manifest = wire::DecodeManifest(
        send("GET", "/projects/" + guid + "/revisions/" + m_root, m_server->token()).body);
    m_database = std::get<wire::Manifest>(manifest).files.back();
    QCOMPARE(m_database.path, std::string(wire::projectDatabaseName));
}

void TestOpenApi::publishDemo(const std::filesystem::path& folder)
{
    const QTemporaryDir records;
    QFile record(records.filePath("record.json"));
    QVERIFY(record.open(QIODevice::WriteOnly));
    record.write(R"({"name":"n","type":"BIM","owner":"wang","isDemo":true,"guid":")" +
                 QByteArray::fromStdString(demo) + "\"}");
    record.close();
    const QStringList arguments{"publish",
                                "--data",
                                m_server->folder(),
                                "--record",
                                record.fileName(),
                                "--project-folder",
                                QString::fromStdString(folder.string())};
    QCOMPARE(QProcess::execute(TORVO_SERVER, arguments), 0);
}

std::string TestOpenApi::loginOf(const std::string& account) const
{
    return ObjectOf(m_server->logIn(account, "secret")).value("token").toString().toStdString();
}

std::string TestOpenApi::filled(const std::string& path) const
{
    const std::map<std::string, std::string> values{{"{guid}", guid},   {"{root}", m_root},
                                                    {"{base}", m_root}, {"{path}", "project.db"},
                                                    {"{id}", "any"},    {"{offset}", "0"}};
    const std::string upload = "/projects/{guid}/uploads/{upload}";
    std::string result = path;
    if (path.starts_with(upload))
        result = begunUpload(uploadBody(true)) + path.substr(upload.size());
    const std::string archive = "/projects/{guid}/archives/{archive}";
    if (path.starts_with(archive))
        result = begunArchive(guid, false) + path.substr(archive.size());
    const std::string job = "/conversions/{job}";
    if (path.starts_with(job))
        result = addedJob(guid) + path.substr(job.size());
    for (const auto& [placeholder, value] : values)
        result = Replaced(result, placeholder, value);
    return result;
}

http::Reply TestOpenApi::send(const std::string& method, const std::string& path, const std::string& token,
                              const std::string& body, const std::string& tag) const
{
    http::Client client;
    if (!client.setServer(m_server->address()))
        return {};
    client.setToken(token);
    http::Request request{
        .method = method, .path = "/api/v1" + path, .contentType = "application/json", .body = body};
    request.largestReply = std::size_t{256} << 20U;
    if (!tag.empty())
        request.headers.emplace_back("If-None-Match", tag);
    return client.send(request);
}

std::string TestOpenApi::uploadBody(bool hasPieces, const std::string& base) const
{
    auto database = m_database;
    if (!hasPieces)
        database.pieces.front().name.bytes.fill(1);
    const QJsonObject head{{"base", QString::fromStdString(base)},
                           {"against", ""},
                           {"force", false},
                           {"project", UploadedProject()}};
    return wire::WriteMessage(QJsonDocument(head).toJson().toStdString(),
                              wire::EncodeManifestDelta({}, {{database}}));
}

std::string TestOpenApi::aheadBody()
{
    const QJsonObject head{
        {"base", ""}, {"against", ""}, {"force", false}, {"ahead", true}, {"project", UploadedProject()}};
    return wire::WriteMessage(QJsonDocument(head).toJson().toStdString(), {});
}

std::string TestOpenApi::begunUpload(const std::string& body) const
{
    const std::string project = "/projects/upload-" + std::to_string(++m_uploads);
    const auto reply = send("POST", project + "/uploads", m_server->token(), body);
    const auto message = wire::ReadMessage(reply.body);
    if (!message)
        throw std::runtime_error("no upload: " + reply.fault.msg);
    const auto head =
        QJsonDocument::fromJson(QByteArray(message->head.data(), static_cast<int>(message->head.size())));
    return project + "/uploads/" + head.object().value("upload").toString().toStdString();
}

std::vector<TestOpenApi::Ask> TestOpenApi::requestsForUploads() const
{
    const std::string path = "/projects/new/uploads";
    const auto token = m_server->token();
    return {[this, path, token] { return send("POST", path, token, uploadBody(true)); },
            [this, path, token] { return send("POST", path, token, uploadBody(true, std::string(64, '0'))); },
            [this] { return send("POST", "/projects/" + guid + "/uploads", m_stranger, uploadBody(true)); }};
}

std::vector<TestOpenApi::Ask> TestOpenApi::requestsForCommits() const
{
    const auto path = begunUpload(uploadBody(false)) + "/commit";
    const auto token = m_server->token();
    return {[this, path, token] { return send("POST", path, token); },
            [this, token] { return send("POST", "/projects/new/uploads/unknown/commit", token); }};
}

std::string TestOpenApi::begunArchive(const std::string& project, bool isWhole) const
{
    const auto path = project + "/task-" + std::to_string(++m_archives) + "/a.kyv";
    const auto begun = send("POST", "/projects/" + project + "/archives", m_server->token(),
                            R"({"size":3,"path":")" + path + "\"}");
    const auto id = ObjectOf(begun).value("archive").toString().toStdString();
    const auto archive = "/projects/" + project + "/archives/" + id;
    if (isWhole)
        (void)send("PUT", archive + "/bytes/0", m_server->token(), "kyv");
    return archive;
}

std::string TestOpenApi::jobBody(const std::string& project, const std::string& md5) const
{
    return R"({"name":"n","oldModelId":"","status":6,"origin":"1","type":"2","projectId":")" + project +
           R"(","md5":")" + md5 + R"(","path":")" + project + "/task-" + std::to_string(m_archives) +
           "/a.kyv\"}";
}

std::string TestOpenApi::addedJob(const std::string& project) const
{
    const auto archive = begunArchive(project, true);
    (void)send("POST", archive + "/finish", m_server->token(), R"({"md5":")" + kyvMd5 + "\"}");
    const auto added =
        send("POST", "/projects/" + project + "/conversions", m_server->token(), jobBody(project, kyvMd5));
    return "/conversions/" + ObjectOf(added).value("id").toString().toStdString();
}

std::vector<TestOpenApi::Ask> TestOpenApi::requestsForArchives() const
{
    const auto path = "/projects/" + guid + "/archives";
    const auto token = m_server->token();
    const auto body = R"({"size":3,"path":")" + guid + "/a/a.kyv\"}";
    const auto large = R"({"size":17179869185,"path":")" + guid + "/a/a.kyv\"}";
    return {[this, path, token, body] { return send("POST", path, token, body); },
            [this, path, token, large] { return send("POST", path, token, large); },
            [this, body] { return send("POST", "/projects/" + demo + "/archives", m_stranger, body); }};
}

std::vector<TestOpenApi::Ask> TestOpenApi::requestsForFinishing() const
{
    const auto whole = begunArchive(guid, true) + "/finish";
    const auto half = begunArchive(guid, false) + "/finish";
    const auto ofDemo = begunArchive(demo, true) + "/finish";
    const auto token = m_server->token();
    const auto body = R"({"md5":")" + kyvMd5 + "\"}";
    return {[this, whole, token, body] { return send("POST", whole, token, body); },
            [this, half, token, body] { return send("POST", half, token, body); },
            [this, ofDemo, body] { return send("POST", ofDemo, m_stranger, body); }};
}

std::vector<TestOpenApi::Ask> TestOpenApi::requestsForJobs() const
{
    const auto path = "/projects/" + guid + "/conversions";
    const auto token = m_server->token();
    (void)send("POST", begunArchive(guid, true) + "/finish", token, R"({"md5":")" + kyvMd5 + "\"}");
    const auto other = jobBody(guid, std::string(32, '0'));
    const auto body = jobBody(guid, kyvMd5);
    return {[this, path, token, other] { return send("POST", path, token, other); },
            [this, path, token, body] { return send("POST", path, token, body); },
            [this] { return send("POST", "/projects/" + demo + "/conversions", m_stranger, "{}"); }};
}

http::Reply TestOpenApi::sendLogin(const std::string& body) const
{
    return send("POST", "/login", {}, body);
}

/// The first four pieces of the project's first file, the large one, so many times.
std::string TestOpenApi::runs(std::uint32_t repetitions) const
{
    return wire::EncodeRuns(std::vector<wire::PieceRun>(repetitions, {0, 0, 4}));
}

std::vector<TestOpenApi::Ask> TestOpenApi::requestsForLogin() const
{
    std::vector<Ask> requests{
        [this] { return sendLogin(R"({"account":"wang","password":"secret"})"); },
        [this] { return sendLogin("{}"); },
        [this] { return sendLogin(R"({"account":"wang","password":"wrong"})"); },
    };
    // Of an account that nobody else needs: it has to wait from now on.
    for (int attempt = 0; attempt < 7; ++attempt)
        requests.emplace_back([this] { return sendLogin(R"({"account":"nobody","password":"wrong"})"); });
    return requests;
}

std::vector<TestOpenApi::Ask> TestOpenApi::requestsWithATag(const std::string& path) const
{
    return {[this, path] {
        const auto first = send("GET", path, m_server->token());
        return send("GET", path, m_server->token(), {}, first.etag);
    }};
}

std::vector<TestOpenApi::Ask> TestOpenApi::requestsOf(const Operation& operation) const
{
    const auto ask = [this, operation](const std::string& token, const std::string& body = {},
                                       const std::string& replaced = {}, const std::string& by = {}) -> Ask {
        const auto path = Replaced(filled(operation.path), replaced, by);
        return [this, operation, path, token, body] { return send(operation.method, path, token, body); };
    };
    const auto token = m_server->token();
    const auto renamed = R"({"name":"n"})";
    // The requests beside the plain one, the one without a token and the one for what is not there.
    const std::map<std::string, std::function<std::vector<Ask>()>> special{
        {"POST /login", [&] { return requestsForLogin(); }},
        {"DELETE /session", [&] { return std::vector{ask(loginOf("stranger"))}; }},
        {"GET /projects", [&] { return requestsWithATag("/projects"); }},
        {"GET /projects/states", [&] { return requestsWithATag("/projects/states"); }},
        {"GET /countries", [&] { return requestsWithATag("/countries"); }},
        {"GET /regions",
         [&] {
             auto requests = requestsWithATag("/regions?parent=110000");
             const auto path = "/regions?parent=110000";
             requests.emplace_back([this, path, token] { return send("GET", path, token); });
             return requests;
         }},
        {"PUT /projects/{guid}/name",
         [&] {
             return std::vector{ask(token, renamed), ask(m_stranger, renamed, guid, demo)};
         }},
        {"POST /projects/{guid}/revisions/{root}/pieces",
         [&] {
             return std::vector{ask(token, runs(1)), ask(token, "noise"), ask(token, runs(300000))};
         }},
        {"POST /projects/{guid}/uploads", [&] { return requestsForUploads(); }},
        {"POST /projects/{guid}/uploads/{upload}/commit", [&] { return requestsForCommits(); }},
        {"POST /projects/{guid}/uploads/{upload}/wanted",
         [&] {
             const auto path = begunUpload(aheadBody()) + "/wanted";
             return std::vector<Ask>{[this, path, token] { return send("POST", path, token); },
                                     ask(token, "noise"), ask(token, {}, "upload-", "other-")};
         }},
        {"POST /projects/{guid}/uploads/{upload}/pieces",
         [&] {
             return std::vector{ask(token, "noise"), ask(token, {}, "upload-", "other-")};
         }},
        {"DELETE /projects/{guid}/uploads/{upload}",
         [&] { return std::vector{ask(token, {}, "upload-", "other-")}; }},
        {"POST /projects/{guid}/archives", [&] { return requestsForArchives(); }},
        {"PUT /projects/{guid}/archives/{archive}/bytes/{offset}",
         [&] {
             const auto ofDemo = begunArchive(demo, false) + "/bytes/0";
             return std::vector<Ask>{ask(token, "kyv"), ask(token, "kyv", "bytes/0", "bytes/2"),
                                     [this, ofDemo] { return send("PUT", ofDemo, m_stranger, "kyv"); }};
         }},
        {"POST /projects/{guid}/archives/{archive}/finish", [&] { return requestsForFinishing(); }},
        {"POST /projects/{guid}/conversions", [&] { return requestsForJobs(); }},
        {"DELETE /conversions/{job}",
         [&] {
             const auto ofDemo = addedJob(demo);
             return std::vector<Ask>{[this, ofDemo] { return send("DELETE", ofDemo, m_stranger); },
                                     [this, token] { return send("DELETE", "/conversions/unknown", token); }};
         }},
        {"GET /conversions/{job}/progress",
         [&] {
             return std::vector<Ask>{
                 [this, token] { return send("GET", "/conversions/unknown/progress", token); }};
         }},
        {"GET /projects/{guid}/files/{path}",
         [&] { return std::vector{ask(token, {}, "project.db", "large")}; }},
    };
    std::vector<Ask> requests;
    if (operation.name() != "DELETE /session")
        requests.push_back(ask(operation.wantsToken ? token : std::string()));
    if (operation.wantsToken)
        requests.push_back(ask({}));
    if (operation.path.find("{guid}") != std::string::npos)
        requests.push_back(ask(token, renamed, guid, "unknown"));
    const auto more = special.find(operation.name());
    if (more != special.end())
        for (auto& request : more->second())
            requests.push_back(request);
    return requests;
}

void TestOpenApi::rowForEachOperation()
{
    QTest::addColumn<QString>("name");
    for (const auto& operation : m_operations)
        QTest::newRow(operation.name().c_str()) << QString::fromStdString(operation.name());
}

const Operation& TestOpenApi::operationOf(const QString& name) const
{
    return *std::find_if(m_operations.begin(), m_operations.end(),
                         [&](const Operation& operation) { return operation.name() == name.toStdString(); });
}

void TestOpenApi::descriptionIsRead()
{
    QVERIFY(m_operations.size() >= 14);
    const auto& login = operationOf("POST /login");
    QVERIFY(!login.wantsToken);
    QVERIFY(login.statuses == (std::set<unsigned>{200, 400, 401, 429}));
    for (const auto& operation : m_operations)
        QVERIFY2(!operation.statuses.empty(), operation.name().c_str());
}

void TestOpenApi::describedRequestIsAnswered()
{
    QFETCH(QString, name);
    const auto& operation = operationOf(name);
    const auto path = filled(operation.path);
    QVERIFY2(path.find('{') == std::string::npos, "a placeholder without a value: add one to filled()");
    // A login of its own, since one of the requests ends it.
    const auto reply = send(operation.method, path, operation.wantsToken ? loginOf("wang") : std::string());
    QVERIFY2(reply.status != 404 && reply.status != 405, std::to_string(reply.status).c_str());
    QVERIFY(reply.status > 0 && reply.status < 500);
}

void TestOpenApi::describedStatusesAreThoseSeen()
{
    QFETCH(QString, name);
    const auto& operation = operationOf(name);
    std::set<unsigned> seen;
    for (const auto& request : requestsOf(operation))
        seen.insert(request().status);
    for (const auto status : seen)
        QVERIFY2(operation.statuses.contains(status),
                 ("the server answers with " + std::to_string(status) + ", which is not described").c_str());
    for (const auto status : operation.statuses)
        QVERIFY2(seen.contains(status),
                 ("nothing shows the status " + std::to_string(status) + ": add a request to requestsOf()")
                     .c_str());
}

void TestOpenApi::methodThatIsNotDescribedIsRefused_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QString>("path");
    std::map<std::string, std::set<std::string>> described;
    for (const auto& operation : m_operations)
        described[operation.path].insert(operation.method);
    for (const auto& [path, known] : described)
        for (const char* method : {"GET", "PUT", "POST", "DELETE", "PATCH"})
            if (!known.contains(method))
                QTest::newRow((method + (' ' + path)).c_str())
                    << QString(method) << QString::fromStdString(path);
}

void TestOpenApi::methodThatIsNotDescribedIsRefused()
{
    QFETCH(QString, method);
    QFETCH(QString, path);
    const auto reply = send(method.toStdString(), filled(path.toStdString()), m_server->token());
    QCOMPARE(reply.status, 405U);
    QCOMPARE(reply.fault.code, 40500);
}

QTEST_GUILESS_MAIN(TestOpenApi)
#include "test_openapi.moc"
