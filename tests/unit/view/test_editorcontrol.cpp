// SPDX-License-Identifier: MIT
#include "startedview.h"

#include "fakes/openhome.h"
#include "tabs/tab.h"
#include "tabs/tabmgr.h"
#include "view/context/editorcontrol/administrativeregion.h"

using namespace TorvoEditor;
using Fakes::SmartDB;

namespace
{

QString VersionFile()
{
    return QCoreApplication::applicationDirPath() + "/updateConfig.json";
}

void WriteVersionFile(const QByteArray& bytes)
{
    QFile file(VersionFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

} // namespace

class TestEditorControl : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void publishesItsNames();
    void variantFollowsTheSession_data();
    void variantFollowsTheSession();
    void loginNameIsTheSessions();
    void modeTellsOnlyAChange();
    void versionIsReadFromTheFile_data();
    void versionIsReadFromTheFile();
    void versionWithoutAFile();
    void startMakesACardForEveryLocalProject();
    void startMakesAnUpgradeCardForAnOldProject();
    void startBringsWhatTheTreeHasUpToDate();
    void startAddsWhatTheTreeHasNot();
    void startAddsAnOldProjectToTheTree();
    void refreshReadsEveryCardAndItsItem();
    void refreshWaitsForARunningOperation();
    void refreshComesEveryFiveMinutes();
    void doubleClickBringsAServerProject();
    void doubleClickOnAProjectWithACardDoesNothing();
    void doubleClickWhileAnotherDownloads();
    void doubleClickIsRefusedByTheServersState_data();
    void doubleClickIsRefusedByTheServersState();
    void doubleClickOnAListedProjectBringsItsCardBack();
    void doubleClickOnAnOldProjectMakesAnUpgradeCard();
    void cardIsLockedWhileItDownloads();
    void failedDownloadTellsAndTakesTheCardAway();
    void failedDownloadAfterAnExpiredLoginSaysSo();
    void failedDownloadWithoutAReasonIsSilent();
    void reasonThatIsNoJsonIsNotShown();
    void endOfADownloadIsToldToTheHostWhenTheProjectIsHere();
    void nextDownloadMayStartAfterTheEnd();
    void doubleClickOnACardOpensItsTab();
    void doubleClickOnNoCardOpensNothing();
    void refreshButtonReadsTheServersListAndRebuilds();
    void updateProjectStateReadsItemAndCard();
    void endOfAChildRefreshesNothing();

private:
    /// Runs the download that a double click has started to its end.
    static bool finishDownload();

    std::unique_ptr<StartedView> m_view;
};

void TestEditorControl::init()
{
    m_view = std::make_unique<StartedView>();
    QFile::remove(VersionFile());
}

void TestEditorControl::cleanup()
{
    m_view.reset();
    QFile::remove(VersionFile());
}

bool TestEditorControl::finishDownload()
{
    return QTest::qWaitFor([] { return Fakes::Calls().filter("NotifyDownloaded").size() == 1; });
}

void TestEditorControl::publishesItsNames()
{
    QVERIFY(m_view->start());
    QCOMPARE(m_view->published<CEditorControl>("editorControl"), &StartedView::control());
    QVERIFY(m_view->published<CPanelModel>("leftPanelModel") != nullptr);
    QVERIFY(m_view->published<CAdministrativeRegion>("regionModel") != nullptr);
}

void TestEditorControl::variantFollowsTheSession_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("variant");
    QTest::newRow("Lite") << "Lite" << 0;
    QTest::newRow("Normal") << "Normal" << 1;
    QTest::newRow("anything else") << "normal" << -1;
    QTest::newRow("nothing") << "" << -1;
}

void TestEditorControl::variantFollowsTheSession()
{
    QFETCH(QString, text);
    auto session = Fakes::TestSession();
    session.appVer = text.toStdWString();
    QVERIFY(m_view->start(session));
    QTEST(StartedView::control().property("appVer").toInt(), "variant");
}

void TestEditorControl::loginNameIsTheSessions()
{
    QVERIFY(m_view->start());
    QCOMPARE(StartedView::control().property("loginName").toString(), QString::fromUtf8("王工"));
}

void TestEditorControl::modeTellsOnlyAChange()
{
    QVERIFY(m_view->start());
    auto& control = StartedView::control();
    QSignalSpy changed(&control, &CEditorControl::isBimSdkChanged);
    control.setIsBimSdk(false);
    QCOMPARE(changed.count(), 0);
    QVERIFY(control.setProperty("isBimSdk", true));
    control.setIsBimSdk(true);
    QCOMPARE(changed.count(), 1);
    QVERIFY(control.isBimSdk());
}

void TestEditorControl::versionIsReadFromTheFile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("version");
    QTest::newRow("a version") << QByteArray(R"({"version": "2.3.4"})") << "V2.3.4";
    QTest::newRow("without the key") << QByteArray(R"({"other": "2.3.4"})") << "V";
    QTest::newRow("a number") << QByteArray(R"({"version": 2})") << "V";
    QTest::newRow("no JSON") << QByteArray("2.3.4") << "V1.0.0";
}

void TestEditorControl::versionIsReadFromTheFile()
{
    QFETCH(QByteArray, bytes);
    WriteVersionFile(bytes);
    QVERIFY(m_view->start());
    QTEST(StartedView::control().getVersion(), "version");
}

void TestEditorControl::versionWithoutAFile()
{
    QVERIFY(m_view->start());
    QCOMPARE(StartedView::control().getVersion(), QString("V1.0.0"));
}

void TestEditorControl::startMakesACardForEveryLocalProject()
{
    StartedView::addLocal("b", "BIM", "1", 2);
    StartedView::addLocal("a", "CIM");
    StartedView::writeLocalList({"b", "a"});
    QVERIFY(m_view->start());
    QCOMPARE(StartedView::cardGuids(), QStringList({"b", "a"}));
    QCOMPARE(m_view->card("b").stateType(), CGridViewData::ST_ModifyState);
}

void TestEditorControl::startMakesAnUpgradeCardForAnOldProject()
{
    StartedView::addLocal("old", "BIM").needsUpgrade = true;
    StartedView::writeLocalList({"old"});
    QVERIFY(m_view->start());
    QVERIFY(m_view->card("old").needUpgrade());
}

void TestEditorControl::startBringsWhatTheTreeHasUpToDate()
{
    m_view->addOnServer("old", 1).name = L"server's name";
    StartedView::addLocal("old", "BIM").needsUpgrade = true;
    StartedView::writeLocalList({"old"});
    QVERIFY(m_view->start());
    QCOMPARE(m_view->card("old").name(), QString("server's name"));
}

void TestEditorControl::startAddsWhatTheTreeHasNot()
{
    // Its department is not in the organisation, so that building the tree passes it over, and so does this.
    StartedView::addLocal("a", "BIM");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    QVERIFY(m_view->panel().HasItem("a"));
    QCOMPARE(m_view->panel().bimProjCount(), 1);
}

void TestEditorControl::startAddsAnOldProjectToTheTree()
{
    StartedView::addLocal("old", "BIM").needsUpgrade = true;
    StartedView::writeLocalList({"old"});
    QVERIFY(m_view->start());
    QVERIFY(m_view->panel().HasItem("old"));
    QCOMPARE(m_view->panel().sceneProjCount(), 1);
}

void TestEditorControl::refreshReadsEveryCardAndItsItem()
{
    StartedView::addLocal("a", "BIM", "1", 1);
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    SmartDB::instance().find("a")->state = 3;
    StartedView::letTheTimerFire();
    QCOMPARE(m_view->card("a").stateType(), CGridViewData::ST_UpdateState);
    // Once for the card, once for the item of the tree.
    QCOMPARE(Fakes::CallsOf({"GetStatusByProjId"}),
             QStringList({"GetStatusByProjId(a)", "GetStatusByProjId(a)"}));
}

void TestEditorControl::refreshWaitsForARunningOperation()
{
    m_view->addOnServer("a", 1);
    SmartDB::instance().addOnServer("a", "a", "BIM");
    StartedView::setWord("a", "1");
    QVERIFY(m_view->start());
    StartedView::control().slotTreeDblClick("a");
    Fakes::ForgetCalls();
    StartedView::letTheTimerFire();
    QCOMPARE(Fakes::CallsOf({"GetStatusByProjId"}), QStringList());
    QVERIFY(finishDownload());
}

void TestEditorControl::refreshComesEveryFiveMinutes()
{
    QVERIFY(m_view->start());
    const auto* timer = StartedView::control().findChild<QTimer*>();
    QVERIFY(timer != nullptr && timer->isActive() && !timer->isSingleShot());
    QCOMPARE(timer->interval(), 300000);
}

void TestEditorControl::doubleClickBringsAServerProject()
{
    m_view->addOnServer("a", 0);
    SmartDB::instance().addOnServer("a", "a", "CIM").state = 1;
    SmartDB::instance().net.setReply("GetProjType", "a", {"CIM", {}, false, {}});
    StartedView::setWord("a", "1");
    QVERIFY(m_view->start());
    StartedView::control().slotTreeDblClick("a");
    QVERIFY(finishDownload());
    QCOMPARE(m_view->card("a").dealState(), CGridViewData::DS_NonState);
    QCOMPARE(m_view->card("a").stateType(), CGridViewData::ST_SynchroState);
    QVERIFY(CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>()->ContainsProject("a"));
    QCOMPARE(Fakes::CallsOf({"NotifyDownloaded"}), QStringList("NotifyDownloaded(a,true)"));
    QCOMPARE(m_view->boxes, QStringList());
}

void TestEditorControl::doubleClickOnAProjectWithACardDoesNothing()
{
    StartedView::addLocal("a", "BIM");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    StartedView::control().slotTreeDblClick("a");
    QCOMPARE(Fakes::Calls(), QStringList());
    QCOMPARE(m_view->boxes, QStringList());
    QCOMPARE(m_view->cards().count(), 1);
}

void TestEditorControl::doubleClickWhileAnotherDownloads()
{
    for (const char* guid : {"a", "b"}) {
        m_view->addOnServer(guid, 1);
        SmartDB::instance().addOnServer(guid, guid, "BIM").state = 1;
        StartedView::setWord(guid, "1");
    }
    QVERIFY(m_view->start());
    StartedView::control().slotTreeDblClick("a");
    StartedView::control().slotTreeDblClick("b");
    QCOMPARE(m_view->boxes, QStringList(QString::fromUtf8("提示: 工程下载中，请稍后重试")));
    QCOMPARE(StartedView::cardGuids(), QStringList("a"));
    QVERIFY(finishDownload());
}

void TestEditorControl::doubleClickIsRefusedByTheServersState_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("tip");
    QTest::newRow("upload failed") << "-1" << QString::fromUtf8("提示: 服务器本工程已上传失败，请先强制上传");
    QTest::newRow("uploading") << "0" << QString::fromUtf8("提示: 服务器本工程正在上传中，请稍后再试");
    QTest::newRow("converting") << "3" << QString::fromUtf8("提示: 服务器本工程正在转换中，请稍后再试");
}

void TestEditorControl::doubleClickIsRefusedByTheServersState()
{
    QFETCH(QString, word);
    QFETCH(QString, tip);
    m_view->addOnServer("a", 1);
    StartedView::setWord("a", word);
    QVERIFY(m_view->start());
    StartedView::control().slotTreeDblClick("a");
    QCOMPARE(m_view->boxes, QStringList(tip));
    QCOMPARE(m_view->cards().count(), 0);
}

void TestEditorControl::doubleClickOnAListedProjectBringsItsCardBack()
{
    StartedView::addLocal("a", "BIM", "1", 2);
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    StartedView::grid().RemoveCard("a");
    StartedView::control().slotTreeDblClick("a");
    QCOMPARE(m_view->card("a").dealState(), CGridViewData::DS_NonState);
    QCOMPARE(m_view->card("a").stateType(), CGridViewData::ST_ModifyState);
    QCOMPARE(Fakes::CallsOf({"DownLoadProj", "GetProjType"}), QStringList());
}

void TestEditorControl::doubleClickOnAnOldProjectMakesAnUpgradeCard()
{
    m_view->addOnServer("old", 1).name = L"server's name";
    StartedView::addLocal("old", "BIM").needsUpgrade = true;
    StartedView::writeLocalList({"old"});
    QVERIFY(m_view->start());
    StartedView::grid().RemoveCard("old");
    StartedView::control().slotTreeDblClick("old");
    QVERIFY(m_view->card("old").needUpgrade());
    QCOMPARE(m_view->card("old").name(), QString("server's name"));
}

void TestEditorControl::cardIsLockedWhileItDownloads()
{
    m_view->addOnServer("a", 1);
    SmartDB::instance().addOnServer("a", "a", "BIM").state = 1;
    StartedView::setWord("a", "1");
    QVERIFY(m_view->start());
    StartedView::control().slotTreeDblClick("a");
    QCOMPARE(m_view->card("a").dealState(), CGridViewData::DS_DownloadState);
    QCOMPARE(m_view->card("a").stateType(), CGridViewData::ST_LocalState);
    QVERIFY(finishDownload());
}

void TestEditorControl::failedDownloadTellsAndTakesTheCardAway()
{
    m_view->addOnServer("a", 1);
    StartedView::setWord("a", "1");
    SmartDB::instance().lastError = R"({"code": 50300, "msg": "unreachable"})";
    QVERIFY(m_view->start());
    StartedView::control().slotTreeDblClick("a");
    QTRY_COMPARE(m_view->boxes, QStringList(QString::fromUtf8("提示: 工程下载失败")));
    QCOMPARE(m_view->cards().count(), 0);
    QVERIFY(m_view->panel().HasItem("a"));
    QCOMPARE(Fakes::CallsOf({"DeleteProj", "NotifyDownloaded"}), QStringList("DeleteProj(a)"));
    QVERIFY(m_view->log.take().contains(
        QString::fromUtf8("debug: CEditorControl::showErrorMsg \"工程下载失败\" ") +
        R"("{\"code\": 50300, \"msg\": \"unreachable\"}")"));
}

void TestEditorControl::failedDownloadAfterAnExpiredLoginSaysSo()
{
    QVERIFY(m_view->start());
    StartedView::control().onDownloadFinished("a", false, R"({"code":40014})");
    QCOMPARE(m_view->boxes, QStringList(QString::fromUtf8("提示: 工程下载失败<br/>登录已过期,请重新登录!")));
}

void TestEditorControl::failedDownloadWithoutAReasonIsSilent()
{
    QVERIFY(m_view->start());
    StartedView::control().onDownloadFinished("a", false, {});
    QCOMPARE(m_view->boxes, QStringList());
    QVERIFY(m_view->log.take().contains(
        QString::fromUtf8("debug: CEditorControl::showErrorMsg , errCode.isEmpty \"工程下载失败\"")));
}

void TestEditorControl::reasonThatIsNoJsonIsNotShown()
{
    QVERIFY(m_view->start());
    StartedView::control().onDownloadFinished("a", false, "<html>40014</html>");
    QCOMPARE(m_view->boxes, QStringList(QString::fromUtf8("提示: 工程下载失败")));
}

void TestEditorControl::endOfADownloadIsToldToTheHostWhenTheProjectIsHere()
{
    QVERIFY(m_view->start());
    StartedView::addLocal("a", "BIM");
    StartedView::control().onDownloadFinished("a", false, "reason");
    StartedView::control().onDownloadFinished("unknown", true, {});
    QCOMPARE(Fakes::CallsOf({"NotifyDownloaded"}), QStringList("NotifyDownloaded(a,false)"));
}

void TestEditorControl::nextDownloadMayStartAfterTheEnd()
{
    for (const char* guid : {"a", "b"}) {
        m_view->addOnServer(guid, 0);
        SmartDB::instance().addOnServer(guid, guid, "CIM").state = 1;
        StartedView::setWord(guid, "1");
    }
    QVERIFY(m_view->start());
    StartedView::control().slotTreeDblClick("a");
    QVERIFY(finishDownload());
    Fakes::ForgetCalls();
    StartedView::control().slotTreeDblClick("b");
    QVERIFY(finishDownload());
    QCOMPARE(m_view->boxes, QStringList());
    QCOMPARE(StartedView::cardGuids(), QStringList({"a", "b"}));
}

void TestEditorControl::doubleClickOnACardOpensItsTab()
{
    m_view.reset();
    const Fakes::OpenHome home;
    QVERIFY(home.isStarted());
    StartedView::control().slotProjectDblClick("a");
    QCOMPARE(home.tab().currentTab(), QString("a"));
    QCOMPARE(home.tab().tabList(), QStringList("a"));
}

void TestEditorControl::doubleClickOnNoCardOpensNothing()
{
    QVERIFY(m_view->start());
    StartedView::control().slotProjectDblClick({});
    QCOMPARE(CHomeApp::instance().GetMgr<CTabMgr>()->tab()->currentTab(), QString("main"));
}

void TestEditorControl::refreshButtonReadsTheServersListAndRebuilds()
{
    StartedView::addLocal("a", "BIM");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    m_view->addOnServer("new", 1);
    QSignalSpy rebuilt(&m_view->panel(), &CPanelModel::onTreeModelChanged);
    StartedView::control().reflushProjTree();
    QVERIFY(m_view->panel().HasItem("new"));
    QCOMPARE(rebuilt.count(), 1);
    QCOMPARE(StartedView::cardGuids(), QStringList("a"));
}

void TestEditorControl::updateProjectStateReadsItemAndCard()
{
    StartedView::addLocal("a", "BIM", "1", 1);
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    SmartDB::instance().find("a")->project->SetName(L"new name");
    StartedView::control().UpdateProjectState("a");
    QCOMPARE(m_view->card("a").name(), QString("new name"));
}

void TestEditorControl::endOfAChildRefreshesNothing()
{
    StartedView::addLocal("a", "BIM");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    StartedView::control().slotProcessFinsh(0);
    QCOMPARE(Fakes::Calls(), QStringList());
}

QTEST_MAIN(TestEditorControl)
#include "test_editorcontrol.moc"
