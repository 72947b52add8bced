// SPDX-License-Identifier: MIT
#include "core/torvohomeplugin.h"

#include "core/framewindow.h"
#include "core/homeapp.h"
#include "fakes/fakenative.h"
#include "fakes/logbook.h"
#include "fakes/startedhome.h"
#include "project/projectmgr.h"
#include "tabs/tabmgr.h"

#include <memory>
#include <type_traits>

#include <QGuiApplication>
#include <QPointer>
#include <QTest>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

using namespace TorvoEditor;

// The class shows these operations and no other.
static_assert(std::is_default_constructible_v<TorvoHomePlugin>);
static_assert(std::is_copy_assignable_v<TorvoHomePlugin>);
static_assert(!std::is_copy_constructible_v<TorvoHomePlugin>);
static_assert(!std::is_polymorphic_v<TorvoHomePlugin>);
static_assert(sizeof(TorvoHomePlugin) == sizeof(void*));

namespace
{

/// Memory that a test gives up on purpose.
class LostOnPurpose
{
public:
#if defined(__SANITIZE_ADDRESS__)
    LostOnPurpose()
    {
        __lsan_disable();
    }
    ~LostOnPurpose()
    {
        __lsan_enable();
    }
#endif
    LostOnPurpose(const LostOnPurpose&) = delete;
    LostOnPurpose& operator=(const LostOnPurpose&) = delete;
#if !defined(__SANITIZE_ADDRESS__)
    LostOnPurpose() {}  // NOLINT(modernize-use-equals-default): not unused, it lasts as long as its scope
    ~LostOnPurpose() {} // NOLINT(modernize-use-equals-default)
#endif
};

} // namespace

class TestTorvoHomePlugin : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void initOpensTheWindowMaximized();
    void endOfTheLastWindowEndsTheEventLoop();
    void initWithARefusedAddressOpensNoWindow();
    void unInitWithoutInitIsHarmless();
    void unInitDeletesTheWindowBeforeTheManagersEnd();
    void unInitTwiceIsHarmless();
    void destructorDeletesAWindowThatIsStillThere();
    void initTwiceReplacesTheWindow();
    void assignmentSharesOneRecord();
    void startsAndStopsTenTimes();

private:
    void start(TorvoHomePlugin& plugin);

    std::unique_ptr<Fakes::Surroundings> m_surroundings;
};

void TestTorvoHomePlugin::init()
{
    m_surroundings = std::make_unique<Fakes::Surroundings>();
    Fakes::Windows() = Fakes::WindowSystem();
    CHomeApp::instance().m_plugin = nullptr;
    CHomeApp::instance().m_frameWindow = nullptr;
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

void TestTorvoHomePlugin::cleanup()
{
    m_surroundings.reset();
}

void TestTorvoHomePlugin::start(TorvoHomePlugin& plugin)
{
    plugin.Init(&m_surroundings->host, Fakes::TestSession());
}

void TestTorvoHomePlugin::initOpensTheWindowMaximized()
{
    TorvoHomePlugin plugin;
    start(plugin);
    QVERIFY(CHomeApp::instance().m_plugin == &m_surroundings->host);
    const auto* window = CHomeApp::instance().m_frameWindow;
    QVERIFY(window != nullptr);
    QVERIFY(window->isVisible());
    QVERIFY(window->isMaxed());
    QCOMPARE(window->windowState(), Qt::WindowMaximized);
    QVERIFY(window->parent() == nullptr);
    plugin.UnInit();
}

void TestTorvoHomePlugin::endOfTheLastWindowEndsTheEventLoop()
{
    TorvoHomePlugin plugin;
    start(plugin);
    QVERIFY(QGuiApplication::quitOnLastWindowClosed());
    auto* window = CHomeApp::instance().m_frameWindow;
    QMetaObject::invokeMethod(
        window, [window] { window->close(false); }, Qt::QueuedConnection);
    QCOMPARE(QGuiApplication::exec(), 0);
    plugin.UnInit();
}

void TestTorvoHomePlugin::initWithARefusedAddressOpensNoWindow()
{
    const Fakes::LogBook log;
    auto session = Fakes::TestSession();
    session.serverAddr = L"/torvo";
    TorvoHomePlugin plugin;
    plugin.Init(&m_surroundings->host, session);
    QVERIFY(CHomeApp::instance().m_frameWindow == nullptr);
    QVERIFY(CHomeApp::instance().GetMgr<CTabMgr>() == nullptr);
    QVERIFY(QGuiApplication::allWindows().isEmpty());
    plugin.UnInit();
}

void TestTorvoHomePlugin::unInitWithoutInitIsHarmless()
{
    TorvoHomePlugin plugin;
    plugin.UnInit();
    QCOMPARE(Fakes::Calls(), QStringList());
}

void TestTorvoHomePlugin::unInitDeletesTheWindowBeforeTheManagersEnd()
{
    TorvoHomePlugin plugin;
    start(plugin);
    connect(CHomeApp::instance().m_frameWindow, &QObject::destroyed, this,
            [] { Fakes::Called("~CFrameWindow"); });
    connect(CHomeApp::instance().GetMgr<CProjectMgr>(), &QObject::destroyed, this,
            [] { Fakes::Called("~CProjectMgr"); });
    plugin.UnInit();
    QCOMPARE(Fakes::CallsOf({"~CFrameWindow", "FreeIDBDirector", "~CProjectMgr"}),
             QStringList({"~CFrameWindow", "FreeIDBDirector()", "~CProjectMgr"}));
}

void TestTorvoHomePlugin::unInitTwiceIsHarmless()
{
    TorvoHomePlugin plugin;
    start(plugin);
    plugin.UnInit();
    plugin.UnInit();
    QCOMPARE(Fakes::CallsOf({"FreeIDBDirector"}).size(), 1);
}

void TestTorvoHomePlugin::destructorDeletesAWindowThatIsStillThere()
{
    QPointer<CFrameWindow> window;
    {
        TorvoHomePlugin plugin;
        start(plugin);
        window = CHomeApp::instance().m_frameWindow;
    }
    QVERIFY(window.isNull());
    QVERIFY(CHomeApp::instance().GetMgr<CTabMgr>() != nullptr);
}

void TestTorvoHomePlugin::initTwiceReplacesTheWindow()
{
    TorvoHomePlugin plugin;
    start(plugin);
    const QPointer<CFrameWindow> first = CHomeApp::instance().m_frameWindow;
    start(plugin);
    QVERIFY(first.isNull());
    QVERIFY(CHomeApp::instance().m_frameWindow != nullptr);
    QCOMPARE(Fakes::CallsOf({"FreeIDBDirector"}), QStringList());
    QCOMPARE(QGuiApplication::allWindows().size(), 1);
    plugin.UnInit();
}

void TestTorvoHomePlugin::assignmentSharesOneRecord()
{
    TorvoHomePlugin first;
    start(first);
    const QPointer<CFrameWindow> window = CHomeApp::instance().m_frameWindow;
    // The second object's own record is lost by the assignment, and it must not be destroyed: it holds the
    // record of the first one.
    const LostOnPurpose lost;
    alignas(TorvoHomePlugin) unsigned char memory[sizeof(TorvoHomePlugin)];
    auto* second = new (memory) TorvoHomePlugin;
    *second = first;
    second->UnInit();
    QVERIFY(window.isNull());
    first.UnInit();
}

void TestTorvoHomePlugin::startsAndStopsTenTimes()
{
    for (int i = 0; i < 10; ++i) {
        Fakes::SmartDB::instance().add("0000000" + QString::number(i) + "-0000-0000-0000-000000000000", "a",
                                       "BIM");
        TorvoHomePlugin plugin;
        start(plugin);
        QVERIFY(QTest::qWaitForWindowExposed(CHomeApp::instance().m_frameWindow));
        CHomeApp::instance().m_frameWindow->close(false);
        plugin.UnInit();
        QVERIFY(CHomeApp::instance().GetMgr<CTabMgr>() == nullptr);
        QVERIFY(QGuiApplication::allWindows().isEmpty());
        QCOMPARE(Fakes::CallsOf({"FreeIDBDirector"}).size(), i + 1);
    }
}

QTEST_MAIN(TestTorvoHomePlugin)
#include "test_torvohomeplugin.moc"
