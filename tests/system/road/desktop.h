// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <vector>

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QString>

#include <xcb/xcb.h>

namespace road
{

/// Waits until `holds` says so, with the event loop running. False when it has not within `milliseconds`.
[[nodiscard]] bool WaitFor(const std::function<bool()>& holds, int milliseconds = 15000);

/// A window as the X server knows it, in pixels of the screen.
struct NativeWindow {
    xcb_window_t id = 0;
    QRect area;
    bool isViewable = false;
};

/// The X server's pointer, keyboard and windows, used as from outside: what an event does to the window below
/// the pointer is the X server's business, not Qt's. All places are pixels of the screen. GUI thread.
class Desktop
{
public:
    Desktop();
    ~Desktop();
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    void moveTo(QPoint place);
    void click(QPoint place);
    void doubleClick(QPoint place);
    void drag(QPoint from, QPoint to);

    /// Types letters, digits and signs that have a key, with Shift where needed.
    void type(const QString& text);
    void press(xcb_keysym_t key);
    void press(xcb_keysym_t key, xcb_keysym_t with);

    /// Asks the window manager for a window as a click in a task bar does.
    void activate(xcb_window_t window);

    [[nodiscard]] QImage picture() const;
    /// Waits until the screen changes no more, but not for long: something may be moving for good.
    void awaitQuiet() const;

    /// The windows inside of `parent`.
    [[nodiscard]] std::vector<NativeWindow> childrenOf(xcb_window_t parent) const;

private:
    void fake(std::uint8_t type, std::uint8_t detail, QPoint place = {});
    void button(bool isDown);
    void strike(xcb_keysym_t key);
    [[nodiscard]] QRect areaOf(xcb_window_t window) const;

    xcb_connection_t* m_connection = nullptr;
    xcb_window_t m_root = 0;
};

} // namespace road
