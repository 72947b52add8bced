// SPDX-License-Identifier: MIT
#include "project/projectmgr.h"

#include "fakes/logbook.h"
#include "fakes/startedhome.h"
#include "project/localprojectinfomgr.h"

#include <memory>

#include <QTest>

using namespace TorvoEditor;
using Fakes::SmartDB;

class TestProjectMgr : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void initReadsTheServersListAndTheOrganisation();
    void unInitLetsGoOfTheLibrary();
    void openProjectIsFoundWithoutTheDisk();
    void closedProjectIsOpenedFromTheDataFolder();
    void unknownProjectIsNull();
    void closeProjectLetsGoOfIt();
    void serverProjectIsTheFirstOfItsGuid();
    void unknownServerProjectHasAnEmptyGuid();
    void serverListThatCannotBeReadEmptiesTheList();
    void refreshTakesTheNewList();
    void pictureLiesInTheProjectsFolder();
    void lastErrorIsTheLibrarys();
    void removeLocalDataTakesTheLinkedProjectsFirst();
    void removeLocalDataTakesAProjectThatAnotherSceneLinksToAsWell();
    void removeLocalDataTakesTheProjectFromTheList();
    void removeLocalDataWithoutADatabaseIsFalse();
    void removedProjectIsToldToTheHostAndThenToTheModels();
    void extendedAttributeOfAnOrganisation();
    void extendedAttributeWithoutAnOrganisation();
    void extendedAttributeOfTheOtherFormGivesEmptyTexts();
    void extendedAttributeThatIsNoJsonLeavesTheMap();
    void extendedAttributeOfNoProjectLeavesTheMap();
    void rowOfAnOrganisation_data();
    void rowOfAnOrganisation();
    void rowOfAProject_data();
    void rowOfAProject();
    void emptyNodeOfTheOrganisation();

private:
    std::unique_ptr<Fakes::Surroundings> m_around;
    std::unique_ptr<Fakes::LogBook> m_log;
    CProjectMgr* m_projects = nullptr;
};

void TestProjectMgr::init()
{
    m_around = std::make_unique<Fakes::Surroundings>();
    m_log = std::make_unique<Fakes::LogBook>();
    QVERIFY(CHomeApp::instance().Init(Fakes::TestSession()));
    m_projects = CHomeApp::instance().GetMgr<CProjectMgr>();
    Fakes::ForgetCalls();
}

void TestProjectMgr::cleanup()
{
    m_around.reset();
    m_log.reset();
}

void TestProjectMgr::initReadsTheServersListAndTheOrganisation()
{
    m_around->host.projects.addServerProject("a", "A", 1);
    TorvoSDK::SOrgNode root;
    root.name = L"R";
    m_around->host.projects.organisation = root;
    CProjectMgr projects;
    projects.Init();
    QCOMPARE(Fakes::Calls(), QStringList({"GetServerProjects()", "GetOrgTree()"}));
    QCOMPARE(projects.serverProjects().size(), std::size_t(1));
    QVERIFY(projects.orgRoot().name == L"R");
}

void TestProjectMgr::unInitLetsGoOfTheLibrary()
{
    CProjectMgr projects;
    projects.Init();
    Fakes::ForgetCalls();
    projects.UnInit();
    QCOMPARE(Fakes::Calls(), QStringList("FreeIDBDirector()"));
    QCOMPARE(projects.GetProject("a"), nullptr);
}

void TestProjectMgr::openProjectIsFoundWithoutTheDisk()
{
    SmartDB::instance().add("a", "A", "BIM").isOpen = true;
    QVERIFY(m_projects->GetProject("a") != nullptr);
    QCOMPARE(Fakes::Calls(), QStringList("OpenProject(a,)"));
}

void TestProjectMgr::closedProjectIsOpenedFromTheDataFolder()
{
    SmartDB::instance().add("a", "A", "BIM");
    QVERIFY(m_projects->GetProject("a") != nullptr);
    QCOMPARE(Fakes::Calls(), QStringList({"OpenProject(a,)", "OpenProject(a,data)"}));
}

void TestProjectMgr::unknownProjectIsNull()
{
    QCOMPARE(m_projects->GetProject("unknown"), nullptr);
}

void TestProjectMgr::closeProjectLetsGoOfIt()
{
    SmartDB::instance().add("a", "A", "BIM").isOpen = true;
    m_projects->CloseProject("a");
    QCOMPARE(Fakes::Calls(), QStringList("CloseProject(a)"));
    QVERIFY(!SmartDB::instance().find("a")->isOpen);
}

void TestProjectMgr::serverProjectIsTheFirstOfItsGuid()
{
    m_around->host.projects.addServerProject("a", "first", 1);
    m_around->host.projects.addServerProject("a", "second", 0);
    QVERIFY(m_projects->RefreshServerList());
    QVERIFY(m_projects->GetServerProject("a").name == L"first");
}

void TestProjectMgr::unknownServerProjectHasAnEmptyGuid()
{
    const auto record = m_projects->GetServerProject("unknown");
    QVERIFY(record.guid.empty() && record.name.empty() && record.customMap.empty() && !record.isDemo);
    QCOMPARE(record.type, 0);
}

void TestProjectMgr::serverListThatCannotBeReadEmptiesTheList()
{
    m_around->host.projects.addServerProject("a", "A", 1);
    QVERIFY(m_projects->RefreshServerList());
    m_around->host.projects.isServerReachable = false;
    QVERIFY(!m_projects->RefreshServerList());
    QVERIFY(m_projects->serverProjects().empty());
    QVERIFY(m_projects->GetServerProject("a").guid.empty());
}

void TestProjectMgr::refreshTakesTheNewList()
{
    m_around->host.projects.addServerProject("a", "A", 1);
    QVERIFY(m_projects->RefreshServerList());
    m_around->host.projects.serverProjects.clear();
    m_around->host.projects.addServerProject("b", "B", 0);
    QVERIFY(m_projects->RefreshServerList());
    QVERIFY(m_projects->GetServerProject("a").guid.empty());
    QVERIFY(m_projects->GetServerProject("b").name == L"B");
}

void TestProjectMgr::pictureLiesInTheProjectsFolder()
{
    QCOMPARE(m_projects->GetProjectImagePath("a"),
             QCoreApplication::applicationDirPath() + "/data/proj_a/projimage.jpg");
}

void TestProjectMgr::lastErrorIsTheLibrarys()
{
    SmartDB::instance().lastError = R"({"code": 40014})";
    QCOMPARE(m_projects->GetLastError(), QString(R"({"code": 40014})"));
}

void TestProjectMgr::removeLocalDataTakesTheLinkedProjectsFirst()
{
    const auto key = [](const wchar_t* text) { return ZRSmartFormat::GuidFromText(text); };
    auto& scene = *SmartDB::instance().add("scene", "S", "CIM").project;
    scene.addObject(key(L"o1"), key(L"house"));
    scene.addObject(key(L"o2"), key(L"engine"));
    QVERIFY(m_projects->RemoveLocalData("scene"));
    QCOMPARE(Fakes::Calls(),
             QStringList({"OpenProject(scene,data)", "LoadProjObjects(scene)", "GetProjObjects(scene,)",
                          "OpenProject(house,)", "RemoveSubProj(house)", "OpenProject(engine,)",
                          "RemoveSubProj(engine)", "OpenProject(scene,)", "DeleteProj(scene)"}));
}

void TestProjectMgr::removeLocalDataTakesAProjectThatAnotherSceneLinksToAsWell()
{
    const auto key = [](const wchar_t* text) { return ZRSmartFormat::GuidFromText(text); };
    SmartDB::instance().add("s1", "S", "CIM").project->addObject(key(L"o1"), key(L"house"));
    SmartDB::instance().add("s2", "S", "CIM").project->addObject(key(L"o1"), key(L"house"));
    SmartDB::instance().add("house", "H", "BIM").isOpen = true;
    QVERIFY(m_projects->RemoveLocalData("s1"));
    QCOMPARE(SmartDB::instance().find("house"), nullptr);
}

void TestProjectMgr::removeLocalDataTakesTheProjectFromTheList()
{
    auto* local = CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>();
    local->AddProject("a");
    QVERIFY(m_projects->RemoveLocalData("a"));
    QVERIFY(!local->ContainsProject("a"));
}

void TestProjectMgr::removeLocalDataWithoutADatabaseIsFalse()
{
    CProjectMgr projects;
    QVERIFY(!projects.RemoveLocalData("a"));
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestProjectMgr::removedProjectIsToldToTheHostAndThenToTheModels()
{
    m_projects->NotifyProjectRemoved("a");
    QCOMPARE(Fakes::Calls(), QStringList({"RemoveProjectRecord(a)", "CancleAllConvert()"}));
}

void TestProjectMgr::extendedAttributeOfAnOrganisation()
{
    m_around->host.projects.organisation = TorvoSDK::SOrgNode();
    auto& project = *SmartDB::instance().add("a", "A", "BIM").project;
    project.SetAttr(L"Pa_ExtendedAttr", LR"({"deptId": "d1", "deptName": "设计所", "appID": "7"})");
    QMap<QString, QString> attributes{{"other", "stays"}};
    m_projects->GetProjExtAttrs(&project, attributes);
    QCOMPARE(attributes,
             (QMap<QString, QString>{
                 {"other", "stays"}, {"deptId", "d1"}, {"deptName", QString::fromUtf8("设计所")}}));
}

void TestProjectMgr::extendedAttributeWithoutAnOrganisation()
{
    auto& project = *SmartDB::instance().add("a", "A", "BIM").project;
    project.SetAttr(L"Pa_ExtendedAttr", LR"({"appID": "7", "appName": "n"})");
    QMap<QString, QString> attributes;
    m_projects->GetProjExtAttrs(&project, attributes);
    QCOMPARE(attributes, (QMap<QString, QString>{{"appID", "7"}, {"appName", "n"}}));
}

void TestProjectMgr::extendedAttributeOfTheOtherFormGivesEmptyTexts()
{
    auto& project = *SmartDB::instance().add("a", "A", "BIM").project;
    project.SetAttr(L"Pa_ExtendedAttr", LR"({"deptId": "d1", "deptName": "n"})");
    QMap<QString, QString> attributes;
    m_projects->GetProjExtAttrs(&project, attributes);
    QCOMPARE(attributes, (QMap<QString, QString>{{"appID", ""}, {"appName", ""}}));
}

void TestProjectMgr::extendedAttributeThatIsNoJsonLeavesTheMap()
{
    auto& project = *SmartDB::instance().add("a", "A", "BIM").project;
    QMap<QString, QString> attributes{{"appID", "stays"}};
    for (const wchar_t* text : {L"", L"no json", L"{\"appID\": "}) {
        project.SetAttr(L"Pa_ExtendedAttr", text);
        m_projects->GetProjExtAttrs(&project, attributes);
        QCOMPARE(attributes, (QMap<QString, QString>{{"appID", "stays"}}));
    }
}

void TestProjectMgr::extendedAttributeOfNoProjectLeavesTheMap()
{
    QMap<QString, QString> attributes;
    m_projects->GetProjExtAttrs(nullptr, attributes);
    QVERIFY(attributes.isEmpty());
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestProjectMgr::rowOfAnOrganisation_data()
{
    QTest::addColumn<bool>("canSelect");
    QTest::addColumn<QString>("picture");
    QTest::newRow("a department") << true << "qrc:/images/ic_project.png";
    QTest::newRow("a company") << false << "qrc:/images/ic_company.png";
}

void TestProjectMgr::rowOfAnOrganisation()
{
    QFETCH(bool, canSelect);
    QFETCH(QString, picture);
    TorvoSDK::SOrgNode node;
    node.id = L"d1";
    node.name = L"设计所";
    node.canSelect = canSelect;
    const auto row = CProjectMgr::MakeOrgRow(node);
    QCOMPARE(row, (QVariantMap{{"text1", QString::fromUtf8("设计所")},
                               {"text2", "d1"},
                               {"type", "orgType"},
                               {"image1", picture},
                               {"image2", ""},
                               {"isDemo", false}}));
    QVERIFY(!row.value("image2").toString().isNull());
}

void TestProjectMgr::rowOfAProject_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QVariant>("picture");
    QTest::newRow("a building") << 1 << QVariant("qrc:/images/bar_ic_bim.png");
    QTest::newRow("a scene") << 0 << QVariant("qrc:/images/bar_ic_scene.png");
    QTest::newRow("another type has no picture") << 2 << QVariant();
}

void TestProjectMgr::rowOfAProject()
{
    QFETCH(int, type);
    QFETCH(QVariant, picture);
    TorvoSDK::SServerProjectRecord record;
    record.guid = L"a";
    record.name = L"A";
    record.type = type;
    record.isDemo = true;
    QVariantMap expected{{"text1", "A"}, {"text2", "a"}, {"image2", ""}, {"isDemo", true}};
    if (picture.isValid())
        expected.insert("image1", picture);
    QCOMPARE(CProjectMgr::MakeProjectRow(record), expected);
}

void TestProjectMgr::emptyNodeOfTheOrganisation()
{
    TorvoSDK::SOrgNode node;
    QVERIFY(IsEmptyOrgNode(node));
    node.canSelect = true;
    QVERIFY(IsEmptyOrgNode(node));
    node.children.emplace_back();
    QVERIFY(!IsEmptyOrgNode(node));
    TorvoSDK::SOrgNode named;
    named.name = L"R";
    QVERIFY(!IsEmptyOrgNode(named));
    TorvoSDK::SOrgNode numbered;
    numbered.id = L"1";
    QVERIFY(!IsEmptyOrgNode(numbered));
}

QTEST_GUILESS_MAIN(TestProjectMgr)
#include "test_projectmgr.moc"
