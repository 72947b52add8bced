// SPDX-License-Identifier: MIT
#include "startedprojects.h"

#include <memory>

#include <QTest>

using namespace TorvoEditor;
using Fakes::SmartDB;

class TestProjectUpgrade : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_started = std::make_unique<StartedProjects>(); }
    void cleanup() { m_started.reset(); }

    void oldProjectIsUpgraded();
    void newerVersionOfTheServerComesFirst();
    void currentProjectIsAskedAboutOnly();
    void currentProjectOfAnOlderVersionIsUpdatedOnly();
    void unknownStateIsAFailure();
    void failedUpdateIsAFailure();
    void failedUpgradeIsAFailure();
    void subProjectsFollowInTheOrderOfTheirKeys();
    void subProjectUnderATrueGuidIsFound();
    void failedProjectLeavesItsSubProjects();
    void failedSubProjectLeavesTheRest();
    void withoutAnUpgraderNothingIsUpgraded();
    void withoutADatabaseItFails();

private:
    static Fakes::StoredProject& addOld(const QString& guid, int state = 1)
    {
        auto& stored = StartedProjects::addOpen(guid, "CIM", state);
        stored.needsUpgrade = true;
        return stored;
    }

    std::unique_ptr<StartedProjects> m_started;
};

void TestProjectUpgrade::oldProjectIsUpgraded()
{
    addOld("a");
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UpgradeProject("a"));
    QCOMPARE(Fakes::Calls(),
             QStringList({"GetProjStatus(a)", "NeedUpgrade(a)", "Upgrade(a)", "GetSubProj(a)"}));
    QVERIFY(!SmartDB::instance().find("a")->needsUpgrade);
}

void TestProjectUpgrade::newerVersionOfTheServerComesFirst()
{
    addOld("a", 3);
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UpgradeProject("a"));
    QCOMPARE(Fakes::Calls(), QStringList({"GetProjStatus(a)", "UpdateProj(a)", "NeedUpgrade(a)", "Upgrade(a)",
                                          "GetSubProj(a)"}));
}

void TestProjectUpgrade::currentProjectIsAskedAboutOnly()
{
    StartedProjects::addOpen("a", "CIM");
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UpgradeProject("a"));
    QCOMPARE(Fakes::Calls(), QStringList({"GetProjStatus(a)", "NeedUpgrade(a)", "GetSubProj(a)"}));
}

void TestProjectUpgrade::currentProjectOfAnOlderVersionIsUpdatedOnly()
{
    StartedProjects::addOpen("a", "CIM", 3);
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UpgradeProject("a"));
    QCOMPARE(Fakes::CallsOf({"UpdateProj", "Upgrade"}), QStringList("UpdateProj(a)"));
}

void TestProjectUpgrade::unknownStateIsAFailure()
{
    addOld("a", -1);
    SmartDB::instance().lastError = "reason";
    QVERIFY(m_started->start());
    QVERIFY(!StartedProjects::mgr().UpgradeProject("a"));
    QCOMPARE(Fakes::Calls(), QStringList("GetProjStatus(a)"));
    QCOMPARE(m_started->log.take(), QStringList(R"(warning: GetProjStatus failed "reason")"));
}

void TestProjectUpgrade::failedUpdateIsAFailure()
{
    addOld("a", 3).isDownloadable = false;
    SmartDB::instance().lastError = "reason";
    QVERIFY(m_started->start());
    QVERIFY(!StartedProjects::mgr().UpgradeProject("a"));
    QCOMPARE(Fakes::Calls(), QStringList({"GetProjStatus(a)", "UpdateProj(a)"}));
    QCOMPARE(m_started->log.take(), QStringList(R"(warning: UpdateProj failed "reason")"));
}

void TestProjectUpgrade::failedUpgradeIsAFailure()
{
    addOld("a").isUpgradable = false;
    QVERIFY(m_started->start());
    QVERIFY(!StartedProjects::mgr().UpgradeProject("a"));
    QCOMPARE(Fakes::CallsOf({"GetSubProj"}), QStringList());
    QCOMPARE(m_started->log.take(), QStringList());
}

void TestProjectUpgrade::subProjectsFollowInTheOrderOfTheirKeys()
{
    addOld("a").subProjects = {StartedProjects::key("z"), StartedProjects::key("y")};
    addOld("y");
    addOld("z", 3);
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UpgradeProject("a"));
    QCOMPARE(Fakes::CallsOf({"Upgrade", "UpdateProj"}),
             QStringList({"Upgrade(a)", "Upgrade(y)", "UpdateProj(z)", "Upgrade(z)"}));
}

void TestProjectUpgrade::subProjectUnderATrueGuidIsFound()
{
    const QString guid = "0a0b0c0d-0102-0304-0506-0708090a0b0c";
    addOld("a").subProjects = {StartedProjects::key(guid)};
    addOld(guid);
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UpgradeProject("a"));
    QCOMPARE(Fakes::CallsOf({"Upgrade"}), QStringList({"Upgrade(a)", "Upgrade(" + guid + ")"}));
}

void TestProjectUpgrade::failedProjectLeavesItsSubProjects()
{
    auto& old = addOld("a");
    old.isUpgradable = false;
    old.subProjects = {StartedProjects::key("y")};
    addOld("y");
    QVERIFY(m_started->start());
    QVERIFY(!StartedProjects::mgr().UpgradeProject("a"));
    QVERIFY(SmartDB::instance().find("y")->needsUpgrade);
}

void TestProjectUpgrade::failedSubProjectLeavesTheRest()
{
    addOld("a").subProjects = {StartedProjects::key("x"), StartedProjects::key("y")};
    addOld("x").isUpgradable = false;
    addOld("y");
    QVERIFY(m_started->start());
    QVERIFY(!StartedProjects::mgr().UpgradeProject("a"));
    QCOMPARE(Fakes::CallsOf({"Upgrade"}), QStringList({"Upgrade(a)", "Upgrade(x)"}));
    QVERIFY(!SmartDB::instance().find("a")->needsUpgrade);
}

void TestProjectUpgrade::withoutAnUpgraderNothingIsUpgraded()
{
    addOld("a");
    QVERIFY(m_started->start());
    SmartDB::instance().hasUpgrader = false;
    QVERIFY(StartedProjects::mgr().UpgradeProject("a"));
    QCOMPARE(Fakes::CallsOf({"NeedUpgrade", "Upgrade"}), QStringList());
}

void TestProjectUpgrade::withoutADatabaseItFails()
{
    CProjectMgr projects;
    QVERIFY(!projects.UpgradeProject("a"));
    QCOMPARE(Fakes::Calls(), QStringList());
}

QTEST_GUILESS_MAIN(TestProjectUpgrade)
#include "test_projectupgrade.moc"
