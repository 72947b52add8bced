// SPDX-License-Identifier: MIT
#include "bimsuite.h"

#include "project/projectmgr.h"

#include <QPointer>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>

namespace
{

using State = KYVConvertCommon::CKYVConvertState;

} // namespace

/// The list of a project's models: as its database has it, removing from it, and what ends it.
class TestBimList : public QObject
{
    Q_OBJECT

private slots:
    void screensFindTheManager();
    void screensKnowTheStatesByName();
    void engineIsMadeReadyAndEnded();
    void currentProjectIsToldWhenItChanges();
    void listOfAProjectThatWasNeverReadIsEmpty();
    void listIsInTheOrderOfTheUids();
    void syncMakesTheProjectCurrent();
    void syncOfTheCurrentProjectDoesNotTellItAgain();
    void syncReadsTheProjectsModels();
    void syncOpensTheProjectAndTellsItsFloorsLast();
    void syncKeepsTheObjectOfAModel();
    void syncTakesTheNewNameOfAModel();
    void kindOfAModelComesFromItsRecord_data();
    void kindOfAModelComesFromItsRecord();
    void recordThatIsLostIsNoEntry();
    void modelThatLeftTheDatabaseLeavesTheList();
    void runningConversionDoesNotSurviveASync();
    void failedConversionDoesNotSurviveASync();
    void failedUpdateUnderAKnownUidDoesNotSurviveASync();
    void objectsThatLeaveTheListStayAlive();
    void syncOfAMissingProjectGivesAnEmptyList();
    void syncWithoutADatabaseGivesAnEmptyList();
    void syncDoesNotLookAtConverting();
    void removeTakesTheModelOut();
    void removeOfAnUnknownEntryAsksTheDatabaseOnly();
    void removeFromAClosedProjectChangesNothing();
    void removeWithoutADatabaseChangesNothing();
    void removedObjectStaysAlive();
    void cancelClosesEndsAndForgetsInThisOrder();
    void cancelTellsNoChangeOfTheList();
    void cancelEndsConverting();
    void cancelledObjectsStayAlive();
    void cancelWithoutADatabaseChangesNothing();
    void removedProjectEndsConversionsAndForgetsItsFloors();
    void removedProjectsObjectsAreDeleted();
    void removedProjectsListIsEmpty();
    void removalOfTheProjectReachesTheManager();
    void replaceableIsAFinishedModelFromAnArchive_data();
    void replaceableIsAFinishedModelFromAnArchive();
    void modelUnderConversionIsNotReplaceable();
    void unknownModelIsNotReplaceable();
    void modelOfAnotherProjectIsNotReplaceable();
};

void TestBimList::screensFindTheManager()
{
    const BimSuite bim;
    QQmlEngine engine;
    TorvoEditor::CHomeApp::instance().RegisterContext(engine.rootContext());
    QCOMPARE(engine.rootContext()->contextProperty("bimMgr").value<QObject*>(), &bim.mgr());
}

void TestBimList::screensKnowTheStatesByName()
{
    const BimSuite bim;
    QQmlEngine engine;
    TorvoEditor::CHomeApp::instance().RegisterContext(engine.rootContext());
    QQmlComponent component(&engine);
    component.setData("import QtQml 2.15\nimport CKYVConvertState 1.0\nQtObject {\n"
                      "readonly property var states: [KYVConvertState.Waiting, KYVConvertState.Converting,\n"
                      "KYVConvertState.ConvertFinished, KYVConvertState.ConvertFailed] }",
                      {});
    const std::unique_ptr<QObject> object(component.create());
    QVERIFY2(object != nullptr, qPrintable(component.errorString()));
    QCOMPARE(object->property("states").toList(), QVariantList({0, 1, 2, 3}));
}

void TestBimList::engineIsMadeReadyAndEnded()
{
    const Fakes::Surroundings around;
    QVERIFY(TorvoEditor::CHomeApp::instance().Init(Fakes::TestSession()));
    QCOMPARE(Fakes::CallsOf({"InitConvert", "UnInitConvert"}), QStringList("InitConvert()"));
    Fakes::ForgetCalls();
    TorvoEditor::CHomeApp::instance().UnInit();
    QCOMPARE(Fakes::CallsOf({"InitConvert", "UnInitConvert"}), QStringList("UnInitConvert()"));
}

void TestBimList::currentProjectIsToldWhenItChanges()
{
    const BimSuite bim;
    const QSignalSpy told(&bim.mgr(), &TorvoEditor::CBimMgr::currentBimGuidChanged);
    QVERIFY(bim.mgr().setProperty("currentBimGuid", "bim"));
    QVERIFY(bim.mgr().setProperty("currentBimGuid", "bim"));
    QCOMPARE(bim.mgr().property("currentBimGuid").toString(), QString("bim"));
    QCOMPARE(told.size(), 1);
}

void TestBimList::listOfAProjectThatWasNeverReadIsEmpty()
{
    const BimSuite bim;
    bim.mgr().setCurrentBimGuid("bim");
    QCOMPARE(bim.mgr().projList(), QList<QObject*>());
    QVERIFY(!bim.mgr().isConverting());
}

void TestBimList::listIsInTheOrderOfTheUids()
{
    BimSuite bim;
    bim.sync("bim", {"m3", "m1", "m2"});
    QCOMPARE(bim.shown(), QStringList({"model m1 2", "model m2 2", "model m3 2"}));
}

void TestBimList::syncMakesTheProjectCurrent()
{
    const BimSuite bim;
    const QSignalSpy told(&bim.mgr(), &TorvoEditor::CBimMgr::currentBimGuidChanged);
    bim.mgr().syncProjList("bim");
    QCOMPARE(bim.mgr().currentBimGuid(), QString("bim"));
    QCOMPARE(told.size(), 1);
}

void TestBimList::syncOfTheCurrentProjectDoesNotTellItAgain()
{
    BimSuite bim;
    bim.sync("bim");
    const QSignalSpy told(&bim.mgr(), &TorvoEditor::CBimMgr::currentBimGuidChanged);
    bim.mgr().syncProjList("bim");
    QCOMPARE(told.size(), 0);
}

void TestBimList::syncReadsTheProjectsModels()
{
    BimSuite bim;
    bim.store().add("m", "楼");
    bim.mgr().syncProjList("bim");
    QCOMPARE(bim.shown(), QStringList("楼 2"));
    const auto* entry = bim.named("楼");
    QCOMPARE(entry->uid, QString("m"));
    QCOMPARE(int(entry->pendingOp), int(State::OpNone));
    QCOMPARE(bim.listChanged->size(), 1);
}

void TestBimList::syncOpensTheProjectAndTellsItsFloorsLast()
{
    BimSuite bim;
    bool isListTold = false;
    connect(&bim.mgr(), &TorvoEditor::CBimMgr::projListChanged, this, [&] {
        isListTold = true;
        QCOMPARE(Fakes::Calls(), QStringList("OpenProject(bim,data)"));
    });
    bim.mgr().syncProjList("bim");
    QVERIFY(isListTold);
    QCOMPARE(Fakes::Calls(),
             QStringList({"OpenProject(bim,data)", QStringLiteral("CFloorInfo(bim,%1)").arg(bim.data()),
                          "LoadFloors(bim,[bim])"}));
}

void TestBimList::syncKeepsTheObjectOfAModel()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    const auto* entry = bim.named("model m");
    bim.mgr().syncProjList("bim");
    QCOMPARE(bim.named("model m"), entry);
}

void TestBimList::syncTakesTheNewNameOfAModel()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.store().records.front()->name = L"new";
    bim.mgr().syncProjList("bim");
    QCOMPARE(bim.shown(), QStringList("new 2"));
}

void TestBimList::kindOfAModelComesFromItsRecord_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("isFromArchive");
    QTest::newRow("archive") << ""
                             << "MODEL" << true;
    QTest::newRow("FBX") << "FBX"
                         << "MODEL" << false;
    QTest::newRow("drawing") << ""
                             << "DWG" << false;
    QTest::newRow("drawing that says so") << "DWG"
                                          << "DWG" << false;
    QTest::newRow("tiles") << ""
                           << "3DTILES" << true;
}

void TestBimList::kindOfAModelComesFromItsRecord()
{
    QFETCH(const QString, source);
    QFETCH(const QString, type);
    QFETCH(const bool, isFromArchive);
    BimSuite bim;
    auto& record = bim.store().add("m", "m");
    record.type = type.toStdWString();
    record.attributes[L"editor_import_source_type"] = source.toStdWString();
    bim.mgr().syncProjList("bim");
    QCOMPARE(bim.named("m")->isKyvModel, isFromArchive);
}

void TestBimList::recordThatIsLostIsNoEntry()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.store().losesRecords = true;
    bim.mgr().syncProjList("bim");
    QCOMPARE(bim.shown(), QStringList());
}

void TestBimList::modelThatLeftTheDatabaseLeavesTheList()
{
    BimSuite bim;
    bim.sync("bim", {"m1", "m2"});
    bim.store().records.erase(bim.store().records.begin());
    bim.mgr().syncProjList("bim");
    QCOMPARE(bim.shown(), QStringList("model m2 2"));
}

void TestBimList::runningConversionDoesNotSurviveASync()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.tell(bim.add("bim"), State::Converting);
    bim.mgr().syncProjList("bim");
    QCOMPARE(bim.shown(), QStringList("model m 2"));
    QCOMPARE(Fakes::CallsOf({"CancleAllConvert"}), QStringList());
}

void TestBimList::failedConversionDoesNotSurviveASync()
{
    BimSuite bim;
    bim.sync("bim");
    bim.tell(bim.add("bim"), State::ConvertFailed);
    bim.mgr().syncProjList("bim");
    QCOMPARE(bim.shown(), QStringList());
}

void TestBimList::failedUpdateUnderAKnownUidDoesNotSurviveASync()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.named("model m")->setConvertState(State::ConvertFailed);
    bim.mgr().syncProjList("bim");
    QCOMPARE(bim.shown(), QStringList());
    bim.mgr().syncProjList("bim");
    QCOMPARE(bim.shown(), QStringList("model m 2"));
}

void TestBimList::objectsThatLeaveTheListStayAlive()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    const QPointer<QObject> entry(bim.named("model m"));
    bim.store().records.clear();
    bim.mgr().syncProjList("bim");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(entry != nullptr);
    QVERIFY(entry->parent() == &bim.mgr());
}

void TestBimList::syncOfAMissingProjectGivesAnEmptyList()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.mgr().syncProjList("nowhere");
    QCOMPARE(bim.shown(), QStringList());
    QCOMPARE(bim.listChanged->size(), 1);
    QVERIFY(Fakes::Calls().contains("LoadFloors(nowhere,[nowhere])"));
}

void TestBimList::syncWithoutADatabaseGivesAnEmptyList()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    Fakes::SmartDB::instance().hasDatabase = false;
    bim.mgr().syncProjList("bim");
    QCOMPARE(bim.shown(), QStringList());
    QCOMPARE(bim.listChanged->size(), 1);
}

void TestBimList::syncDoesNotLookAtConverting()
{
    BimSuite bim;
    bim.sync("bim");
    static_cast<void>(bim.add("bim"));
    bim.mgr().syncProjList("bim");
    QCOMPARE(bim.converting(), QString("true 1"));
}

void TestBimList::removeTakesTheModelOut()
{
    BimSuite bim;
    bim.sync("bim", {"m1", "m2"});
    bim.mgr().remove("bim", "m1");
    QCOMPARE(bim.shown(), QStringList("model m2 2"));
    QCOMPARE(bim.listChanged->size(), 1);
    QCOMPARE(Fakes::Calls(),
             QStringList({"OpenProject(bim,)", "RemoveModelProj(m1)", "RemoveKyvProj(bim,m1)"}));
}

void TestBimList::removeOfAnUnknownEntryAsksTheDatabaseOnly()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.mgr().remove("bim", "n");
    QCOMPARE(bim.listChanged->size(), 0);
    QCOMPARE(Fakes::Calls(), QStringList({"OpenProject(bim,)", "RemoveModelProj(n)"}));
}

void TestBimList::removeFromAClosedProjectChangesNothing()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    Fakes::SmartDB::instance().find("bim")->isOpen = false;
    bim.mgr().remove("bim", "m");
    QCOMPARE(bim.shown(), QStringList("model m 2"));
    QCOMPARE(bim.listChanged->size(), 0);
    QCOMPARE(bim.log.take(), QStringList());
}

void TestBimList::removeWithoutADatabaseChangesNothing()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    Fakes::SmartDB::instance().hasDatabase = false;
    bim.mgr().remove("bim", "m");
    QCOMPARE(bim.shown(), QStringList("model m 2"));
    QCOMPARE(bim.log.take(), QStringList());
}

void TestBimList::removedObjectStaysAlive()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    const QPointer<QObject> entry(bim.named("model m"));
    bim.mgr().remove("bim", "m");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(entry != nullptr);
}

void TestBimList::cancelClosesEndsAndForgetsInThisOrder()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.mgr().cancle("bim");
    QCOMPARE(bim.shown(), QStringList());
    QCOMPARE(Fakes::Calls(), QStringList({"CloseProject(bim)", "CancleAllConvert()", "~CFloorInfo(bim)"}));
}

void TestBimList::cancelTellsNoChangeOfTheList()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.mgr().cancle("bim");
    QCOMPARE(bim.listChanged->size(), 0);
}

void TestBimList::cancelEndsConverting()
{
    BimSuite bim;
    bim.sync("bim");
    static_cast<void>(bim.add("bim"));
    bim.mgr().cancle("bim");
    QCOMPARE(bim.converting(), QString("false 2"));
}

void TestBimList::cancelledObjectsStayAlive()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    const QPointer<QObject> entry(bim.named("model m"));
    bim.mgr().cancle("bim");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(entry != nullptr);
}

void TestBimList::cancelWithoutADatabaseChangesNothing()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    static_cast<void>(bim.add("bim"));
    bim.forget();
    Fakes::SmartDB::instance().hasDatabase = false;
    bim.mgr().cancle("bim");
    QCOMPARE(bim.mgr().projList().size(), 2);
    QCOMPARE(bim.converting(), QString("true 0"));
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestBimList::removedProjectEndsConversionsAndForgetsItsFloors()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    bim.mgr().removeBimProj("bim");
    QCOMPARE(Fakes::Calls(), QStringList({"CancleAllConvert()", "~CFloorInfo(bim)"}));
}

void TestBimList::removedProjectsObjectsAreDeleted()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    const QPointer<QObject> entry(bim.named("model m"));
    bim.mgr().removeBimProj("bim");
    QVERIFY(entry == nullptr);
}

void TestBimList::removedProjectsListIsEmpty()
{
    BimSuite bim;
    bim.sync("other", {"o"});
    bim.sync("bim", {"m"});
    bim.mgr().removeBimProj("bim");
    QCOMPARE(bim.shown(), QStringList());
    bim.mgr().setCurrentBimGuid("other");
    QCOMPARE(bim.shown(), QStringList("model o 2"));
}

void TestBimList::removalOfTheProjectReachesTheManager()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    TorvoEditor::CHomeApp::instance().GetMgr<TorvoEditor::CProjectMgr>()->NotifyProjectRemoved("bim");
    const auto calls = Fakes::CallsOf({"RemoveProjectRecord", "CancleAllConvert", "~CFloorInfo"});
    QCOMPARE(calls, QStringList({"RemoveProjectRecord(bim)", "CancleAllConvert()", "~CFloorInfo(bim)"}));
    QCOMPARE(bim.shown(), QStringList());
}

void TestBimList::replaceableIsAFinishedModelFromAnArchive_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("isReplaceable");
    QTest::newRow("archive") << "MODEL" << true;
    QTest::newRow("drawing") << "DWG" << false;
}

void TestBimList::replaceableIsAFinishedModelFromAnArchive()
{
    QFETCH(const QString, type);
    QFETCH(const bool, isReplaceable);
    BimSuite bim;
    bim.store().add("m", "m").type = type.toStdWString();
    bim.mgr().syncProjList("bim");
    QCOMPARE(bim.mgr().checkedUpdate("m"), isReplaceable);
}

void TestBimList::modelUnderConversionIsNotReplaceable()
{
    BimSuite bim;
    bim.sync("bim");
    const auto uid = bim.add("bim");
    QVERIFY(!bim.mgr().checkedUpdate(uid));
    bim.tell(uid, State::Converting);
    QVERIFY(!bim.mgr().checkedUpdate(uid));
    bim.tell(uid, State::ConvertFinished);
    QVERIFY(bim.mgr().checkedUpdate(uid));
}

void TestBimList::unknownModelIsNotReplaceable()
{
    BimSuite bim;
    bim.sync("bim", {"m"});
    QVERIFY(!bim.mgr().checkedUpdate("n"));
    QVERIFY(!bim.mgr().checkedUpdate(""));
}

void TestBimList::modelOfAnotherProjectIsNotReplaceable()
{
    BimSuite bim;
    bim.sync("other", {"o"});
    bim.sync("bim", {"m"});
    QVERIFY(!bim.mgr().checkedUpdate("o"));
}

QTEST_MAIN(TestBimList)
#include "test_bimlist.moc"
