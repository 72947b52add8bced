// SPDX-License-Identifier: MIT
#include "tabs/websdkmgr.h"

#include "fakes/startedhome.h"
#include "tabs/prop.h"
#include "view/context/editorcontrol/infocardcontroller.h"
#include "view/context/editorcontrol/projectinfo.h"

#include <memory>

#include <QPointer>
#include <QQmlContext>
#include <QQmlEngine>
#include <QSignalSpy>
#include <QTest>
#include <QWebChannel>

using namespace TorvoEditor;

class TestWebSDKMgr : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void basesStandInTheOrderThatTheHostCasts();
    void observesTheHostsWebViews();
    void publishesItselfAndTheTemplate();
    void hostGetsTheContextAfterTheOwnObjects();
    void hostWithoutWebViewsLeavesTheOwnObjectsAndNoMore();
    void webChannelGetsTheTemplate();
    void everyWebChannelGetsTheSameTemplate();
    void nothingIsTakenBackFromTheHostAtTheEnd();
    void templateGoesWithTheManagersEndButNotAtOnce();
    void channelAfterTheEndGetsNothing();
    void pageSeesTwoCallsAndNothingElse();
    void templateOfAnEmptyCardIsEmpty();
    void templateIsTheOneOfTheCard();
    void changeByThePageIsTheCards();
    void textIsTakenAsItIs_data();
    void textIsTakenAsItIs();
    void cardHearsOfAnotherTextOnly();
    void callAfterTheEndOfTheManagersDoesNothing();

private:
    [[nodiscard]] static CWebSDKMgr& mgr() { return *CHomeApp::instance().GetMgr<CWebSDKMgr>(); }
    [[nodiscard]] static CProjectInfo& card()
    {
        return *CHomeApp::instance().GetMgr<CInfoCardController>()->projectInfo();
    }
    [[nodiscard]] QObject* published(const char* name) const
    {
        return m_engine->rootContext()->contextProperty(name).value<QObject*>();
    }
    void publish() { CHomeApp::instance().RegisterContext(m_engine->rootContext()); }
    [[nodiscard]] Prop& prop()
    {
        publish();
        return *qobject_cast<Prop*>(published("propObject"));
    }

    std::unique_ptr<Fakes::Surroundings> m_surroundings;
    std::unique_ptr<QQmlEngine> m_engine;
};

void TestWebSDKMgr::init()
{
    m_surroundings = std::make_unique<Fakes::Surroundings>();
    m_engine = std::make_unique<QQmlEngine>();
    QVERIFY(CHomeApp::instance().Init(Fakes::TestSession()));
}

void TestWebSDKMgr::cleanup()
{
    m_engine.reset();
    m_surroundings.reset();
}

void TestWebSDKMgr::basesStandInTheOrderThatTheHostCasts()
{
    auto* object = static_cast<QObject*>(&mgr());
    auto* mgrObj = static_cast<IMgrObj*>(&mgr());
    auto* observer = static_cast<TorvoSDK::IWebObserver*>(&mgr());
    QVERIFY(static_cast<void*>(object) < static_cast<void*>(mgrObj));
    QVERIFY(static_cast<void*>(mgrObj) < static_cast<void*>(observer));
}

void TestWebSDKMgr::observesTheHostsWebViews()
{
    const auto& observers = m_surroundings->host.web.observers;
    QCOMPARE(observers.size(), std::size_t(1));
    QVERIFY(observers.front() == &mgr());
}

void TestWebSDKMgr::publishesItselfAndTheTemplate()
{
    publish();
    QVERIFY(published("webSdkMgr") == &mgr());
    QVERIFY(qobject_cast<Prop*>(published("propObject")) != nullptr);
    QVERIFY(published("propObject")->parent() == nullptr);
}

void TestWebSDKMgr::hostGetsTheContextAfterTheOwnObjects()
{
    int calls = 0;
    m_surroundings->host.web.onContribute = [&](QQmlContext* context) {
        ++calls;
        QVERIFY(context == m_engine->rootContext());
        QVERIFY(published("webSdkMgr") == &mgr());
        QVERIFY(published("propObject") != nullptr);
        context->setContextProperty("webViewMgr", this);
    };
    publish();
    QCOMPARE(calls, 1);
    QVERIFY(published("webViewMgr") == this);
}

void TestWebSDKMgr::hostWithoutWebViewsLeavesTheOwnObjectsAndNoMore()
{
    CHomeApp::instance().UnInit();
    m_surroundings->host.hasWeb = false;
    Fakes::ForgetCalls();
    QVERIFY(CHomeApp::instance().Init(Fakes::TestSession()));
    publish();
    QVERIFY(published("webSdkMgr") == &mgr());
    QVERIFY(published("propObject") != nullptr);
    QVERIFY(!m_engine->rootContext()->contextProperty("webViewMgr").isValid());
    QCOMPARE(Fakes::CallsOf({"AddWebObserver", "ContributeContext"}), QStringList());
}

void TestWebSDKMgr::webChannelGetsTheTemplate()
{
    QWebChannel channel;
    m_surroundings->host.web.observers.front()->OnWebChannel(&channel);
    QCOMPARE(channel.registeredObjects(), (QHash<QString, QObject*>{{"propObject", &prop()}}));
}

void TestWebSDKMgr::everyWebChannelGetsTheSameTemplate()
{
    QWebChannel first;
    QWebChannel second;
    mgr().OnWebChannel(&first);
    mgr().OnWebChannel(&second);
    QCOMPARE(first.registeredObjects(), second.registeredObjects());
}

void TestWebSDKMgr::nothingIsTakenBackFromTheHostAtTheEnd()
{
    Fakes::ForgetCalls();
    mgr().UnInit();
    QCOMPARE(Fakes::Calls(), QStringList());
    QCOMPARE(m_surroundings->host.web.observers.size(), std::size_t(1));
}

void TestWebSDKMgr::templateGoesWithTheManagersEndButNotAtOnce()
{
    const QPointer<QObject> object = &prop();
    mgr().UnInit();
    QVERIFY(!object.isNull());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(object.isNull());
}

void TestWebSDKMgr::channelAfterTheEndGetsNothing()
{
    mgr().UnInit();
    QWebChannel channel;
    mgr().OnWebChannel(&channel);
    QVERIFY(channel.registeredObjects().isEmpty());
}

void TestWebSDKMgr::pageSeesTwoCallsAndNothingElse()
{
    const auto& meta = Prop::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 2);
    const auto get = meta.method(meta.indexOfSlot("getProp()"));
    const auto set = meta.method(meta.indexOfSlot("setProp(QString)"));
    QCOMPARE(get.returnType(), int(QMetaType::QString));
    QCOMPARE(set.returnType(), int(QMetaType::Void));
    QVERIFY(get.access() == QMetaMethod::Public && set.access() == QMetaMethod::Public);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    const auto& mgrMeta = CWebSDKMgr::staticMetaObject;
    QCOMPARE(mgrMeta.methodCount(), mgrMeta.methodOffset());
    QCOMPARE(mgrMeta.propertyCount(), mgrMeta.propertyOffset());
}

void TestWebSDKMgr::templateOfAnEmptyCardIsEmpty()
{
    QCOMPARE(prop().getProp(), QString());
}

void TestWebSDKMgr::templateIsTheOneOfTheCard()
{
    SProjectInfoRecord record;
    record.templateContent = R"({"groups": []})";
    card().SetProjectData(record, true);
    QCOMPARE(prop().getProp(), QString(R"({"groups": []})"));
    record.templateContent = "[1]";
    card().SetProjectData(record, true);
    QCOMPARE(prop().getProp(), QString("[1]"));
}

void TestWebSDKMgr::changeByThePageIsTheCards()
{
    prop().setProp("[2]");
    QCOMPARE(card().templateContent(), QString("[2]"));
    QCOMPARE(CHomeApp::instance().GetMgr<CInfoCardController>()->GetProjectInfo().templateContent,
             QString("[2]"));
}

void TestWebSDKMgr::textIsTakenAsItIs_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << "";
    QTest::newRow("no JSON") << "{ this is";
    QTest::newRow("line ends and blanks") << " {\r\n\t\"a\" : 1.0 }\n";
    QTest::newRow("Chinese, and beyond the basic plane") << QString::fromUtf8("[\"楼层高度 𠮷\"]");
    QTest::newRow("large") << QString(5 << 20, 'x');
}

void TestWebSDKMgr::textIsTakenAsItIs()
{
    QFETCH(QString, text);
    prop().setProp(text);
    QCOMPARE(prop().getProp(), text);
}

void TestWebSDKMgr::cardHearsOfAnotherTextOnly()
{
    auto& page = prop();
    QSignalSpy changes(&card(), &CProjectInfo::templateContentChanged);
    page.setProp("[1]");
    page.setProp("[1]");
    QCOMPARE(changes.count(), 1);
    page.setProp("[2]");
    QCOMPARE(changes.count(), 2);
}

void TestWebSDKMgr::callAfterTheEndOfTheManagersDoesNothing()
{
    const QPointer<Prop> page = &prop();
    page->setProp("[1]");
    CHomeApp::instance().UnInit();
    QVERIFY(!page.isNull());
    page->setProp("[2]");
    QCOMPARE(page->getProp(), QString());
}

QTEST_MAIN(TestWebSDKMgr)
#include "test_websdkmgr.moc"
