// SPDX-License-Identifier: MIT
#include "road/desktop.h"

#include <cstdlib>
#include <memory>
#include <stdexcept>

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <QTest>

#include <xcb/xtest.h>

namespace road
{

namespace
{

constexpr xcb_keysym_t shiftKey = 0xffe1;
/// Between two events of one movement, as a quick hand would need.
constexpr int handMilliseconds = 20;

template<class Reply>
std::unique_ptr<Reply, decltype(&std::free)> Own(Reply* reply)
{
    return {reply, &std::free};
}

struct Key {
    xcb_keycode_t code = 0;
    bool isShifted = false;
};

Key KeyOf(xcb_connection_t* connection, xcb_keysym_t wanted)
{
    const auto* setup = xcb_get_setup(connection);
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto mapping = Own(xcb_get_keyboard_mapping_reply(
        connection, xcb_get_keyboard_mapping(connection, setup->min_keycode, count), nullptr));
    if (!mapping)
        return {};
    const auto* symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
    for (int code = 0; code < count; ++code) {
        for (int level = 0; level < std::min<int>(2, mapping->keysyms_per_keycode); ++level) {
            if (symbols[code * mapping->keysyms_per_keycode + level] == wanted)
                return {static_cast<xcb_keycode_t>(setup->min_keycode + code), level == 1};
        }
    }
    return {};
}

} // namespace

bool WaitFor(const std::function<bool()>& holds, int milliseconds)
{
    return QTest::qWaitFor(holds, milliseconds);
}

Desktop::Desktop()
    : m_connection(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(m_connection) != 0)
        throw std::runtime_error("there is no X server");
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
}

Desktop::~Desktop()
{
    xcb_disconnect(m_connection);
}

void Desktop::fake(std::uint8_t type, std::uint8_t detail, QPoint place)
{
    xcb_test_fake_input(m_connection, type, detail, XCB_CURRENT_TIME, m_root,
                        static_cast<std::int16_t>(place.x()), static_cast<std::int16_t>(place.y()), 0);
    xcb_flush(m_connection);
    QTest::qWait(handMilliseconds);
}

void Desktop::button(bool isDown)
{
    fake(isDown ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, 1);
}

void Desktop::moveTo(QPoint place)
{
    // Two steps, since what is below the pointer takes notice of it by a movement inside.
    fake(XCB_MOTION_NOTIFY, 0, place - QPoint(1, 1));
    fake(XCB_MOTION_NOTIFY, 0, place);
}

void Desktop::click(QPoint place)
{
    moveTo(place);
    button(true);
    button(false);
}

void Desktop::doubleClick(QPoint place)
{
    click(place);
    button(true);
    button(false);
}

void Desktop::drag(QPoint from, QPoint to)
{
    constexpr int steps = 10;
    moveTo(from);
    button(true);
    for (int step = 1; step <= steps; ++step)
        fake(XCB_MOTION_NOTIFY, 0, from + (to - from) * step / steps);
    button(false);
}

void Desktop::strike(xcb_keysym_t key)
{
    const Key found = KeyOf(m_connection, key);
    if (found.code == 0)
        throw std::runtime_error("the keyboard has no key for a sign");
    const Key shift = KeyOf(m_connection, shiftKey);
    if (found.isShifted)
        fake(XCB_KEY_PRESS, shift.code);
    fake(XCB_KEY_PRESS, found.code);
    fake(XCB_KEY_RELEASE, found.code);
    if (found.isShifted)
        fake(XCB_KEY_RELEASE, shift.code);
}

void Desktop::type(const QString& text)
{
    // The symbols of Latin-1 are their own numbers.
    for (const QChar sign : text)
        strike(sign.unicode());
}

void Desktop::press(xcb_keysym_t key)
{
    strike(key);
}

void Desktop::press(xcb_keysym_t key, xcb_keysym_t with)
{
    const Key held = KeyOf(m_connection, with);
    fake(XCB_KEY_PRESS, held.code);
    strike(key);
    fake(XCB_KEY_RELEASE, held.code);
}

void Desktop::activate(xcb_window_t window)
{
    static constexpr char name[] = "_NET_ACTIVE_WINDOW";
    const auto atom = Own(xcb_intern_atom_reply(
        m_connection, xcb_intern_atom(m_connection, 0, sizeof name - 1, name), nullptr));
    if (!atom)
        throw std::runtime_error("the X server does not answer");
    constexpr std::uint32_t fromTaskBar = 2;
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom->atom;
    event.data.data32[0] = fromTaskBar;
    xcb_send_event(m_connection, 0, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(m_connection);
}

QImage Desktop::picture() const
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage();
}

void Desktop::awaitQuiet() const
{
    constexpr int quietMilliseconds = 300;
    constexpr int tries = 10;
    QImage before;
    for (int i = 0; i < tries; ++i) {
        const QImage now = picture();
        if (now == before)
            return;
        before = now;
        QTest::qWait(quietMilliseconds);
    }
}

QRect Desktop::areaOf(xcb_window_t window) const
{
    const auto geometry =
        Own(xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr));
    const auto place = Own(xcb_translate_coordinates_reply(
        m_connection, xcb_translate_coordinates(m_connection, window, m_root, 0, 0), nullptr));
    if (!geometry || !place)
        return {};
    return {place->dst_x, place->dst_y, geometry->width, geometry->height};
}

std::vector<NativeWindow> Desktop::childrenOf(xcb_window_t parent) const
{
    std::vector<NativeWindow> windows;
    const auto tree = Own(xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, parent), nullptr));
    if (!tree)
        return windows;
    const auto* ids = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        const auto attributes = Own(xcb_get_window_attributes_reply(
            m_connection, xcb_get_window_attributes(m_connection, ids[i]), nullptr));
        if (attributes)
            windows.push_back({ids[i], areaOf(ids[i]), attributes->map_state == XCB_MAP_STATE_VIEWABLE});
    }
    return windows;
}

} // namespace road
