// SPDX-License-Identifier: MIT
#pragma once

#include "gltf/model.h"

#include <filesystem>
#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace kyvconvert
{

/// A storey of a building.
struct Floor {
    std::string name;
    double elevation = 0.0; ///< metres above the model's zero
};

/// A model as its source file has it.
struct SourceModel {
    gltf::Model model;
    std::vector<Floor> floors;         ///< ascending by elevation; empty when the source knows none
    std::size_t droppedPrimitives = 0; ///< points and lines, which have no surface
    std::size_t droppedTextures = 0;   ///< pictures on surfaces; the colours are kept
};

struct Failure {
    std::string reason;
};

/// Reads FBX, IFC (2x3), glTF, GLB, OBJ and whatever else Assimp knows, in metres with Y up. `onPercent`
/// hears how far it has come, 0 to 100. One call at a time in a process.
[[nodiscard]] std::variant<SourceModel, Failure> ReadSource(const std::filesystem::path& file,
                                                            const std::function<void(int)>& onPercent);

/// Keeps only what stands at or below the nodes of that name. False when there is none.
[[nodiscard]] bool KeepOnly(gltf::Model& model, const std::string& nodeName);

} // namespace kyvconvert
