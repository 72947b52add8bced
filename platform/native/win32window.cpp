// SPDX-License-Identifier: MIT
#include "native/nativewindow.h"

#include <windows.h>

namespace Native
{

namespace
{

HWND Handle(WindowId window)
{
    return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(window));
}

} // namespace

bool SetParent(WindowId child, WindowId parent)
{
    return ::SetParent(Handle(child), Handle(parent)) != nullptr;
}

bool MoveWindow(WindowId window, int x, int y, int width, int height, bool repaint)
{
    return ::MoveWindow(Handle(window), x, y, width, height, repaint ? TRUE : FALSE) != FALSE;
}

bool ResizeWindow(WindowId window, int width, int height)
{
    return ::SetWindowPos(Handle(window), nullptr, 0, 0, width, height,
                          SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE) != FALSE;
}

bool AnnouncePosition(WindowId /*window*/)
{
    // The system itself tells child windows of their parent's moves.
    return true;
}

bool FocusWindow(WindowId window)
{
    return ::SetFocus(Handle(window)) != nullptr;
}

std::string LastErrorText()
{
    const DWORD code = ::GetLastError();
    if (code == 0)
        return {};
    char* buffer = nullptr;
    constexpr DWORD flags =
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    const DWORD length = ::FormatMessageA(flags, nullptr, code, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
                                          reinterpret_cast<char*>(&buffer), 0, nullptr);
    std::string text(buffer, length);
    ::LocalFree(buffer);
    // The system's sentences end with a line break.
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
        text.pop_back();
    return text;
}

bool GetCursorPos(Point& point)
{
    POINT position{};
    if (::GetCursorPos(&position) == FALSE)
        return false;
    point = {static_cast<int>(position.x), static_cast<int>(position.y)};
    return true;
}

bool SetCursorPos(int x, int y)
{
    return ::SetCursorPos(x, y) != FALSE;
}

} // namespace Native
