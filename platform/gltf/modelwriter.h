// SPDX-License-Identifier: MIT
#pragma once

#include "gltf/model.h"

#include <filesystem>

namespace gltf
{

/// Writes a model as a binary glTF 2.0 file that keeps all the rules of the format. `generator` names who
/// made it. False when the file cannot be written or the model has no triangles; no file is left then. Any
/// thread.
[[nodiscard]] bool WriteModel(const Model& model, const std::filesystem::path& file,
                              const std::string& generator);

} // namespace gltf
