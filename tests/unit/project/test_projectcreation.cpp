// SPDX-License-Identifier: MIT
#include "fakes/fakeuniqueid.h"
#include "project/projectinforecord.h"
#include "startedprojects.h"

#include <memory>

#include <QTest>

using namespace TorvoEditor;
using Fakes::SmartDB;

namespace
{

const QString newGuid = QStringLiteral("0a0b0c0d-0e0f-0102-1112-131415161718");

SProjectInfoRecord SceneRecord()
{
    SProjectInfoRecord record;
    record.name = QString::fromUtf8("新区");
    record.type = "CIM";
    record.longitude = "121.5";
    record.latitude = "31.25";
    record.templateContent = "{}";
    record.provinceId = "31";
    record.provinceName = QString::fromUtf8("上海市");
    record.cityId = "3101";
    record.cityName = QString::fromUtf8("市辖区");
    record.regionId = "310101";
    record.regionName = QString::fromUtf8("黄浦区");
    record.iotCode = "iot-1";
    record.earthConfig = "earth";
    record.extAttrs = {{"deptId", "d1"}, {"deptName", "n"}};
    return record;
}

} // namespace

class TestProjectCreation : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newKeyIsTheSystemsInUpperCase();
    void withoutANumberOfTheSystemTheKeyIsOfTheMoment();
    void creationTakesItsStepsInOrder();
    void projectStandsUnderTheKeyInLowerCase();
    void projectOfTheMomentStandsUnderItsText();
    void positionIsReadFromTheTexts_data();
    void positionIsReadFromTheTexts();
    void hostLearnsGuidAndName();
    void buildingHasNoRegion();
    void accountWithoutAnOrganisationWritesNoDepartment();
    void projectThatIsNotMadeIsNull();
    void withoutADatabaseThereIsNoProject();
    void newProjectIsNotListedYet();
    void commitSavesEverything_data();
    void commitSavesEverything();
    void commitWithoutADatabaseFails();

private:
    std::unique_ptr<StartedProjects> m_started;
};

void TestProjectCreation::init()
{
    m_started = std::make_unique<StartedProjects>();
    Fakes::Ids().next =
        Native::UniqueId{0x0A0B0C0D, 0x0E0F, 0x0102, {0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18}};
}

void TestProjectCreation::cleanup()
{
    Fakes::Ids() = {};
    m_started.reset();
}

void TestProjectCreation::newKeyIsTheSystemsInUpperCase()
{
    QCOMPARE(QString::fromStdWString(CProjectMgr::NewGuid()), newGuid.toUpper());
}

void TestProjectCreation::withoutANumberOfTheSystemTheKeyIsOfTheMoment()
{
    Fakes::Ids().next.reset();
    Fakes::Ids().tickCount = 123456;
    QCOMPARE(QString::fromStdWString(CProjectMgr::NewGuid()),
             QString("017ADC2B-FE16-4BD7-B616-2CCDA0F54174_123456"));
}

void TestProjectCreation::creationTakesItsStepsInOrder()
{
    m_started->giveAnOrganisation();
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().CreateProject(SceneRecord()) != nullptr);
    const QString region = QString::fromUtf8(
        R"({"cityId":"3101","cityName":"市辖区","provinceId":"31","provinceName":"上海市","regionId":"310101","regionName":"黄浦区"})");
    QStringList expected = {QString::fromUtf8("CreateProj(%1,新区,CIM)"),
                            "SetAttr(%1,Pa_BelongsRegion," + region + ")",
                            "SetType(%1,CIM)",
                            "SetTemplate(%1,{})",
                            "SetIotCode(%1,iot-1)",
                            "SetAttr(%1,basemap,earth)",
                            "GetOrgTree()",
                            R"(SetAttr(%1,Pa_ExtendedAttr,{"deptId":"d1","deptName":"n"}))",
                            "SaveAll()",
                            "AddProjectRecord(%1)"};
    QCOMPARE(Fakes::Calls(), expected.replaceInStrings("%1", newGuid));
}

void TestProjectCreation::projectStandsUnderTheKeyInLowerCase()
{
    QVERIFY(m_started->start());
    const auto* project = StartedProjects::mgr().CreateProject(SceneRecord());
    QVERIFY(project != nullptr);
    QVERIFY(ZRSmartFormat::GuidToText(project->GetGuid()) == newGuid.toStdWString());
    QVERIFY(project->GetGuid().alias.empty());
    QCOMPARE(StartedProjects::mgr().GetProject(newGuid), project);
}

void TestProjectCreation::projectOfTheMomentStandsUnderItsText()
{
    Fakes::Ids().next.reset();
    Fakes::Ids().tickCount = 7;
    QVERIFY(m_started->start());
    const auto* project = StartedProjects::mgr().CreateProject(SceneRecord());
    QVERIFY(project != nullptr);
    QVERIFY(project->GetGuid().alias == L"017adc2b-fe16-4bd7-b616-2ccda0f54174_7");
}

void TestProjectCreation::positionIsReadFromTheTexts_data()
{
    QTest::addColumn<QString>("longitude");
    QTest::addColumn<QString>("latitude");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::newRow("numbers") << "121.5"
                             << "-31.25" << 121.5 << -31.25;
    QTest::newRow("no number") << "east"
                               << "31" << 0.0 << 31.0;
    QTest::newRow("nothing") << ""
                             << "" << 0.0 << 0.0;
}

void TestProjectCreation::positionIsReadFromTheTexts()
{
    QFETCH(QString, longitude);
    QFETCH(QString, latitude);
    QVERIFY(m_started->start());
    auto record = SceneRecord();
    record.longitude = longitude;
    record.latitude = latitude;
    const auto position = StartedProjects::mgr().CreateProject(record)->GetPosition();
    QTEST(position.GetX(), "x");
    QTEST(position.GetY(), "y");
    QCOMPARE(position.GetZ(), 0.0);
}

void TestProjectCreation::hostLearnsGuidAndName()
{
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().CreateProject(SceneRecord()) != nullptr);
    const auto records = m_started->around.host.projects.records();
    QCOMPARE(records.size(), std::size_t(1));
    const auto& record = records.at(newGuid.toStdWString());
    QVERIFY(record.guid == newGuid.toStdWString());
    QVERIFY(record.name == L"新区");
    QVERIFY(record.customMap.empty());
}

void TestProjectCreation::buildingHasNoRegion()
{
    QVERIFY(m_started->start());
    auto record = SceneRecord();
    record.type = "BIM";
    auto* project = StartedProjects::mgr().CreateProject(record);
    QVERIFY(project != nullptr);
    QVERIFY(project->GetAttr(L"Pa_BelongsRegion").empty());
    QVERIFY(!StartedProjects::mgr().ReadBelongsRegion(project, record));
}

void TestProjectCreation::accountWithoutAnOrganisationWritesNoDepartment()
{
    QVERIFY(m_started->start());
    const auto* project = StartedProjects::mgr().CreateProject(SceneRecord());
    QVERIFY(project != nullptr);
    QVERIFY(project->GetAttr(L"Pa_ExtendedAttr").empty());
}

void TestProjectCreation::projectThatIsNotMadeIsNull()
{
    SmartDB::instance().canCreate = false;
    QVERIFY(m_started->start());
    QCOMPARE(StartedProjects::mgr().CreateProject(SceneRecord()), nullptr);
    QCOMPARE(Fakes::CallsOf({"SaveAll", "AddProjectRecord"}), QStringList());
    QCOMPARE(m_started->log.take(), QStringList());
}

void TestProjectCreation::withoutADatabaseThereIsNoProject()
{
    CProjectMgr projects;
    QCOMPARE(projects.CreateProject(SceneRecord()), nullptr);
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestProjectCreation::newProjectIsNotListedYet()
{
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().CreateProject(SceneRecord()) != nullptr);
    QVERIFY(!CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>()->ContainsProject(newGuid));
}

void TestProjectCreation::commitSavesEverything_data()
{
    QTest::addColumn<bool>("canSave");
    QTest::newRow("saved") << true;
    QTest::newRow("not saved") << false;
}

void TestProjectCreation::commitSavesEverything()
{
    QFETCH(bool, canSave);
    SmartDB::instance().canSave = canSave;
    QVERIFY(m_started->start());
    QCOMPARE(StartedProjects::mgr().CommitProject(), canSave);
    QCOMPARE(Fakes::Calls(), QStringList("SaveAll()"));
}

void TestProjectCreation::commitWithoutADatabaseFails()
{
    CProjectMgr projects;
    QVERIFY(!projects.CommitProject());
}

QTEST_GUILESS_MAIN(TestProjectCreation)
#include "test_projectcreation.moc"
