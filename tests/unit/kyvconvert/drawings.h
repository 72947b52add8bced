// SPDX-License-Identifier: MIT
#pragma once

#include "gltf/model.h"

#include <algorithm>
#include <cmath>
#include <string>

// What is to be known of a drawing that has been read.

[[nodiscard]] inline std::size_t PiecesOf(const gltf::Model& model, bool areLines)
{
    std::size_t count = 0;
    for (const auto& part : model.parts)
        count += part.isLines == areLines ? part.indexCount / part.cornersPerPiece() : 0;
    return count;
}

[[nodiscard]] inline double AreaOf(const gltf::Model& model)
{
    double area = 0.0;
    for (const auto& part : model.parts) {
        for (std::uint32_t i = part.firstIndex; !part.isLines && i < part.firstIndex + part.indexCount;
             i += 3) {
            const auto& a = model.vertices[model.indices[i]].position;
            const auto& b = model.vertices[model.indices[i + 1]].position;
            const auto& c = model.vertices[model.indices[i + 2]].position;
            // They lie on the ground.
            area += std::abs((b[0] - a[0]) * (c[2] - a[2]) - (c[0] - a[0]) * (b[2] - a[2])) / 2.0;
        }
    }
    return area;
}

[[nodiscard]] inline bool IsAt(const gltf::Vector3& point, const gltf::Vector3& expected)
{
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (std::abs(point[axis] - expected[axis]) > 1e-4F)
            return false;
    }
    return true;
}

[[nodiscard]] inline const gltf::Node* NodeOfType(const gltf::Model& model, const std::string& type)
{
    const auto found = std::find_if(model.nodes.begin(), model.nodes.end(),
                                    [&](const auto& node) { return node.type == type; });
    return found != model.nodes.end() ? &*found : nullptr;
}

[[nodiscard]] inline std::string Told(const gltf::Node* node, const std::string& group,
                                      const std::string& name)
{
    return node != nullptr && node->properties.contains(group) && node->properties.at(group).contains(name)
               ? node->properties.at(group).at(name)
               : "nothing";
}
