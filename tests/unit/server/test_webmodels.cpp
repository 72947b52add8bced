// SPDX-License-Identifier: MIT
#include "pageserver.h"

#include <random>

#include <QJsonArray>
#include <QTest>

namespace
{

const std::string guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";
const std::string modelGuid = "7e3c1d90-0d52-4a67-8f10-2b9a5e4d1001";
const std::string floors = R"([{"name":"一层","elevation":0.0}])";

/// Bytes that no compression makes small, so that they lie in the packs in many pieces.
std::string Noise(std::size_t size)
{
    std::mt19937 source(7);
    std::string bytes(size, '\0');
    for (auto& byte : bytes)
        byte = static_cast<char>(source());
    return bytes;
}

std::string All(const server::Reply& reply)
{
    std::string bytes;
    for (auto step = reply.source->next(); !step.empty(); step = reply.source->next())
        bytes += step;
    return bytes;
}

} // namespace

/// The models of a project as a browser gets them.
class TestWebModels : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_server.reset(); }

    void modelsOfTheProjectAreListed();
    void projectWithoutModelsHasAnEmptyList();
    void modelWithoutGeometryIsListedWithoutBytes();
    void modelWithoutARevisionIsNotListed();
    void modelIsItsOwnOnlyOne();
    void filesOfAModelComeWhole_data();
    void filesOfAModelComeWhole();
    void largeModelComesInSteps();
    void damagedPackEndsTheAnswer();
    void newestRevisionIsSent();
    void unchangedFileIsNotSentAgain();
    void headerCanBeAskedForAlone();
    void otherMethodsAreRefused();
    void whatIsNotThereIsNotFound_data();
    void whatIsNotThereIsNotFound();
    void strangerIsRefusedAsByThePage_data();
    void strangerIsRefusedAsByThePage();
    void nobodyWithoutALoginGetsAModel();
    void everythingIsGuarded();
    void pageNamesItsModels();
    void sceneHasNoModelsOfItsOwn();

private:
    void addModel(const std::string& id, const std::string& name, const std::string& parent = guid);
    [[nodiscard]] Path fileOf(const std::string& name) const
    {
        return {"projects", guid, "models", modelGuid, name};
    }
    [[nodiscard]] QJsonArray listed(const std::string& project = guid);

    std::unique_ptr<PageServer> m_server;
    std::string m_owner;
    std::string m_stranger;
};

void TestWebModels::init()
{
    m_server = std::make_unique<PageServer>();
    m_owner = m_server->addAccount("owner");
    m_stranger = m_server->addAccount("stranger");
    (void)m_server->addProject(guid, "owner", "塔楼");
    m_server->publish(guid, {{"a", "1"}});
}

void TestWebModels::addModel(const std::string& id, const std::string& name, const std::string& parent)
{
    auto model = m_server->addProject(id, "owner", name);
    model.type = "MODEL";
    model.parent = parent;
    model.record.clear();
    m_server->store().putProject(model);
}

QJsonArray TestWebModels::listed(const std::string& project)
{
    const auto reply = m_server->see({"projects", project, "models"}, m_owner);
    return PageServer::objectOf(reply).value("models").toArray();
}

void TestWebModels::modelsOfTheProjectAreListed()
{
    addModel(modelGuid, "主楼");
    addModel("second", "裙楼");
    m_server->publish(modelGuid, {{"model.glb", "12345"}, {"floors.json", floors}});
    m_server->publish("second", {{"model.glb", "123"}});
    const auto models = listed();
    QCOMPARE(models.size(), 2);
    QCOMPARE(models[0].toObject(), QJsonObject({{"id", QString::fromStdString(modelGuid)},
                                                {"name", QStringLiteral("主楼")},
                                                {"bytes", 5},
                                                {"files", QJsonArray{"model.glb", "floors.json"}}}));
    QCOMPARE(models[1].toObject().value("name").toString(), QStringLiteral("裙楼"));
}

void TestWebModels::projectWithoutModelsHasAnEmptyList()
{
    const auto reply = m_server->see({"projects", guid, "models"}, m_owner);
    QCOMPARE(reply.status, 200U);
    QCOMPARE(BodyOf(reply), QByteArray(R"({"models":[]})"));
}

void TestWebModels::modelWithoutGeometryIsListedWithoutBytes()
{
    addModel(modelGuid, "空");
    m_server->publish(modelGuid, {{"floors.json", floors}});
    QCOMPARE(listed().at(0).toObject().value("bytes").toInt(-1), 0);
    QCOMPARE(m_server->see(fileOf("model.glb"), m_owner).status, 404U);
}

void TestWebModels::modelWithoutARevisionIsNotListed()
{
    addModel(modelGuid, "还没有");
    QVERIFY(listed().isEmpty());
    QCOMPARE(m_server->see(fileOf("model.glb"), m_owner).status, 404U);
}

void TestWebModels::modelIsItsOwnOnlyOne()
{
    addModel(modelGuid, "主楼");
    m_server->publish(modelGuid, {{"model.glb", "12345"}});
    const auto models = listed(modelGuid);
    QCOMPARE(models.size(), 1);
    QCOMPARE(models[0].toObject().value("id").toString().toStdString(), modelGuid);
    QCOMPARE(All(m_server->see({"projects", modelGuid, "models", modelGuid, "model.glb"}, m_owner)),
             std::string("12345"));
}

void TestWebModels::filesOfAModelComeWhole_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("type");
    QTest::newRow("geometry") << "model.glb" << QByteArray("model/gltf-binary");
    QTest::newRow("floors") << "floors.json" << QByteArray("application/json");
    QTest::newRow("facts") << "model.json" << QByteArray("application/json");
}

void TestWebModels::filesOfAModelComeWhole()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, type);
    addModel(modelGuid, "主楼");
    m_server->publish(modelGuid, {{"floors.json", "f"}, {"model.glb", "g"}, {"model.json", "m"}});
    const auto reply = m_server->see(fileOf(name.toStdString()), m_owner);
    QCOMPARE(reply.status, 200U);
    QCOMPARE(reply.contentType, type.toStdString());
    QCOMPARE(reply.contentLength(), std::uint64_t{1});
    QCOMPARE(All(reply), name == "model.glb" ? "g" : name == "model.json" ? "m" : "f");
}

void TestWebModels::largeModelComesInSteps()
{
    const auto bytes = Noise(5U << 20U);
    addModel(modelGuid, "主楼");
    m_server->publish(modelGuid, {{"model.glb", bytes}});
    const auto reply = m_server->see(fileOf("model.glb"), m_owner);
    QCOMPARE(reply.contentLength(), std::uint64_t{bytes.size()});
    std::string got;
    int steps = 0;
    for (auto step = reply.source->next(); !step.empty(); step = reply.source->next()) {
        QVERIFY(step.size() <= (2U << 20U));
        got += step;
        ++steps;
    }
    QVERIFY(got == bytes);
    QVERIFY(steps >= 4);
}

void TestWebModels::damagedPackEndsTheAnswer()
{
    addModel(modelGuid, "主楼");
    m_server->publish(modelGuid, {{"model.glb", Noise(3U << 20U)}});
    for (const auto& pack : std::filesystem::directory_iterator(m_server->packs()))
        std::filesystem::resize_file(pack.path(), std::filesystem::file_size(pack.path()) / 2);
    const auto reply = m_server->see(fileOf("model.glb"), m_owner);
    QVERIFY_EXCEPTION_THROWN((void)All(reply), std::runtime_error);
}

void TestWebModels::newestRevisionIsSent()
{
    addModel(modelGuid, "主楼");
    m_server->publish(modelGuid, {{"model.glb", "old"}});
    m_server->publish(modelGuid, {{"model.glb", "new"}});
    QCOMPARE(All(m_server->see(fileOf("model.glb"), m_owner)), std::string("new"));
}

void TestWebModels::unchangedFileIsNotSentAgain()
{
    addModel(modelGuid, "主楼");
    m_server->publish(modelGuid, {{"model.glb", "same"}, {"floors.json", "1"}});
    server::Request request;
    request.method = "GET";
    request.path = fileOf("model.glb");
    request.isForPage = true;
    request.cookie = m_server->browserOf(m_owner);
    const auto first = m_server->api().answer(request);
    request.ifNoneMatch = HeaderOf(first, "ETag").toStdString();
    QVERIFY(request.ifNoneMatch.size() > 2);
    QCOMPARE(HeaderOf(first, "Cache-Control"), QByteArray("private, no-cache"));

    // Another file of the model has changed, this one has not.
    m_server->publish(modelGuid, {{"model.glb", "same"}, {"floors.json", "2"}});
    const auto second = m_server->api().answer(request);
    QCOMPARE(second.status, 304U);
    QVERIFY(!second.source);
    m_server->publish(modelGuid, {{"model.glb", "other"}, {"floors.json", "2"}});
    QCOMPARE(m_server->api().answer(request).status, 200U);
}

void TestWebModels::headerCanBeAskedForAlone()
{
    addModel(modelGuid, "主楼");
    m_server->publish(modelGuid, {{"model.glb", "12345"}});
    const auto reply = m_server->open(fileOf("model.glb"), {}, m_server->browserOf(m_owner), "HEAD");
    QCOMPARE(reply.status, 200U);
    QCOMPARE(reply.contentLength(), std::uint64_t{5});
    QVERIFY(!HeaderOf(reply, "ETag").isEmpty());
}

void TestWebModels::otherMethodsAreRefused()
{
    addModel(modelGuid, "主楼");
    m_server->publish(modelGuid, {{"model.glb", "12345"}});
    for (const char* method : {"POST", "PUT", "DELETE"}) {
        const auto reply = m_server->open(fileOf("model.glb"), {}, m_server->browserOf(m_owner), method);
        QCOMPARE(reply.status, 405U);
        QCOMPARE(HeaderOf(reply, "Allow"), QByteArray("GET, HEAD"));
    }
}

void TestWebModels::whatIsNotThereIsNotFound_data()
{
    QTest::addColumn<QStringList>("path");
    const auto project = QString::fromStdString(guid);
    const auto model = QString::fromStdString(modelGuid);
    QTest::newRow("unknown project") << QStringList{"projects", "unknown", "models"};
    QTest::newRow("unknown model") << QStringList{"projects", project, "models", "unknown", "model.glb"};
    QTest::newRow("project as model") << QStringList{"projects", project, "models", project, "a"};
    QTest::newRow("model of another project")
        << QStringList{"projects", project, "models", "foreign", "model.glb"};
    QTest::newRow("file for nobody") << QStringList{"projects", project, "models", model, "project.db"};
    QTest::newRow("climbing file") << QStringList{"projects", project, "models", model, "../../server.db"};
    QTest::newRow("climbing model") << QStringList{"projects", project, "models", "../" + model, "model.glb"};
    QTest::newRow("no file") << QStringList{"projects", project, "models", model};
    QTest::newRow("deeper") << QStringList{"projects", project, "models", model, "model.glb", "x"};
    QTest::newRow("file that the model lacks")
        << QStringList{"projects", project, "models", model, "floors.json"};
}

void TestWebModels::whatIsNotThereIsNotFound()
{
    QFETCH(QStringList, path);
    (void)m_server->addProject("other", "owner");
    addModel(modelGuid, "主楼");
    addModel("foreign", "n", "other");
    m_server->publish(modelGuid, {{"model.glb", "12345"}, {"project.db", "secret"}});
    m_server->publish("foreign", {{"model.glb", "12345"}});
    const auto names = PathOf(path);
    const auto reply = m_server->see(names, m_owner);
    QCOMPARE(reply.status, 404U);
    QVERIFY(!reply.source);
}

void TestWebModels::strangerIsRefusedAsByThePage_data()
{
    QTest::addColumn<QStringList>("path");
    const auto project = QString::fromStdString(guid);
    const auto model = QString::fromStdString(modelGuid);
    QTest::newRow("list") << QStringList{"projects", project, "models"};
    QTest::newRow("file") << QStringList{"projects", project, "models", model, "model.glb"};
    QTest::newRow("no such file") << QStringList{"projects", project, "models", model, "x"};
}

void TestWebModels::strangerIsRefusedAsByThePage()
{
    QFETCH(QStringList, path);
    addModel(modelGuid, "主楼");
    m_server->publish(modelGuid, {{"model.glb", "12345"}});
    const auto names = PathOf(path);
    const auto reply = m_server->see(names, m_stranger);
    QCOMPARE(reply.status, 404U);
    QVERIFY(!reply.source);
    const auto page = BodyOf(m_server->see({"projects", guid}, m_stranger));
    QVERIFY(page.contains("没有这个工程"));
    QCOMPARE(BodyOf(reply).replace("../../../../", "../").replace("../../", "../"), page);
}

void TestWebModels::nobodyWithoutALoginGetsAModel()
{
    addModel(modelGuid, "主楼");
    m_server->publish(modelGuid, {{"model.glb", "12345"}});
    QCOMPARE(m_server->open(fileOf("model.glb"), {}).status, 403U);
    QCOMPARE(m_server->open({"projects", guid, "models"}, {}).status, 403U);
    // A ticket is for pages.
    QCOMPARE(m_server->open(fileOf("model.glb"), "ticket=" + m_server->ticketFor(m_owner)).status, 403U);
}

void TestWebModels::everythingIsGuarded()
{
    addModel(modelGuid, "主楼");
    m_server->publish(modelGuid, {{"model.glb", "12345"}});
    for (const auto& path : {Path{"projects", guid, "models"}, fileOf("model.glb"), fileOf("floors.json")}) {
        const auto reply = m_server->see(path, m_owner);
        QCOMPARE(HeaderOf(reply, "X-Content-Type-Options"), QByteArray("nosniff"));
        QCOMPARE(HeaderOf(reply, "Cross-Origin-Resource-Policy"), QByteArray("same-origin"));
    }
}

void TestWebModels::pageNamesItsModels()
{
    const auto page = BodyOf(m_server->see({"projects", guid}, m_owner));
    QVERIFY(page.contains("data-models=\"" + QByteArray::fromStdString(guid) + "/models\""));
    QVERIFY(page.contains("<script src=\"../assets/viewer.js?v="));
}

void TestWebModels::sceneHasNoModelsOfItsOwn()
{
    auto scene = m_server->addProject("scene", "owner", "新区");
    scene.type = "CIM";
    m_server->store().putProject(scene);
    const auto page = BodyOf(m_server->see({"projects", "scene"}, m_owner));
    QVERIFY(!page.contains("data-models"));
    QVERIFY(!page.contains("viewer.js"));
}

QTEST_GUILESS_MAIN(TestWebModels)
#include "test_webmodels.moc"
