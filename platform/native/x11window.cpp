// SPDX-License-Identifier: MIT
#include "native/nativewindow.h"

#include <cstdlib>
#include <limits>
#include <memory>

#include <xcb/xcb.h>

namespace Native
{

namespace
{

thread_local std::string lastError;

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};

template<class Reply>
using Owned = std::unique_ptr<Reply, Free>;

/// A connection of our own: errors of windows that die under our hands arrive here as values, and never reach the
/// error handling of the connection that the user interface lives on.
class Display
{
public:
    Display() : m_connection(xcb_connect(nullptr, &m_screenNumber)) {}
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

private:
    int m_screenNumber = 0;
    xcb_connection_t* m_connection;
};

/// The connection of this thread, made anew when it has broken; null without a display.
Display* display()
{
    thread_local std::unique_ptr<Display> current;
    if (!current || current->isBroken())
        current = std::make_unique<Display>();
    if (!current->isBroken())
        return current.get();
    lastError = "cannot connect to the X server";
    return nullptr;
}

const char* ErrorName(std::uint8_t code)
{
    switch (code) {
    case XCB_VALUE:
        return "BadValue";
    case XCB_WINDOW:
        return "BadWindow";
    case XCB_MATCH:
        return "BadMatch";
    case XCB_ACCESS:
        return "BadAccess";
    default:
        return "X error";
    }
}

bool Succeeded(const Display& display, xcb_void_cookie_t cookie, const char* operation)
{
    const Owned<xcb_generic_error_t> error(xcb_request_check(display.connection(), cookie));
    if (!error)
        return true;
    lastError = std::string(operation) + ": " + ErrorName(error->error_code) + " (" +
                std::to_string(error->error_code) + ")";
    return false;
}

bool IsWindow(const Display& display, WindowId window)
{
    if (window == 0 || window > std::numeric_limits<xcb_window_t>::max()) {
        lastError = "no window has the id " + std::to_string(window);
        return false;
    }
    const auto cookie = xcb_get_window_attributes(display.connection(), static_cast<xcb_window_t>(window));
    xcb_generic_error_t* error = nullptr;
    const Owned<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(display.connection(), cookie, &error));
    const Owned<xcb_generic_error_t> ownedError(error);
    if (reply)
        return true;
    lastError = "no window has the id " + std::to_string(window);
    return false;
}

} // namespace

bool SetParent(WindowId child, WindowId parent)
{
    const auto* x11 = display();
    if (x11 == nullptr || !IsWindow(*x11, child) || !IsWindow(*x11, parent))
        return false;
    auto* connection = x11->connection();
    const auto window = static_cast<xcb_window_t>(child);

    // A mapped top-level window belongs to the window manager; it lets go of it when the window is unmapped.
    xcb_unmap_window(connection, window);
    const auto reparented =
        xcb_reparent_window_checked(connection, window, static_cast<xcb_window_t>(parent), 0, 0);
    if (!Succeeded(*x11, reparented, "reparenting the window"))
        return false;
    return Succeeded(*x11, xcb_map_window_checked(connection, window), "showing the window");
}

bool MoveWindow(WindowId window, int x, int y, int width, int height, bool repaint)
{
    const auto* x11 = display();
    if (x11 == nullptr || !IsWindow(*x11, window))
        return false;
    auto* connection = x11->connection();
    const auto id = static_cast<xcb_window_t>(window);
    const std::uint32_t values[] = {static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y),
                                    static_cast<std::uint32_t>(width < 1 ? 1 : width),
                                    static_cast<std::uint32_t>(height < 1 ? 1 : height)};
    constexpr std::uint16_t mask =
        XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
    if (!Succeeded(*x11, xcb_configure_window_checked(connection, id, mask, values), "placing the window"))
        return false;
    if (repaint)
        xcb_clear_area(connection, 1, id, 0, 0, 0, 0);
    xcb_flush(connection);
    return true;
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
    const Owned<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(x11->connection(), cookie, nullptr));
    if (!reply)
        return false;
    point = {reply->root_x, reply->root_y};
    return true;
}

bool SetCursorPos(int x, int y)
{
    const auto* x11 = display();
    if (x11 == nullptr)
        return false;
    const auto cookie =
        xcb_warp_pointer_checked(x11->connection(), XCB_NONE, x11->root(), 0, 0, 0, 0,
                                 static_cast<std::int16_t>(x), static_cast<std::int16_t>(y));
    return Succeeded(*x11, cookie, "moving the pointer");
}

} // namespace Native
