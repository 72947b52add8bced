// SPDX-License-Identifier: MIT
#include "startedprojects.h"

#include <memory>
#include <stdexcept>

#include <QSignalSpy>
#include <QTest>

using namespace TorvoEditor;
using Fakes::SmartDB;

class TestProjectUpload : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_started = std::make_unique<StartedProjects>(); }
    void cleanup() { m_started.reset(); }

    void buildingIsOneUpload();
    void sceneWithoutSubProjectsIsOneUpload();
    void buildingNeverLooksForSubProjects();
    void subProjectsFollowTheSceneInTheOrderOfItsObjects();
    void subProjectGoesByItsState_data();
    void subProjectGoesByItsState();
    void subProjectOfAnUnknownStateGoesAsANewOne();
    void forceIsPassedOn_data();
    void forceIsPassedOn();
    void failedSceneSendsNoSubProject();
    void failedSubProjectEndsTheUpload();
    void projectThatIsNotOpenHasNoNameInTheLog();
    void withoutADatabaseTheEndIsToldAllTheSame();
    void endIsToldAfterAnExceptionToo();
    void nothingTellsTheBeginning();
    void objectsWithATextHaveNames();
    void repeatedObjectTakesTheLaterText();
    void namesOfAnUnknownProjectAreAFailure();
    void projectIsClosedAfterItsNamesAreRead();

private:
    static QStringList uploads() { return Fakes::CallsOf({"UploadProj"}); }

    std::unique_ptr<StartedProjects> m_started;
};

void TestProjectUpload::buildingIsOneUpload()
{
    StartedProjects::addOpen("b", "BIM", 2);
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UploadProject("b", false));
    QCOMPARE(Fakes::Calls(), QStringList({"OpenProject(b,)", "OpenProject(b,)", "UploadProj(b,plain)"}));
    QCOMPARE(m_started->log.take(),
             QStringList({R"(debug: start UploadProject proj, proj: "name of b"  guid: "b")",
                          R"(debug: start UploadProject proj success, projName: "name of b"  guid: "b")"}));
}

void TestProjectUpload::sceneWithoutSubProjectsIsOneUpload()
{
    StartedProjects::addOpen("s", "CIM", 2);
    QVERIFY(m_started->start());
    QSignalSpy ended(&StartedProjects::mgr(), &CProjectMgr::afterUpload);
    QVERIFY(StartedProjects::mgr().UploadProject("s", false));
    QCOMPARE(uploads(), QStringList("UploadProj(s,plain)"));
    QCOMPARE(ended.count(), 1);
    QCOMPARE(ended.first(), QList<QVariant>({"s"}));
}

void TestProjectUpload::buildingNeverLooksForSubProjects()
{
    StartedProjects::addOpen("b", "BIM", 2);
    StartedProjects::addOpen("linked", "BIM", 2);
    StartedProjects::link("b", "linked");
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UploadProject("b", false));
    QCOMPARE(uploads(), QStringList("UploadProj(b,plain)"));
}

void TestProjectUpload::subProjectsFollowTheSceneInTheOrderOfItsObjects()
{
    StartedProjects::addOpen("s", "CIM", 2);
    for (const char* sub : {"y", "x"}) {
        StartedProjects::addOpen(sub, "BIM", 2).isOpen = false;
        StartedProjects::link("s", sub);
    }
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UploadProject("s", false));
    QCOMPARE(
        Fakes::Calls(),
        QStringList({"OpenProject(s,)", "OpenProject(s,)", "UploadProj(s,plain)", "OpenProject(s,data)",
                     "LoadProjObjects(s)", "GetProjObjects(s,)", "OpenProject(y,data)",
                     "GetStatusByProjId(y)", "GetProjStatus(y)", "UploadProj(y,plain)", "OpenProject(x,data)",
                     "GetStatusByProjId(x)", "GetProjStatus(x)", "UploadProj(x,plain)"}));
}

void TestProjectUpload::subProjectGoesByItsState_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("force");
    QTest::addColumn<bool>("goes");
    for (const bool force : {false, true}) {
        const char* suffix = force ? ", forced" : "";
        QTest::addRow("only here%s", suffix) << 0 << force << true;
        QTest::addRow("the same%s", suffix) << 1 << force << false;
        QTest::addRow("changed here%s", suffix) << 2 << force << true;
        QTest::addRow("changed on the server%s", suffix) << 3 << force << false;
        QTest::addRow("changed on both sides%s", suffix) << 4 << force << false;
        QTest::addRow("last upload failed%s", suffix) << 5 << force << false;
    }
}

void TestProjectUpload::subProjectGoesByItsState()
{
    QFETCH(int, state);
    QFETCH(bool, force);
    QFETCH(bool, goes);
    StartedProjects::addOpen("s", "CIM", 2);
    StartedProjects::addOpen("sub", "BIM", state);
    StartedProjects::link("s", "sub");
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UploadProject("s", force));
    QCOMPARE(uploads().size(), goes ? 2 : 1);
}

void TestProjectUpload::subProjectOfAnUnknownStateGoesAsANewOne()
{
    StartedProjects::addOpen("s", "CIM", 2);
    StartedProjects::addOpen("sub", "BIM", 1);
    StartedProjects::link("s", "sub");
    SmartDB::instance().net.setReply("GetStatusByProjId", "sub", {{}, "no server", false, {}});
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UploadProject("s", false));
    QCOMPARE(uploads(), QStringList({"UploadProj(s,plain)", "UploadProj(sub,plain)"}));
}

void TestProjectUpload::forceIsPassedOn_data()
{
    QTest::addColumn<bool>("force");
    QTest::addColumn<QString>("word");
    QTest::newRow("plain") << false << "plain";
    QTest::newRow("forced") << true << "force";
}

void TestProjectUpload::forceIsPassedOn()
{
    QFETCH(bool, force);
    QFETCH(QString, word);
    StartedProjects::addOpen("s", "CIM", 2);
    StartedProjects::addOpen("sub", "BIM", 2);
    StartedProjects::link("s", "sub");
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UploadProject("s", force));
    QCOMPARE(uploads(), QStringList({"UploadProj(s," + word + ")", "UploadProj(sub," + word + ")"}));
}

void TestProjectUpload::failedSceneSendsNoSubProject()
{
    StartedProjects::addOpen("s", "CIM", 2).isUploadable = false;
    StartedProjects::addOpen("sub", "BIM", 2);
    StartedProjects::link("s", "sub");
    QVERIFY(m_started->start());
    QSignalSpy ended(&StartedProjects::mgr(), &CProjectMgr::afterUpload);
    QVERIFY(!StartedProjects::mgr().UploadProject("s", false));
    QCOMPARE(uploads(), QStringList("UploadProj(s,plain)"));
    QCOMPARE(ended.count(), 1);
    QCOMPARE(m_started->log.take().constLast(),
             QString(R"(debug: start UploadProject proj failed, projName: "name of s"  guid: "s")"));
}

void TestProjectUpload::failedSubProjectEndsTheUpload()
{
    StartedProjects::addOpen("s", "CIM", 2);
    for (const char* sub : {"x", "y"}) {
        StartedProjects::addOpen(sub, "BIM", 2);
        StartedProjects::link("s", sub);
    }
    SmartDB::instance().find("x")->isUploadable = false;
    QVERIFY(m_started->start());
    QSignalSpy ended(&StartedProjects::mgr(), &CProjectMgr::afterUpload);
    QVERIFY(!StartedProjects::mgr().UploadProject("s", true));
    QCOMPARE(uploads(), QStringList({"UploadProj(s,force)", "UploadProj(x,force)"}));
    QCOMPARE(ended.count(), 1);
    QCOMPARE(m_started->log.take().constLast(),
             QString(R"(debug: start UploadProject subProj failed, projName: "name of s"  guid: "s")"
                     R"(  subName: "name of x"  subGuid: "x")"));
}

void TestProjectUpload::projectThatIsNotOpenHasNoNameInTheLog()
{
    StartedProjects::addOpen("b", "BIM", 2).isOpen = false;
    QVERIFY(m_started->start());
    QVERIFY(StartedProjects::mgr().UploadProject("b", false));
    QCOMPARE(m_started->log.take().constFirst(),
             QString(R"(debug: start UploadProject proj, proj: ""  guid: "b")"));
}

void TestProjectUpload::withoutADatabaseTheEndIsToldAllTheSame()
{
    CProjectMgr projects;
    QSignalSpy ended(&projects, &CProjectMgr::afterUpload);
    QVERIFY(!projects.UploadProject("a", false));
    QCOMPARE(ended.count(), 1);
    QCOMPARE(Fakes::Calls(), QStringList());
    QCOMPARE(m_started->log.take(), QStringList());
}

void TestProjectUpload::endIsToldAfterAnExceptionToo()
{
    StartedProjects::addOpen("b", "BIM", 2).throwsOnUpload = true;
    QVERIFY(m_started->start());
    QSignalSpy ended(&StartedProjects::mgr(), &CProjectMgr::afterUpload);
    QVERIFY_EXCEPTION_THROWN(static_cast<void>(StartedProjects::mgr().UploadProject("b", false)),
                             std::runtime_error);
    QCOMPARE(ended.count(), 1);
}

void TestProjectUpload::nothingTellsTheBeginning()
{
    StartedProjects::addOpen("b", "BIM", 2);
    QVERIFY(m_started->start());
    QSignalSpy begun(&StartedProjects::mgr(), &CProjectMgr::beforeUpload);
    QVERIFY(StartedProjects::mgr().UploadProject("b", false));
    QCOMPARE(begun.count(), 0);
}

void TestProjectUpload::objectsWithATextHaveNames()
{
    StartedProjects::addOpen("s", "CIM");
    StartedProjects::link("s", "x").SetObjectText(L"一号楼");
    StartedProjects::link("s", "y");
    QVERIFY(m_started->start());
    QMap<QString, QString> names;
    QVERIFY(StartedProjects::mgr().GetSubProjNames("s", names));
    QCOMPARE(names, (QMap<QString, QString>{{"o_x", QString::fromUtf8("一号楼")}}));
}

void TestProjectUpload::repeatedObjectTakesTheLaterText()
{
    StartedProjects::addOpen("s", "CIM");
    StartedProjects::link("s", "x").SetObjectText(L"first");
    StartedProjects::link("s", "x").SetObjectText(L"second");
    QVERIFY(m_started->start());
    QMap<QString, QString> names{{"kept", "as it was"}};
    QVERIFY(StartedProjects::mgr().GetSubProjNames("s", names));
    QCOMPARE(names, (QMap<QString, QString>{{"kept", "as it was"}, {"o_x", "second"}}));
}

void TestProjectUpload::namesOfAnUnknownProjectAreAFailure()
{
    QVERIFY(m_started->start());
    QMap<QString, QString> names;
    QVERIFY(!StartedProjects::mgr().GetSubProjNames("unknown", names));
    QCOMPARE(Fakes::CallsOf({"CloseProject", "LoadProjObjects"}), QStringList());
}

void TestProjectUpload::projectIsClosedAfterItsNamesAreRead()
{
    StartedProjects::addOpen("s", "CIM");
    QVERIFY(m_started->start());
    QMap<QString, QString> names;
    QVERIFY(StartedProjects::mgr().GetSubProjNames("s", names));
    QCOMPARE(Fakes::Calls(),
             QStringList({"OpenProject(s,)", "LoadProjObjects(s)", "GetProjObjects(s,)", "CloseProject(s)"}));
}

QTEST_GUILESS_MAIN(TestProjectUpload)
#include "test_projectupload.moc"
