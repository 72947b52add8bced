// SPDX-License-Identifier: MIT
#pragma once

#include "kyvconvert/sourcemodel.h"

#include <filesystem>

namespace kyvconvert
{

/// Reads a building in a process of its own.
[[nodiscard]] Read ReadIfc(const std::filesystem::path& file, const OnPercent& onPercent);

} // namespace kyvconvert
