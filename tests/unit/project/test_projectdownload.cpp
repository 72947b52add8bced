// SPDX-License-Identifier: MIT
#include "project/projectmgr.h"

#include "concurrency/task.h"
#include "fakes/logbook.h"
#include "fakes/startedhome.h"
#include "project/localprojectinfomgr.h"

#include <memory>

#include <QTest>

using namespace TorvoEditor;
using Fakes::SmartDB;

namespace
{

ZRSmartFormat::SZRFTGuid Key(const QString& text)
{
    return ZRSmartFormat::GuidFromText(text.toStdWString());
}

bool IsListed(const QString& guid)
{
    return CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>()->ContainsProject(guid);
}

} // namespace

class TestProjectDownload : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void emptyGuidFailsWithoutALine();
    void withoutADatabaseItFailsWithoutALine();
    void sceneWithoutSubProjectsIsOneDownload();
    void sceneBringsItsSubProjectsInOrder();
    void sceneThatFailsIsLoggedAndNotListed();
    void failureAtTheThirdSubProjectLeavesTheRest();
    void serverErrorOnTheTypeTakesTheRoadOfAScene();
    void cancelledTypeQueryPassesThrough();
    void buildingBringsItsModels();
    void buildingMakesNoCallForItself();
    void buildingWithoutModelsSucceeds();
    void buildingWithTilesAloneDownloadsNothingAndIsListed();
    void modelsOfAnotherTypeArePassedOver();
    void failedListOfModelsIsLogged();
    void failedModelIsLoggedAndTheRestIsNotTried();
    void demonstrationProjectIsFetchedLikeAnyOther();

private:
    /// A project that only the server has.
    Fakes::StoredProject& addOnServer(const QString& guid, const QString& type);

    std::unique_ptr<Fakes::Surroundings> m_around;
    std::unique_ptr<Fakes::LogBook> m_log;
    CProjectMgr* m_projects = nullptr;
};

void TestProjectDownload::init()
{
    m_around = std::make_unique<Fakes::Surroundings>();
    m_log = std::make_unique<Fakes::LogBook>();
    QVERIFY(CHomeApp::instance().Init(Fakes::TestSession()));
    m_projects = CHomeApp::instance().GetMgr<CProjectMgr>();
    m_log->take();
    Fakes::ForgetCalls();
}

void TestProjectDownload::cleanup()
{
    m_around.reset();
    m_log.reset();
}

Fakes::StoredProject& TestProjectDownload::addOnServer(const QString& guid, const QString& type)
{
    SmartDB::instance().net.setReply("GetProjType", guid, {type, {}, false, {}});
    return SmartDB::instance().addOnServer(guid, guid, type);
}

void TestProjectDownload::emptyGuidFailsWithoutALine()
{
    QVERIFY(!m_projects->DownLoadProj({}));
    QCOMPARE(m_log->take(), QStringList());
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestProjectDownload::withoutADatabaseItFailsWithoutALine()
{
    CProjectMgr projects;
    QVERIFY(!projects.DownLoadProj("a"));
    QCOMPARE(m_log->take(), QStringList());
}

void TestProjectDownload::sceneWithoutSubProjectsIsOneDownload()
{
    addOnServer("s", "CIM");
    QVERIFY(m_projects->DownLoadProj("s"));
    QCOMPARE(Fakes::Calls(),
             QStringList({"GetProjType(s)", "DownLoadProj(s)", "GetSubProj(s)", "GetProjectRecord(s)"}));
    QCOMPARE(m_log->take(),
             QStringList({"debug: start downLoad proj  \"s\"", "debug: downLoad proj success  \"s\""}));
    QVERIFY(IsListed("s"));
}

void TestProjectDownload::sceneBringsItsSubProjectsInOrder()
{
    addOnServer("s", "CIM").subProjects = {Key("b"), Key("a")};
    addOnServer("a", "BIM");
    addOnServer("b", "BIM");
    QVERIFY(m_projects->DownLoadProj("s"));
    QCOMPARE(Fakes::CallsOf({"DownLoadProj"}),
             QStringList({"DownLoadProj(s)", "DownLoadProj(a)", "DownLoadProj(b)"}));
    QVERIFY(IsListed("s") && !IsListed("a") && !IsListed("b"));
}

void TestProjectDownload::sceneThatFailsIsLoggedAndNotListed()
{
    addOnServer("s", "CIM").isDownloadable = false;
    QVERIFY(!m_projects->DownLoadProj("s"));
    QCOMPARE(m_log->take(),
             QStringList({"debug: start downLoad proj  \"s\"", "debug: downLoad proj falied  \"s\""}));
    QVERIFY(!IsListed("s"));
}

void TestProjectDownload::failureAtTheThirdSubProjectLeavesTheRest()
{
    addOnServer("s", "CIM").subProjects = {Key("1"), Key("2"), Key("3"), Key("4"), Key("5")};
    for (const char* sub : {"1", "2", "3", "4", "5"})
        addOnServer(sub, "BIM");
    SmartDB::instance().find("3")->isDownloadable = false;
    QVERIFY(!m_projects->DownLoadProj("s"));
    QCOMPARE(Fakes::CallsOf({"DownLoadProj"}),
             QStringList({"DownLoadProj(s)", "DownLoadProj(1)", "DownLoadProj(2)", "DownLoadProj(3)"}));
    QCOMPARE(m_log->take().constLast(),
             QString("debug: downLoad sub proj falied, main guid  \"s\"  sub guid \"3\""));
    QVERIFY(SmartDB::instance().find("2")->isLocal);
    QVERIFY(!IsListed("s"));
}

void TestProjectDownload::serverErrorOnTheTypeTakesTheRoadOfAScene()
{
    addOnServer("a", "BIM");
    SmartDB::instance().net.setReply("GetProjType", "a", {{}, "no server", false, {}});
    QVERIFY(m_projects->DownLoadProj("a"));
    QCOMPARE(Fakes::CallsOf({"DownLoadProj", "GetAllAssignProj"}), QStringList("DownLoadProj(a)"));
}

void TestProjectDownload::cancelledTypeQueryPassesThrough()
{
    SmartDB::instance().net.setReply("GetProjType", "a", {{}, {}, true, {}});
    QVERIFY_EXCEPTION_THROWN(static_cast<void>(m_projects->DownLoadProj("a")), Concurrency::task_canceled);
}

void TestProjectDownload::buildingBringsItsModels()
{
    addOnServer("b", "BIM").assigned = {{Key("m2"), L"MODEL"}, {Key("m1"), L"MODEL"}};
    addOnServer("m1", "MODEL");
    addOnServer("m2", "MODEL");
    QVERIFY(m_projects->DownLoadProj("b"));
    QCOMPARE(Fakes::Calls(), QStringList({"GetProjType(b)", "GetAllAssignProj(b)", "DownLoadProj(m1)",
                                          "DownLoadProj(m2)", "GetProjectRecord(b)"}));
    QCOMPARE(m_log->take(),
             QStringList({"debug: start downLoad proj  \"b\"", "debug: start download bimproj:  \"b\"",
                          "debug: download bimproj  success :  \"b\""}));
    QVERIFY(IsListed("b") && !IsListed("m1"));
}

void TestProjectDownload::buildingMakesNoCallForItself()
{
    addOnServer("b", "BIM");
    QVERIFY(m_projects->DownLoadProj("b"));
    QCOMPARE(Fakes::CallsOf({"DownLoadProj"}), QStringList());
}

void TestProjectDownload::buildingWithoutModelsSucceeds()
{
    addOnServer("b", "BIM");
    QVERIFY(m_projects->DownLoadProj("b"));
    QVERIFY(IsListed("b"));
}

void TestProjectDownload::buildingWithTilesAloneDownloadsNothingAndIsListed()
{
    addOnServer("b", "BIM").assigned = {{Key("t1"), L"3DTILES"}};
    QVERIFY(m_projects->DownLoadProj("b"));
    // The type's own name is looked up, as it always was.
    QCOMPARE(Fakes::Calls(), QStringList({"GetProjType(b)", "GetAllAssignProj(b)", "OpenProject(3DTILES,)",
                                          "OpenProject(3DTILES,data)", "GetProjectRecord(b)"}));
    QVERIFY(IsListed("b"));
}

void TestProjectDownload::modelsOfAnotherTypeArePassedOver()
{
    addOnServer("b", "BIM").assigned = {{Key("x"), L"POINTS"}};
    QVERIFY(m_projects->DownLoadProj("b"));
    QCOMPARE(Fakes::Calls(), QStringList({"GetProjType(b)", "GetAllAssignProj(b)", "GetProjectRecord(b)"}));
}

void TestProjectDownload::failedListOfModelsIsLogged()
{
    addOnServer("b", "BIM").knowsAssigned = false;
    QVERIFY(!m_projects->DownLoadProj("b"));
    QCOMPARE(m_log->take().constLast(), QString("debug: DownLoadBimProj GetAllAssignProj falied  \"b\""));
    QVERIFY(!IsListed("b"));
}

void TestProjectDownload::failedModelIsLoggedAndTheRestIsNotTried()
{
    addOnServer("b", "BIM").assigned = {{Key("m1"), L"MODEL"}, {Key("m2"), L"MODEL"}};
    addOnServer("m1", "MODEL").isDownloadable = false;
    addOnServer("m2", "MODEL");
    QVERIFY(!m_projects->DownLoadProj("b"));
    QCOMPARE(Fakes::CallsOf({"DownLoadProj"}), QStringList("DownLoadProj(m1)"));
    QCOMPARE(m_log->take().constLast(), QString("debug: downLoad kyv proj falied  \"m1\""));
    QVERIFY(!IsListed("b"));
}

void TestProjectDownload::demonstrationProjectIsFetchedLikeAnyOther()
{
    m_around->host.projects.addServerProject("demo", "D", 1);
    m_around->host.projects.serverProjects.back().isDemo = true;
    addOnServer("demo", "BIM");
    QVERIFY(m_projects->RefreshServerList());
    QVERIFY(m_projects->DownLoadProj("demo"));
    QVERIFY(IsListed("demo"));
}

QTEST_GUILESS_MAIN(TestProjectDownload)
#include "test_projectdownload.moc"
