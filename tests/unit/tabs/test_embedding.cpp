// SPDX-License-Identifier: MIT
//
// Windows of real children inside the home window, on a real window system with a window manager. Runs on a
// screen of ordinary and on one of higher resolution.
#include "fakes/logbook.h"
#include "fakes/openhome.h"
#include "native/nativewindow.h"

#include <csignal>
#include <cstdlib>
#include <memory>

#include <QGuiApplication>
#include <QPixmap>
#include <QRegularExpression>
#include <QScreen>
#include <QTest>

#include <xcb/xcb.h>

using namespace TorvoEditor;
using Fakes::OperatorsReceivedBy;

namespace
{

const QColor childColour(0x20, 0x60, 0xc0);

/// What the X server says about windows, asked on a connection of its own.
class Observer
{
public:
    Observer()
        : m_connection(xcb_connect(nullptr, nullptr))
        , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root)
    {
    }
    Observer(const Observer&) = delete;
    Observer& operator=(const Observer&) = delete;
    ~Observer() { xcb_disconnect(m_connection); }

    [[nodiscard]] quint64 parentOf(quint64 window) const
    {
        const auto cookie = xcb_query_tree(m_connection, static_cast<xcb_window_t>(window));
        const std::unique_ptr<xcb_query_tree_reply_t, decltype(&std::free)> reply(
            xcb_query_tree_reply(m_connection, cookie, nullptr), &std::free);
        return reply ? reply->parent : 0;
    }

    [[nodiscard]] QRect inParent(quint64 window) const
    {
        const auto cookie = xcb_get_geometry(m_connection, static_cast<xcb_window_t>(window));
        const std::unique_ptr<xcb_get_geometry_reply_t, decltype(&std::free)> reply(
            xcb_get_geometry_reply(m_connection, cookie, nullptr), &std::free);
        return reply ? QRect(reply->x, reply->y, reply->width, reply->height) : QRect();
    }

    [[nodiscard]] QPoint onScreen(quint64 window) const
    {
        const auto cookie =
            xcb_translate_coordinates(m_connection, static_cast<xcb_window_t>(window), m_root, 0, 0);
        const std::unique_ptr<xcb_translate_coordinates_reply_t, decltype(&std::free)> reply(
            xcb_translate_coordinates_reply(m_connection, cookie, nullptr), &std::free);
        return reply ? QPoint(reply->dst_x, reply->dst_y) : QPoint(-1, -1);
    }

    [[nodiscard]] bool isViewable(quint64 window) const
    {
        const auto cookie = xcb_get_window_attributes(m_connection, static_cast<xcb_window_t>(window));
        const std::unique_ptr<xcb_get_window_attributes_reply_t, decltype(&std::free)> reply(
            xcb_get_window_attributes_reply(m_connection, cookie, nullptr), &std::free);
        return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    }

    [[nodiscard]] quint64 root() const { return m_root; }

    /// Asks the window manager, as a task bar does, to bring a window back.
    void bringBack(quint64 window) const
    {
        static constexpr char name[] = "_NET_ACTIVE_WINDOW";
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
            xcb_intern_atom_reply(m_connection, xcb_intern_atom(m_connection, 0, sizeof name - 1, name),
                                  nullptr),
            &std::free);
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = static_cast<xcb_window_t>(window);
        event.type = atom->atom;
        event.data.data32[0] = 2;
        xcb_send_event(m_connection, 0, m_root,
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&event));
        xcb_flush(m_connection);
    }

private:
    xcb_connection_t* m_connection;
    xcb_window_t m_root;
};

} // namespace

class TestEmbedding : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void childLiesOverTheContentArea();
    void childFollowsTheHomeWindowsMove();
    void childFollowsTheHomeWindowsSize();
    void childIsHiddenAndShownWithItsTab();
    void twoChildrenTakeTurns();
    void childSurvivesTheReturnFromMinimized();
    void childSurvivesTheReturnFromMinimizedToMaximized();
    void killedChildGivesTheHomeScreenBack_data();
    void killedChildGivesTheHomeScreenBack();
    void childThatLiesAboutItsWindowHarmsNothing_data();
    void childThatLiesAboutItsWindowHarmsNothing();
    void everyChildStaysInsideHoweverTheWindowManagerRaces();
    void endOfTheHomeWindowLeavesNoChild();

private:
    [[nodiscard]] bool openWithWindow(const QString& tabName);
    [[nodiscard]] QColor colourInTheContentArea() const;
    [[nodiscard]] CFrameWindow& window() const { return *m_home->window; }
    [[nodiscard]] QPoint inDevicePixels(const QPointF& point) const
    {
        return (point * window().devicePixelRatio()).toPoint();
    }

    std::unique_ptr<Fakes::LogBook> m_log;
    std::unique_ptr<Fakes::OpenHome> m_home;
    std::unique_ptr<Observer> m_observer;
    quint64 m_child = 0; ///< the window that came last
};

void TestEmbedding::init()
{
    m_log = std::make_unique<Fakes::LogBook>();
    m_home = std::make_unique<Fakes::OpenHome>();
    QVERIFY(m_home->isStarted());
    QVERIFY(QTest::qWaitForWindowExposed(&window()));
    m_observer = std::make_unique<Observer>();
    for (const char* guid : {"p1", "p2"})
        Fakes::SmartDB::instance().add(guid, guid, "BIM");
}

void TestEmbedding::cleanup()
{
    m_home.reset();
    QTRY_COMPARE(Fakes::RunningChildren(), QList<qint64>());
    m_observer.reset();
    m_log.reset();
}

/// Opens a tab and waits until its child's window has been taken in.
bool TestEmbedding::openWithWindow(const QString& tabName)
{
    m_log->take();
    m_home->open(tabName, "connect;name;window");
    const QRegularExpression reported("^warning: received winid (\\d+)$");
    const bool isReported =
        QTest::qWaitFor([&] { return m_log->linesWith("received winid").size() == 1; }, 30000);
    if (!isReported)
        return false;
    m_child = reported.match(m_log->linesWith("received winid").first()).captured(1).toULongLong();
    return QTest::qWaitFor(
        [&] { return m_observer->parentOf(m_child) == window().winId() && m_observer->isViewable(m_child); },
        30000);
}

QColor TestEmbedding::colourInTheContentArea() const
{
    const auto* content = m_home->item("contentRect");
    const QPoint middle = window().mapToGlobal(
        (content->position() + QPointF(content->width(), content->height()) / 2).toPoint());
    const QPixmap pixel = QGuiApplication::primaryScreen()->grabWindow(0, middle.x(), middle.y(), 1, 1);
    return pixel.toImage().pixelColor(0, 0);
}

void TestEmbedding::childLiesOverTheContentArea()
{
    QVERIFY(openWithWindow("p1"));
    const auto* content = m_home->item("contentRect");
    const double scale = window().devicePixelRatio();
    const QRect expected(static_cast<int>(2 * scale), static_cast<int>(34 * scale),
                         static_cast<int>(content->width() * scale),
                         static_cast<int>(content->height() * scale));
    QTRY_COMPARE(m_observer->inParent(m_child), expected);
    QTRY_COMPARE(colourInTheContentArea(), childColour);
}

void TestEmbedding::childFollowsTheHomeWindowsMove()
{
    QVERIFY(openWithWindow("p1"));
    window().setPosition(210, 160);
    QTRY_COMPARE(m_observer->onScreen(m_child), inDevicePixels(QPointF(210 + 2, 160 + 34)));
    QTRY_VERIFY(OperatorsReceivedBy("p1").contains("move"));
    QTRY_COMPARE(colourInTheContentArea(), childColour);
}

void TestEmbedding::childFollowsTheHomeWindowsSize()
{
    QVERIFY(openWithWindow("p1"));
    window().resize(700, 420);
    // 700 - 4.5 and 420 - 36.25, truncated: the child sizes itself by what it is told.
    const QSize expected = QSize(695, 383) * window().devicePixelRatio();
    QTRY_COMPARE(m_observer->inParent(m_child).size(), expected);
    QCOMPARE(m_observer->inParent(m_child).topLeft(), inDevicePixels(QPointF(2, 34)));
}

void TestEmbedding::childIsHiddenAndShownWithItsTab()
{
    QVERIFY(openWithWindow("p1"));
    QTRY_COMPARE(colourInTheContentArea(), childColour);
    m_home->tabs().openTab("main");
    QTRY_VERIFY(!m_observer->isViewable(m_child));
    QTRY_COMPARE(colourInTheContentArea(), QColor(Qt::white));
    m_home->tabs().openTab("p1");
    QTRY_VERIFY(m_observer->isViewable(m_child));
    QTRY_COMPARE(colourInTheContentArea(), childColour);
    QCOMPARE(m_observer->parentOf(m_child), quint64(window().winId()));
}

void TestEmbedding::twoChildrenTakeTurns()
{
    QVERIFY(openWithWindow("p1"));
    const auto first = m_child;
    QVERIFY(openWithWindow("p2"));
    const auto second = m_child;
    QTRY_VERIFY(!m_observer->isViewable(first));
    QVERIFY(m_observer->isViewable(second));
    m_home->tabs().openTab("p1");
    QTRY_VERIFY(m_observer->isViewable(first));
    QTRY_VERIFY(!m_observer->isViewable(second));
}

void TestEmbedding::childSurvivesTheReturnFromMinimized()
{
    QVERIFY(openWithWindow("p1"));
    QSignalSpy reported(&window(), &QWindow::windowStateChanged);
    window().showMinimized();
    // The echo, and what the window manager says when it has done it.
    QTRY_COMPARE(reported.count(), 2);
    QTRY_VERIFY(!m_observer->isViewable(m_child));
    QTRY_VERIFY(OperatorsReceivedBy("p1").contains("showMinimized"));
    m_observer->bringBack(window().winId());
    QTRY_VERIFY(m_observer->isViewable(m_child));
    QTRY_VERIFY(OperatorsReceivedBy("p1").contains("showNormal"));
    QCOMPARE(m_observer->parentOf(m_child), quint64(window().winId()));
    QTRY_COMPARE(colourInTheContentArea(), childColour);
}

void TestEmbedding::childSurvivesTheReturnFromMinimizedToMaximized()
{
    window().showMaximized();
    QTRY_COMPARE(window().geometry(), QGuiApplication::primaryScreen()->geometry());
    QVERIFY(openWithWindow("p1"));
    window().showMinimized();
    QTRY_VERIFY(!m_observer->isViewable(m_child));
    QTRY_VERIFY(!window().isMinimizing());
    QCOMPARE(window().windowState(), Qt::WindowMinimized);
    m_observer->bringBack(window().winId());
    QTRY_VERIFY(m_observer->isViewable(m_child));
    QTRY_COMPARE(window().windowState(), Qt::WindowMaximized);
    QVERIFY(window().isMaxed());
    QTRY_COMPARE(window().geometry(), QGuiApplication::primaryScreen()->geometry());
    QTRY_VERIFY(OperatorsReceivedBy("p1").contains("showNormal"));
    QTRY_COMPARE(colourInTheContentArea(), childColour);
}

void TestEmbedding::killedChildGivesTheHomeScreenBack_data()
{
    QTest::addColumn<bool>("isCurrent");
    QTest::newRow("while current") << true;
    QTest::newRow("while hidden") << false;
}

void TestEmbedding::killedChildGivesTheHomeScreenBack()
{
    QFETCH(bool, isCurrent);
    QVERIFY(openWithWindow("p1"));
    if (!isCurrent) {
        m_home->tabs().openTab("main");
        QTRY_VERIFY(!m_observer->isViewable(m_child));
    }
    QCOMPARE(Fakes::RunningChildren().size(), 1);
    QCOMPARE(::kill(static_cast<pid_t>(Fakes::RunningChildren().first()), SIGKILL), 0);
    QTRY_COMPARE(m_home->tab().tabList(), QStringList());
    QCOMPARE(m_home->tab().currentTab(), QString("main"));
    QTRY_COMPARE(m_observer->parentOf(m_child), quint64(0));
    QTRY_COMPARE(colourInTheContentArea(), QColor(Qt::white));
    // And everything goes on.
    QVERIFY(openWithWindow("p2"));
    window().resize(500, 400);
    QTRY_COMPARE(colourInTheContentArea(), childColour);
}

void TestEmbedding::childThatLiesAboutItsWindowHarmsNothing_data()
{
    QTest::addColumn<QString>("lie");
    QTest::newRow("no window") << "\"536870896\"";
    QTest::newRow("no number") << "\"my window\"";
    QTest::newRow("a number, not a text") << "5";
    QTest::newRow("the home window") << "home";
    QTest::newRow("the window around the home window") << "frame";
    QTest::newRow("the root window") << "root";
}

void TestEmbedding::childThatLiesAboutItsWindowHarmsNothing()
{
    QFETCH(QString, lie);
    if (lie == "home")
        lie = QStringLiteral("\"%1\"").arg(window().winId());
    else if (lie == "frame")
        lie = QStringLiteral("\"%1\"").arg(m_observer->parentOf(window().winId()));
    else if (lie == "root")
        lie = QStringLiteral("\"%1\"").arg(m_observer->root());
    const auto parent = m_observer->parentOf(window().winId());
    QVERIFY(m_home->openConnected("p1", "send {\"winid\": " + lie + "};await ever"));
    QTRY_COMPARE(m_log->linesWith("received winid").size(), 1);
    QVERIFY(m_observer->isViewable(window().winId()));
    QCOMPARE(m_observer->parentOf(window().winId()), parent);
    QCOMPARE(m_home->tab().tabList(), QStringList("p1"));
    QVERIFY(openWithWindow("p2"));
}

void TestEmbedding::everyChildStaysInsideHoweverTheWindowManagerRaces()
{
    for (int i = 0; i < 10; ++i) {
        QVERIFY(openWithWindow("p1"));
        // Whatever the window manager had under way about the new window is done when it has answered this.
        window().setPosition(100 + i, 50);
        QTRY_COMPARE(m_observer->onScreen(m_child), inDevicePixels(QPointF(100 + i + 2, 50 + 34)));
        QCOMPARE(m_observer->parentOf(m_child), quint64(window().winId()));
        QTRY_COMPARE(colourInTheContentArea(), childColour);
        m_home->tabs().closeTab("p1");
        QTRY_COMPARE(m_home->tab().tabList(), QStringList());
        QTRY_COMPARE(m_home->tab().currentTab(), QString("main"));
    }
}

void TestEmbedding::endOfTheHomeWindowLeavesNoChild()
{
    QVERIFY(openWithWindow("p1"));
    window().close(false);
    m_home->window.reset();
    CHomeApp::instance().UnInit();
    QTRY_COMPARE(Fakes::RunningChildren(), QList<qint64>());
    QTRY_COMPARE(m_observer->parentOf(m_child), quint64(0));
}

QTEST_MAIN(TestEmbedding)
#include "test_embedding.moc"
