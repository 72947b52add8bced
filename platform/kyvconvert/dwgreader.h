// SPDX-License-Identifier: MIT
#pragma once

#include "kyvconvert/sourcemodel.h"

#include <filesystem>

namespace kyvconvert
{

/// Reads a drawing in a process of its own: lines lie on the ground, a node for each layer, and below it one
/// for each text, block, dimension and mesh.
[[nodiscard]] Read ReadDwg(const std::filesystem::path& file, const OnPercent& onPercent);

} // namespace kyvconvert
