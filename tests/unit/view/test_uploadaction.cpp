// SPDX-License-Identifier: MIT
#include "startedview.h"

using namespace TorvoEditor;
using Fakes::SmartDB;

namespace
{

constexpr int noSubProject = -1;

QString Utf8(const char* text)
{
    return QString::fromUtf8(text);
}

} // namespace

class TestUploadAction : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void uploadGoesByTheState_data();
    void uploadGoesByTheState();
    void uploadGoesByTheServersState_data();
    void uploadGoesByTheServersState();
    void serverThatCannotBeAskedHasNothingAgainstIt();
    void newSceneGoesByItsApplication_data();
    void newSceneGoesByItsApplication();
    void onlyANewSceneIsAskedAbout_data();
    void onlyANewSceneIsAskedAbout();
    void subProjectThatIsNotHereIsPassedOver();
    void searchEndsAtTheFirstSubProjectToSend();
    void unknownProjectIsPassedOver();
    void runningOperationIsSaidTwice_data();
    void runningOperationIsSaidTwice();
    void cardShowsTheUpload();
    void refreshWaitsForTheUpload();
    void nextUploadMayStartAfterTheEnd();

private:
    /// The calls of the upload that may have been started, after its end.
    QStringList finishedUploads();
    static void addProject(const QString& guid, const QString& type, const QString& word, int state);
    static void allowApplication(const Fakes::Reply& reply);

    std::unique_ptr<StartedView> m_view;
};

void TestUploadAction::init()
{
    m_view = std::make_unique<StartedView>();
    qApp->setProperty("appID", "7");
    allowApplication({});
}

void TestUploadAction::cleanup()
{
    qApp->setProperty("appID", QVariant());
    m_view.reset();
}

QStringList TestUploadAction::finishedUploads()
{
    if (m_view->card("a").dealState() == CGridViewData::DS_UploadState &&
        !StartedView::waitForCall("NotifyUploaded(a,true)"))
        return {"no end"};
    return Fakes::CallsOf({"UploadProj"});
}

void TestUploadAction::addProject(const QString& guid, const QString& type, const QString& word, int state)
{
    StartedView::addLocal(guid, type, word, state);
    StartedView::writeLocalList({guid});
}

void TestUploadAction::allowApplication(const Fakes::Reply& reply)
{
    SmartDB::instance().net.setReply("CanAppIdUpload", "7", reply);
}

void TestUploadAction::uploadGoesByTheState_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<int>("subState");
    QTest::addColumn<bool>("force");
    QTest::addColumn<QString>("way");
    const char* names[] = {"only here", "the same", "changed here", "changed on the server",
                           "changed on both sides"};
    // By state: alone, with a part that has nothing to send, with a part that has.
    const char* ways[][3] = {{"force", "force", "force"},
                             {"", "", "plain"},
                             {"plain", "plain", "plain"},
                             {"", "", "plain"},
                             {"force", "force", "force"}};
    for (int state = 0; state <= 4; ++state) {
        QTest::addRow("%s", names[state]) << state << noSubProject << false << ways[state][0];
        for (const int subState : {1, 3, 4, 5})
            QTest::addRow("%s, part %d", names[state], subState)
                << state << subState << false << ways[state][1];
        for (const int subState : {0, 2})
            QTest::addRow("%s, part %d", names[state], subState)
                << state << subState << false << ways[state][2];
    }
    QTest::newRow("changed here, by force") << 2 << noSubProject << true << "force";
    QTest::newRow("the same, by force") << 1 << noSubProject << true << "";
    QTest::newRow("the same with a part, by force") << 1 << 2 << true << "force";
}

void TestUploadAction::uploadGoesByTheState()
{
    QFETCH(int, state);
    QFETCH(int, subState);
    QFETCH(bool, force);
    QFETCH(QString, way);
    addProject("a", "CIM", "1", state);
    if (subState != noSubProject) {
        StartedView::addLocal("part", "BIM", "1", subState);
        const auto key = [](const wchar_t* text) { return ZRSmartFormat::GuidFromText(text); };
        SmartDB::instance().find("a")->project->addObject(key(L"o"), key(L"part"));
    }
    QVERIFY(m_view->start());
    StartedView::control().slotUploadProject("a", force);
    const auto uploads = finishedUploads();
    QCOMPARE(uploads.value(0), way.isEmpty() ? QString() : "UploadProj(a," + way + ")");
    QCOMPARE(m_view->boxes, QStringList());
}

void TestUploadAction::uploadGoesByTheServersState_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("answer");
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<QStringList>("uploads");
    const QStringList question(Utf8("强制上传? 确定强制上传工程？"));
    const QStringList none;
    QTest::newRow("uploading") << "0" << 2 << true
                               << QStringList(Utf8("提示: 服务器本工程正在上传中，请稍后重试")) << none;
    QTest::newRow("converting") << "3" << 2 << true
                                << QStringList(Utf8("提示: 服务器本工程正在转换中，请稍后重试")) << none;
    QTest::newRow("upload failed, yes")
        << "-1" << 1 << true << question << QStringList("UploadProj(a,force)");
    QTest::newRow("upload failed, no") << "-1" << 2 << false << question << none;
    QTest::newRow("not there") << "2" << 1 << false << none << QStringList("UploadProj(a,force)");
    QTest::newRow("unknown word") << "?" << 2 << false << none << QStringList("UploadProj(a,plain)");
}

void TestUploadAction::uploadGoesByTheServersState()
{
    QFETCH(QString, word);
    QFETCH(int, state);
    QFETCH(bool, answer);
    addProject("a", "BIM", word, state);
    m_view->answer = answer;
    QVERIFY(m_view->start());
    StartedView::control().slotUploadProject("a");
    QTEST(finishedUploads(), "uploads");
    QTEST(m_view->boxes, "boxes");
}

void TestUploadAction::serverThatCannotBeAskedHasNothingAgainstIt()
{
    addProject("a", "BIM", "1", 1);
    SmartDB::instance().net.setReply("GetStatusByProjId", "a", {{}, "no server", false, {}});
    QVERIFY(m_view->start());
    StartedView::control().slotUploadProject("a");
    QCOMPARE(finishedUploads(), QStringList("UploadProj(a,force)"));
    QCOMPARE(m_view->boxes, QStringList());
}

void TestUploadAction::newSceneGoesByItsApplication_data()
{
    QTest::addColumn<QString>("refusal");
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<QStringList>("uploads");
    const QStringList none;
    QTest::newRow("allowed") << "" << none << QStringList("UploadProj(a,force)");
    QTest::newRow("refused with words")
        << Utf8(R"({"code":1,"msg":"应用已停用"})") << QStringList(Utf8("提示: 应用已停用")) << none;
    QTest::newRow("refused without words") << R"({"code":1})" << none << none;
    QTest::newRow("refused in no JSON") << "no" << none << none;
}

void TestUploadAction::newSceneGoesByItsApplication()
{
    QFETCH(QString, refusal);
    allowApplication({{}, refusal, false, {}});
    addProject("a", "CIM", "2", 0);
    QVERIFY(m_view->start());
    StartedView::control().slotUploadProject("a");
    QTEST(finishedUploads(), "uploads");
    QTEST(m_view->boxes, "boxes");
    QCOMPARE(Fakes::CallsOf({"CanAppIdUpload"}), QStringList("CanAppIdUpload(7)"));
}

void TestUploadAction::onlyANewSceneIsAskedAbout_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("word");
    QTest::addColumn<int>("state");
    QTest::newRow("new building") << "BIM"
                                  << "2" << 0;
    QTest::newRow("changed scene") << "CIM"
                                   << "1" << 2;
    QTest::newRow("scene changed on both sides") << "CIM"
                                                 << "1" << 4;
}

void TestUploadAction::onlyANewSceneIsAskedAbout()
{
    QFETCH(QString, type);
    QFETCH(QString, word);
    QFETCH(int, state);
    allowApplication({{}, R"({"msg":"no"})", false, {}});
    addProject("a", type, word, state);
    QVERIFY(m_view->start());
    StartedView::control().slotUploadProject("a");
    QCOMPARE(finishedUploads().size(), 1);
    QCOMPARE(Fakes::CallsOf({"CanAppIdUpload"}), QStringList());
}

void TestUploadAction::subProjectThatIsNotHereIsPassedOver()
{
    addProject("a", "CIM", "1", 1);
    const auto key = [](const wchar_t* text) { return ZRSmartFormat::GuidFromText(text); };
    SmartDB::instance().find("a")->project->addObject(key(L"o"), key(L"gone"));
    QVERIFY(m_view->start());
    StartedView::control().slotUploadProject("a");
    QCOMPARE(finishedUploads(), QStringList());
    QCOMPARE(Fakes::CallsOf({"GetStatusByProjId"}).filter("gone"), QStringList());
}

void TestUploadAction::searchEndsAtTheFirstSubProjectToSend()
{
    addProject("a", "CIM", "0", 1);
    const auto key = [](const QString& text) { return ZRSmartFormat::GuidFromText(text.toStdWString()); };
    for (const char* part : {"same", "changed", "later"}) {
        StartedView::addLocal(part, "BIM", "1", qstrcmp(part, "same") == 0 ? 1 : 2);
        SmartDB::instance().find("a")->project->addObject(key(QString("o_") + part), key(part));
    }
    QVERIFY(m_view->start());
    StartedView::setWord("a", "1");
    // A failure at the scene itself: no part is asked about by the upload.
    SmartDB::instance().find("a")->isUploadable = false;
    StartedView::control().slotUploadProject("a");
    QVERIFY(StartedView::waitForCall("NotifyUploaded(a,false)"));
    QVERIFY(Fakes::Calls().contains("GetStatusByProjId(changed)"));
    QVERIFY(!Fakes::Calls().contains("GetStatusByProjId(later)"));
}

void TestUploadAction::unknownProjectIsPassedOver()
{
    QVERIFY(m_view->start());
    StartedView::control().slotUploadProject("unknown");
    QCOMPARE(Fakes::CallsOf({"GetStatusByProjId"}), QStringList());
    QCOMPARE(m_view->boxes, QStringList());
}

void TestUploadAction::runningOperationIsSaidTwice_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<QString>("box");
    QTest::newRow("download") << 1 << Utf8("提示: 工程下载中，请稍后重试");
    QTest::newRow("upload") << 2 << Utf8("提示: 工程上传中，请稍后重试");
    QTest::newRow("update") << 3 << Utf8("提示: 工程更新中，请稍后重试");
    QTest::newRow("upgrade") << 4 << Utf8("提示: ");
}

void TestUploadAction::runningOperationIsSaidTwice()
{
    QFETCH(int, operation);
    QFETCH(QString, box);
    m_view->addOnServer("server", 0);
    SmartDB::instance().addOnServer("server", "server", "CIM").state = 1;
    StartedView::setWord("server", "1");
    StartedView::addLocal("a", "BIM", "1", 2);
    StartedView::addLocal("other", "BIM", "1", operation == PO_Update ? 3 : 2).needsUpgrade =
        operation == PO_Upgrade;
    StartedView::writeLocalList({"a", "other"});
    QVERIFY(m_view->start());
    auto& control = StartedView::control();
    QString end;
    if (operation == PO_Download) {
        control.slotTreeDblClick("server");
        end = "NotifyDownloaded(server,true)";
    } else if (operation == PO_Upload) {
        control.slotUploadProject("other");
        end = "NotifyUploaded(other,true)";
    } else if (operation == PO_Update) {
        control.slotSyncProject("other");
        end = "NotifyUpdated(other,true)";
    } else {
        control.upgradeProj("other");
        end = "Upgrade(other)";
    }
    control.slotUploadProject("a");
    QCOMPARE(m_view->boxes, QStringList({box, box}));
    QCOMPARE(m_view->card("a").dealState(), CGridViewData::DS_NonState);
    QVERIFY(StartedView::waitForCall(end));
    QTRY_VERIFY(!m_view->card("other").isUpgrade());
    QCOMPARE(Fakes::CallsOf({"UploadProj"}).filter("(a,"), QStringList());
}

void TestUploadAction::cardShowsTheUpload()
{
    addProject("a", "BIM", "1", 2);
    QVERIFY(m_view->start());
    StartedView::control().slotUploadProject("a");
    QCOMPARE(m_view->card("a").dealState(), CGridViewData::DS_UploadState);
    QCOMPARE(m_view->card("a").stateType(), CGridViewData::ST_ModifyState);
    QVERIFY(StartedView::waitForCall("NotifyUploaded(a,true)"));
    QCOMPARE(m_view->card("a").dealState(), CGridViewData::DS_NonState);
}

void TestUploadAction::refreshWaitsForTheUpload()
{
    addProject("a", "BIM", "1", 2);
    QVERIFY(m_view->start());
    StartedView::control().slotUploadProject("a");
    Fakes::ForgetCalls();
    StartedView::letTheTimerFire();
    QCOMPARE(Fakes::CallsOf({"GetStatusByProjId"}), QStringList());
    QVERIFY(StartedView::waitForCall("NotifyUploaded(a,true)"));
    Fakes::ForgetCalls();
    StartedView::letTheTimerFire();
    QVERIFY(!Fakes::CallsOf({"GetStatusByProjId"}).isEmpty());
}

void TestUploadAction::nextUploadMayStartAfterTheEnd()
{
    addProject("a", "BIM", "1", 2);
    QVERIFY(m_view->start());
    for (int i = 0; i < 2; ++i) {
        Fakes::ForgetCalls();
        StartedView::control().slotUploadProject("a");
        QCOMPARE(finishedUploads(), QStringList("UploadProj(a,plain)"));
    }
    QCOMPARE(m_view->boxes, QStringList());
}

QTEST_MAIN(TestUploadAction)
#include "test_uploadaction.moc"
