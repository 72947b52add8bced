// SPDX-License-Identifier: MIT
//
// Windows of another client on a real X server without a window manager.
#include "native/nativewindow.h"

#include "fakes/logbook.h"

#include <cstdlib>
#include <memory>
#include <thread>

#include <QProcess>
#include <QTest>

#include <xcb/xcb.h>

namespace
{

template<class Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

/// Another program with windows of its own.
class Client
{
public:
    Client()
        : m_connection(xcb_connect(nullptr, nullptr))
        , m_screen(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data)
    {
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    ~Client() { xcb_disconnect(m_connection); }

    xcb_window_t window(int x, int y, int width, int height, bool isShown = true,
                        xcb_window_class_t kind = XCB_WINDOW_CLASS_INPUT_OUTPUT)
    {
        const auto id = xcb_generate_id(m_connection);
        const std::uint32_t events[] = {XCB_EVENT_MASK_EXPOSURE};
        const bool paints = kind == XCB_WINDOW_CLASS_INPUT_OUTPUT;
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, id, m_screen->root,
                          static_cast<std::int16_t>(x), static_cast<std::int16_t>(y),
                          static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), 0, kind,
                          XCB_COPY_FROM_PARENT, paints ? XCB_CW_EVENT_MASK : 0, events);
        if (isShown)
            xcb_map_window(m_connection, id);
        synchronize();
        return id;
    }

    void synchronize() const
    {
        std::free(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    }

    [[nodiscard]] xcb_window_t parentOf(xcb_window_t window) const
    {
        const Owned<xcb_query_tree_reply_t> reply(
            xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, window), nullptr), &std::free);
        return reply ? reply->parent : static_cast<xcb_window_t>(XCB_NONE);
    }

    [[nodiscard]] QRect geometryOf(xcb_window_t window) const
    {
        const Owned<xcb_get_geometry_reply_t> reply(
            xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr),
            &std::free);
        return reply ? QRect(reply->x, reply->y, reply->width, reply->height) : QRect();
    }

    [[nodiscard]] bool isViewable(xcb_window_t window) const
    {
        const Owned<xcb_get_window_attributes_reply_t> reply(
            xcb_get_window_attributes_reply(m_connection, xcb_get_window_attributes(m_connection, window),
                                            nullptr),
            &std::free);
        return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    }

    /// How often one of its windows was to be painted since the last question.
    [[nodiscard]] int exposures() const
    {
        synchronize();
        int count = 0;
        while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(m_connection), &std::free})
            count += (event->response_type & 0x7F) == XCB_EXPOSE ? 1 : 0;
        return count;
    }

    [[nodiscard]] xcb_window_t root() const { return m_screen->root; }

private:
    xcb_connection_t* m_connection;
    xcb_screen_t* m_screen;
};

} // namespace

class TestNativeWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void setParentTakesAWindowOfAnotherProgram();
    void setParentShowsAWindowThatWasNotShown();
    void setParentOfWhatIsNoWindowFails_data();
    void setParentOfWhatIsNoWindowFails();
    void setParentIntoWhatIsNoWindowFails();
    void setParentIntoItselfOrItsOwnChildFails();
    void setParentThatTheServerRefusesLeavesTheWindowAsItWas();
    void moveWindowPlacesInTheParent();
    void moveWindowKeepsAtLeastOnePixel();
    void moveWindowRepaintsWhenAsked_data();
    void moveWindowRepaintsWhenAsked();
    void windowOfAProgramThatHasDiedIsNoWindow();
    void pointerGoesWhereItIsSent();
    void pointerStaysOnTheScreen();
    void withoutADisplayEverythingFails();
    void serverThatDiesIsToldAndNothingMore();

private:
    std::unique_ptr<Fakes::LogBook> m_log;
    std::unique_ptr<Client> m_home;
    std::unique_ptr<Client> m_other;
};

void TestNativeWindow::init()
{
    m_log = std::make_unique<Fakes::LogBook>();
    m_home = std::make_unique<Client>();
    m_other = std::make_unique<Client>();
}

void TestNativeWindow::cleanup()
{
    m_other.reset();
    m_home.reset();
    m_log.reset();
}

void TestNativeWindow::setParentTakesAWindowOfAnotherProgram()
{
    const auto parent = m_home->window(100, 100, 400, 300);
    const auto child = m_other->window(30, 40, 200, 150);
    QVERIFY(Native::SetParent(child, parent));
    QCOMPARE(m_other->parentOf(child), parent);
    QCOMPARE(m_other->geometryOf(child), QRect(0, 0, 200, 150));
    QVERIFY(m_other->isViewable(child));
    QCOMPARE(m_log->take(), QStringList());
}

void TestNativeWindow::setParentShowsAWindowThatWasNotShown()
{
    const auto parent = m_home->window(100, 100, 400, 300);
    const auto child = m_other->window(30, 40, 200, 150, false);
    QVERIFY(Native::SetParent(child, parent));
    QVERIFY(m_other->isViewable(child));
}

void TestNativeWindow::setParentOfWhatIsNoWindowFails_data()
{
    QTest::addColumn<quint64>("id");
    QTest::newRow("nothing") << quint64(0);
    QTest::newRow("unknown") << quint64(0x1FFFFFF0);
    QTest::newRow("wider than a window's number") << quint64(0x1'0000'0001);
    QTest::newRow("greatest") << ~quint64(0);
}

void TestNativeWindow::setParentOfWhatIsNoWindowFails()
{
    QFETCH(quint64, id);
    const auto parent = m_home->window(100, 100, 400, 300);
    QVERIFY(!Native::SetParent(id, parent));
    const QString reason = QStringLiteral("no window has the id %1").arg(id);
    QCOMPARE(QString::fromStdString(Native::LastErrorText()), reason);
    QCOMPARE(m_log->take(), QStringList("warning: " + reason));
}

void TestNativeWindow::setParentIntoWhatIsNoWindowFails()
{
    const auto child = m_other->window(30, 40, 200, 150);
    QVERIFY(!Native::SetParent(child, 5));
    QCOMPARE(Native::LastErrorText(), std::string("no window has the id 5"));
    QCOMPARE(m_other->parentOf(child), m_other->root());
    QVERIFY(m_other->isViewable(child));
}

void TestNativeWindow::setParentIntoItselfOrItsOwnChildFails()
{
    const auto parent = m_home->window(100, 100, 400, 300);
    const auto child = m_home->window(0, 0, 50, 50);
    QVERIFY(Native::SetParent(child, parent));
    for (const auto window : {parent, m_home->root()}) {
        QVERIFY(!Native::SetParent(window, child));
        QCOMPARE(Native::LastErrorText(),
                 "the window " + std::to_string(window) + " lies around its new parent");
    }
    QVERIFY(!Native::SetParent(parent, parent));
    QVERIFY(m_home->isViewable(parent));
    QVERIFY(m_home->isViewable(child));
}

void TestNativeWindow::setParentThatTheServerRefusesLeavesTheWindowAsItWas()
{
    // A window that only takes input cannot hold one that is painted.
    const auto parent = m_home->window(100, 100, 400, 300, true, XCB_WINDOW_CLASS_INPUT_ONLY);
    const auto child = m_other->window(30, 40, 200, 150);
    QVERIFY(!Native::SetParent(child, parent));
    QCOMPARE(Native::LastErrorText(), std::string("reparenting the window: BadMatch (8)"));
    m_other->synchronize();
    QVERIFY(m_other->isViewable(child));
    QCOMPARE(m_other->geometryOf(child), QRect(30, 40, 200, 150));
}

void TestNativeWindow::moveWindowPlacesInTheParent()
{
    const auto parent = m_home->window(100, 100, 400, 300);
    const auto child = m_other->window(30, 40, 200, 150);
    QVERIFY(Native::SetParent(child, parent));
    QVERIFY(Native::MoveWindow(child, 2, 34, 396, 264, true));
    QCOMPARE(m_other->geometryOf(child), QRect(2, 34, 396, 264));
    QVERIFY(Native::MoveWindow(child, -10, -20, 396, 264, false));
    QCOMPARE(m_other->geometryOf(child), QRect(-10, -20, 396, 264));
}

void TestNativeWindow::moveWindowKeepsAtLeastOnePixel()
{
    const auto window = m_other->window(30, 40, 200, 150);
    QVERIFY(Native::MoveWindow(window, 1, 2, 0, -5, true));
    QCOMPARE(m_other->geometryOf(window), QRect(1, 2, 1, 1));
}

void TestNativeWindow::moveWindowRepaintsWhenAsked_data()
{
    QTest::addColumn<bool>("repaint");
    QTest::newRow("asked") << true;
    QTest::newRow("not asked") << false;
}

void TestNativeWindow::moveWindowRepaintsWhenAsked()
{
    QFETCH(bool, repaint);
    const auto window = m_other->window(30, 40, 200, 150);
    QVERIFY(m_other->exposures() > 0);
    QVERIFY(Native::MoveWindow(window, 30, 40, 200, 150, repaint));
    QCOMPARE(m_other->exposures() > 0, repaint);
}

void TestNativeWindow::windowOfAProgramThatHasDiedIsNoWindow()
{
    const auto parent = m_home->window(100, 100, 400, 300);
    const auto child = m_other->window(30, 40, 200, 150);
    QVERIFY(Native::SetParent(child, parent));
    m_other.reset();
    QTRY_COMPARE(m_home->parentOf(child), xcb_window_t(XCB_NONE));
    const std::string reason = "no window has the id " + std::to_string(child);
    QVERIFY(!Native::MoveWindow(child, 0, 0, 10, 10, true));
    QCOMPARE(Native::LastErrorText(), reason);
    QVERIFY(!Native::SetParent(child, parent));
    QVERIFY(m_home->isViewable(parent));
}

void TestNativeWindow::pointerGoesWhereItIsSent()
{
    QVERIFY(Native::SetCursorPos(321, 123));
    Native::Point point;
    QVERIFY(Native::GetCursorPos(point));
    QCOMPARE(QPoint(point.x, point.y), QPoint(321, 123));
}

void TestNativeWindow::pointerStaysOnTheScreen()
{
    QVERIFY(Native::SetCursorPos(1'000'000, -1'000'000));
    Native::Point point;
    QVERIFY(Native::GetCursorPos(point));
    QCOMPARE(QPoint(point.x, point.y), QPoint(1919, 0));
}

void TestNativeWindow::withoutADisplayEverythingFails()
{
    const QByteArray display = qgetenv("DISPLAY");
    const auto window = m_other->window(30, 40, 200, 150);
    qputenv("DISPLAY", ":no-such-display");
    // Each thread has a connection of its own.
    std::thread([&] {
        QVERIFY(!Native::SetParent(window, window));
        QCOMPARE(Native::LastErrorText(), std::string("cannot connect to the X server"));
        QVERIFY(!Native::MoveWindow(window, 0, 0, 1, 1, true));
        QVERIFY(!Native::SetCursorPos(0, 0));
        Native::Point point{7, 8};
        QVERIFY(!Native::GetCursorPos(point));
        QCOMPARE(QPoint(point.x, point.y), QPoint(7, 8));
    }).join();
    qputenv("DISPLAY", display);
    QVERIFY(Native::MoveWindow(window, 0, 0, 1, 1, true));
}

void TestNativeWindow::serverThatDiesIsToldAndNothingMore()
{
    const QByteArray display = qgetenv("DISPLAY");
    QProcess server;
    server.start("Xvfb", {"-displayfd", "1", "-nolisten", "tcp"});
    QVERIFY(server.waitForReadyRead());
    qputenv("DISPLAY", ":" + server.readAllStandardOutput().trimmed());
    std::thread([&] {
        Native::Point point;
        QVERIFY(Native::GetCursorPos(point));
        server.kill();
        QVERIFY(server.waitForFinished());
        QVERIFY(!Native::SetCursorPos(1, 1));
        QVERIFY(!Native::GetCursorPos(point));
        QCOMPARE(Native::LastErrorText(), std::string("cannot connect to the X server"));
        // Back with a server that lives.
        qputenv("DISPLAY", display);
        QVERIFY(Native::GetCursorPos(point));
    }).join();
    qputenv("DISPLAY", display);
}

QTEST_APPLESS_MAIN(TestNativeWindow)
#include "test_nativewindow.moc"
