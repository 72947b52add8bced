// SPDX-License-Identifier: MIT
#include "realserver.h"
#include "smalldisk.h"

#include "ZRSmartDB/zrdbnetaccess.h"
#include "concurrency/task.h"
#include "http/fault.h"
#include "smartdb/data/projectfile.h"
#include "smartdb/database.h"
#include "smartdb/failure.h"

#include <fstream>
#include <memory>
#include <random>

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

namespace
{

namespace fs = std::filesystem;
using namespace ZRSmartDB;

const std::string building = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";
const std::string model = "7e3c1d90-0d52-4a67-8f10-2b9a5e4d1001";

ZRSmartFormat::SZRFTGuid Key(const std::string& guid)
{
    return ZRSmartFormat::GuidFromText(std::wstring(guid.begin(), guid.end()));
}

std::string BytesOf(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

} // namespace

/// Downloads from the real server.
class TestDownload : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();

    void projectArrivesWithItsModelsByteForByte();
    void downloadedProjectIsTheSameAsTheServers();
    void changeHereShowsInTheState();
    void changeThereShowsInTheState();
    void changeOnBothSidesIsAConflict();
    void assignedModelsAreToldOfAnAbsentProject();
    void projectThatIsHereIsLeftAlone();
    void unknownProjectIsRefused();
    void fullDiskLeavesNothing_data();
    void fullDiskLeavesNothing();
    void leftoversOfAKilledDownloadAreRemoved();
    void downloadAfterTheServerHasGoneFails();

private:
    std::unique_ptr<Database> newDatabase(const std::shared_ptr<Disk>& disk = LocalDisk()) const;
    int stateOf(Database& database) const;
    QStringList entries() const;

    QTemporaryDir m_source;
    std::unique_ptr<RealServer> m_server;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::wstring m_dataFolder;
};

void TestDownload::initTestCase()
{
    const fs::path source = m_source.path().toStdString();
    m_server = std::make_unique<RealServer>(TORVO_SERVER);
    ProjectHead head;
    head.guid = building;
    head.name = "工程";
    head.type = "BIM";
    ProjectFile::create(ProjectFolder(source, building), head);
    ProjectChange change;
    change.putModels = {{model, "m", "MODEL", {}}};
    ProjectFile(ProjectFolder(source, building)).write(change);
    std::ofstream(ProjectFolder(source, building) / "projimage.jpg") << "picture";

    head.guid = model;
    head.type = "MODEL";
    ProjectFile::create(ProjectFolder(source, model), head);
    std::ofstream glb(ProjectFolder(source, model) / "model.glb", std::ios::binary);
    std::mt19937_64 random(1);
    for (int i = 0; i < 500000; ++i) {
        const auto word = random();
        glb.write(reinterpret_cast<const char*>(&word), sizeof word);
    }
    glb.close();
    std::ofstream(ProjectFolder(source, model) / "floors.json") << "";
    m_server->publish(building, "BIM", ProjectFolder(source, building));
    m_server->publish(model, "MODEL", ProjectFolder(source, model), building);
}

void TestDownload::cleanupTestCase()
{
    m_server.reset();
}

void TestDownload::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_dataFolder = m_folder->path().toStdWString();
}

std::unique_ptr<Database> TestDownload::newDatabase(const std::shared_ptr<Disk>& disk) const
{
    auto database = std::make_unique<Database>(disk);
    if (!database->setServer(m_server->address()))
        return nullptr;
    database->SetUp(0);
    const auto token = m_server->token();
    database->GetNetAccess()->LoginByToken(std::wstring(token.begin(), token.end()));
    return database;
}

int TestDownload::stateOf(Database& database) const
{
    int state = -1;
    return database.GetProjStatus(Key(building), m_dataFolder, state) ? state : -1;
}

QStringList TestDownload::entries() const
{
    return QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

void TestDownload::projectArrivesWithItsModelsByteForByte()
{
    const auto database = newDatabase();
    QVERIFY(database->DownLoadProj(Key(building), m_dataFolder));
    const fs::path here = m_folder->path().toStdString();
    const fs::path there = m_source.path().toStdString();
    QCOMPARE(BytesOf(ProjectFolder(here, model) / "model.glb"),
             BytesOf(ProjectFolder(there, model) / "model.glb"));
    QCOMPARE(BytesOf(ProjectFolder(here, building) / "projimage.jpg"), std::string("picture"));
    QVERIFY(fs::exists(ProjectFolder(here, model) / "floors.json"));
    auto* project = database->OpenProject(Key(building), m_dataFolder);
    QVERIFY(project != nullptr);
    QVERIFY(project->GetName() == L"工程");
    QCOMPARE(entries().size(), 2);
}

void TestDownload::downloadedProjectIsTheSameAsTheServers()
{
    const auto database = newDatabase();
    QVERIFY(database->DownLoadProj(Key(building), m_dataFolder));
    QCOMPARE(stateOf(*database), 1);
    // Looking at it changes nothing.
    auto* project = database->OpenProject(Key(building), m_dataFolder);
    QVERIFY(project != nullptr && !project->GetTemplate().size());
    QVERIFY(database->SaveAll());
    QCOMPARE(stateOf(*database), 1);
}

void TestDownload::changeHereShowsInTheState()
{
    const auto database = newDatabase();
    QVERIFY(database->DownLoadProj(Key(building), m_dataFolder));
    // Another process: the editor of a tab opens the folder through a library of its own.
    const auto other = newDatabase();
    auto* project = other->OpenProject(Key(building), m_dataFolder);
    QVERIFY(project != nullptr);
    project->SetName(L"another name");
    QVERIFY(other->SaveAll());
    QCOMPARE(stateOf(*database), 2);
}

void TestDownload::changeThereShowsInTheState()
{
    const auto database = newDatabase();
    QVERIFY(database->DownLoadProj(Key(building), m_dataFolder));
    const fs::path source = ProjectFolder(m_source.path().toStdString(), building);
    ProjectHead before = ProjectFile(source).readHead();
    ProjectHead after = before;
    after.note += "+";
    ProjectChange change;
    change.head = &after;
    change.headBefore = &before;
    ProjectFile(source).write(change);
    m_server->publish(building, "BIM", source);
    QTRY_COMPARE(stateOf(*database), 3);
}

void TestDownload::changeOnBothSidesIsAConflict()
{
    const auto database = newDatabase();
    QVERIFY(database->DownLoadProj(Key(building), m_dataFolder));
    database->OpenProject(Key(building), m_dataFolder)->SetName(L"another name");
    QVERIFY(database->SaveAll());
    const fs::path source = ProjectFolder(m_source.path().toStdString(), building);
    std::ofstream(source / "projimage.jpg", std::ios::app) << "+";
    m_server->publish(building, "BIM", source);
    QTRY_COMPARE(stateOf(*database), 4);
    std::ofstream(source / "projimage.jpg") << "picture";
    m_server->publish(building, "BIM", source);
}

void TestDownload::assignedModelsAreToldOfAnAbsentProject()
{
    const auto database = newDatabase();
    std::map<ZRSmartFormat::SZRFTGuid, std::wstring> models;
    QVERIFY(database->GetAllAssignProj(Key(building), m_dataFolder, models));
    QVERIFY((models == std::map<ZRSmartFormat::SZRFTGuid, std::wstring>{{Key(model), L"MODEL"}}));
    QCOMPARE(entries(), QStringList(QString::fromStdString("proj_" + building)));
}

void TestDownload::projectThatIsHereIsLeftAlone()
{
    const auto database = newDatabase();
    QVERIFY(database->DownLoadProj(Key(building), m_dataFolder));
    database->OpenProject(Key(building), m_dataFolder)->SetName(L"work of its own");
    QVERIFY(database->SaveAll());
    QVERIFY(database->DownLoadProj(Key(building), m_dataFolder));
    const auto again = newDatabase();
    QVERIFY(again->OpenProject(Key(building), m_dataFolder)->GetName() == L"work of its own");
}

void TestDownload::unknownProjectIsRefused()
{
    const auto database = newDatabase();
    for (const char* guid : {"00000000-0000-0000-0000-000000000001", "no guid", "../climb", "a/b", "", ".."})
        QVERIFY2(!database->DownLoadProj(Key(guid), m_dataFolder), guid);
    QCOMPARE(entries(), QStringList());
}

void TestDownload::fullDiskLeavesNothing_data()
{
    QTest::addColumn<quint64>("bytes");
    QTest::newRow("from the start") << quint64(0);
    QTest::newRow("in the project") << quint64(5000);
    QTest::newRow("in its model") << quint64(2000000);
}

void TestDownload::fullDiskLeavesNothing()
{
    QFETCH(quint64, bytes);
    const auto database = newDatabase(std::make_shared<SmallDisk>(bytes));
    QVERIFY(!database->DownLoadProj(Key(building), m_dataFolder));
    std::wstring reason;
    database->GetLastError(reason);
    const auto told = QJsonDocument::fromJson(QString::fromStdWString(reason).toUtf8()).object();
    QCOMPARE(told.value("code").toInt(), int(localcode::diskFull));
    QVERIFY(told.value("msg").toString().contains("full"));
    QCOMPARE(entries(), QStringList());
    // With room again it succeeds.
    QVERIFY(newDatabase()->DownLoadProj(Key(building), m_dataFolder));
}

void TestDownload::leftoversOfAKilledDownloadAreRemoved()
{
    const QDir folder(m_folder->path());
    QVERIFY(folder.mkpath(".side-1234/proj_half"));
    const auto database = newDatabase();
    QVERIFY(database->DownLoadProj(Key(building), m_dataFolder));
    QCOMPARE(entries().size(), 2);
}

void TestDownload::downloadAfterTheServerHasGoneFails()
{
    const auto database = newDatabase();
    m_server->kill();
    QVERIFY(!database->DownLoadProj(Key(building), m_dataFolder));
    std::wstring reason;
    database->GetLastError(reason);
    QCOMPARE(QJsonDocument::fromJson(QString::fromStdWString(reason).toUtf8()).object().value("code").toInt(),
             int(http::faultcode::unreachable));
    QCOMPARE(entries(), QStringList());
}

QTEST_GUILESS_MAIN(TestDownload)
#include "test_download.moc"
