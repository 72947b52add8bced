// SPDX-License-Identifier: MIT
#include "person.h"
#include "smalldisk.h"

#include "ZRSmartDB/zrdbnetaccess.h"
#include "concurrency/task.h"
#include "http/client.h"
#include "wire/cutting.h"
#include "wire/manifestdelta.h"
#include "wire/message.h"

#include <thread>

#include <QTest>

namespace
{

const std::string scene = "11111111-0d52-4a67-8f10-2b9a5e4d1001";
const std::string building = "22222222-0d52-4a67-8f10-2b9a5e4d1002";
const std::string model = "33333333-0d52-4a67-8f10-2b9a5e4d1003";

enum State { onlyHere = 0, same = 1, changedHere = 2, changedThere = 3, conflict = 4 };

constexpr int conflictCode = 40900;
constexpr int busyCode = 40901;

} // namespace

/// Two people upload to the real server.
class TestUpload : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void newProjectArrivesAndIsTheSame();
    void uploadedProjectComesDownByteForByte();
    void editIsUploadedAndShowsOnTheOtherSide();
    void uploadOfWhatIsUnchangedSendsNothing();
    void buildingProjectTakesItsModelsAlong();
    void secondUploadOnOneBaseLosesAndKeepsItsWork();
    void forcedUploadReplacesTheNewerRevision();
    void editDuringTheUploadStaysAChange();
    void renamedFileIsSentByNameOnly();
    void uploadGoesOnAfterTheServerWasKilled();
    void lostAnswerToTheCommitIsNoConflict();
    void uploadThatStopsHasFailedAfterItsLease();
    void uploadThatTheProgramLeavesCanBeTakenUpAgain();
    void fullDiskHereLosesNothing();
    void expiredLoginIsToldAndTheUploadResumes();
    void strangersProjectIsNotReplaced();

private:
    [[nodiscard]] std::wstring serverStatus() const;
    [[nodiscard]] http::Reply beginOnly() const;

    std::unique_ptr<RealServer> m_server;
    std::unique_ptr<Person> m_anna;
    std::unique_ptr<Person> m_ben;
};

void TestUpload::initTestCase()
{
    QVERIFY(QFile::exists(TORVO_SERVER));
}

void TestUpload::init()
{
    m_anna.reset();
    m_ben.reset();
    m_server = std::make_unique<RealServer>(TORVO_SERVER, QStringList{"--upload-lease-seconds", "2"});
    m_anna = std::make_unique<Person>(*m_server);
    m_ben = std::make_unique<Person>(*m_server);
}

void TestUpload::newProjectArrivesAndIsTheSame()
{
    m_anna->create(scene, "CIM");
    QCOMPARE(m_anna->state(scene), int(onlyHere));
    QVERIFY2(m_anna->upload(scene), qPrintable(m_anna->lastWords()));
    QCOMPARE(m_anna->state(scene), int(same));
}

void TestUpload::uploadedProjectComesDownByteForByte()
{
    m_anna->create(scene, "CIM");
    m_anna->write(scene, "tiles.bin", RandomBytes(5'000'000, 1));
    m_anna->write(scene, "empty.bin", "");
    QVERIFY(m_anna->upload(scene));
    QVERIFY2(m_ben->download(scene), qPrintable(m_ben->lastWords()));
    QCOMPARE(m_ben->read(scene, "tiles.bin"), m_anna->read(scene, "tiles.bin"));
    QCOMPARE(m_ben->read(scene, "projimage.jpg"), std::string("picture"));
    QVERIFY(std::filesystem::exists(m_ben->folder(scene) / "empty.bin"));
    QCOMPARE(m_ben->integrity(scene), std::string("ok"));
    QCOMPARE(m_ben->state(scene), int(same));
}

void TestUpload::editIsUploadedAndShowsOnTheOtherSide()
{
    m_anna->create(scene, "CIM");
    QVERIFY(m_anna->upload(scene));
    QVERIFY(m_ben->download(scene));
    m_anna->edit(scene, "first");
    QCOMPARE(m_anna->state(scene), int(changedHere));
    QVERIFY(m_anna->upload(scene));
    QCOMPARE(m_anna->state(scene), int(same));
    QCOMPARE(m_ben->state(scene), int(changedThere));
}

void TestUpload::uploadOfWhatIsUnchangedSendsNothing()
{
    m_anna->create(scene, "CIM");
    QVERIFY(m_anna->upload(scene));
    QVERIFY(m_ben->download(scene));
    m_ben->edit(scene, "newer");
    QVERIFY(m_ben->upload(scene));
    // Anna has nothing to send: what is newer on the server must stay.
    QVERIFY(m_anna->upload(scene));
    QCOMPARE(m_anna->state(scene), int(changedThere));
    QCOMPARE(m_ben->state(scene), int(same));
}

void TestUpload::buildingProjectTakesItsModelsAlong()
{
    m_anna->create(building, "BIM");
    m_anna->addModel(building, model, 7);
    QVERIFY2(m_anna->upload(building), qPrintable(m_anna->lastWords()));
    QCOMPARE(m_anna->state(model), int(same));
    QVERIFY(m_ben->download(building));
    QCOMPARE(m_ben->read(model, "model.glb"), RandomBytes(2'000'000, 7));
    QCOMPARE(m_ben->state(model), int(same));
}

void TestUpload::secondUploadOnOneBaseLosesAndKeepsItsWork()
{
    m_anna->create(scene, "CIM");
    QVERIFY(m_anna->upload(scene));
    QVERIFY(m_ben->download(scene));
    m_anna->edit(scene, "anna");
    m_ben->edit(scene, "ben");
    QVERIFY(m_anna->upload(scene));
    QVERIFY(!m_ben->upload(scene));
    QCOMPARE(m_ben->lastCode(), conflictCode);
    QCOMPARE(m_ben->note(scene), std::string("ben"));
    QCOMPARE(m_ben->state(scene), int(conflict));
    QCOMPARE(m_anna->state(scene), int(same));
}

void TestUpload::forcedUploadReplacesTheNewerRevision()
{
    m_anna->create(scene, "CIM");
    QVERIFY(m_anna->upload(scene));
    QVERIFY(m_ben->download(scene));
    m_anna->edit(scene, "anna");
    m_ben->edit(scene, "ben");
    QVERIFY(m_anna->upload(scene));
    QVERIFY2(m_ben->upload(scene, true), qPrintable(m_ben->lastWords()));
    QCOMPARE(m_ben->state(scene), int(same));
    QCOMPARE(m_anna->state(scene), int(changedThere));
}

void TestUpload::editDuringTheUploadStaysAChange()
{
    m_anna->create(scene, "CIM");
    m_anna->write(scene, "tiles.bin", RandomBytes(30'000'000, 2));
    std::atomic<bool> isUploaded = false;
    std::atomic<bool> isGood = false;
    std::thread upload([&] {
        isGood = m_anna->upload(scene);
        isUploaded = true;
    });
    int edits = 0;
    while (!isUploaded)
        m_anna->edit(scene, "edit " + std::to_string(++edits));
    upload.join();
    QVERIFY(isGood);
    QVERIFY(edits > 1);
    m_anna->edit(scene, "last");
    QCOMPARE(m_anna->state(scene), int(changedHere));
    QVERIFY(m_ben->download(scene));
    QCOMPARE(m_ben->integrity(scene), std::string("ok"));
    QCOMPARE(m_anna->note(scene), std::string("last"));
    QVERIFY(m_anna->upload(scene));
    QVERIFY(m_ben->update(scene));
    QCOMPARE(m_ben->note(scene), std::string("last"));
}

void TestUpload::renamedFileIsSentByNameOnly()
{
    m_anna->create(scene, "CIM");
    m_anna->write(scene, "tiles.bin", RandomBytes(3'000'000, 3));
    QVERIFY(m_anna->upload(scene));
    std::filesystem::rename(m_anna->folder(scene) / "tiles.bin", m_anna->folder(scene) / "other.bin");
    QCOMPARE(m_anna->state(scene), int(changedHere));
    QVERIFY(m_anna->upload(scene));
    QVERIFY(m_ben->download(scene));
    QCOMPARE(m_ben->read(scene, "other.bin"), RandomBytes(3'000'000, 3));
    QVERIFY(!std::filesystem::exists(m_ben->folder(scene) / "tiles.bin"));
}

void TestUpload::uploadGoesOnAfterTheServerWasKilled()
{
    m_anna->create(scene, "CIM");
    m_anna->write(scene, "tiles.bin", RandomBytes(60'000'000, 4));
    // The first may succeed or fail, by the moment of the kill.
    bool isUploaded = false;
    std::thread upload([&] { isUploaded = m_anna->upload(scene); });
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    m_server->kill();
    m_server->start();
    upload.join();
    QVERIFY2(isUploaded || m_anna->upload(scene, true), qPrintable(m_anna->lastWords()));
    QCOMPARE(m_anna->state(scene), int(same));
    QVERIFY(m_ben->download(scene));
    QCOMPARE(m_ben->read(scene, "tiles.bin"), RandomBytes(60'000'000, 4));
}

void TestUpload::lostAnswerToTheCommitIsNoConflict()
{
    m_anna->create(scene, "CIM");
    QVERIFY(m_anna->upload(scene));
    const auto before = m_anna->read(scene, "sync.json");
    const auto manifestBefore = m_anna->read(scene, "sync.manifest");
    m_anna->edit(scene, "edited");
    QVERIFY(m_anna->upload(scene));
    // As if the program had been killed between the commit and its answer: the attempt is written down, the
    // memory is still the old one.
    std::filesystem::rename(m_anna->folder(scene) / "sync.json", m_anna->folder(scene) / "attempt.json");
    std::filesystem::rename(m_anna->folder(scene) / "sync.manifest",
                            m_anna->folder(scene) / "attempt.manifest");
    m_anna->write(scene, "sync.json", before);
    m_anna->write(scene, "sync.manifest", manifestBefore);
    QCOMPARE(m_anna->state(scene), int(same));
}

std::wstring TestUpload::serverStatus() const
{
    m_ben->database().expireStates();
    auto reply = std::make_shared<std::wstring>();
    const auto error = m_ben->database().GetNetAccess()->GetStatusByProjId(Key(scene), reply).get();
    return error.empty() ? *reply : error;
}

/// A client that begins an upload of the scene and never goes on.
http::Reply TestUpload::beginOnly() const
{
    const auto sink = [](const wire::Piece&, std::span<const std::byte>) {};
    const auto file = wire::CutFile(m_anna->folder(scene) / "project.db", "project.db", sink);
    const wire::Manifest manifest{{std::get<wire::FileEntry>(file)}};
    http::Client client;
    if (!client.setServer(m_server->address()))
        return {};
    client.setToken(m_server->newToken("wang", "secret"));
    http::Request request;
    request.method = "POST";
    request.path = "/api/v1/projects/" + scene + "/uploads";
    request.contentType = "application/x-torvo-upload";
    request.body = wire::WriteMessage(
        R"({"base":"","against":"","force":false,"project":{"type":"CIM","name":"n","parent":"",)"
        R"("longitude":"","latitude":"","iotCode":"","earthConfig":"","proj4":""}})",
        wire::EncodeManifestDelta({}, manifest));
    return client.send(request);
}

void TestUpload::uploadThatStopsHasFailedAfterItsLease()
{
    m_anna->create(scene, "CIM");
    QCOMPARE(beginOnly().status, 200U);
    QVERIFY(serverStatus() == L"0");
    // As long as it may go on, nobody else gets in between.
    QVERIFY(!m_anna->upload(scene, true));
    QCOMPARE(m_anna->lastCode(), busyCode);
    QTRY_VERIFY_WITH_TIMEOUT(serverStatus() == L"-1", 8000);
    QVERIFY2(m_anna->upload(scene, true), qPrintable(m_anna->lastWords()));
    QVERIFY(serverStatus() == L"1");
    QCOMPARE(m_anna->state(scene), int(same));
}

void TestUpload::uploadThatTheProgramLeavesCanBeTakenUpAgain()
{
    m_anna->create(scene, "CIM");
    m_anna->write(scene, "tiles.bin", RandomBytes(60'000'000, 5));
    auto upload = std::thread([&] { static_cast<void>(m_anna->upload(scene)); });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    m_anna->database().end();
    upload.join();
    m_anna->restart();
    // The server lets go of the upload that was left when its lease is over.
    QTRY_VERIFY_WITH_TIMEOUT(m_anna->upload(scene, true), 8000);
    QCOMPARE(m_anna->state(scene), int(same));
    QVERIFY(m_ben->download(scene));
    QCOMPARE(m_ben->read(scene, "tiles.bin"), RandomBytes(60'000'000, 5));
}

void TestUpload::fullDiskHereLosesNothing()
{
    Person clara(*m_server, std::make_shared<SmallDisk>(0));
    clara.create(scene, "CIM");
    clara.edit(scene, "work");
    QVERIFY(!clara.upload(scene));
    QCOMPARE(clara.note(scene), std::string("work"));
    QCOMPARE(clara.integrity(scene), std::string("ok"));
}

void TestUpload::expiredLoginIsToldAndTheUploadResumes()
{
    m_anna->create(scene, "CIM");
    m_anna->database().GetNetAccess()->LoginByToken(L"no such token");
    QVERIFY(!m_anna->upload(scene));
    QCOMPARE(m_anna->lastCode(), int(http::faultcode::loginExpired));
    m_anna->restart();
    QVERIFY(m_anna->upload(scene));
    QCOMPARE(m_anna->state(scene), int(same));
}

void TestUpload::strangersProjectIsNotReplaced()
{
    m_anna->create(scene, "CIM");
    QVERIFY(m_anna->upload(scene));
    m_server->addAccount("li", "secret");
    const auto token = m_server->newToken("li", "secret");
    m_ben->create(scene, "CIM");
    m_ben->database().GetNetAccess()->LoginByToken(std::wstring(token.begin(), token.end()));
    QVERIFY(!m_ben->upload(scene, true));
    QCOMPARE(m_ben->lastCode(), 40300);
    QCOMPARE(m_anna->state(scene), int(same));
}

QTEST_GUILESS_MAIN(TestUpload)
#include "test_upload.moc"
