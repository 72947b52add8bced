// SPDX-License-Identifier: MIT
#include "project/localprojectinfomgr.h"

#include "fakes/logbook.h"
#include "fakes/startedhome.h"
#include "project/projectconfig.h"

#include <memory>

#include <QTest>

using namespace TorvoEditor;
using Fakes::SmartDB;

namespace
{

QString ConfigPath()
{
    return QCoreApplication::applicationDirPath() + "/ProjectConfig.json";
}

void WriteList(const QJsonArray& projects)
{
    WriteProjectConfig(ConfigPath(), EncodeProjectConfig(projects));
}

QJsonArray List()
{
    return DecodeProjectConfig(ReadProjectConfig(ConfigPath()));
}

QJsonObject Entry(const QString& guid, const QString& name = "n", const QJsonObject& attributes = {})
{
    return {{"guid", guid}, {"name", name}, {"customMap", attributes}};
}

QStringList GuidsOf(const std::vector<TorvoSDK::SLocalProjectRecord>& records)
{
    QStringList guids;
    for (const auto& record : records)
        guids.append(QString::fromStdWString(record.guid));
    return guids;
}

QByteArray FileBytes()
{
    QFile file(ConfigPath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
}

} // namespace

class TestLocalProjectInfoMgr : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void loadListsTheProjectsThatCanBeOpened();
    void loadGivesTheWholeListToTheHostAndThenEachRecord();
    void projectThatNeedsAnUpgradeIsListedWithItsMark();
    void markOfTheUpgradeOverwritesWhatStands();
    void markOfTheUpgradeIsNotWritten();
    void projectThatIsGoneIsNotListedButStaysInTheFile();
    void withoutADatabaseNothingIsListed();
    void withoutAnUpgraderNothingIsListed();
    void missingFileIsLoggedAndYieldsAnEmptyStore();
    void firstAddCreatesTheFile();
    void listOfAnotherKindYieldsAnEmptyStore();
    void tenMegabytesOfNoiseYieldAnEmptyStore();
    void addTakesTheRecordOfTheHost();
    void addOfAListedProjectDoesNotWrite();
    void addWithoutADatabaseChangesNothing();
    void removeTakesTheProjectOutAndWrites();
    void removeOfAnUnknownProjectStillWrites();
    void removeTakesOnlyTheFirstEntryOfTheFile();
    void containsMindsTheCase();
    void nameOfAnyScriptSurvives();
    void unInitWritesTheList();
    void listThatCannotBeWrittenStaysInMemory();
    void subProjectsAreTheLinksOfTheObjectsEachOnce();
    void subProjectsOfAnUnknownProjectAreNone();
    void subProjectsWithoutADatabaseAreNone();
    void subProjectsAreReadThroughTheObjectList();

private:
    std::unique_ptr<Fakes::Surroundings> m_around;
    std::unique_ptr<Fakes::LogBook> m_log;
    std::unique_ptr<CLocalProjectInfoMgr> m_store;
};

void TestLocalProjectInfoMgr::init()
{
    m_around = std::make_unique<Fakes::Surroundings>();
    m_log = std::make_unique<Fakes::LogBook>();
    m_store = std::make_unique<CLocalProjectInfoMgr>();
}

void TestLocalProjectInfoMgr::cleanup()
{
    m_store.reset();
    m_log.reset();
    m_around.reset();
}

void TestLocalProjectInfoMgr::loadListsTheProjectsThatCanBeOpened()
{
    SmartDB::instance().add("b", "B", "BIM");
    SmartDB::instance().add("a", "A", "CIM");
    WriteList({Entry("b", "B", {{"k", "v"}}), Entry("a", "A")});
    m_store->Init();
    QCOMPARE(m_store->projectGuids(), QStringList({"b", "a"}));
    QCOMPARE(GuidsOf(m_store->projectRecords()), QStringList({"b", "a"}));
    const auto& record = m_store->projectRecords().front();
    QCOMPARE(QString::fromStdWString(record.name), QString("B"));
    QVERIFY((record.customMap == std::map<std::wstring, std::wstring>{{L"k", L"v"}}));
}

void TestLocalProjectInfoMgr::loadGivesTheWholeListToTheHostAndThenEachRecord()
{
    SmartDB::instance().add("b", "B", "BIM");
    SmartDB::instance().add("a", "A", "CIM");
    WriteList({Entry("b"), Entry("gone"), Entry("a")});
    m_store->Load();
    QCOMPARE(Fakes::Calls(),
             QStringList({"OpenProject(b,data)", "OpenProject(gone,data)", "NeedUpgrade(gone)",
                          "OpenProject(a,data)", "SetProjectRecords(b,a)", "AddProjectRecord(b)",
                          "AddProjectRecord(a)"}));
}

void TestLocalProjectInfoMgr::projectThatNeedsAnUpgradeIsListedWithItsMark()
{
    SmartDB::instance().add("old", "O", "BIM").needsUpgrade = true;
    WriteList({Entry("old")});
    m_store->Load();
    QCOMPARE(m_store->projectGuids(), QStringList("old"));
    QVERIFY(m_store->projectRecords().front().customMap.at(L"needUpgrade") == L"true");
}

void TestLocalProjectInfoMgr::markOfTheUpgradeOverwritesWhatStands()
{
    SmartDB::instance().add("old", "O", "BIM").needsUpgrade = true;
    WriteList({Entry("old", "O", {{"needUpgrade", "later"}})});
    m_store->Load();
    QVERIFY(m_store->projectRecords().front().customMap.at(L"needUpgrade") == L"true");
}

void TestLocalProjectInfoMgr::markOfTheUpgradeIsNotWritten()
{
    SmartDB::instance().add("old", "O", "BIM").needsUpgrade = true;
    WriteList({Entry("old")});
    m_store->Load();
    m_store->Save();
    QCOMPARE(List(), QJsonArray({Entry("old")}));
}

void TestLocalProjectInfoMgr::projectThatIsGoneIsNotListedButStaysInTheFile()
{
    SmartDB::instance().add("a", "A", "CIM");
    WriteList({Entry("gone", "G"), Entry("a")});
    m_store->Load();
    QCOMPARE(m_store->projectGuids(), QStringList("a"));
    m_store->Save();
    QCOMPARE(List(), QJsonArray({Entry("gone", "G"), Entry("a")}));
}

void TestLocalProjectInfoMgr::withoutADatabaseNothingIsListed()
{
    SmartDB::instance().add("a", "A", "CIM");
    SmartDB::instance().hasDatabase = false;
    WriteList({Entry("a")});
    m_store->Load();
    QCOMPARE(m_store->projectGuids(), QStringList());
    QCOMPARE(Fakes::Calls(), QStringList("SetProjectRecords()"));
}

void TestLocalProjectInfoMgr::withoutAnUpgraderNothingIsListed()
{
    SmartDB::instance().add("a", "A", "CIM");
    SmartDB::instance().hasUpgrader = false;
    WriteList({Entry("a")});
    m_store->Load();
    QCOMPARE(m_store->projectGuids(), QStringList());
    QCOMPARE(Fakes::Calls(), QStringList("SetProjectRecords()"));
}

void TestLocalProjectInfoMgr::missingFileIsLoggedAndYieldsAnEmptyStore()
{
    m_store->Load();
    QCOMPARE(m_log->take(), QStringList("warning: open file  \"" + ConfigPath() +
                                        "\" failed: \"No such file or directory\""));
    QVERIFY(m_store->projectRecords().empty());
}

void TestLocalProjectInfoMgr::firstAddCreatesTheFile()
{
    m_around->host.projects.addServerProject("a", "A", 1);
    m_store->Load();
    m_store->AddProject("a");
    QCOMPARE(List(), QJsonArray({Entry("a", "A")}));
}

void TestLocalProjectInfoMgr::listOfAnotherKindYieldsAnEmptyStore()
{
    QFile file(ConfigPath());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("{}") == 2);
    file.close();
    m_store->Load();
    QVERIFY(m_store->projectRecords().empty());
    m_store->Save();
    QCOMPARE(FileBytes(), QByteArray("[\n]\n"));
}

void TestLocalProjectInfoMgr::tenMegabytesOfNoiseYieldAnEmptyStore()
{
    QByteArray noise(10 * 1024 * 1024, '\0');
    quint32 value = 1;
    for (auto& byte : noise) {
        value = value * 1664525U + 1013904223U;
        byte = static_cast<char>(value >> 24U);
    }
    QFile file(ConfigPath());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(noise) == noise.size());
    file.close();
    m_store->Load();
    QVERIFY(m_store->projectRecords().empty());
    const auto log = m_log->take();
    QCOMPARE(log.size(), 1);
    QVERIFY(log.front().startsWith("warning: parse json failed:"));
}

void TestLocalProjectInfoMgr::addTakesTheRecordOfTheHost()
{
    m_around->host.projects.addServerProject("a", QString::fromUtf8("工程甲"), 1);
    m_around->host.projects.serverProjects.back().customMap = {{L"deptId", L"d1"}, {L"appID", L"7"}};
    m_store->AddProject("a");
    QCOMPARE(m_store->projectGuids(), QStringList("a"));
    QVERIFY(m_store->projectRecords().front().name == L"工程甲");
    QCOMPARE(List(),
             QJsonArray({Entry("a", QString::fromUtf8("工程甲"), {{"appID", "7"}, {"deptId", "d1"}})}));
}

void TestLocalProjectInfoMgr::addOfAListedProjectDoesNotWrite()
{
    m_store->AddProject("a");
    QVERIFY(QFile::remove(ConfigPath()));
    Fakes::ForgetCalls();
    m_store->AddProject("a");
    QCOMPARE(m_store->projectGuids(), QStringList("a"));
    QCOMPARE(Fakes::Calls(), QStringList());
    QVERIFY(!QFile::exists(ConfigPath()));
}

void TestLocalProjectInfoMgr::addWithoutADatabaseChangesNothing()
{
    SmartDB::instance().hasDatabase = false;
    m_store->AddProject("a");
    QCOMPARE(m_store->projectGuids(), QStringList());
    QVERIFY(!QFile::exists(ConfigPath()));
}

void TestLocalProjectInfoMgr::removeTakesTheProjectOutAndWrites()
{
    SmartDB::instance().add("a", "A", "CIM");
    SmartDB::instance().add("b", "B", "BIM");
    WriteList({Entry("a"), Entry("b")});
    m_store->Load();
    m_store->RemoveProject("a");
    QCOMPARE(m_store->projectGuids(), QStringList("b"));
    QCOMPARE(GuidsOf(m_store->projectRecords()), QStringList("b"));
    QCOMPARE(List(), QJsonArray({Entry("b")}));
}

void TestLocalProjectInfoMgr::removeOfAnUnknownProjectStillWrites()
{
    m_store->RemoveProject("unknown");
    QCOMPARE(FileBytes(), QByteArray("[\n]\n"));
}

void TestLocalProjectInfoMgr::removeTakesOnlyTheFirstEntryOfTheFile()
{
    SmartDB::instance().add("a", "A", "CIM");
    WriteList({Entry("a", "first"), Entry("a", "second")});
    m_store->Load();
    QCOMPARE(m_store->projectGuids(), QStringList({"a", "a"}));
    m_store->RemoveProject("a");
    QCOMPARE(m_store->projectGuids(), QStringList());
    QVERIFY(m_store->projectRecords().empty());
    QCOMPARE(List(), QJsonArray({Entry("a", "second")}));
}

void TestLocalProjectInfoMgr::containsMindsTheCase()
{
    m_store->AddProject("a");
    QVERIFY(m_store->ContainsProject("a"));
    QVERIFY(!m_store->ContainsProject("A"));
}

void TestLocalProjectInfoMgr::nameOfAnyScriptSurvives()
{
    const QString name = QString::fromUtf8("滨江 \"花园\" – Häuser 🏠\n");
    m_around->host.projects.addServerProject("a", name, 1);
    m_store->AddProject("a");
    SmartDB::instance().add("a", name, "BIM");
    CLocalProjectInfoMgr again;
    again.Load();
    QVERIFY(again.projectRecords().front().name == name.toStdWString());
}

void TestLocalProjectInfoMgr::unInitWritesTheList()
{
    m_store->AddProject("a");
    QVERIFY(QFile::remove(ConfigPath()));
    m_store->UnInit();
    QCOMPARE(List().size(), 1);
}

void TestLocalProjectInfoMgr::listThatCannotBeWrittenStaysInMemory()
{
    // A folder of that name cannot be opened as a file, by nobody.
    QVERIFY(QDir().mkpath(ConfigPath()));
    m_store->AddProject("a");
    QVERIFY(QDir().rmdir(ConfigPath()));
    QCOMPARE(m_log->linesWith("open file ").size(), 1);
    QVERIFY(m_store->ContainsProject("a"));
    m_store->Save();
    QCOMPARE(List().size(), 1);
}

void TestLocalProjectInfoMgr::subProjectsAreTheLinksOfTheObjectsEachOnce()
{
    auto& scene = *SmartDB::instance().add("scene", "S", "CIM").project;
    const auto key = [](const wchar_t* text) { return ZRSmartFormat::GuidFromText(text); };
    scene.addObject(key(L"o1"), key(L"house"));
    scene.addObject(key(L"o2"), key(L""));
    scene.addObject(key(L"o3"), key(L"engine"));
    scene.addObject(key(L"o4"), key(L"house"));
    QCOMPARE(m_store->GetSubProjects("scene"), QStringList({"house", "engine"}));
}

void TestLocalProjectInfoMgr::subProjectsOfAnUnknownProjectAreNone()
{
    QCOMPARE(m_store->GetSubProjects("unknown"), QStringList());
    QCOMPARE(Fakes::Calls(), QStringList("OpenProject(unknown,data)"));
}

void TestLocalProjectInfoMgr::subProjectsWithoutADatabaseAreNone()
{
    SmartDB::instance().hasDatabase = false;
    QCOMPARE(m_store->GetSubProjects("scene"), QStringList());
}

void TestLocalProjectInfoMgr::subProjectsAreReadThroughTheObjectList()
{
    SmartDB::instance().add("scene", "S", "CIM");
    static_cast<void>(m_store->GetSubProjects("scene"));
    QCOMPARE(Fakes::Calls(),
             QStringList({"OpenProject(scene,data)", "LoadProjObjects(scene)", "GetProjObjects(scene,)"}));
}

QTEST_GUILESS_MAIN(TestLocalProjectInfoMgr)
#include "test_localprojectinfomgr.moc"
