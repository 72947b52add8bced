// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace gltf
{

using Vector3 = std::array<float, 3>;

struct Vertex {
    Vector3 position{}; ///< metres, Y up
    Vector3 normal{};   ///< unit length; nothing at the ends of lines
};

/// What is known of a component: texts by their names, in groups that have names too.
using Properties = std::map<std::string, std::map<std::string, std::string>>;

/// A node of a model's tree: a storey, a component, a part of a machine.
struct Node {
    std::string name{};
    int parent = -1;    ///< index in Model::nodes, always smaller than the node's own; -1 at the top
    std::string type{}; ///< "IfcWall" and the like; empty where the source has no types
    std::string id{};   ///< the source's own name for it, for machines; empty where it has none
    Properties properties{};

    friend bool operator==(const Node&, const Node&) = default;
};

/// Triangles or lines of one node that share one colour.
struct Part {
    std::uint32_t node = 0;                             ///< index in Model::nodes
    std::uint32_t firstIndex = 0;                       ///< in Model::indices
    std::uint32_t indexCount = 0;                       ///< a multiple of cornersPerPiece()
    std::array<float, 4> color{0.8F, 0.8F, 0.8F, 1.0F}; ///< red, green, blue, opacity; linear, 0 to 1
    bool isDoubleSided = false;
    unsigned level = 0;    ///< 0 for all there is to see, the higher the coarser
    double coverage = 1.0; ///< the share of the view that its node fills when this level takes over
    bool isLines = false;  ///< lines from corner to corner, which no light falls on

    [[nodiscard]] std::uint32_t cornersPerPiece() const { return isLines ? 2 : 3; }
    [[nodiscard]] std::uint32_t triangles() const { return isLines ? 0 : indexCount / 3; }
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
    std::vector<std::uint32_t> indices; ///< three a triangle, two a line, all below the number of vertices
    std::vector<Node> nodes;
    std::vector<Part> parts; ///< of level 0
    /// What stands in for nodes far away: parts of the levels above 0, over the same vertices. A level holds
    /// all parts of its node; only nodes without children have any.
    std::vector<Part> coarser;
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
