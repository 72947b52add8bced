// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace TorvoEditor
{

// The script that starts the host again, without its automatic login, once this process has left. Pure
// functions.

/// Where the host lies, seen from the folder of the running program.
[[nodiscard]] QString HostPath(const QString& applicationDir);

/// The script for Windows. It waits two seconds. The host's path stands without quotes, so a path with a
/// blank breaks it; installers have relied on the exact text.
[[nodiscard]] QString RestartBatchText(const QString& hostPath);

/// The script for every other system. It waits two seconds, and then until the process `processId` has gone.
[[nodiscard]] QString RestartShellText(const QString& hostPath, qint64 processId);

} // namespace TorvoEditor
