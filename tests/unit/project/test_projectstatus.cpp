// SPDX-License-Identifier: MIT
#include "project/projectmgr.h"

#include "fakes/logbook.h"
#include "fakes/startedhome.h"

#include <memory>

#include <QTest>

using namespace TorvoEditor;
using Fakes::Reply;
using Fakes::SmartDB;

namespace
{

void AnswerStatus(const QString& guid, const Reply& reply)
{
    SmartDB::instance().net.setReply("GetStatusByProjId", guid, reply);
}

/// A project on this machine that the library gives this state to, and the server's word about it.
void AddProject(const QString& guid, const QString& word, int libraryState)
{
    SmartDB::instance().add(guid, "P", "CIM").state = libraryState;
    AnswerStatus(guid, {word, {}, false, {}});
}

TorvoSDK::SOrgNode Organisation()
{
    TorvoSDK::SOrgNode root;
    root.id = L"root";
    root.name = L"R";
    return root;
}

constexpr int untouched = 77;

} // namespace

class TestProjectStatus : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void wordOfTheServerDecidesOrLeavesItToTheLibrary_data();
    void wordOfTheServerDecidesOrLeavesItToTheLibrary();
    void failedQueryLeavesTheStateAndIsLogged();
    void cancelledQueryIsAFailureAndLogged();
    void libraryThatCannotTellLeavesTheState();
    void failureReadsAsOnlyHere();
    void everyStateHasItsPicture_data();
    void everyStateHasItsPicture();
    void failureShowsThePictureOfOnlyHere();
    void updatedBuildingOfASceneMakesItUpdated();
    void buildingOfAnotherStateDoesNotCount();
    void withoutAnOrganisationTheBuildingsAreNotLookedAt();
    void uploadFailedComesBeforeTheBuildings();
    void sceneThatIsNotHereHasNoBuildings();
    void serversViewFollowsItsWord_data();
    void serversViewFollowsItsWord();
    void unknownWordReadsAsNone();
    void failedQueryOfTheServersViewIsLoggedInTheSameWords();
    void cancelledQueryOfTheServersViewIsAFailure();
    void withoutADatabaseNothingIsAsked();
    void needUpgradeAsksTheUpgrader();
    void needUpgradeWithoutAnUpgraderIsFalse();

private:
    std::unique_ptr<Fakes::Surroundings> m_around;
    std::unique_ptr<Fakes::LogBook> m_log;
    std::unique_ptr<CProjectMgr> m_projects;
};

void TestProjectStatus::init()
{
    m_around = std::make_unique<Fakes::Surroundings>();
    m_around->host.projects.organisation = Organisation();
    m_log = std::make_unique<Fakes::LogBook>();
    m_projects = std::make_unique<CProjectMgr>();
    m_projects->Init();
    Fakes::ForgetCalls();
}

void TestProjectStatus::cleanup()
{
    m_projects.reset();
    m_log.reset();
    m_around.reset();
}

void TestProjectStatus::wordOfTheServerDecidesOrLeavesItToTheLibrary_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("libraryState");
    QTest::addColumn<int>("state");
    QTest::newRow("upload failed, whatever changed here") << "-1" << 2 << 5;
    QTest::newRow("not on the server, whatever the library knows") << "2" << 1 << 0;
    for (const char* word : {"0", "1", "3", "", "something else"}) {
        for (int state = 0; state <= 4; ++state)
            QTest::addRow("\"%s\" leaves state %d to the library", word, state) << word << state << state;
    }
}

void TestProjectStatus::wordOfTheServerDecidesOrLeavesItToTheLibrary()
{
    QFETCH(QString, word);
    QFETCH(int, libraryState);
    AddProject("a", word, libraryState);
    int state = untouched;
    QVERIFY(m_projects->GetProjStatus("a", state));
    QTEST(state, "state");
}

void TestProjectStatus::failedQueryLeavesTheStateAndIsLogged()
{
    SmartDB::instance().add("a", "A", "BIM").state = 1;
    AnswerStatus("a", {{}, "no server", false, {}});
    int state = untouched;
    QVERIFY(!m_projects->GetProjStatus("a", state));
    QCOMPARE(state, untouched);
    QCOMPARE(m_log->take(), QStringList("debug: CProjectMgr::GetProjStatus error: \"no server\""));
}

void TestProjectStatus::cancelledQueryIsAFailureAndLogged()
{
    SmartDB::instance().add("a", "A", "BIM").state = 1;
    AnswerStatus("a", {{}, {}, true, {}});
    int state = untouched;
    QVERIFY(!m_projects->GetProjStatus("a", state));
    QCOMPARE(state, untouched);
    const auto log = m_log->take();
    QCOMPARE(log.size(), 1);
    QVERIFY(log.front().startsWith("debug: CProjectMgr::GetProjStatus GetProjStatus error:  "));

    AnswerStatus("a", {{}, {}, false, "broken"});
    QVERIFY(!m_projects->GetProjStatus("a", state));
    QCOMPARE(m_log->take(), QStringList("debug: CProjectMgr::GetProjStatus GetProjStatus error:  broken"));
}

void TestProjectStatus::libraryThatCannotTellLeavesTheState()
{
    AddProject("a", "1", -1);
    int state = untouched;
    QVERIFY(!m_projects->GetProjStatus("a", state));
    QCOMPARE(state, untouched);
}

void TestProjectStatus::failureReadsAsOnlyHere()
{
    QCOMPARE(m_projects->GetProjStatus("unknown"), 0);
}

void TestProjectStatus::everyStateHasItsPicture_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("libraryState");
    QTest::addColumn<QString>("picture");
    QTest::newRow("only here") << "2" << 0 << "qrc:/images/state_ic_unmatched.png";
    QTest::newRow("the same") << "1" << 1 << "qrc:/images/state_ic_matched.png";
    QTest::newRow("changed here") << "1" << 2 << "qrc:/images/modify.png";
    QTest::newRow("changed there") << "1" << 3 << "qrc:/images/update.png";
    QTest::newRow("changed on both") << "1" << 4 << "qrc:/images/conflict.png";
    QTest::newRow("upload failed") << "-1" << 1 << "qrc:/images/fail.png";
}

void TestProjectStatus::everyStateHasItsPicture()
{
    QFETCH(QString, word);
    QFETCH(int, libraryState);
    AddProject("a", word, libraryState);
    QTEST(m_projects->GetProjStatusIcon("a"), "picture");
}

void TestProjectStatus::failureShowsThePictureOfOnlyHere()
{
    QCOMPARE(m_projects->GetProjStatusIcon("unknown"), QString("qrc:/images/state_ic_unmatched.png"));
}

void TestProjectStatus::updatedBuildingOfASceneMakesItUpdated()
{
    AddProject("scene", "1", 1);
    SmartDB::instance().find("scene")->bimProjects = {ZRSmartFormat::GuidFromText(L"house"),
                                                      ZRSmartFormat::GuidFromText(L"engine")};
    SmartDB::instance().add("house", "H", "BIM").state = 1;
    SmartDB::instance().add("engine", "E", "BIM").state = 3;
    QCOMPARE(m_projects->GetProjStatus("scene"), 3);
    // The library was not asked for the scene itself any more.
    QVERIFY(!Fakes::Calls().contains("GetProjStatus(scene)"));
}

void TestProjectStatus::buildingOfAnotherStateDoesNotCount()
{
    AddProject("scene", "1", 1);
    SmartDB::instance().find("scene")->bimProjects = {ZRSmartFormat::GuidFromText(L"house"),
                                                      ZRSmartFormat::GuidFromText(L"gone")};
    SmartDB::instance().add("house", "H", "BIM").state = 4;
    QCOMPARE(m_projects->GetProjStatus("scene"), 1);
}

void TestProjectStatus::withoutAnOrganisationTheBuildingsAreNotLookedAt()
{
    m_around->host.projects.organisation.reset();
    m_projects = std::make_unique<CProjectMgr>();
    m_projects->Init();
    Fakes::ForgetCalls();
    AddProject("scene", "1", 1);
    SmartDB::instance().find("scene")->bimProjects = {ZRSmartFormat::GuidFromText(L"engine")};
    SmartDB::instance().add("engine", "E", "BIM").state = 3;
    QCOMPARE(m_projects->GetProjStatus("scene"), 1);
    QCOMPARE(Fakes::Calls(), QStringList({"GetStatusByProjId(scene)", "GetProjStatus(scene)"}));
}

void TestProjectStatus::uploadFailedComesBeforeTheBuildings()
{
    AddProject("scene", "-1", 1);
    QCOMPARE(m_projects->GetProjStatus("scene"), 5);
    QCOMPARE(Fakes::Calls(), QStringList("GetStatusByProjId(scene)"));
}

void TestProjectStatus::sceneThatIsNotHereHasNoBuildings()
{
    SmartDB::instance().addOnServer("scene", "S", "CIM").bimProjects = {
        ZRSmartFormat::GuidFromText(L"engine")};
    AnswerStatus("scene", {"1", {}, false, {}});
    QCOMPARE(m_projects->GetProjStatus("scene"), 0);
    QCOMPARE(Fakes::CallsOf({"GetBimProj"}), QStringList());
}

void TestProjectStatus::serversViewFollowsItsWord_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("state");
    QTest::newRow("there") << "1" << int(SS_Normal);
    QTest::newRow("upload failed") << "-1" << int(SS_UploadFailed);
    QTest::newRow("uploading") << "0" << int(SS_Uploading);
    QTest::newRow("not there") << "2" << int(SS_None);
    QTest::newRow("converting") << "3" << int(SS_Converting);
    QTest::newRow("another word leaves it") << "4" << untouched;
    QTest::newRow("no word leaves it") << "" << untouched;
}

void TestProjectStatus::serversViewFollowsItsWord()
{
    QFETCH(QString, word);
    AnswerStatus("a", {word, {}, false, {}});
    int state = untouched;
    QVERIFY(m_projects->GetServerProjStatus("a", state));
    QTEST(state, "state");
}

void TestProjectStatus::unknownWordReadsAsNone()
{
    AnswerStatus("a", {"9", {}, false, {}});
    QCOMPARE(m_projects->GetServerProjStatus("a"), int(SS_None));
    QCOMPARE(m_projects->GetServerProjStatus("unreachable"), int(SS_None));
}

void TestProjectStatus::failedQueryOfTheServersViewIsLoggedInTheSameWords()
{
    AnswerStatus("a", {{}, "no server", false, {}});
    int state = untouched;
    QVERIFY(!m_projects->GetServerProjStatus("a", state));
    QCOMPARE(state, untouched);
    QCOMPARE(m_log->take(), QStringList("debug: CProjectMgr::GetProjStatus error: \"no server\""));
}

void TestProjectStatus::cancelledQueryOfTheServersViewIsAFailure()
{
    AnswerStatus("a", {{}, {}, false, "broken"});
    int state = untouched;
    QVERIFY(!m_projects->GetServerProjStatus("a", state));
    QCOMPARE(state, untouched);
    QCOMPARE(m_log->take(), QStringList("debug: CProjectMgr::GetProjStatus GetProjStatus error:  broken"));
}

void TestProjectStatus::withoutADatabaseNothingIsAsked()
{
    const auto projects = std::make_unique<CProjectMgr>();
    int state = untouched;
    QVERIFY(!projects->GetProjStatus("a", state));
    QVERIFY(!projects->GetServerProjStatus("a", state));
    QVERIFY(!projects->NeedUpgrade("a"));
    QCOMPARE(state, untouched);
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestProjectStatus::needUpgradeAsksTheUpgrader()
{
    SmartDB::instance().add("old", "O", "BIM").needsUpgrade = true;
    SmartDB::instance().add("new", "N", "BIM");
    QVERIFY(m_projects->NeedUpgrade("old"));
    QVERIFY(!m_projects->NeedUpgrade("new"));
}

void TestProjectStatus::needUpgradeWithoutAnUpgraderIsFalse()
{
    SmartDB::instance().add("old", "O", "BIM").needsUpgrade = true;
    SmartDB::instance().hasUpgrader = false;
    QVERIFY(!m_projects->NeedUpgrade("old"));
}

QTEST_GUILESS_MAIN(TestProjectStatus)
#include "test_projectstatus.moc"
