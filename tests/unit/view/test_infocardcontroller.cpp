// SPDX-License-Identifier: MIT
#include "startedview.h"

#include "view/context/editorcontrol/infocardcontroller.h"
#include "view/context/editorcontrol/projectinfo.h"

#include <QStandardItem>

using namespace TorvoEditor;
using Fakes::SmartDB;

namespace
{

QString ApplicationFile(const QString& name)
{
    return QCoreApplication::applicationDirPath() + name;
}

CInfoCardController& Controller()
{
    return *CHomeApp::instance().GetMgr<CInfoCardController>();
}

} // namespace

class TestInfoCardController : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_view = std::make_unique<StartedView>(); }
    void cleanup();

    void publishesThreeNames();
    void localProjectIsReadFromItself();
    void coordinatesHaveTwelveDecimals();
    void templateThatIsNoJsonIsNotShown_data();
    void templateThatIsNoJsonIsNotShown();
    void listedProjectThatCannotBeOpenedIsEmpty();
    void serverProjectIsReadFromTheList_data();
    void serverProjectIsReadFromTheList();
    void pictureOfAServerProjectIsFetchedAnew();
    void cancelledPictureLeavesTheCardWithoutOne();
    void unknownProjectLeavesTheCard();
    void recordIsACopy();
    void organisationBecomesATree();
    void accountWithoutAnOrganisationHasAnEmptyTree();
    void additionalRowsAreReadAtTheStart();

private:
    CProjectInfo& info() { return *m_view->published<CProjectInfo>("proInfoModel"); }

    std::unique_ptr<StartedView> m_view;
};

void TestInfoCardController::cleanup()
{
    m_view.reset();
    QFile::remove(ApplicationFile("/ProjectExpandAttr.json"));
    QDir(ApplicationFile("/projImage")).removeRecursively();
}

void TestInfoCardController::publishesThreeNames()
{
    QVERIFY(m_view->start());
    QVERIFY(m_view->published<CProjectInfo>("proInfoModel") != nullptr);
    QCOMPARE(m_view->published<CInfoCardController>("infoCardCtrl"), &Controller());
    QVERIFY(m_view->published<XHUTILITY::CTreeModel>("orgModel") != nullptr);
}

void TestInfoCardController::localProjectIsReadFromItself()
{
    m_view->giveAnOrganisation();
    auto& project = *StartedView::addLocal("a", "CIM").project;
    project.SetName(L"新区");
    project.imagePath = L"/p.jpg";
    project.SetIotCode(L"iot-1");
    project.SetAttr(L"basemap", L"earth");
    project.SetProj4(L"+proj=longlat");
    project.SetTemplate(LR"({"a":1})");
    project.SetAttr(L"Pa_ExtendedAttr", LR"({"deptId":"d1","deptName":"设计所"})");
    project.SetAttr(L"Pa_BelongsRegion", LR"({"provinceId":"31","regionName":"区"})");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    Controller().showProjectInfo("a");
    const auto record = Controller().GetProjectInfo();
    QCOMPARE(QStringList({record.guid, record.name, record.type, record.imagePath, record.iotCode,
                          record.earthConfig, record.proj4, record.templateName, record.templateContent,
                          record.provinceId, record.regionName}),
             QStringList({"a", "新区", "CIM", "/p.jpg", "iot-1", "earth", "+proj=longlat",
                          "CompTemplate.json", R"({"a":1})", "31", "区"}));
    QCOMPARE(record.extAttrs, (QMap<QString, QString>{{"deptId", "d1"}, {"deptName", "设计所"}}));
    QVERIFY(info().bModify());
    QCOMPARE(Fakes::CallsOf({"DownloadFileAry"}), QStringList());
}

void TestInfoCardController::coordinatesHaveTwelveDecimals()
{
    StartedView::addLocal("a", "CIM").project->SetPosition({121.5, -31.0000000000004, 9.0});
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    Controller().showProjectInfo("a");
    QCOMPARE(Controller().GetProjectInfo().longitude, QString("121.500000000000"));
    QCOMPARE(Controller().GetProjectInfo().latitude, QString("-31.000000000000"));
}

void TestInfoCardController::templateThatIsNoJsonIsNotShown_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << "";
    QTest::newRow("text") << "template";
    QTest::newRow("cut off") << "{";
}

void TestInfoCardController::templateThatIsNoJsonIsNotShown()
{
    QFETCH(QString, text);
    StartedView::addLocal("a", "CIM").project->SetTemplate(text.toStdWString());
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    Controller().showProjectInfo("a");
    QVERIFY(Controller().GetProjectInfo().templateName.isEmpty());
    QVERIFY(Controller().GetProjectInfo().templateContent.isEmpty());
}

void TestInfoCardController::listedProjectThatCannotBeOpenedIsEmpty()
{
    StartedView::addLocal("old", "CIM").needsUpgrade = true;
    StartedView::writeLocalList({"old"});
    QVERIFY(m_view->start());
    info().setBelongRegion("1", {}, {}, {}, {}, {}, {}, {});
    Controller().showProjectInfo("old");
    QVERIFY(Controller().GetProjectInfo().guid.isEmpty());
    QVERIFY(Controller().GetProjectInfo().provinceId.isEmpty());
    QVERIFY(info().bModify());
}

void TestInfoCardController::serverProjectIsReadFromTheList_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("type");
    QTest::newRow("scene") << 0 << "CIM";
    QTest::newRow("building") << 1 << "BIM";
}

void TestInfoCardController::serverProjectIsReadFromTheList()
{
    QFETCH(int, number);
    QFETCH(QString, type);
    auto& server = m_view->addOnServer("a", number, "d1");
    server.name = L"新区";
    server.longitude = L"121.5";
    server.latitude = L"31.5";
    server.iotCode = L"iot-1";
    server.earthConfig = L"earth";
    server.proj4 = L"+proj=longlat";
    server.customMap[L"other"] = L"x";
    QVERIFY(m_view->start());
    Controller().showProjectInfo("a");
    const auto record = Controller().GetProjectInfo();
    QCOMPARE(QStringList({record.guid, record.name, record.type, record.longitude, record.latitude,
                          record.iotCode, record.earthConfig, record.proj4}),
             QStringList({"a", "新区", type, "121.5", "31.5", "iot-1", "earth", "+proj=longlat"}));
    QCOMPARE(record.extAttrs, (QMap<QString, QString>{{"deptId", "d1"}, {"other", "x"}}));
    QVERIFY(record.templateName.isEmpty() && record.provinceId.isEmpty());
    QVERIFY(!info().bModify());
    QVERIFY(!info().bBimViewShow());
}

void TestInfoCardController::pictureOfAServerProjectIsFetchedAnew()
{
    m_view->addOnServer("a", 0);
    QVERIFY(m_view->start());
    const QString path = ApplicationFile("/projImage/a.jpg");
    QVERIFY(QDir().mkpath(ApplicationFile("/projImage")));
    QFile old(path);
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.close();
    Controller().showProjectInfo("a");
    QVERIFY(!QFile::exists(path));
    QCOMPARE(Fakes::Calls(),
             QStringList({"DownloadFileAry to " + path, "DownloadFileAry(/proj_a/projimage.jpg)"}));
    QCOMPARE(info().projImage(), "file:///" + path);
    QSignalSpy shown(&info(), &CProjectInfo::projImageChanged);
    Controller().showProjectInfo("a");
    QCOMPARE(shown.count(), 2);
}

void TestInfoCardController::cancelledPictureLeavesTheCardWithoutOne()
{
    m_view->addOnServer("a", 0);
    QVERIFY(m_view->start());
    SmartDB::instance().net.setReply("DownloadFileAry", "/proj_a/projimage.jpg", {{}, {}, true, {}});
    Controller().showProjectInfo("a");
    QCOMPARE(Controller().GetProjectInfo().guid, QString("a"));
}

void TestInfoCardController::unknownProjectLeavesTheCard()
{
    StartedView::addLocal("a", "CIM");
    StartedView::writeLocalList({"a"});
    QVERIFY(m_view->start());
    Controller().showProjectInfo("a");
    QSignalSpy changed(&info(), &CProjectInfo::projInfoChanged);
    for (const char* guid : {"unknown", ""})
        Controller().showProjectInfo(guid);
    QCOMPARE(Controller().GetProjectInfo().guid, QString("a"));
    QCOMPARE(changed.count(), 0);
}

void TestInfoCardController::recordIsACopy()
{
    QVERIFY(m_view->start());
    auto record = Controller().GetProjectInfo();
    record.name = "changed";
    QVERIFY(Controller().GetProjectInfo().name.isEmpty());
}

void TestInfoCardController::organisationBecomesATree()
{
    m_view->giveAnOrganisation();
    QVERIFY(m_view->start());
    auto* root = m_view->published<XHUTILITY::CTreeModel>("orgModel")->invisibleRootItem();
    QCOMPARE(root->rowCount(), 1);
    QCOMPARE(root->child(0)->data(257).toMap(),
             (QVariantMap{{"id", "root"}, {"name", "公司"}, {"canSelect", false}}));
    QCOMPARE(root->child(0)->rowCount(), 1);
    QCOMPARE(root->child(0)->child(0)->data(257).toMap(),
             (QVariantMap{{"id", "d1"}, {"name", "设计所"}, {"canSelect", true}}));
}

void TestInfoCardController::accountWithoutAnOrganisationHasAnEmptyTree()
{
    QVERIFY(m_view->start());
    QCOMPARE(m_view->published<XHUTILITY::CTreeModel>("orgModel")->rowCount(), 0);
}

void TestInfoCardController::additionalRowsAreReadAtTheStart()
{
    QFile file(ApplicationFile("/ProjectExpandAttr.json"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"({"insert": 2, "expands": [{"key": "k", "value": "v", "readOnly": true, "type": 0}]})");
    file.close();
    QVERIFY(m_view->start());
    QCOMPARE(info().expandInsert(), 2);
    QCOMPARE(info().expandRows().value("k").value("value").toString(), QString("v"));
}

QTEST_MAIN(TestInfoCardController)
#include "test_infocardcontroller.moc"
