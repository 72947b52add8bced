// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

namespace webview
{

/// The files of the browser engine and of our library over it that are mapped into this process.
[[nodiscard]] QStringList MappedEngineFiles();

/// How many processes of the engine this process has started, at any depth.
[[nodiscard]] int EngineProcesses();

} // namespace webview
