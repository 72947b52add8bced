// SPDX-License-Identifier: MIT
#include "native/nativewindow.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <thread>

#include <QLoggingCategory>

#include <xcb/xcb.h>
#include <xcb/xcb_event.h>

namespace Native
{

namespace
{

Q_LOGGING_CATEGORY(lcNative, "torvo.native")

thread_local std::string lastError;

/// Windows of other programs go at any moment, so a failure is told and nothing more.
bool Fail(std::string reason)
{
    qCWarning(lcNative) << reason.c_str();
    lastError = std::move(reason);
    return false;
}

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};

template<class Reply>
using Owned = std::unique_ptr<Reply, Free>;

/// A connection of our own: errors of windows that die under our hands arrive here as values, and never reach
/// the error handling of the connection that the user interface lives on.
class Display
{
public:
    Display()
        : m_connection(xcb_connect(nullptr, &m_screenNumber))
    {
    }
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;
    ~Display() { xcb_disconnect(m_connection); }

    [[nodiscard]] xcb_connection_t* connection() const { return m_connection; }
    [[nodiscard]] bool isBroken() const { return xcb_connection_has_error(m_connection) != 0; }

    [[nodiscard]] xcb_window_t root() const
    {
        auto screens = xcb_setup_roots_iterator(xcb_get_setup(m_connection));
        for (int i = 0; i < m_screenNumber && screens.rem > 1; ++i)
            xcb_screen_next(&screens);
        return screens.data->root;
    }

    /// Throws away what the server tells every client unasked; nobody else reads this connection.
    void drain() const
    {
        while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)}) {
        }
    }

private:
    int m_screenNumber = 0;
    xcb_connection_t* m_connection;
};

/// The connection of this thread, made anew when it has broken; null without a display.
const Display* display()
{
    thread_local std::unique_ptr<Display> current;
    if (!current || current->isBroken())
        current = std::make_unique<Display>();
    if (current->isBroken()) {
        Fail("cannot connect to the X server");
        return nullptr;
    }
    current->drain();
    return current.get();
}

bool Succeeded(const Display& display, xcb_void_cookie_t cookie, const char* operation)
{
    const Owned<xcb_generic_error_t> error(xcb_request_check(display.connection(), cookie));
    if (display.isBroken())
        return Fail(std::string(operation) + ": the connection to the X server has broken");
    if (!error)
        return true;
    const char* label = xcb_event_get_error_label(error->error_code);
    return Fail(std::string(operation) + ": " + (label != nullptr ? label : "X error") + " (" +
                std::to_string(error->error_code) + ")");
}

Owned<xcb_get_window_attributes_reply_t> AttributesOf(const Display& display, WindowId window)
{
    if (window == 0 || window > std::numeric_limits<xcb_window_t>::max())
        return nullptr;
    const auto cookie = xcb_get_window_attributes(display.connection(), static_cast<xcb_window_t>(window));
    xcb_generic_error_t* error = nullptr;
    Owned<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(display.connection(), cookie, &error));
    std::free(error);
    return reply;
}

bool IsNoWindow(WindowId window)
{
    return Fail("no window has the id " + std::to_string(window));
}

xcb_window_t ParentOf(const Display& display, xcb_window_t window)
{
    const auto cookie = xcb_query_tree(display.connection(), window);
    xcb_generic_error_t* error = nullptr;
    const Owned<xcb_query_tree_reply_t> reply(xcb_query_tree_reply(display.connection(), cookie, &error));
    std::free(error);
    return reply ? reply->parent : static_cast<xcb_window_t>(XCB_NONE);
}

/// `window` is `other` or lies around it.
bool Contains(const Display& display, xcb_window_t window, xcb_window_t other)
{
    while (other != XCB_NONE && other != window)
        other = ParentOf(display, other);
    return other == window;
}

xcb_atom_t WmStateAtom(const Display& display)
{
    static constexpr char name[] = "WM_STATE";
    const auto cookie = xcb_intern_atom(display.connection(), 0, sizeof name - 1, name);
    const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(display.connection(), cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

/// A window manager looks after the window: it has marked it as normal or iconic.
bool IsManaged(const Display& display, xcb_window_t window)
{
    const auto wmState = WmStateAtom(display);
    const auto cookie = xcb_get_property(display.connection(), 0, window, wmState, wmState, 0, 1);
    xcb_generic_error_t* error = nullptr;
    const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(display.connection(), cookie, &error));
    std::free(error);
    if (!reply || xcb_get_property_value_length(reply.get()) < 4)
        return false;
    constexpr std::uint32_t withdrawn = 0;
    std::uint32_t state = withdrawn;
    std::memcpy(&state, xcb_get_property_value(reply.get()), sizeof state);
    return state != withdrawn;
}

void AskToWithdraw(const Display& display, xcb_window_t window)
{
    xcb_unmap_window(display.connection(), window);
    // To unmap a window that is not shown, an iconic one, gives the window manager no sign: it gets this one.
    xcb_unmap_notify_event_t event{};
    event.response_type = XCB_UNMAP_NOTIFY;
    event.event = display.root();
    event.window = window;
    constexpr std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    // An event on the wire is always 32 bytes, more than this one's structure has.
    char bytes[32] = {};
    std::memcpy(bytes, &event, sizeof event);
    xcb_send_event(display.connection(), 0, display.root(), mask, bytes);
    xcb_flush(display.connection());
}

/// Takes a window out of the hands of the window manager and waits until it has let go: it gives the window
/// back to the root, and would tear it out of a new parent that came in between. One that does not answer is
/// not waited for longer than a second.
void Withdraw(const Display& display, xcb_window_t window)
{
    const bool wasManaged = IsManaged(display, window);
    AskToWithdraw(display, window);
    if (!wasManaged)
        return;
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    while (IsManaged(display, window) || ParentOf(display, window) != display.root()) {
        if (display.isBroken() || std::chrono::steady_clock::now() > limit) {
            qCWarning(lcNative) << "the window manager does not let go of window" << window;
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

} // namespace

bool SetParent(WindowId child, WindowId parent)
{
    const auto* x11 = display();
    if (x11 == nullptr)
        return false;
    const auto attributes = AttributesOf(*x11, child);
    if (!attributes)
        return IsNoWindow(child);
    if (!AttributesOf(*x11, parent))
        return IsNoWindow(parent);
    auto* connection = x11->connection();
    const auto window = static_cast<xcb_window_t>(child);
    const auto newParent = static_cast<xcb_window_t>(parent);
    if (Contains(*x11, window, newParent))
        return Fail("the window " + std::to_string(child) + " lies around its new parent");

    Withdraw(*x11, window);
    const auto reparented = xcb_reparent_window_checked(connection, window, newParent, 0, 0);
    if (Succeeded(*x11, reparented, "reparenting the window"))
        return Succeeded(*x11, xcb_map_window_checked(connection, window), "showing the window");
    // Waited for, so that the caller finds the window as it was.
    if (attributes->map_state != XCB_MAP_STATE_UNMAPPED)
        static_cast<void>(
            Succeeded(*x11, xcb_map_window_checked(connection, window), "showing the window again"));
    return false;
}

bool MoveWindow(WindowId window, int x, int y, int width, int height, bool repaint)
{
    const auto* x11 = display();
    if (x11 == nullptr)
        return false;
    if (!AttributesOf(*x11, window))
        return IsNoWindow(window);
    auto* connection = x11->connection();
    const auto id = static_cast<xcb_window_t>(window);
    const std::uint32_t values[] = {static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y),
                                    static_cast<std::uint32_t>(std::max(width, 1)),
                                    static_cast<std::uint32_t>(std::max(height, 1))};
    constexpr std::uint16_t mask =
        XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
    if (!Succeeded(*x11, xcb_configure_window_checked(connection, id, mask, values), "placing the window"))
        return false;
    if (!repaint)
        return true;
    return Succeeded(*x11, xcb_clear_area_checked(connection, 1, id, 0, 0, 0, 0), "repainting the window");
}

bool ResizeWindow(WindowId window, int width, int height)
{
    const auto* x11 = display();
    if (x11 == nullptr)
        return false;
    if (!AttributesOf(*x11, window))
        return IsNoWindow(window);
    const std::uint32_t values[] = {static_cast<std::uint32_t>(std::max(width, 1)),
                                    static_cast<std::uint32_t>(std::max(height, 1))};
    const auto resized =
        xcb_configure_window_checked(x11->connection(), static_cast<xcb_window_t>(window),
                                     XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values);
    return Succeeded(*x11, resized, "resizing the window");
}

bool AnnouncePosition(WindowId window)
{
    const auto* x11 = display();
    if (x11 == nullptr)
        return false;
    if (!AttributesOf(*x11, window))
        return IsNoWindow(window);
    auto* connection = x11->connection();
    const auto id = static_cast<xcb_window_t>(window);
    const auto asksPlace = xcb_translate_coordinates(connection, id, x11->root(), 0, 0);
    const auto asksSize = xcb_get_geometry(connection, id);
    const Owned<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(connection, asksPlace, nullptr));
    const Owned<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(connection, asksSize, nullptr));
    if (!place || !size)
        return IsNoWindow(window);

    // What a window manager sends to a window that it has moved.
    xcb_configure_notify_event_t event{};
    event.response_type = XCB_CONFIGURE_NOTIFY;
    event.event = id;
    event.window = id;
    event.x = place->dst_x;
    event.y = place->dst_y;
    event.width = size->width;
    event.height = size->height;
    char bytes[32] = {};
    std::memcpy(bytes, &event, sizeof event);
    const auto sent = xcb_send_event_checked(connection, 0, id, XCB_EVENT_MASK_STRUCTURE_NOTIFY, bytes);
    return Succeeded(*x11, sent, "telling the window its position");
}

bool FocusWindow(WindowId window)
{
    const auto* x11 = display();
    if (x11 == nullptr)
        return false;
    if (!AttributesOf(*x11, window))
        return IsNoWindow(window);
    const auto focused = xcb_set_input_focus_checked(x11->connection(), XCB_INPUT_FOCUS_PARENT,
                                                     static_cast<xcb_window_t>(window), XCB_CURRENT_TIME);
    return Succeeded(*x11, focused, "giving the keyboard to the window");
}

std::string LastErrorText()
{
    return lastError;
}

bool GetCursorPos(Point& point)
{
    const auto* x11 = display();
    if (x11 == nullptr)
        return false;
    const auto cookie = xcb_query_pointer(x11->connection(), x11->root());
    const Owned<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(x11->connection(), cookie, nullptr));
    if (!reply)
        return Fail("the X server does not tell the pointer's position");
    point = {reply->root_x, reply->root_y};
    return true;
}

bool SetCursorPos(int x, int y)
{
    const auto* x11 = display();
    if (x11 == nullptr)
        return false;
    constexpr int least = std::numeric_limits<std::int16_t>::min();
    constexpr int most = std::numeric_limits<std::int16_t>::max();
    const auto cookie = xcb_warp_pointer_checked(x11->connection(), XCB_NONE, x11->root(), 0, 0, 0, 0,
                                                 static_cast<std::int16_t>(std::clamp(x, least, most)),
                                                 static_cast<std::int16_t>(std::clamp(y, least, most)));
    return Succeeded(*x11, cookie, "moving the pointer");
}

} // namespace Native
