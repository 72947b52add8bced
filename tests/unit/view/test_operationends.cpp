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

ZRSmartFormat::SZRFTGuid Key(const wchar_t* text)
{
    return ZRSmartFormat::GuidFromText(text);
}

const char* const expired = R"({"code":40014})";

} // namespace

/// What the controller does when a worker has ended, and in which order. The reading of a card is known by
/// the library's NeedUpgrade.
class TestOperationEnds : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_view = std::make_unique<StartedView>(); }
    void cleanup() { m_view.reset(); }

    void downloadDone();
    void downloadFailed();
    void downloadOfAProjectThatIsNotHere();
    void uploadDone();
    void uploadFailed();
    void uploadOfAProjectThatIsGone();
    void hostHearsWhatWasUploaded();
    void uploadWithoutTextsOfObjectsTellsNoNames();
    void updateDone();
    void updateFailed();
    void updateInTheOtherVariantReadsAllStates();
    void updateOfAProjectThatIsGone();
    void upgradeDone();
    void upgradeFailed();
    void upgradeEndsBeforeItsFailureIsTold();
    void failureHasItsWords_data();
    void failureHasItsWords();
    void failureWithoutAReasonIsSilent();
    void failureIsLogged();
    void demoDone();
    void demoDoneWithoutItsClone();
    void demoFailed();
    void operationIsOverWhenItsFailureIsTold();

private:
    /// A project with card and item, and everything that happens written down.
    void startWith(const QString& guid, const QString& type = "BIM", int state = 1);
    static QStringList steps()
    {
        return Fakes::CallsOf({"NotifyDownloaded", "NotifyUploaded", "NotifyUpdated", "SetSubProjNames",
                               "GetServerProjects", "CloseProject", "tip", "GetStatusByProjId", "item added",
                               "NeedUpgrade", "card removed", "DeleteProj", "GetProjectRecord"});
    }

    std::unique_ptr<StartedView> m_view;
};

void TestOperationEnds::startWith(const QString& guid, const QString& type, int state)
{
    StartedView::addLocal(guid, type, "1", state);
    StartedView::writeLocalList({guid});
    QVERIFY(m_view->start());
    m_view->writeDownTheScreens();
}

void TestOperationEnds::downloadDone()
{
    startWith("a");
    m_view->card("a").setDealState(CGridViewData::DS_DownloadState);
    StartedView::control().onDownloadFinished("a", true, {});
    QCOMPARE(steps(), QStringList({"NotifyDownloaded(a,true)", "GetStatusByProjId(a)", "NeedUpgrade(a)",
                                   "GetStatusByProjId(a)"}));
    QCOMPARE(m_view->card("a").dealState(), CGridViewData::DS_NonState);
}

void TestOperationEnds::downloadFailed()
{
    startWith("a");
    StartedView::control().onDownloadFinished("a", false, expired);
    QCOMPARE(steps(),
             QStringList({"NotifyDownloaded(a,false)", Utf8("tip(工程下载失败<br/>登录已过期,请重新登录!)"),
                          "GetStatusByProjId(a)", "NeedUpgrade(a)", "GetStatusByProjId(a)", "card removed(a)",
                          "DeleteProj(a)"}));
}

void TestOperationEnds::downloadOfAProjectThatIsNotHere()
{
    startWith("a");
    StartedView::control().onDownloadFinished("unknown", false, "reason");
    QCOMPARE(steps(),
             QStringList({Utf8("tip(工程下载失败)"), "NeedUpgrade(unknown)", "DeleteProj(unknown)"}));
}

void TestOperationEnds::uploadDone()
{
    startWith("a", "CIM");
    StartedView::control().onUploadFinished("a", true, {});
    QCOMPARE(steps(), QStringList({"NotifyUploaded(a,true)", "CloseProject(a)", "SetSubProjNames(a,)",
                                   "GetServerProjects()", "GetStatusByProjId(a)", "NeedUpgrade(a)",
                                   "GetStatusByProjId(a)"}));
}

void TestOperationEnds::uploadFailed()
{
    startWith("a", "CIM", 2);
    StartedView::control().onUploadFinished("a", false, "reason");
    QCOMPARE(steps(), QStringList({"NotifyUploaded(a,false)", Utf8("tip(工程上传失败)"),
                                   "GetStatusByProjId(a)", "NeedUpgrade(a)", "GetStatusByProjId(a)"}));
    QCOMPARE(m_view->card("a").stateType(), CGridViewData::ST_ModifyState);
}

void TestOperationEnds::uploadOfAProjectThatIsGone()
{
    startWith("a");
    StartedView::control().onUploadFinished("unknown", true, {});
    QCOMPARE(steps(), QStringList({"GetServerProjects()", "NeedUpgrade(unknown)"}));
}

void TestOperationEnds::hostHearsWhatWasUploaded()
{
    m_view->giveAnOrganisation();
    auto& project = *StartedView::addLocal("a", "CIM").project;
    project.SetName(L"新区");
    project.SetAttr(L"Pa_ExtendedAttr", LR"({"deptId":"d1","deptName":"设计所"})");
    project.addObject(Key(L"o1"), Key(L"y")).SetObjectText(L"一号");
    project.addObject(Key(L"o2"), Key(L"x"));
    project.addObject(Key(L"o3"), Key(L"y")).SetObjectText(L"三号");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    StartedView::control().onUploadFinished("a", true, {});
    const auto& host = m_view->around.host.projects;
    QVERIFY(host.uploaded.guid == L"a");
    QVERIFY(host.uploaded.name == L"新区");
    QVERIFY(
        (host.uploaded.customMap == TorvoSDK::AttributeMap{{L"deptId", L"d1"}, {L"deptName", L"设计所"}}));
    QVERIFY((host.uploadedSubProjects == std::vector<std::wstring>{L"y", L"x"}));
    QCOMPARE(host.uploadedNames, (QMap<QString, QString>{{"o1", Utf8("一号")}, {"o3", Utf8("三号")}}));
}

void TestOperationEnds::uploadWithoutTextsOfObjectsTellsNoNames()
{
    startWith("a", "CIM");
    StartedView::control().onUploadFinished("a", true, {});
    QVERIFY(m_view->around.host.projects.uploadedNames.isEmpty());
    QVERIFY(m_view->around.host.projects.uploadedSubProjects.empty());
    QCOMPARE(Fakes::CallsOf({"SetSubProjNames"}).size(), 1);
}

void TestOperationEnds::updateDone()
{
    startWith("a");
    StartedView::control().onUpdateFinished("a", true, {});
    QCOMPARE(steps(), QStringList({"NotifyUpdated(a,true)", "CloseProject(a)", "GetStatusByProjId(a)",
                                   "NeedUpgrade(a)", "GetStatusByProjId(a)"}));
}

void TestOperationEnds::updateFailed()
{
    startWith("a", "BIM", 3);
    StartedView::control().onUpdateFinished("a", false, "reason");
    QCOMPARE(steps(), QStringList({"NotifyUpdated(a,false)", Utf8("tip(工程更新失败)"),
                                   "GetStatusByProjId(a)", "NeedUpgrade(a)", "GetStatusByProjId(a)"}));
    QCOMPARE(m_view->card("a").stateType(), CGridViewData::ST_UpdateState);
}

void TestOperationEnds::updateInTheOtherVariantReadsAllStates()
{
    StartedView::addLocal("a", "BIM");
    StartedView::addLocal("b", "BIM");
    StartedView::writeLocalList({"a", "b"});
    QVERIFY(m_view->start());
    m_view->writeDownTheScreens();
    SmartDB::instance().find("b")->state = 3;
    StartedView::control().onUpdateFinished("a", true, {});
    QCOMPARE(m_view->card("b").stateType(), CGridViewData::ST_SynchroState);
    StartedView::control().setIsBimSdk(true);
    Fakes::ForgetCalls();
    StartedView::control().onUpdateFinished("a", true, {});
    QCOMPARE(m_view->card("b").stateType(), CGridViewData::ST_UpdateState);
    QCOMPARE(steps(), QStringList({"NotifyUpdated(a,true)", "CloseProject(a)", "GetStatusByProjId(a)",
                                   "NeedUpgrade(a)", "GetStatusByProjId(a)", "GetStatusByProjId(a)",
                                   "GetStatusByProjId(b)", "GetStatusByProjId(a)", "GetStatusByProjId(b)"}));
}

void TestOperationEnds::updateOfAProjectThatIsGone()
{
    startWith("a");
    StartedView::control().onUpdateFinished("unknown", true, {});
    QCOMPARE(steps(), QStringList({"CloseProject(unknown)", "NeedUpgrade(unknown)"}));
}

void TestOperationEnds::upgradeDone()
{
    startWith("a");
    m_view->card("a").setIsUpgrade(true);
    StartedView::control().onUpgradeFinished("a", true, {});
    QCOMPARE(steps(), QStringList({"GetStatusByProjId(a)", "NeedUpgrade(a)", "GetStatusByProjId(a)"}));
    QVERIFY(!m_view->card("a").isUpgrade());
}

void TestOperationEnds::upgradeFailed()
{
    startWith("a");
    m_view->card("a").setIsUpgrade(true);
    StartedView::control().onUpgradeFinished("a", false, "reason");
    QCOMPARE(steps(), QStringList({"GetStatusByProjId(a)", "NeedUpgrade(a)", "GetStatusByProjId(a)",
                                   Utf8("tip(工程升级失败)")}));
    QVERIFY(!m_view->card("a").isUpgrade());
}

void TestOperationEnds::upgradeEndsBeforeItsFailureIsTold()
{
    startWith("a");
    bool wasUpgrading = true;
    connect(CHomeApp::instance().GetMgr<CMessageBoxMgr>(), &CMessageBoxMgr::sigShowTip, this,
            [&] { wasUpgrading = m_view->card("a").isUpgrade(); });
    m_view->card("a").setIsUpgrade(true);
    StartedView::control().onUpgradeFinished("a", false, "reason");
    QVERIFY(!wasUpgrading);
}

void TestOperationEnds::failureHasItsWords_data()
{
    QTest::addColumn<QString>("slot");
    QTest::addColumn<QString>("text");
    QTest::newRow("download") << "onDownloadFinished" << Utf8("提示: 工程下载失败");
    QTest::newRow("upload") << "onUploadFinished" << Utf8("提示: 工程上传失败");
    QTest::newRow("update") << "onUpdateFinished" << Utf8("提示: 工程更新失败");
    QTest::newRow("upgrade") << "onUpgradeFinished" << Utf8("提示: 工程升级失败");
}

void TestOperationEnds::failureHasItsWords()
{
    QFETCH(QString, slot);
    QFETCH(QString, text);
    startWith("a");
    for (const char* reason : {expired, R"({"code":1})"}) {
        QVERIFY(QMetaObject::invokeMethod(&StartedView::control(), slot.toLatin1(), Q_ARG(QString, "a"),
                                          Q_ARG(bool, false), Q_ARG(QString, reason)));
    }
    QCOMPARE(m_view->boxes, QStringList({text + Utf8("<br/>登录已过期,请重新登录!"), text}));
}

void TestOperationEnds::failureWithoutAReasonIsSilent()
{
    startWith("a");
    StartedView::control().onUploadFinished("a", false, {});
    QCOMPARE(m_view->boxes, QStringList());
    QVERIFY(m_view->log.take().contains(
        Utf8("debug: CEditorControl::showErrorMsg , errCode.isEmpty \"工程上传失败\"")));
}

void TestOperationEnds::failureIsLogged()
{
    startWith("a");
    StartedView::control().onUploadFinished("a", false, "reason");
    QVERIFY(
        m_view->log.take().contains(Utf8("debug: CEditorControl::showErrorMsg \"工程上传失败\" \"reason\"")));
}

void TestOperationEnds::demoDone()
{
    startWith("demo");
    StartedView::addLocal("clone", "BIM");
    StartedView::control().onDownloadDemoFinished("demo", "clone", true, {});
    QCOMPARE(steps(), QStringList({"NotifyDownloaded(demo,true)", "item added(clone)",
                                   "GetProjectRecord(clone)", "GetStatusByProjId(clone)",
                                   "NeedUpgrade(clone)", "GetStatusByProjId(clone)", "DeleteProj(demo)"}));
    QCOMPARE(StartedView::cardGuids(), QStringList("clone"));
    QVERIFY(CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>()->ContainsProject("clone"));
    QVERIFY(!CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>()->ContainsProject("demo"));
}

void TestOperationEnds::demoDoneWithoutItsClone()
{
    startWith("demo");
    StartedView::control().onDownloadDemoFinished("demo", "clone", true, {});
    QCOMPARE(steps(), QStringList({"NotifyDownloaded(demo,true)", "NeedUpgrade(clone)", "card removed(clone)",
                                   "DeleteProj(demo)"}));
}

void TestOperationEnds::demoFailed()
{
    startWith("demo");
    StartedView::addLocal("clone", "BIM").isOpen = true;
    StartedView::control().onDownloadDemoFinished("demo", "clone", false, "reason");
    QCOMPARE(steps(), QStringList({"NotifyDownloaded(demo,false)", Utf8("tip(工程下载失败)"),
                                   "card removed(demo)", "DeleteProj(clone)", "DeleteProj(demo)"}));
}

void TestOperationEnds::operationIsOverWhenItsFailureIsTold()
{
    // Whoever answers the box by a new action meets no running operation.
    startWith("a", "BIM", 2);
    SmartDB::instance().find("a")->isUploadable = false;
    SmartDB::instance().lastError = "reason";
    int starts = 0;
    connect(CHomeApp::instance().GetMgr<CMessageBoxMgr>(), &CMessageBoxMgr::sigShowTip, this, [&] {
        if (++starts == 1)
            StartedView::control().slotUploadProject("a");
    });
    StartedView::control().slotUploadProject("a");
    QTRY_COMPARE(m_view->boxes, QStringList({Utf8("提示: 工程上传失败"), Utf8("提示: 工程上传失败")}));
}

QTEST_MAIN(TestOperationEnds)
#include "test_operationends.moc"
