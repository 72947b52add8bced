// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

/// Native windows of this and of other processes, by the number that the window system knows them by: an HWND
/// on Windows, a window's XID under X11. GUI thread.
namespace Native
{

using WindowId = std::uint64_t;

struct Point {
    int x = 0;
    int y = 0;
};

/// Makes `child`, a window of any process, a child window of `parent`, a window of this one, and shows it.
/// The child keeps its size and lies at the parent's top left until MoveWindow places it. False when one of
/// the two is no window or the window system refuses; LastErrorText then says why.
[[nodiscard]] bool SetParent(WindowId child, WindowId parent);

/// Places a window in its parent's client area, in device pixels. False when it is no window.
bool MoveWindow(WindowId window, int x, int y, int width, int height, bool repaint);

/// Gives a window another size and leaves it where it lies in its parent, in device pixels. For the owner of
/// a window that somebody else has placed.
bool ResizeWindow(WindowId window, int width, int height);

/// Tells the owner of an embedded window where on the screen it lies now: a window does not hear of it when
/// its parent is moved, and would open its menus where it lay before.
bool AnnouncePosition(WindowId window);

/// Gives the keyboard to an embedded window.
bool FocusWindow(WindowId window);

/// The system's text for the last failure of this thread in this library; empty when there was none.
[[nodiscard]] std::string LastErrorText();

/// The pointer's position on the screen, in device pixels. False leaves `point` as it is.
bool GetCursorPos(Point& point);

/// Moves the pointer, in device pixels of the screen.
bool SetCursorPos(int x, int y);

} // namespace Native
