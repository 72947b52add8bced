// SPDX-License-Identifier: MIT
#include <QJsonObject>
#include <QTest>

#include "person.h"
#include "rawupload.h"

#include "wire/piecestream.h"

#include <sqlite3.h>

namespace
{

const std::string scene = "11111111-0d52-4a67-8f10-2b9a5e4d1001";

constexpr int badRequest = 40001;
constexpr int uploadGone = 40410;
constexpr int converting = 40902;
constexpr int unknownBase = 40903;
constexpr int incomplete = 40904;

} // namespace

/// What the server answers to uploads that are not as they should be.
class TestUploadRefusals : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void projectThatIsBeingConvertedIsRefused();
    void pieceThatIsNotWhatItsNameSaysIsRefused();
    void streamCutShortIsRefused();
    void commitWithoutItsPiecesIsRefused();
    void uploadOfAnotherProjectIsNotFound();
    void filesToldAgainstAnUnknownRevisionAreRefused();
    void fileOfTheClientsOwnMemoryIsRefused();
    void projectWithoutItsDatabaseIsRefused();
    void recordIsRefused_data();
    void recordIsRefused();
    void refusedUploadLeavesNoProject();

private:
    /// The path of an upload that has begun.
    [[nodiscard]] std::string begun() const;
    [[nodiscard]] wire::Manifest databaseOnly(const std::string& path = "project.db") const;

    std::unique_ptr<RealServer> m_server;
    std::unique_ptr<Person> m_anna;
    std::unique_ptr<RawUpload> m_upload;
};

void TestUploadRefusals::init()
{
    m_anna.reset();
    m_server = std::make_unique<RealServer>(TORVO_SERVER);
    m_anna = std::make_unique<Person>(*m_server);
    m_anna->create(scene, "CIM");
    m_upload = std::make_unique<RawUpload>(*m_server, scene);
}

wire::Manifest TestUploadRefusals::databaseOnly(const std::string& path) const
{
    return RawUpload::manifestOf(m_anna->folder(scene) / "project.db", path);
}

std::string TestUploadRefusals::begun() const
{
    return m_upload->pathOf(m_upload->begin(databaseOnly()));
}

void TestUploadRefusals::projectThatIsBeingConvertedIsRefused()
{
    QVERIFY(m_anna->upload(scene));
    sqlite3* database = nullptr;
    QCOMPARE(sqlite3_open((m_server->folder() + "/server.db").toUtf8().constData(), &database), SQLITE_OK);
    const int result = sqlite3_exec(database, "UPDATE projects SET status = 3", nullptr, nullptr, nullptr);
    sqlite3_close(database);
    QCOMPARE(result, SQLITE_OK);
    m_anna->edit(scene, "work");
    QVERIFY(!m_anna->upload(scene));
    QCOMPARE(m_anna->lastCode(), converting);
    QCOMPARE(m_anna->note(scene), std::string("work"));
}

void TestUploadRefusals::pieceThatIsNotWhatItsNameSaysIsRefused()
{
    const auto path = begun();
    const std::string other(4096, 'x');
    const auto reply = m_upload->send(path + "/pieces", wire::FramedPiece(std::as_bytes(std::span(other))));
    QCOMPARE(reply.fault.code, badRequest);
    QCOMPARE(m_upload->send(path + "/commit", {}).fault.code, incomplete);
}

void TestUploadRefusals::streamCutShortIsRefused()
{
    const std::string page(4096, 'x');
    const auto frame = wire::FramedPiece(std::as_bytes(std::span(page)));
    const auto path = begun();
    for (const std::size_t length : {std::size_t{1}, std::size_t{3}, std::size_t{5}, frame.size() - 1})
        QCOMPARE(m_upload->send(path + "/pieces", frame.substr(0, length)).fault.code, badRequest);
    QCOMPARE(m_upload->send(path + "/pieces", std::string("\xff\xff\xff\x7f", 4)).fault.code, badRequest);
}

void TestUploadRefusals::commitWithoutItsPiecesIsRefused()
{
    QCOMPARE(m_upload->send(begun() + "/commit", {}).fault.code, incomplete);
}

void TestUploadRefusals::uploadOfAnotherProjectIsNotFound()
{
    auto path = begun();
    path.replace(path.find(scene), scene.size(), "another");
    QCOMPARE(m_upload->send(path + "/commit", {}).fault.code, uploadGone);
    QCOMPARE(m_upload->send(path + "/pieces", {}).fault.code, uploadGone);
}

void TestUploadRefusals::filesToldAgainstAnUnknownRevisionAreRefused()
{
    QCOMPARE(m_upload->begin(databaseOnly(), RawUpload::sceneRecord(), std::string(64, '0')).fault.code,
             unknownBase);
    QCOMPARE(m_upload->begin(databaseOnly(), RawUpload::sceneRecord(), "no revision").fault.code, badRequest);
}

void TestUploadRefusals::fileOfTheClientsOwnMemoryIsRefused()
{
    auto manifest = databaseOnly();
    manifest.files.push_back(databaseOnly("sync.json").files.front());
    QCOMPARE(m_upload->begin(manifest).fault.code, badRequest);
}

void TestUploadRefusals::projectWithoutItsDatabaseIsRefused()
{
    QCOMPARE(m_upload->begin(databaseOnly("other.db")).fault.code, badRequest);
}

void TestUploadRefusals::recordIsRefused_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QJsonValue>("value");
    QTest::newRow("unknown type") << "type" << QJsonValue("TOWN");
    QTest::newRow("type that is no text") << "type" << QJsonValue(1);
    QTest::newRow("model without a project") << "type" << QJsonValue("MODEL");
    QTest::newRow("scene that belongs to a project") << "parent" << QJsonValue("other");
    QTest::newRow("name of 10,000 bytes") << "name" << QJsonValue(QString(10000, 'n'));
    QTest::newRow("missing longitude") << "longitude" << QJsonValue();
    QTest::newRow("attributes that are no object") << "attributes" << QJsonValue("a");
    QTest::newRow("attribute that is no text") << "attributes" << QJsonValue(QJsonObject{{"a", 1}});
}

void TestUploadRefusals::recordIsRefused()
{
    QFETCH(QString, key);
    QFETCH(QJsonValue, value);
    auto record = RawUpload::sceneRecord();
    record[key] = value;
    QCOMPARE(m_upload->begin(databaseOnly(), record).fault.code, badRequest);
}

void TestUploadRefusals::refusedUploadLeavesNoProject()
{
    QCOMPARE(m_upload->begin(databaseOnly("other.db")).fault.code, badRequest);
    QCOMPARE(m_anna->state(scene), 0);
    QVERIFY(m_anna->upload(scene));
}

QTEST_GUILESS_MAIN(TestUploadRefusals)
#include "test_uploadrefusals.moc"
