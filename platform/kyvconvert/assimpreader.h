// SPDX-License-Identifier: MIT
#pragma once

#include "kyvconvert/sourcemodel.h"

#include <filesystem>

namespace kyvconvert
{

/// Reads FBX, glTF, GLB and OBJ files.
[[nodiscard]] Read ReadWithAssimp(const std::filesystem::path& file, const OnPercent& onPercent);

} // namespace kyvconvert
