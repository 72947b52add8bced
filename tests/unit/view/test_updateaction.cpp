// SPDX-License-Identifier: MIT
#include "startedview.h"

using namespace TorvoEditor;
using Fakes::SmartDB;

namespace
{

QString Utf8(const char* text)
{
    return QString::fromUtf8(text);
}

} // namespace

/// The update and the upgrade of a card.
class TestUpdateAction : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_view = std::make_unique<StartedView>(); }
    void cleanup() { m_view.reset(); }

    void updateGoesByTheState_data();
    void updateGoesByTheState();
    void updateGoesByTheServersState_data();
    void updateGoesByTheServersState();
    void serverThatCannotBeAskedIsTold_data();
    void serverThatCannotBeAskedIsTold();
    void subProjectsAreOpenedBeforeTheStateIsAsked();
    void unknownProjectIsPassedOver_data();
    void unknownProjectIsPassedOver();
    void runningOperationIsSaidTwice_data();
    void runningOperationIsSaidTwice();
    void secondUpdateWhileAnotherOperationRunsGoesThrough();
    void updateOfAnUnknownProjectKeepsTheRunningOperation();
    void cardShowsTheUpdate();
    void refreshWaitsForTheUpdate();
    void upgradeRunsOnAnOldProject();
    void upgradeOfACurrentProjectDoesNothing();
    void upgradeRunsBesideAnotherOperation();
    void secondClickUpgradesAgain();
    void refreshWaitsForTheUpgrade();

private:
    static void addProject(const QString& guid, const QString& word, int state)
    {
        StartedView::addLocal(guid, "CIM", word, state);
        StartedView::writeLocalList({guid});
    }
    static void addOld(const QString& guid) { StartedView::addLocal(guid, "CIM").needsUpgrade = true; }

    std::unique_ptr<StartedView> m_view;
};

void TestUpdateAction::updateGoesByTheState_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("goes");
    QTest::newRow("cannot be told") << -1 << false;
    QTest::newRow("only here") << 0 << false;
    QTest::newRow("the same") << 1 << false;
    QTest::newRow("changed here") << 2 << false;
    QTest::newRow("changed on the server") << 3 << true;
    QTest::newRow("changed on both sides") << 4 << false;
}

void TestUpdateAction::updateGoesByTheState()
{
    QFETCH(int, state);
    QFETCH(bool, goes);
    addProject("a", "1", state);
    QVERIFY(m_view->start());
    StartedView::control().slotSyncProject("a");
    QCOMPARE(m_view->card("a").dealState() == CGridViewData::DS_UpDateState, goes);
    QVERIFY(!goes || StartedView::waitForCall("NotifyUpdated(a,true)"));
    QCOMPARE(Fakes::CallsOf({"UpdateProj"}), goes ? QStringList("UpdateProj(a)") : QStringList());
    QCOMPARE(m_view->boxes, QStringList());
}

void TestUpdateAction::updateGoesByTheServersState_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<bool>("goes");
    const QStringList none;
    QTest::newRow("upload failed") << "-1" << QStringList(Utf8("提示: 服务器本工程上传失败，请先强制上传"))
                                   << false;
    QTest::newRow("uploading") << "0" << QStringList(Utf8("提示: 服务器本工程正在上传中，请稍后重试"))
                               << false;
    QTest::newRow("normal") << "1" << none << true;
    QTest::newRow("not there") << "2" << none << false;
    QTest::newRow("converting") << "3" << none << true;
    QTest::newRow("unknown word") << "?" << none << true;
}

void TestUpdateAction::updateGoesByTheServersState()
{
    QFETCH(QString, word);
    QFETCH(bool, goes);
    addProject("a", word, 3);
    QVERIFY(m_view->start());
    StartedView::control().slotSyncProject("a");
    QVERIFY(!goes || StartedView::waitForCall("NotifyUpdated(a,true)"));
    QCOMPARE(Fakes::CallsOf({"UpdateProj"}).size(), goes ? 1 : 0);
    QTEST(m_view->boxes, "boxes");
}

void TestUpdateAction::serverThatCannotBeAskedIsTold_data()
{
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QStringList>("boxes");
    QTest::newRow("with a reason") << R"({"code":50300})" << QStringList(Utf8("提示: 工程更新失败"));
    QTest::newRow("expired login") << R"({"code":40014})"
                                   << QStringList(Utf8("提示: 工程更新失败<br/>登录已过期,请重新登录!"));
    QTest::newRow("without a reason") << "" << QStringList();
}

void TestUpdateAction::serverThatCannotBeAskedIsTold()
{
    QFETCH(QString, reason);
    addProject("a", "1", 3);
    QVERIFY(m_view->start());
    SmartDB::instance().net.setReply("GetStatusByProjId", "a", {{}, "no server", false, {}});
    SmartDB::instance().lastError = reason;
    StartedView::control().slotSyncProject("a");
    QTEST(m_view->boxes, "boxes");
    QCOMPARE(m_view->card("a").dealState(), CGridViewData::DS_NonState);
}

void TestUpdateAction::subProjectsAreOpenedBeforeTheStateIsAsked()
{
    addProject("a", "1", 1);
    StartedView::addLocal("part", "BIM");
    const auto key = [](const wchar_t* text) { return ZRSmartFormat::GuidFromText(text); };
    SmartDB::instance().find("a")->project->addObject(key(L"o"), key(L"part"));
    QVERIFY(m_view->start());
    SmartDB::instance().find("part")->isOpen = false;
    StartedView::control().slotSyncProject("a");
    QCOMPARE(Fakes::Calls(),
             QStringList({"OpenProject(a,)", "GetStatusByProjId(a)", "OpenProject(a,data)",
                          "LoadProjObjects(a)", "GetProjObjects(a,)", "OpenProject(part,)",
                          "OpenProject(part,data)", "GetStatusByProjId(a)", "GetProjStatus(a)"}));
}

void TestUpdateAction::unknownProjectIsPassedOver_data()
{
    QTest::addColumn<QVariant>("guid");
    QTest::newRow("unknown") << QVariant("unknown");
    QTest::newRow("empty") << QVariant("");
    QTest::newRow("nothing") << QVariant();
}

void TestUpdateAction::unknownProjectIsPassedOver()
{
    QFETCH(QVariant, guid);
    QVERIFY(m_view->start());
    StartedView::control().slotSyncProject(guid);
    QCOMPARE(Fakes::CallsOf({"GetStatusByProjId"}), QStringList());
    QCOMPARE(m_view->boxes, QStringList());
}

void TestUpdateAction::runningOperationIsSaidTwice_data()
{
    QTest::addColumn<bool>("isUpgrade");
    QTest::addColumn<QString>("box");
    QTest::newRow("upload") << false << Utf8("提示: 工程上传中，请稍后重试");
    QTest::newRow("upgrade") << true << Utf8("提示: ");
}

void TestUpdateAction::runningOperationIsSaidTwice()
{
    QFETCH(bool, isUpgrade);
    QFETCH(QString, box);
    StartedView::addLocal("a", "CIM", "1", 3);
    StartedView::addLocal("other", "BIM", "1", 2).needsUpgrade = isUpgrade;
    StartedView::writeLocalList({"a", "other"});
    QVERIFY(m_view->start());
    if (isUpgrade)
        StartedView::control().upgradeProj("other");
    else
        StartedView::control().slotUploadProject("other");
    StartedView::control().slotSyncProject("a");
    QCOMPARE(m_view->boxes, QStringList({box, box}));
    QCOMPARE(m_view->card("a").dealState(), CGridViewData::DS_NonState);
    QVERIFY(StartedView::waitForCall(isUpgrade ? "Upgrade(other)" : "NotifyUploaded(other,true)"));
    QTRY_VERIFY(!m_view->card("other").isUpgrade());
    QCOMPARE(Fakes::CallsOf({"UpdateProj"}), QStringList());
}

void TestUpdateAction::secondUpdateWhileAnotherOperationRunsGoesThrough()
{
    StartedView::addLocal("a", "CIM", "1", 3);
    StartedView::addLocal("other", "BIM", "1", 2);
    StartedView::writeLocalList({"a", "other"});
    QVERIFY(m_view->start());
    StartedView::control().slotUploadProject("other");
    StartedView::control().slotSyncProject("a");
    QCOMPARE(m_view->boxes.size(), 2);
    StartedView::control().slotSyncProject("a");
    QCOMPARE(m_view->boxes.size(), 2);
    QCOMPARE(m_view->card("a").dealState(), CGridViewData::DS_UpDateState);
    QVERIFY(StartedView::waitForCall("NotifyUpdated(a,true)"));
    QVERIFY(StartedView::waitForCall("NotifyUploaded(other,true)"));
}

void TestUpdateAction::updateOfAnUnknownProjectKeepsTheRunningOperation()
{
    StartedView::addLocal("a", "CIM", "1", 3);
    StartedView::addLocal("other", "BIM", "1", 2);
    StartedView::writeLocalList({"a", "other"});
    QVERIFY(m_view->start());
    StartedView::control().slotUploadProject("other");
    StartedView::control().slotSyncProject("unknown");
    QCOMPARE(m_view->boxes, QStringList());
    StartedView::control().slotSyncProject("a");
    QCOMPARE(m_view->boxes.size(), 2);
    QVERIFY(StartedView::waitForCall("NotifyUploaded(other,true)"));
}

void TestUpdateAction::cardShowsTheUpdate()
{
    addProject("a", "1", 3);
    QVERIFY(m_view->start());
    StartedView::control().slotSyncProject("a");
    QCOMPARE(m_view->card("a").dealState(), CGridViewData::DS_UpDateState);
    QCOMPARE(m_view->card("a").stateType(), CGridViewData::ST_LocalState);
    SmartDB::instance().find("a")->state = 1;
    QVERIFY(StartedView::waitForCall("NotifyUpdated(a,true)"));
    QCOMPARE(m_view->card("a").dealState(), CGridViewData::DS_NonState);
    QCOMPARE(m_view->card("a").stateType(), CGridViewData::ST_SynchroState);
}

void TestUpdateAction::refreshWaitsForTheUpdate()
{
    addProject("a", "1", 3);
    QVERIFY(m_view->start());
    StartedView::control().slotSyncProject("a");
    Fakes::ForgetCalls();
    StartedView::letTheTimerFire();
    QCOMPARE(Fakes::CallsOf({"GetStatusByProjId"}), QStringList());
    QVERIFY(StartedView::waitForCall("NotifyUpdated(a,true)"));
}

void TestUpdateAction::upgradeRunsOnAnOldProject()
{
    addOld("old");
    StartedView::writeLocalList({"old"});
    QVERIFY(m_view->start());
    StartedView::control().upgradeProj("old");
    QVERIFY(m_view->card("old").isUpgrade());
    QCOMPARE(m_view->card("old").dealState(), CGridViewData::DS_NonState);
    QTRY_VERIFY(!m_view->card("old").isUpgrade());
    QVERIFY(!m_view->card("old").needUpgrade());
    QCOMPARE(m_view->boxes, QStringList());
}

void TestUpdateAction::upgradeOfACurrentProjectDoesNothing()
{
    addProject("a", "1", 3);
    QVERIFY(m_view->start());
    StartedView::control().upgradeProj("a");
    QVERIFY(!m_view->card("a").isUpgrade());
    // No operation runs: an update starts without a word.
    StartedView::control().slotSyncProject("a");
    QCOMPARE(m_view->boxes, QStringList());
    QVERIFY(StartedView::waitForCall("NotifyUpdated(a,true)"));
    QCOMPARE(Fakes::CallsOf({"Upgrade"}), QStringList());
}

void TestUpdateAction::upgradeRunsBesideAnotherOperation()
{
    addOld("old");
    StartedView::addLocal("a", "BIM", "1", 2);
    StartedView::writeLocalList({"old", "a"});
    QVERIFY(m_view->start());
    StartedView::control().slotUploadProject("a");
    StartedView::control().upgradeProj("old");
    QCOMPARE(m_view->boxes, QStringList());
    QVERIFY(m_view->card("old").isUpgrade());
    QVERIFY(StartedView::waitForCall("NotifyUploaded(a,true)"));
    QTRY_VERIFY(!m_view->card("old").isUpgrade());
    QCOMPARE(Fakes::CallsOf({"Upgrade"}), QStringList("Upgrade(old)"));
}

void TestUpdateAction::secondClickUpgradesAgain()
{
    addOld("old");
    SmartDB::instance().find("old")->isUpgradable = false;
    StartedView::writeLocalList({"old"});
    QVERIFY(m_view->start());
    StartedView::control().upgradeProj("old");
    StartedView::control().upgradeProj("old");
    QTRY_COMPARE(Fakes::CallsOf({"Upgrade"}), QStringList({"Upgrade(old)", "Upgrade(old)"}));
    QTRY_COMPARE(m_view->log.linesWith("errCode.isEmpty").size(), 2);
}

void TestUpdateAction::refreshWaitsForTheUpgrade()
{
    addOld("old");
    StartedView::writeLocalList({"old"});
    QVERIFY(m_view->start());
    StartedView::control().upgradeProj("old");
    Fakes::ForgetCalls();
    StartedView::letTheTimerFire();
    QCOMPARE(Fakes::CallsOf({"GetStatusByProjId"}), QStringList());
    QTRY_VERIFY(!m_view->card("old").isUpgrade());
}

QTEST_MAIN(TestUpdateAction)
#include "test_updateaction.moc"
