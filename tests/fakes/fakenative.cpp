// SPDX-License-Identifier: MIT
#include "fakes/fakenative.h"

#include "fakes/calls.h"

namespace Fakes
{

WindowSystem& Windows()
{
    static WindowSystem windows;
    return windows;
}

} // namespace Fakes

namespace Native
{

bool SetParent(WindowId child, WindowId parent)
{
    Fakes::Called(QStringLiteral("SetParent(%1,%2)").arg(child).arg(parent));
    return Fakes::Windows().acceptsParent;
}

bool MoveWindow(WindowId window, int x, int y, int width, int height, bool repaint)
{
    Fakes::Called(QStringLiteral("MoveWindow(%1,%2,%3,%4,%5,%6)")
                      .arg(window)
                      .arg(x)
                      .arg(y)
                      .arg(width)
                      .arg(height)
                      .arg(repaint ? QStringLiteral("true") : QStringLiteral("false")));
    return true;
}

std::string LastErrorText()
{
    return Fakes::Windows().errorText;
}

bool GetCursorPos(Point& point)
{
    if (Fakes::Windows().knowsCursor)
        point = Fakes::Windows().cursor;
    return Fakes::Windows().knowsCursor;
}

bool SetCursorPos(int x, int y)
{
    Fakes::Called(QStringLiteral("SetCursorPos(%1,%2)").arg(x).arg(y));
    Fakes::Windows().cursor = {x, y};
    return true;
}

} // namespace Native
