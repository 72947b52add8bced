// SPDX-License-Identifier: MIT
#pragma once

namespace shell
{

/// How the host stands on the desktop: its window system, and pictures as sharp as the screen whatever its
/// scale. To be called before there is an application object; GUI thread.
void ChooseDesktopSettings();

} // namespace shell
