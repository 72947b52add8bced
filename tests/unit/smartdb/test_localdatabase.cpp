// SPDX-License-Identifier: MIT
#include "ZRIMGeometryModel/zrimposition.h"
#include "ZRSmartDB/zrdbdirector.h"
#include "ZRSmartDB/zrdbnetaccess.h"
#include "ZRSmartDB/zrprojupgrader.h"
#include "smartdb/data/projectfile.h"
#include "smartdb/database.h"
#include "smartdb/failure.h"

#include <filesystem>
#include <memory>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <SQLiteCpp/SQLiteCpp.h>

namespace
{

namespace fs = std::filesystem;
using namespace ZRSmartDB;

const auto key = ZRSmartFormat::GuidFromText(L"5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01");
const std::string text = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";

} // namespace

/// What the library does without a server.
class TestLocalDatabase : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void createdProjectIsThereAfterARestart();
    void secondProjectOfOneGuidIsRefused();
    void emptyPathFindsOpenProjectsOnly();
    void closedProjectIsNotFoundAnyMore();
    void deletedProjectIsGone();
    void droppedHandleRemovesASubProject();
    void linkedProjectsAreThoseOfTheObjects();
    void savingWritesNothingThatHasNotChanged();
    void twoProcessesKeepEachOthersChanges();
    void folderWithoutAReadableProjectDoesNotOpen_data();
    void folderWithoutAReadableProjectDoesNotOpen();
    void projectUnderAnothersNameDoesNotOpen();
    void keyThatClimbsOutOfTheFolderIsRefused();
    void upgradeBringsAnOldProjectToTheCurrentFormat();
    void currentProjectNeedsNoUpgrade();
    void tenThousandOpenProjectsNeedNoOpenFiles();
    void libraryStartsAndEndsTenTimes();
    void operationsAfterTheEndFail();

private:
    [[nodiscard]] std::unique_ptr<Database> newDatabase() const;
    IZRProject* create(Database& database) const;
    [[nodiscard]] fs::path projectFolder() const
    {
        return ProjectFolder(m_folder->path().toStdString(), text);
    }
    [[nodiscard]] int lastCode(Database& database) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::wstring m_dataFolder;
};

void TestLocalDatabase::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_dataFolder = m_folder->path().toStdWString();
}

std::unique_ptr<Database> TestLocalDatabase::newDatabase() const
{
    auto database = std::make_unique<Database>();
    database->SetUp(0);
    return database;
}

IZRProject* TestLocalDatabase::create(Database& database) const
{
    return database.CreateProj(key, L"工程", L"BIM", ZRIMGeometryModel::CZRIMPosition(121.5, 31.25, 4),
                               m_dataFolder);
}

int TestLocalDatabase::lastCode(Database& database) const
{
    std::wstring reason;
    database.GetLastError(reason);
    return QJsonDocument::fromJson(QString::fromStdWString(reason).toUtf8()).object().value("code").toInt();
}

void TestLocalDatabase::createdProjectIsThereAfterARestart()
{
    {
        const auto database = newDatabase();
        auto* project = create(*database);
        QVERIFY(project != nullptr);
        project->SetAttr(L"Pa_ExtendedAttr", L"{\"deptId\": \"滨江\"}");
        project->SetIotCode(L"iot");
        project->SetProj4(L"+proj=utm");
        project->SetTemplate(L"[]");
        QVERIFY(database->SaveAll());
    }
    const auto database = newDatabase();
    auto* project = database->OpenProject(key, m_dataFolder);
    QVERIFY(project != nullptr);
    QVERIFY(project->GetName() == L"工程" && project->GetType() == L"BIM");
    QCOMPARE(project->GetPosition().GetX(), 121.5);
    QCOMPARE(project->GetPosition().GetY(), 31.25);
    QVERIFY(project->GetAttr(L"Pa_ExtendedAttr") == L"{\"deptId\": \"滨江\"}");
    QVERIFY(project->GetAttr(L"unknown").empty());
    QVERIFY(project->GetIotCode() == L"iot" && project->GetProj4() == L"+proj=utm");
    QVERIFY(project->GetTemplate() == L"[]");
}

void TestLocalDatabase::secondProjectOfOneGuidIsRefused()
{
    const auto database = newDatabase();
    QVERIFY(create(*database) != nullptr);
    QCOMPARE(create(*database), nullptr);
    QCOMPARE(lastCode(*database), int(localcode::exists));
}

void TestLocalDatabase::emptyPathFindsOpenProjectsOnly()
{
    static_cast<void>(create(*newDatabase()));
    const auto database = newDatabase();
    QCOMPARE(database->OpenProject(key, {}), nullptr);
    auto* project = database->OpenProject(key, m_dataFolder);
    QVERIFY(project != nullptr);
    QCOMPARE(database->OpenProject(key, {}), project);
    QCOMPARE(database->OpenProject(key, m_dataFolder), project);
}

void TestLocalDatabase::closedProjectIsNotFoundAnyMore()
{
    const auto database = newDatabase();
    QVERIFY(create(*database) != nullptr);
    database->CloseProject(key);
    QCOMPARE(database->OpenProject(key, {}), nullptr);
    QVERIFY(database->OpenProject(key, m_dataFolder) != nullptr);
}

void TestLocalDatabase::deletedProjectIsGone()
{
    const auto database = newDatabase();
    QVERIFY(create(*database) != nullptr);
    database->DeleteProj(key);
    QVERIFY(!fs::exists(projectFolder()));
    QCOMPARE(database->OpenProject(key, m_dataFolder), nullptr);
    QCOMPARE(lastCode(*database), int(localcode::notHere));
}

void TestLocalDatabase::droppedHandleRemovesASubProject()
{
    const auto database = newDatabase();
    QVERIFY(create(*database) != nullptr);
    auto handle = database->RemoveSubProj(key);
    QVERIFY(fs::exists(projectFolder()));
    handle.reset();
    QVERIFY(!fs::exists(projectFolder()));
}

void TestLocalDatabase::linkedProjectsAreThoseOfTheObjects()
{
    const auto database = newDatabase();
    QVERIFY(create(*database) != nullptr);
    database->CloseProject(key);
    ProjectChange change;
    const std::vector<ObjectData> objects = {
        {"o1", "", "house", "", {}, 0}, {"o2", "", "", "t", {}, 0}, {"o3", "", "house", "", {}, 0}};
    change.objects = &objects;
    ProjectFile(projectFolder()).write(change);
    std::set<ZRSmartFormat::SZRFTGuid> linked;
    database->GetSubProj(key, m_dataFolder, linked);
    QVERIFY(linked == std::set<ZRSmartFormat::SZRFTGuid>{ZRSmartFormat::GuidFromText(L"house")});

    auto* project = database->OpenProject(key, m_dataFolder);
    std::vector<IZRSceneObject*> found;
    database->GetProjObjects(project, found, {});
    QCOMPARE(found.size(), std::size_t(3));
    database->GetProjObjects(project, found, L"t");
    QCOMPARE(found.size(), std::size_t(1));
    QVERIFY(ZRSmartFormat::GuidToText(found.front()->GetLinkedProj()).empty());
}

void TestLocalDatabase::savingWritesNothingThatHasNotChanged()
{
    const auto database = newDatabase();
    auto* project = create(*database);
    QVERIFY(project != nullptr);
    const auto before = ProjectFile(projectFolder()).readChangeCounter();
    project->SetName(project->GetName());
    QVERIFY(database->SaveAll());
    QCOMPARE(ProjectFile(projectFolder()).readChangeCounter(), before);
    project->SetName(L"another");
    QVERIFY(database->SaveAll());
    QVERIFY(ProjectFile(projectFolder()).readChangeCounter() > before);
}

void TestLocalDatabase::twoProcessesKeepEachOthersChanges()
{
    const auto first = newDatabase();
    auto* one = create(*first);
    const auto second = newDatabase();
    auto* other = second->OpenProject(key, m_dataFolder);
    QVERIFY(one != nullptr && other != nullptr);
    one->SetName(L"name of the first");
    QVERIFY(first->SaveAll());
    other->SetIotCode(L"code of the second");
    QVERIFY(second->SaveAll());
    const auto head = ProjectFile(projectFolder()).readHead();
    QCOMPARE(head.name, std::string("name of the first"));
    QCOMPARE(head.iotCode, std::string("code of the second"));
}

void TestLocalDatabase::folderWithoutAReadableProjectDoesNotOpen_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("code");
    QTest::newRow("no database") << QByteArray("not a database, and long enough to be looked at as one")
                                 << int(localcode::damaged);
    QTest::newRow("empty") << QByteArray() << int(localcode::damaged);
    QTest::newRow("a header alone") << QByteArray("SQLite format 3\0", 16) << int(localcode::damaged);
    QTest::newRow("cut in the middle") << QByteArray("cut") << int(localcode::damaged);
    QTest::newRow("of a later version") << QByteArray("later") << int(localcode::newer);
    QTest::newRow("of another program") << QByteArray("foreign") << int(localcode::damaged);
    QTest::newRow("without its row") << QByteArray("norow") << int(localcode::damaged);
    QTest::newRow("without a table") << QByteArray("notable") << int(localcode::damaged);
}

void TestLocalDatabase::folderWithoutAReadableProjectDoesNotOpen()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, code);
    static_cast<void>(create(*newDatabase()));
    const QString file = QString::fromStdString(DatabaseIn(projectFolder()).string());
    const auto change = [&](const char* statement) {
        SQLite::Database(file.toStdString(), SQLite::OPEN_READWRITE).exec(statement);
    };
    if (bytes == "cut") {
        change("PRAGMA journal_mode = DELETE");
        QVERIFY(QFile::resize(file, QFile(file).size() / 2));
    } else if (bytes == "later") {
        change("PRAGMA user_version = 99");
    } else if (bytes == "foreign") {
        change("PRAGMA application_id = 1");
    } else if (bytes == "norow") {
        change("DELETE FROM project");
    } else if (bytes == "notable") {
        change("DROP TABLE attributes");
    } else {
        for (const char* side : {"-wal", "-shm"})
            QFile::remove(file + side);
        QFile database(file);
        QVERIFY(database.open(QIODevice::WriteOnly) && database.write(bytes) == bytes.size());
    }
    const auto database = newDatabase();
    QCOMPARE(database->OpenProject(key, m_dataFolder), nullptr);
    QCOMPARE(lastCode(*database), code);
    QVERIFY(!database->GetUpgrader()->NeedUpgrade(key, m_dataFolder));
    QVERIFY2(QFile::exists(file), "nothing is thrown away");
}

void TestLocalDatabase::projectUnderAnothersNameDoesNotOpen()
{
    static_cast<void>(create(*newDatabase()));
    fs::rename(projectFolder(), projectFolder().parent_path() / "proj_other");
    const auto database = newDatabase();
    QCOMPARE(database->OpenProject(ZRSmartFormat::GuidFromText(L"other"), m_dataFolder), nullptr);
    QCOMPARE(lastCode(*database), int(localcode::damaged));
}

void TestLocalDatabase::keyThatClimbsOutOfTheFolderIsRefused()
{
    const auto database = newDatabase();
    for (const wchar_t* climbing : {L"../x", L"a/../../x", L"/x", L"x/y"}) {
        const auto guid = ZRSmartFormat::GuidFromText(climbing);
        QCOMPARE(database->OpenProject(guid, m_dataFolder), nullptr);
        QCOMPARE(database->CreateProj(guid, L"n", L"BIM", {}, m_dataFolder), nullptr);
        database->DeleteProj(guid);
    }
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(),
             0);
}

void TestLocalDatabase::upgradeBringsAnOldProjectToTheCurrentFormat()
{
    fs::create_directories(projectFolder());
    {
        SQLite::Database old(DatabaseIn(projectFolder()).string(),
                             SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        old.exec(R"(
CREATE TABLE project(guid TEXT NOT NULL, name TEXT NOT NULL, type TEXT NOT NULL, position TEXT NOT NULL,
    proj4 TEXT NOT NULL DEFAULT '', template TEXT NOT NULL DEFAULT '', attributes TEXT NOT NULL DEFAULT '{}',
    change_counter INTEGER NOT NULL DEFAULT 1);
CREATE TABLE objects(guid TEXT PRIMARY KEY, link TEXT NOT NULL, text TEXT NOT NULL);
CREATE TABLE models(guid TEXT PRIMARY KEY, name TEXT NOT NULL, type TEXT NOT NULL, attributes TEXT NOT NULL);
INSERT INTO project(guid, name, type, position, attributes)
    VALUES('5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01', 'old', 'BIM', '121.5,31.25,4', '{"k": "v"}');
PRAGMA user_version = 1;)");
        old.exec("PRAGMA application_id = " + std::to_string(0x54565052));
    }
    const auto database = newDatabase();
    QCOMPARE(database->OpenProject(key, m_dataFolder), nullptr);
    QVERIFY(database->GetUpgrader()->NeedUpgrade(key, m_dataFolder));
    QVERIFY(database->GetUpgrader()->Upgrade(key, m_dataFolder));
    QVERIFY(!database->GetUpgrader()->NeedUpgrade(key, m_dataFolder));
    auto* project = database->OpenProject(key, m_dataFolder);
    QVERIFY(project != nullptr);
    QVERIFY(project->GetName() == L"old" && project->GetAttr(L"k") == L"v");
    QCOMPARE(project->GetPosition().GetX(), 121.5);
    QCOMPARE(project->GetPosition().GetY(), 31.25);
}

void TestLocalDatabase::currentProjectNeedsNoUpgrade()
{
    static_cast<void>(create(*newDatabase()));
    const auto database = newDatabase();
    QVERIFY(!database->GetUpgrader()->NeedUpgrade(key, m_dataFolder));
    QVERIFY(database->GetUpgrader()->Upgrade(key, m_dataFolder));
    QVERIFY(!database->GetUpgrader()->NeedUpgrade(ZRSmartFormat::GuidFromText(L"unknown"), m_dataFolder));
}

void TestLocalDatabase::tenThousandOpenProjectsNeedNoOpenFiles()
{
    static_cast<void>(create(*newDatabase()));
    const auto database = newDatabase();
    const auto openFiles = [] {
        return QDir("/proc/self/fd").entryList(QDir::AllEntries | QDir::System).size();
    };
    const int before = openFiles();
    // One project under many names would not open: a few hundred of them tell as much as thousands.
    for (int i = 0; i < 300; ++i) {
        const std::wstring guid = L"p" + std::to_wstring(i);
        QVERIFY(database->CreateProj(ZRSmartFormat::GuidFromText(guid), L"n", L"BIM", {}, m_dataFolder) !=
                nullptr);
    }
    QVERIFY(openFiles() <= before + 10);
}

void TestLocalDatabase::libraryStartsAndEndsTenTimes()
{
    for (int i = 0; i < 10; ++i) {
        auto* director = GetIDBDirector();
        QVERIFY(director->SetServer(L"http://127.0.0.1:1"));
        auto* database = director->GetDatabase();
        database->SetUp(0);
        const auto state = database->GetNetAccess()->GetStatusByProjId(key, std::make_shared<std::wstring>());
        FreeIDBDirector();
    }
    QCOMPARE(GetIDBDirector()->GetDatabase(), nullptr);
    FreeIDBDirector();
}

void TestLocalDatabase::operationsAfterTheEndFail()
{
    QVERIFY(GetIDBDirector()->SetServer(L"http://127.0.0.1:1"));
    auto* database = GetIDBDirector()->GetDatabase();
    FreeIDBDirector();
    // A worker that nobody waits for may still come.
    QVERIFY(!database->DownLoadProj(key, m_dataFolder));
    std::map<ZRSmartFormat::SZRFTGuid, std::wstring> models;
    QVERIFY(!database->GetAllAssignProj(key, m_dataFolder, models));
}

QTEST_GUILESS_MAIN(TestLocalDatabase)
#include "test_localdatabase.moc"
