// SPDX-License-Identifier: MIT
#pragma once

#include "kyvconvert/sourcemodel.h"

#include <filesystem>

namespace kyvconvert
{

/// Reads a model with one of the readers that are no C++, in a process of its own; what that leaves behind is
/// not trusted. `kind` is how people call such files.
[[nodiscard]] Read ReadByNode(const std::string& script, const std::string& kind,
                              const std::filesystem::path& file, const OnPercent& onPercent);

/// The model that such a process has left in a folder.
[[nodiscard]] Read ReadNodeResult(const std::filesystem::path& folder);

} // namespace kyvconvert
