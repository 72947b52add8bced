// SPDX-License-Identifier: MIT
#pragma once

#include "kyvconvert/sourcemodel.h"

#include <filesystem>

namespace kyvconvert
{

/// Reads a model archive, or an IFC, DWG, FBX, glTF, GLB or OBJ file, in metres with Y up; which reader takes
/// a file depends on the end of its name. `onPercent` hears how far it has come, 0 to 100. One call at a time
/// in a process.
[[nodiscard]] Read ReadSource(const std::filesystem::path& file, const OnPercent& onPercent);

/// True for a file that is read without a look at others beside it.
[[nodiscard]] bool IsWhole(const std::filesystem::path& file);

/// Keeps only what stands at or below the nodes of that name. False when there is none.
[[nodiscard]] bool KeepOnly(gltf::Model& model, const std::string& nodeName);

} // namespace kyvconvert
