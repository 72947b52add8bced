// SPDX-License-Identifier: MIT
#include "startedprojects.h"

#include <memory>

#include <QTest>

using namespace TorvoEditor;
using Fakes::SmartDB;

class TestProjectUpdate : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_started = std::make_unique<StartedProjects>(); }
    void cleanup() { m_started.reset(); }

    void buildingIsOneUpdate();
    void buildingSkipsTheSubProjects();
    void sceneComesAfterItsSubProjects();
    void subProjectsAreUpdatedWhateverTheirState_data();
    void subProjectsAreUpdatedWhateverTheirState();
    void failedSubProjectEndsTheUpdate();
    void organisationBringsTheBimProjectsThatAreNewerOnTheServer();
    void bimProjectGoesByItsState_data();
    void bimProjectGoesByItsState();
    void bimProjectOfAnUnknownStateStays();
    void accountWithoutAnOrganisationSkipsTheBimProjects();
    void buildingBringsItsBimProjectsToo();
    void failedBimProjectEndsTheUpdate();
    void failedProjectIsAFailure();
    void withoutADatabaseItFails();

private:
    static QStringList updates() { return Fakes::CallsOf({"UpdateProj"}); }

    std::unique_ptr<StartedProjects> m_started;
};

void TestProjectUpdate::buildingIsOneUpdate()
{
    StartedProjects::addOpen("b", "BIM", 3);
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UpdateProject("b"));
    QCOMPARE(Fakes::Calls(), QStringList({"OpenProject(b,)", "UpdateProj(b)"}));
    QCOMPARE(m_started->log.take(), QStringList());
}

void TestProjectUpdate::buildingSkipsTheSubProjects()
{
    StartedProjects::addOpen("b", "BIM", 3);
    StartedProjects::addOpen("linked", "BIM", 3);
    StartedProjects::link("b", "linked");
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UpdateProject("b"));
    QCOMPARE(updates(), QStringList("UpdateProj(b)"));
}

void TestProjectUpdate::sceneComesAfterItsSubProjects()
{
    StartedProjects::addOpen("s", "CIM", 3);
    for (const char* sub : {"y", "x"}) {
        StartedProjects::addOpen(sub, "BIM");
        StartedProjects::link("s", sub);
    }
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UpdateProject("s"));
    QCOMPARE(updates(), QStringList({"UpdateProj(y)", "UpdateProj(x)", "UpdateProj(s)"}));
}

void TestProjectUpdate::subProjectsAreUpdatedWhateverTheirState_data()
{
    QTest::addColumn<int>("state");
    for (int state = 0; state <= 5; ++state)
        QTest::addRow("%d", state) << state;
}

void TestProjectUpdate::subProjectsAreUpdatedWhateverTheirState()
{
    QFETCH(int, state);
    StartedProjects::addOpen("s", "CIM", 3);
    StartedProjects::addOpen("sub", "BIM", state);
    StartedProjects::link("s", "sub");
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UpdateProject("s"));
    QCOMPARE(updates(), QStringList({"UpdateProj(sub)", "UpdateProj(s)"}));
}

void TestProjectUpdate::failedSubProjectEndsTheUpdate()
{
    StartedProjects::addOpen("s", "CIM", 3);
    for (const char* sub : {"x", "y"}) {
        StartedProjects::addOpen(sub, "BIM");
        StartedProjects::link("s", sub);
    }
    SmartDB::instance().find("x")->isDownloadable = false;
    QVERIFY(m_started->start());
    QVERIFY(!StartedProjects::mgr().UpdateProject("s"));
    QCOMPARE(updates(), QStringList("UpdateProj(x)"));
    QCOMPARE(m_started->log.take(),
             QStringList(R"(debug: CProjectMgr::UpdateProject UploadProject subProj failed, projID: "x")"));
}

void TestProjectUpdate::organisationBringsTheBimProjectsThatAreNewerOnTheServer()
{
    m_started->giveAnOrganisation();
    StartedProjects::addOpen("s", "CIM", 3).bimProjects = {StartedProjects::key("new"),
                                                           StartedProjects::key("same")};
    StartedProjects::addOpen("sub", "BIM");
    StartedProjects::link("s", "sub");
    StartedProjects::addOpen("new", "BIM", 3);
    StartedProjects::addOpen("same", "BIM", 1);
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UpdateProject("s"));
    QCOMPARE(updates(), QStringList({"UpdateProj(sub)", "UpdateProj(new)", "UpdateProj(s)"}));
}

void TestProjectUpdate::bimProjectGoesByItsState_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<int>("updates");
    for (int state = 0; state <= 5; ++state)
        QTest::addRow("%d", state) << state << (state == 3 ? 2 : 1);
}

void TestProjectUpdate::bimProjectGoesByItsState()
{
    QFETCH(int, state);
    m_started->giveAnOrganisation();
    StartedProjects::addOpen("s", "CIM", 3).bimProjects = {StartedProjects::key("bim")};
    StartedProjects::addOpen("bim", "BIM", state);
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UpdateProject("s"));
    QTEST(int(updates().size()), "updates");
}

void TestProjectUpdate::bimProjectOfAnUnknownStateStays()
{
    m_started->giveAnOrganisation();
    StartedProjects::addOpen("s", "CIM", 3).bimProjects = {StartedProjects::key("bim")};
    StartedProjects::addOpen("bim", "BIM", 3);
    SmartDB::instance().net.setReply("GetStatusByProjId", "bim", {{}, "no server", false, {}});
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UpdateProject("s"));
    QCOMPARE(updates(), QStringList("UpdateProj(s)"));
}

void TestProjectUpdate::accountWithoutAnOrganisationSkipsTheBimProjects()
{
    StartedProjects::addOpen("s", "CIM", 3).bimProjects = {StartedProjects::key("new")};
    StartedProjects::addOpen("new", "BIM", 3);
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UpdateProject("s"));
    QCOMPARE(updates(), QStringList("UpdateProj(s)"));
    QCOMPARE(Fakes::CallsOf({"GetBimProj"}), QStringList());
}

void TestProjectUpdate::buildingBringsItsBimProjectsToo()
{
    m_started->giveAnOrganisation();
    StartedProjects::addOpen("b", "BIM", 3).bimProjects = {StartedProjects::key("new")};
    StartedProjects::addOpen("new", "BIM", 3);
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UpdateProject("b"));
    QCOMPARE(updates(), QStringList({"UpdateProj(new)", "UpdateProj(b)"}));
}

void TestProjectUpdate::failedBimProjectEndsTheUpdate()
{
    m_started->giveAnOrganisation();
    StartedProjects::addOpen("s", "CIM", 3).bimProjects = {StartedProjects::key("new")};
    StartedProjects::addOpen("new", "BIM", 3).isDownloadable = false;
    QVERIFY(m_started->start());
    QVERIFY(!StartedProjects::mgr().UpdateProject("s"));
    QCOMPARE(updates(), QStringList("UpdateProj(new)"));
    QCOMPARE(m_started->log.take(),
             QStringList(R"(debug: CProjectMgr::UpdateProject UploadProject bimProj failed, projID: "new")"));
}

void TestProjectUpdate::failedProjectIsAFailure()
{
    StartedProjects::addOpen("b", "BIM", 3).isDownloadable = false;
    QVERIFY(m_started->start());
    QVERIFY(!StartedProjects::mgr().UpdateProject("b"));
    QCOMPARE(m_started->log.take(), QStringList());
}

void TestProjectUpdate::withoutADatabaseItFails()
{
    CProjectMgr projects;
    QVERIFY(!projects.UpdateProject("a"));
    QCOMPARE(Fakes::Calls(), QStringList());
}

QTEST_GUILESS_MAIN(TestProjectUpdate)
#include "test_projectupdate.moc"
