// SPDX-License-Identifier: MIT
#pragma once

#include "kyvconvert/sourcemodel.h"

#include <filesystem>

namespace kyvconvert
{

/// Reads a building in a process of its own; what that leaves behind is not trusted.
[[nodiscard]] Read ReadIfc(const std::filesystem::path& file, const OnPercent& onPercent);

/// The model that the reader's process has left in a folder.
[[nodiscard]] Read ReadIfcResult(const std::filesystem::path& folder);

} // namespace kyvconvert
