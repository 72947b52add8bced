// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace gltf
{

using Vector3 = std::array<float, 3>;

struct Vertex {
    Vector3 position{}; ///< metres, Y up
    Vector3 normal{};   ///< unit length
};

/// A node of a model's tree: a storey, a component, a part of a machine.
struct Node {
    std::string name;
    int parent = -1; ///< index in Model::nodes, always smaller than the node's own; -1 at the top

    friend bool operator==(const Node&, const Node&) = default;
};

/// Triangles of one node that share one colour.
struct Part {
    std::uint32_t node = 0;                             ///< index in Model::nodes
    std::uint32_t firstIndex = 0;                       ///< in Model::indices
    std::uint32_t indexCount = 0;                       ///< a multiple of three
    std::array<float, 4> color{0.8F, 0.8F, 0.8F, 1.0F}; ///< red, green, blue, opacity; linear, 0 to 1
    bool isDoubleSided = false;
};

struct Bounds {
    Vector3 low{};
    Vector3 high{};
    bool isEmpty = true;

    void include(const Vector3& point);
    void include(const Bounds& other);
};

/// A model, as it is drawn: all vertices in the model's own space, nothing nested.
struct Model {
    std::vector<Vertex> vertices;
    std::vector<std::uint32_t> indices; ///< three a triangle, all below the number of vertices
    std::vector<Node> nodes;
    std::vector<Part> parts;
    Bounds bounds;
};

inline void Bounds::include(const Vector3& point)
{
    for (std::size_t axis = 0; axis < 3; ++axis) {
        low[axis] = isEmpty || point[axis] < low[axis] ? point[axis] : low[axis];
        high[axis] = isEmpty || point[axis] > high[axis] ? point[axis] : high[axis];
    }
    isEmpty = false;
}

inline void Bounds::include(const Bounds& other)
{
    if (other.isEmpty)
        return;
    include(other.low);
    include(other.high);
}

} // namespace gltf
