// SPDX-License-Identifier: MIT
#include "project/projectinforecord.h"
#include "startedprojects.h"

#include <memory>

#include <QTest>

using namespace TorvoEditor;
using Fakes::SmartDB;

class TestProjectAttributes : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_started.reset(); }

    void regionOfASceneIsReadBack();
    void regionWithoutAKeyEmptiesItsField();
    void regionThatIsNoJsonLeavesTheRecord_data();
    void regionThatIsNoJsonLeavesTheRecord();
    void regionOfABuildingIsNeitherReadNorWritten();
    void regionOfNoProjectIsNeitherReadNorWritten();
    void departmentIsWrittenAndReadBack();
    void departmentThatIsNotGivenIsAnEmptyText();
    void otherAttributesAreNotWritten();
    void departmentIsNotWrittenWithoutAnOrganisation();
    void departmentOfNoProjectIsNotWritten();
    void departmentIsReadAsAnEmptyApplicationWithoutAnOrganisation();

private:
    std::unique_ptr<StartedProjects> m_started;
};

void TestProjectAttributes::init()
{
    m_started = std::make_unique<StartedProjects>();
    QVERIFY(m_started->start());
}

void TestProjectAttributes::regionOfASceneIsReadBack()
{
    auto& project = *StartedProjects::addOpen("s", "CIM").project;
    SProjectInfoRecord written;
    written.provinceId = "31";
    written.provinceName = QString::fromUtf8("上海市");
    written.cityId = "3101";
    written.cityName = QString::fromUtf8("市辖区");
    written.regionId = "310101";
    written.regionName = QString::fromUtf8("黄浦区 \"外滩\"");
    StartedProjects::mgr().WriteBelongsRegion(&project, written);
    SProjectInfoRecord read;
    QVERIFY(StartedProjects::mgr().ReadBelongsRegion(&project, read));
    QCOMPARE(QStringList({read.provinceId, read.provinceName, read.cityId, read.cityName, read.regionId,
                          read.regionName}),
             QStringList({written.provinceId, written.provinceName, written.cityId, written.cityName,
                          written.regionId, written.regionName}));
}

void TestProjectAttributes::regionWithoutAKeyEmptiesItsField()
{
    auto& project = *StartedProjects::addOpen("s", "CIM").project;
    project.SetAttr(L"Pa_BelongsRegion", LR"({"provinceId": "31", "cityId": 3101})");
    SProjectInfoRecord record;
    record.cityId = "before";
    record.regionName = "before";
    QVERIFY(StartedProjects::mgr().ReadBelongsRegion(&project, record));
    QCOMPARE(record.provinceId, QString("31"));
    QVERIFY(record.cityId.isEmpty() && record.regionName.isEmpty());
}

void TestProjectAttributes::regionThatIsNoJsonLeavesTheRecord_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << "";
    QTest::newRow("text") << "31";
    QTest::newRow("cut off") << R"({"provinceId": "31")";
}

void TestProjectAttributes::regionThatIsNoJsonLeavesTheRecord()
{
    QFETCH(QString, text);
    auto& project = *StartedProjects::addOpen("s", "CIM").project;
    project.SetAttr(L"Pa_BelongsRegion", text.toStdWString());
    SProjectInfoRecord record;
    record.provinceId = "before";
    QVERIFY(!StartedProjects::mgr().ReadBelongsRegion(&project, record));
    QCOMPARE(record.provinceId, QString("before"));
}

void TestProjectAttributes::regionOfABuildingIsNeitherReadNorWritten()
{
    auto& project = *StartedProjects::addOpen("b", "BIM").project;
    project.SetAttr(L"Pa_BelongsRegion", LR"({"provinceId": "31"})");
    Fakes::ForgetCalls();
    SProjectInfoRecord record;
    QVERIFY(!StartedProjects::mgr().ReadBelongsRegion(&project, record));
    QVERIFY(record.provinceId.isEmpty());
    StartedProjects::mgr().WriteBelongsRegion(&project, record);
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestProjectAttributes::regionOfNoProjectIsNeitherReadNorWritten()
{
    SProjectInfoRecord record;
    StartedProjects::mgr().WriteBelongsRegion(nullptr, record);
    QVERIFY(!StartedProjects::mgr().ReadBelongsRegion(nullptr, record));
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestProjectAttributes::departmentIsWrittenAndReadBack()
{
    m_started->giveAnOrganisation();
    auto& project = *StartedProjects::addOpen("b", "BIM").project;
    const QMap<QString, QString> written{{"deptId", "d1"}, {"deptName", QString::fromUtf8("设计所")}};
    StartedProjects::mgr().WriteExtendedAttr(&project, written);
    QVERIFY(project.GetAttr(L"Pa_ExtendedAttr") == LR"({"deptId":"d1","deptName":"设计所"})");
    QMap<QString, QString> read;
    StartedProjects::mgr().GetProjExtAttrs(&project, read);
    QCOMPARE(read, written);
}

void TestProjectAttributes::departmentThatIsNotGivenIsAnEmptyText()
{
    m_started->giveAnOrganisation();
    auto& project = *StartedProjects::addOpen("b", "BIM").project;
    StartedProjects::mgr().WriteExtendedAttr(&project, {{"deptId", "d1"}});
    QVERIFY(project.GetAttr(L"Pa_ExtendedAttr") == LR"({"deptId":"d1","deptName":""})");
}

void TestProjectAttributes::otherAttributesAreNotWritten()
{
    m_started->giveAnOrganisation();
    auto& project = *StartedProjects::addOpen("b", "BIM").project;
    StartedProjects::mgr().WriteExtendedAttr(&project, {{"appID", "7"}, {"appName", "n"}});
    QVERIFY(project.GetAttr(L"Pa_ExtendedAttr") == LR"({"deptId":"","deptName":""})");
}

void TestProjectAttributes::departmentIsNotWrittenWithoutAnOrganisation()
{
    auto& project = *StartedProjects::addOpen("b", "BIM").project;
    StartedProjects::mgr().WriteExtendedAttr(&project, {{"deptId", "d1"}, {"deptName", "n"}});
    QCOMPARE(Fakes::Calls(), QStringList("GetOrgTree()"));
}

void TestProjectAttributes::departmentOfNoProjectIsNotWritten()
{
    StartedProjects::mgr().WriteExtendedAttr(nullptr, {{"deptId", "d1"}});
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestProjectAttributes::departmentIsReadAsAnEmptyApplicationWithoutAnOrganisation()
{
    auto& project = *StartedProjects::addOpen("b", "BIM").project;
    m_started->giveAnOrganisation();
    StartedProjects::mgr().WriteExtendedAttr(&project, {{"deptId", "d1"}, {"deptName", "n"}});
    m_started->around.host.projects.organisation.reset();
    QMap<QString, QString> read;
    StartedProjects::mgr().GetProjExtAttrs(&project, read);
    QCOMPARE(read, (QMap<QString, QString>{{"appID", ""}, {"appName", ""}}));
}

QTEST_GUILESS_MAIN(TestProjectAttributes)
#include "test_projectattributes.moc"
