// SPDX-License-Identifier: MIT
#include "convert/floorinfomgr.h"

#include "core/filefunctions.h"
#include "fakes/calls.h"
#include "fakes/fakefloorinfo.h"
#include "fakes/floortexts.h"

#include <memory>

#include <QTest>

using namespace TorvoEditor;
using BIZCOMMON::FLOORINFO::TFloorRec;

class TestFloorInfoMgr : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void createReadsTheProjectsFloors();
    void secondCreateReadsNothing();
    void createAfterRemoveReadsAnew();
    void removeDropsTheFloorInfo();
    void removeOfAnUnknownProjectIsHarmless();
    void changesAreForwarded();
    void listsAreForwarded();
    void changesOfAnUnknownProjectDoNothing();
    void listsOfAnUnknownProjectAreEmpty();
    void projectsAreKeptApart();
    void initAndUnInitDoNothing();

private:
    std::unique_ptr<CFloorInfoMgr> m_mgr;
};

void TestFloorInfoMgr::init()
{
    m_mgr = std::make_unique<CFloorInfoMgr>();
    Fakes::ForgetFloors();
    Fakes::ForgetCalls();
}

void TestFloorInfoMgr::createReadsTheProjectsFloors()
{
    m_mgr->Create("bim");
    QCOMPARE(Fakes::Calls(),
             QStringList({"CFloorInfo(bim," + DataDir() + ")", QStringLiteral("LoadFloors(bim,[bim])")}));
}

void TestFloorInfoMgr::secondCreateReadsNothing()
{
    m_mgr->Create("bim");
    Fakes::ForgetCalls();
    m_mgr->Create("bim");
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestFloorInfoMgr::createAfterRemoveReadsAnew()
{
    m_mgr->Create("bim");
    m_mgr->Remove("bim");
    Fakes::ForgetCalls();
    m_mgr->Create("bim");
    QCOMPARE(Fakes::CallsOf({"LoadFloors"}), QStringList("LoadFloors(bim,[bim])"));
}

void TestFloorInfoMgr::removeDropsTheFloorInfo()
{
    Fakes::FloorsOf("bim").stored = {{"1F", {}}};
    m_mgr->Create("bim");
    m_mgr->Remove("bim");
    QCOMPARE(Fakes::CallsOf({"~CFloorInfo"}), QStringList("~CFloorInfo(bim)"));
    QVERIFY(m_mgr->GetFloors("bim").isEmpty());
}

void TestFloorInfoMgr::removeOfAnUnknownProjectIsHarmless()
{
    m_mgr->Remove("bim");
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestFloorInfoMgr::changesAreForwarded()
{
    m_mgr->Create("bim");
    Fakes::ForgetCalls();
    m_mgr->AddKyvProj("bim", "a");
    m_mgr->UpdateKyvProj("bim", "a", "b");
    m_mgr->RemoveKyvProj("bim", "b");
    m_mgr->SaveFloors("bim", {{"1F", {{"c", {"x", "y"}}}}, {"2F", {}}});
    QCOMPARE(Fakes::Calls(), QStringList({"AddKyvProj(bim,a)", "UpdateKyvProj(bim,a,b)",
                                          "RemoveKyvProj(bim,b)", "SaveFloors(bim,1F c:x,y,2F)"}));
}

void TestFloorInfoMgr::listsAreForwarded()
{
    Fakes::FloorsOf("bim") = {{{"stored", {}}}, {{"default", {}}}, {{"reset", {}}}, {{"a", {"x"}}}};
    m_mgr->Create("bim");
    QCOMPARE(Fakes::TextsOf(m_mgr->GetFloors("bim")), QStringList("stored"));
    QCOMPARE(Fakes::TextsOf(m_mgr->GetDefaultFloors("bim")), QStringList("default"));
    QCOMPARE(Fakes::TextsOf(m_mgr->GetResetFloors("bim")), QStringList("reset"));
    QCOMPARE(m_mgr->GetProjFloors("bim"), (QMap<QString, QStringList>{{"a", {"x"}}}));
}

void TestFloorInfoMgr::changesOfAnUnknownProjectDoNothing()
{
    m_mgr->AddKyvProj("bim", "a");
    m_mgr->UpdateKyvProj("bim", "a", "b");
    m_mgr->RemoveKyvProj("bim", "b");
    m_mgr->SaveFloors("bim", {{"1F", {}}});
    QCOMPARE(Fakes::Calls(), QStringList());
    QVERIFY(Fakes::FloorsOf("bim").stored.isEmpty());
}

void TestFloorInfoMgr::listsOfAnUnknownProjectAreEmpty()
{
    Fakes::FloorsOf("bim") = {{{"stored", {}}}, {{"default", {}}}, {{"reset", {}}}, {{"a", {"x"}}}};
    QVERIFY(m_mgr->GetFloors("bim").isEmpty());
    QVERIFY(m_mgr->GetDefaultFloors("bim").isEmpty());
    QVERIFY(m_mgr->GetResetFloors("bim").isEmpty());
    QVERIFY(m_mgr->GetProjFloors("bim").isEmpty());
}

void TestFloorInfoMgr::projectsAreKeptApart()
{
    m_mgr->Create("bim");
    m_mgr->Create("other");
    m_mgr->SaveFloors("bim", {{"1F", {}}});
    QCOMPARE(Fakes::TextsOf(m_mgr->GetFloors("bim")), QStringList("1F"));
    QVERIFY(m_mgr->GetFloors("other").isEmpty());
    m_mgr->Remove("other");
    QCOMPARE(Fakes::TextsOf(m_mgr->GetFloors("bim")), QStringList("1F"));
}

void TestFloorInfoMgr::initAndUnInitDoNothing()
{
    m_mgr->Init();
    m_mgr->Create("bim");
    Fakes::ForgetCalls();
    m_mgr->UnInit();
    QCOMPARE(Fakes::Calls(), QStringList());
    QVERIFY(m_mgr->GetProjFloors("bim").isEmpty());
    QCOMPARE(Fakes::Calls(), QStringList("GetProjFloors(bim)"));
}

QTEST_GUILESS_MAIN(TestFloorInfoMgr)
#include "test_floorinfomgr.moc"
