// SPDX-License-Identifier: MIT
#include "core/homeapp.h"

#include "convert/bimmgr.h"
#include "convert/floorinfomgr.h"
#include "convert/floormatchedctrl.h"
#include "convert/serviceconvertmgr.h"
#include "core/messageboxmgr.h"
#include "fakes/fakekyvapi.h"
#include "fakes/logbook.h"
#include "fakes/startedhome.h"
#include "project/localprojectinfomgr.h"
#include "project/projectmgr.h"
#include "tabs/tabmgr.h"
#include "tabs/websdkmgr.h"
#include "view/context/editorcontrol/editorcontrol.h"
#include "view/context/editorcontrol/gridviewcontroller.h"
#include "view/context/editorcontrol/infocardcontroller.h"

#include <memory>
#include <optional>
#include <vector>

#include <QDir>
#include <QQmlContext>
#include <QQmlEngine>
#include <QTest>

using namespace TorvoEditor;

namespace
{

CHomeApp& App()
{
    return CHomeApp::instance();
}

std::vector<std::type_index> VisitedTypes()
{
    std::vector<std::type_index> types;
    App().ForEachMgr([&](IMgrObj* mgr) { types.emplace_back(typeid(*mgr)); });
    return types;
}

const std::vector<std::type_index> visitOrder = {
    typeid(CProjectMgr),
    typeid(CLocalProjectInfoMgr),
    typeid(CTabMgr),
    typeid(CInfoCardController),
    typeid(CFloorInfoMgr),
    typeid(CWebSDKMgr),
    typeid(CGridViewController),
    typeid(CEditorControl),
    typeid(CMessageBoxMgr),
    typeid(CBimMgr),
    typeid(CServiceConvertMgr),
    typeid(CFloorMatchedCtrl),
};

QString PropertyOf(const char* name)
{
    return QCoreApplication::instance()->property(name).toString();
}

} // namespace

class TestHomeApp : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void getMgrBeforeInitIsNullAndCreatesNothing();
    void forEachMgrOnAnEmptyTableDoesNothing();
    void unInitWithoutInitIsHarmless();
    void sessionBecomesApplicationProperties();
    void addressThatIsAPathAloneIsRefused_data();
    void addressThatIsAPathAloneIsRefused();
    void addressWithAnythingAroundThePathPasses_data();
    void addressWithAnythingAroundThePathPasses();
    void emptyAddressGoesOnToTheServerLibrary();
    void serverLibraryThatRefusesEndsTheStartSilently();
    void firstContactHappensInOrder();
    void managersAreInitialisedByAscendingPriority();
    void everyPassVisitsByAscendingPriority();
    void getMgrFindsEachManager();
    void keyOfTheTableIsTheExactClass();
    void isBimSdkReachesTheEditorControl_data();
    void isBimSdkReachesTheEditorControl();
    void registerContextPublishesWhatTheScreensBindTo();
    void unInitEmptiesTheTableFromTheHighestPriorityDown();
    void unInitRunsAllBodiesBeforeAnyManagerIsDestroyed();
    void secondInitReplacesTheManagersWithoutTheirUnInit();
    void startsAgainAfterUnInit();

private:
    void start();
    void recordDestruction(QObject* mgr, const QString& name);

    std::unique_ptr<Fakes::Surroundings> m_surroundings;
    std::unique_ptr<Fakes::LogBook> m_log;
    TorvoSDK::CTorvoSession m_session;
};

void TestHomeApp::init()
{
    m_surroundings = std::make_unique<Fakes::Surroundings>();
    m_log = std::make_unique<Fakes::LogBook>();
    m_session = Fakes::TestSession();
}

void TestHomeApp::cleanup()
{
    m_surroundings.reset();
    m_log.reset();
}

void TestHomeApp::start()
{
    QVERIFY(App().Init(m_session));
}

void TestHomeApp::recordDestruction(QObject* mgr, const QString& name)
{
    connect(mgr, &QObject::destroyed, this, [name] { Fakes::Called(QStringLiteral("~") + name); });
}

void TestHomeApp::getMgrBeforeInitIsNullAndCreatesNothing()
{
    QVERIFY(App().GetMgr<CProjectMgr>() == nullptr);
    QVERIFY(VisitedTypes().empty());
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestHomeApp::forEachMgrOnAnEmptyTableDoesNothing()
{
    int visits = 0;
    App().ForEachMgr([&](IMgrObj*) { ++visits; });
    QCOMPARE(visits, 0);
}

void TestHomeApp::unInitWithoutInitIsHarmless()
{
    App().UnInit();
    App().UnInit();
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestHomeApp::sessionBecomesApplicationProperties()
{
    start();
    QCOMPARE(PropertyOf("token"), QString("token-1"));
    QCOMPARE(PropertyOf("sdkAddr"), QString("http://127.0.0.1:2"));
    QCOMPARE(PropertyOf("serverAddr"), QString("http://127.0.0.1:1"));
    QCOMPARE(PropertyOf("appVer"), QString("Normal"));
    QCOMPARE(PropertyOf("loginName"), QString::fromUtf8("王工"));
    QCOMPARE(PropertyOf("cookies"), QString("cookie=1"));
}

void TestHomeApp::addressThatIsAPathAloneIsRefused_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("path") << "/torvo";
    QTest::newRow("path with api") << "/api/torvo";
}

void TestHomeApp::addressThatIsAPathAloneIsRefused()
{
    QFETCH(QString, address);
    m_session.serverAddr = address.toStdWString();
    m_session.token = L"token of the refused";
    QVERIFY(!App().Init(m_session));
    QCOMPARE(m_log->take(),
             QStringList("debug: CHomeApp::Init serverAddr is Invalid \"http://127.0.0.1:2\""));
    QCOMPARE(PropertyOf("token"), QString("token of the refused"));
    QCOMPARE(PropertyOf("serverAddr"), address);
    QVERIFY(VisitedTypes().empty());
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestHomeApp::addressWithAnythingAroundThePathPasses_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("host before") << "http://server/torvo";
    QTest::newRow("host before api") << "http://server/api/torvo";
    QTest::newRow("slash behind") << "/torvo/";
    QTest::newRow("blank before") << " /torvo";
    QTest::newRow("other case") << "/Torvo";
    QTest::newRow("other case with api") << "/API/torvo";
}

void TestHomeApp::addressWithAnythingAroundThePathPasses()
{
    QFETCH(QString, address);
    m_session.serverAddr = address.toStdWString();
    QVERIFY(App().Init(m_session));
    QCOMPARE(Fakes::CallsOf({"SetServer"}), QStringList("SetServer(" + address + ")"));
}

void TestHomeApp::emptyAddressGoesOnToTheServerLibrary()
{
    m_session.serverAddr.clear();
    QVERIFY(App().Init(m_session));
    QCOMPARE(Fakes::CallsOf({"SetServer"}), QStringList("SetServer()"));
}

void TestHomeApp::serverLibraryThatRefusesEndsTheStartSilently()
{
    Fakes::SmartDB::instance().acceptsServer = false;
    QVERIFY(!App().Init(m_session));
    QCOMPARE(Fakes::Calls(),
             QStringList({"KYVApi::init(http://127.0.0.1:1,token-1)", "SetServer(http://127.0.0.1:1)"}));
    QCOMPARE(m_log->take(), QStringList());
    QVERIFY(VisitedTypes().empty());
}

void TestHomeApp::firstContactHappensInOrder()
{
    start();
    QCOMPARE(Fakes::Calls().mid(0, 5), QStringList({
                                           "KYVApi::init(http://127.0.0.1:1,token-1)",
                                           "SetServer(http://127.0.0.1:1)",
                                           "SetUp(0)",
                                           "LoginByToken(token-1)",
                                           "SetCookie(cookie=1)",
                                       }));
    QCOMPARE(Fakes::KyvApi().serverAddr, QString("http://127.0.0.1:1"));
}

void TestHomeApp::managersAreInitialisedByAscendingPriority()
{
    start();
    // Server access, then the local store, then the controllers.
    QCOMPARE(Fakes::CallsOf({"GetServerProjects", "SetProjectRecords", "AddMessageObserver"}),
             QStringList({"GetServerProjects()", "SetProjectRecords()", "AddMessageObserver()"}));
}

void TestHomeApp::everyPassVisitsByAscendingPriority()
{
    start();
    QVERIFY(VisitedTypes() == visitOrder);
}

void TestHomeApp::getMgrFindsEachManager()
{
    start();
    QVERIFY(App().GetMgr<CProjectMgr>() != nullptr);
    QVERIFY(App().GetMgr<CLocalProjectInfoMgr>() != nullptr);
    QVERIFY(App().GetMgr<CTabMgr>() != nullptr);
    QVERIFY(App().GetMgr<CInfoCardController>() != nullptr);
    QVERIFY(App().GetMgr<CGridViewController>() != nullptr);
    QVERIFY(App().GetMgr<CEditorControl>() != nullptr);
    QVERIFY(App().GetMgr<CMessageBoxMgr>() != nullptr);
    QVERIFY(App().GetMgr<CBimMgr>() != nullptr);
    QVERIFY(App().GetMgr<CWebSDKMgr>() != nullptr);
    QVERIFY(App().GetMgr<CServiceConvertMgr>() != nullptr);
    QVERIFY(App().GetMgr<CFloorInfoMgr>() != nullptr);
    QVERIFY(App().GetMgr<CFloorMatchedCtrl>() != nullptr);
    // The cast of a manager with several bases must not be off.
    QCOMPARE(App().GetMgr<CTabMgr>()->metaObject(), &CTabMgr::staticMetaObject);
    QCOMPARE(App().GetMgr<CMessageBoxMgr>()->metaObject(), &CMessageBoxMgr::staticMetaObject);
}

void TestHomeApp::keyOfTheTableIsTheExactClass()
{
    start();
    QVERIFY(App().GetMgr<IMgrObj>() == nullptr);
}

void TestHomeApp::isBimSdkReachesTheEditorControl_data()
{
    QTest::addColumn<bool>("isBimSdk");
    QTest::newRow("with") << true;
    QTest::newRow("without") << false;
}

void TestHomeApp::isBimSdkReachesTheEditorControl()
{
    QFETCH(bool, isBimSdk);
    m_session.isBimSdk = isBimSdk;
    start();
    QCOMPARE(App().GetMgr<CEditorControl>()->isBimSdk(), isBimSdk);
}

void TestHomeApp::registerContextPublishesWhatTheScreensBindTo()
{
    start();
    QQmlEngine engine;
    auto* context = engine.rootContext();
    App().RegisterContext(context);
    QCOMPARE(context->contextProperty("appPath").toString(),
             QDir(QCoreApplication::applicationDirPath()).absolutePath());
    const std::vector<std::pair<QString, QObject*>> published = {
        {"tabMgr", App().GetMgr<CTabMgr>()},
        {"tab", App().GetMgr<CTabMgr>()->tab()},
        {"infoCardCtrl", App().GetMgr<CInfoCardController>()},
        {"gridViewCtrl", App().GetMgr<CGridViewController>()},
        {"editorControl", App().GetMgr<CEditorControl>()},
        {"messageBoxMgr", App().GetMgr<CMessageBoxMgr>()},
        {"webSdkMgr", App().GetMgr<CWebSDKMgr>()},
        {"bimMgr", App().GetMgr<CBimMgr>()},
        {"serviceConvertMgr", App().GetMgr<CServiceConvertMgr>()},
        {"floorMatchedCtrl", App().GetMgr<CFloorMatchedCtrl>()},
    };
    for (const auto& [name, object] : published) {
        QVERIFY2(object != nullptr, qPrintable(name));
        QVERIFY2(context->contextProperty(name).value<QObject*>() == object, qPrintable(name));
    }
    for (const char* name : {"proInfoModel", "orgModel", "gridViewModel", "leftPanelModel", "propObject",
                             "serviceConvertModel", "floorModel"})
        QVERIFY2(context->contextProperty(name).value<QObject*>() != nullptr, name);
}

void TestHomeApp::unInitEmptiesTheTableFromTheHighestPriorityDown()
{
    start();
    recordDestruction(App().GetMgr<CProjectMgr>(), "CProjectMgr");
    recordDestruction(App().GetMgr<CTabMgr>(), "CTabMgr");
    recordDestruction(App().GetMgr<CEditorControl>(), "CEditorControl");
    recordDestruction(App().GetMgr<CServiceConvertMgr>(), "CServiceConvertMgr");
    App().UnInit();
    QCOMPARE(Fakes::CallsOf({"~CProjectMgr", "~CTabMgr", "~CEditorControl", "~CServiceConvertMgr"}),
             QStringList({"~CServiceConvertMgr", "~CEditorControl", "~CTabMgr", "~CProjectMgr"}));
    QVERIFY(VisitedTypes().empty());
    QVERIFY(App().GetMgr<CProjectMgr>() == nullptr);
}

void TestHomeApp::unInitRunsAllBodiesBeforeAnyManagerIsDestroyed()
{
    start();
    auto* tabMgr = App().GetMgr<CTabMgr>();
    recordDestruction(App().GetMgr<CServiceConvertMgr>(), "CServiceConvertMgr");
    connect(tabMgr->tab(), &QObject::destroyed, this, [] {
        // The tab manager ends in the middle of the pass: the server library has gone, the table stands.
        Fakes::Called("tab gone, managers: " + QString::number(VisitedTypes().size()));
    });
    App().UnInit();
    QCOMPARE(Fakes::Calls().filter(QRegExp("FreeIDBDirector|tab gone|~")),
             QStringList({"FreeIDBDirector()", "tab gone, managers: 12", "~CServiceConvertMgr"}));
}

void TestHomeApp::secondInitReplacesTheManagersWithoutTheirUnInit()
{
    start();
    auto* earlier = App().GetMgr<CTabMgr>();
    recordDestruction(earlier, "earlier CTabMgr");
    start();
    QVERIFY(Fakes::Calls().contains("~earlier CTabMgr"));
    QCOMPARE(Fakes::CallsOf({"FreeIDBDirector"}), QStringList());
    QVERIFY(App().GetMgr<CTabMgr>() != nullptr);
    QVERIFY(VisitedTypes() == visitOrder);
}

void TestHomeApp::startsAgainAfterUnInit()
{
    start();
    App().UnInit();
    start();
    QVERIFY(VisitedTypes() == visitOrder);
}

QTEST_MAIN(TestHomeApp)
#include "test_homeapp.moc"
