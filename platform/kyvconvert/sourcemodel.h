// SPDX-License-Identifier: MIT
#pragma once

#include "gltf/model.h"

#include <array>
#include <functional>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace kyvconvert
{

/// A storey of a building.
struct Floor {
    std::string name;
    double elevation = 0.0; ///< metres above the model's zero

    friend bool operator==(const Floor&, const Floor&) = default;
};

/// What a source has and its model has not.
struct Dropped {
    std::size_t primitives = 0;     ///< points, and lines of sources whose lines are not kept
    std::size_t textures = 0;       ///< pictures on surfaces; the colours are kept
    std::size_t components = 0;     ///< components of which no surface could be built
    std::vector<std::string> names; ///< of the first of these components
    std::size_t faces = 0;     ///< surfaces that the reader could not build, of components that have others
    std::size_t triangles = 0; ///< triangles that have no area, or corners that are no numbers
    std::map<std::string, std::size_t> kinds{}; ///< what else is not shown, counted by its kind
};

/// A model as its source file has it.
struct SourceModel {
    gltf::Model model;
    std::vector<Floor> floors; ///< ascending by elevation; empty when the source knows none
    std::array<double, 3>
        origin{}; ///< where the model's zero is in the source's space; models far away are moved
    Dropped dropped;
    std::string type = "MODEL";                    ///< as the project database sorts models
    std::map<std::string, std::string> attributes; ///< that the project database keeps with the model
};

struct Failure {
    std::string reason;
};

using Read = std::variant<SourceModel, Failure>;
using OnPercent = std::function<void(int)>;

} // namespace kyvconvert
