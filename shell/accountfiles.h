// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace shell
{

// The host's files lie beside the program, as everything of the editor does.

[[nodiscard]] QString HostConfigFile();
[[nodiscard]] QString SavedLoginFile();

/// Words for the user when the folder of the program cannot be written; empty when it can.
[[nodiscard]] QString FolderProblem();

} // namespace shell
