// SPDX-License-Identifier: MIT
#include "startedview.h"

#include "fakes/fakeuniqueid.h"
#include "view/context/editorcontrol/projectinfo.h"

using namespace TorvoEditor;
using Fakes::SmartDB;

/// Projects that come by the new-project dialog, and that go by the card's or the info card's button.
class TestRemoveAction : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_view = std::make_unique<StartedView>(); }
    void cleanup() { m_view.reset(); }

    void removeGoesByTheState_data();
    void removeGoesByTheState();
    void deleteGoesByTheState_data();
    void deleteGoesByTheState();
    void removedProjectOfTheServerComesBackWithoutADownload();
    void unknownProjectIsPassedOver_data();
    void unknownProjectIsPassedOver();
    void deleteTakesThePartsOfAScene();
    void createEntersCardItemAndList();
    void projectThatIsNotMadeIsNotEntered();
    void newProjectOfADepartmentHangsUnderIt();

private:
    static QStringList actions()
    {
        return Fakes::CallsOf({"item removed", "item changed", "RemoveProjectRecord", "RemoveSubProj",
                               "DeleteProj", "card removed"});
    }
    static bool isListed(const QString& guid)
    {
        return CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>()->ContainsProject(guid);
    }
    CProjectInfo& info() { return *m_view->published<CProjectInfo>("proInfoModel"); }

    std::unique_ptr<StartedView> m_view;
};

void TestRemoveAction::removeGoesByTheState_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("state");
    QTest::addColumn<QStringList>("calls");
    const QStringList wholly = {"item removed(a)", "RemoveProjectRecord(a)", "DeleteProj(a)",
                                "card removed(a)"};
    const QStringList fromTheGrid = {"item changed(a)", "card removed(a)"};
    QTest::newRow("not on the server") << "2" << 1 << wholly;
    QTest::newRow("only here") << "1" << 0 << wholly;
    QTest::newRow("state cannot be told") << "1" << -1 << wholly;
    QTest::newRow("the same") << "1" << 1 << fromTheGrid;
    QTest::newRow("changed here") << "1" << 2 << fromTheGrid;
    QTest::newRow("changed on the server") << "1" << 3 << fromTheGrid;
    QTest::newRow("changed on both sides") << "1" << 4 << fromTheGrid;
    QTest::newRow("last upload failed") << "-1" << 1 << fromTheGrid;
}

void TestRemoveAction::removeGoesByTheState()
{
    QFETCH(QString, word);
    QFETCH(int, state);
    QFETCH(QStringList, calls);
    StartedView::addLocal("a", "BIM", word, state);
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    m_view->writeDownTheScreens();
    StartedView::control().slotRemoveProject("a");
    QCOMPARE(actions(), calls);
    QVERIFY(!isListed("a"));
    QCOMPARE(SmartDB::instance().find("a") == nullptr, calls.contains("DeleteProj(a)"));
    QCOMPARE(m_view->panel().bimProjCount(), calls.contains("DeleteProj(a)") ? 0 : 1);
}

void TestRemoveAction::deleteGoesByTheState_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("state");
    QTest::addColumn<QStringList>("calls");
    const QStringList wholly = {"item removed(a)", "RemoveProjectRecord(a)", "DeleteProj(a)",
                                "card removed(a)"};
    const QStringList theFiles = {"item changed(a)", "DeleteProj(a)", "card removed(a)"};
    QTest::newRow("not on the server") << "2" << 1 << wholly;
    QTest::newRow("only here") << "1" << 0 << wholly;
    QTest::newRow("the same") << "1" << 1 << theFiles;
    QTest::newRow("changed here") << "1" << 2 << theFiles;
    QTest::newRow("changed on the server") << "1" << 3 << theFiles;
    QTest::newRow("changed on both sides") << "1" << 4 << theFiles;
    QTest::newRow("last upload failed") << "-1" << 1 << theFiles;
}

void TestRemoveAction::deleteGoesByTheState()
{
    QFETCH(QString, word);
    QFETCH(int, state);
    QFETCH(QStringList, calls);
    StartedView::addLocal("a", "BIM", word, state);
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    m_view->writeDownTheScreens();
    StartedView::control().slotDeleteProject("a");
    QCOMPARE(actions(), calls);
    QVERIFY(!isListed("a"));
    QCOMPARE(SmartDB::instance().find("a"), nullptr);
}

void TestRemoveAction::removedProjectOfTheServerComesBackWithoutADownload()
{
    m_view->addOnServer("a", 1);
    StartedView::addLocal("a", "BIM", "1", 2);
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    StartedView::control().slotRemoveProject("a");
    QVERIFY(m_view->panel().HasItem("a"));
    QVERIFY(SmartDB::instance().find("a")->isLocal);
    QVERIFY(!StartedView::grid().ContainsCard("a"));
}

void TestRemoveAction::unknownProjectIsPassedOver_data()
{
    QTest::addColumn<QVariant>("guid");
    QTest::newRow("unknown") << QVariant("unknown");
    QTest::newRow("empty") << QVariant("");
    QTest::newRow("nothing") << QVariant();
}

void TestRemoveAction::unknownProjectIsPassedOver()
{
    QFETCH(QVariant, guid);
    QVERIFY(m_view->start());
    StartedView::control().slotRemoveProject(guid);
    StartedView::control().slotDeleteProject(guid);
    QCOMPARE(Fakes::CallsOf({"GetStatusByProjId", "DeleteProj", "RemoveProjectRecord"}), QStringList());
}

void TestRemoveAction::deleteTakesThePartsOfAScene()
{
    StartedView::addLocal("a", "CIM");
    StartedView::addLocal("part", "BIM").isOpen = true;
    const auto key = [](const wchar_t* text) { return ZRSmartFormat::GuidFromText(text); };
    SmartDB::instance().find("a")->project->addObject(key(L"o"), key(L"part"));
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    m_view->writeDownTheScreens();
    StartedView::control().slotDeleteProject("a");
    QCOMPARE(actions(),
             QStringList({"item changed(a)", "RemoveSubProj(part)", "DeleteProj(a)", "card removed(a)"}));
    QCOMPARE(SmartDB::instance().find("part"), nullptr);
}

void TestRemoveAction::createEntersCardItemAndList()
{
    Fakes::Ids().next = Native::UniqueId{0xAB, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}};
    const QString guid = "000000ab-0001-0002-0304-05060708090a";
    StartedView::setWord(guid, "2");
    QVERIFY(m_view->start());
    m_view->writeDownTheScreens();
    info().setProjInfo("新楼", "BIM", {}, {}, {}, "iot-1", {});
    Fakes::ForgetCalls();
    StartedView::control().slotCreateProject();
    QCOMPARE(Fakes::CallsOf({"CreateProj", "SaveAll", "AddProjectRecord", "card added", "item added",
                             "GetProjectRecord"}),
             QStringList({"CreateProj(" + guid + ",新楼,BIM)", "SaveAll()", "AddProjectRecord(" + guid + ")",
                          "card added(" + guid + ")", "item added(" + guid + ")",
                          "GetProjectRecord(" + guid + ")"}));
    QCOMPARE(m_view->card(guid).name(), QString("新楼"));
    QCOMPARE(m_view->card(guid).stateType(), CGridViewData::ST_LocalState);
    QCOMPARE(m_view->panel().bimProjCount(), 1);
    QVERIFY(isListed(guid));
}

void TestRemoveAction::projectThatIsNotMadeIsNotEntered()
{
    SmartDB::instance().canCreate = false;
    QVERIFY(m_view->start());
    StartedView::control().slotCreateProject();
    QCOMPARE(m_view->cards().count(), 0);
    QCOMPARE(m_view->boxes, QStringList());
    QCOMPARE(m_view->panel().bimProjCount() + m_view->panel().sceneProjCount(), 0);
}

void TestRemoveAction::newProjectOfADepartmentHangsUnderIt()
{
    m_view->giveAnOrganisation();
    QVERIFY(m_view->start());
    info().setProjInfo("新楼", "BIM", {}, "d1", "设计所", {}, {});
    StartedView::control().slotCreateProject();
    QCOMPARE(StartedView::cardGuids().size(), 1);
    QVERIFY(m_view->panel().HasItem(StartedView::cardGuids().constFirst()));
}

QTEST_MAIN(TestRemoveAction)
#include "test_removeaction.moc"
