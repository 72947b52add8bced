// SPDX-License-Identifier: MIT
#pragma once

#include "native/nativewindow.h"

namespace Fakes
{

/// A window system that does what the test says. GUI thread.
struct WindowSystem {
    bool acceptsParent = true; ///< the answer of SetParent
    std::string errorText;     ///< the text of LastErrorText
    Native::Point cursor;      ///< where the pointer is
    bool knowsCursor = true;   ///< the answer of GetCursorPos
};

[[nodiscard]] WindowSystem& Windows();

} // namespace Fakes
