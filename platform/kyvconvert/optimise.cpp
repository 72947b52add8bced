// SPDX-License-Identifier: MIT
#include "kyvconvert/optimise.h"

#include <algorithm>
#include <map>
#include <span>
#include <tuple>
#include <unordered_map>
#include <utility>

#include <meshoptimizer.h>

namespace kyvconvert
{

namespace
{

using gltf::Model;
using gltf::Part;
using gltf::Vector3;
using gltf::Vertex;

constexpr float overdrawPrice = 1.05F;
constexpr std::size_t smallestToSimplify = 64UL * 3;
constexpr double leastGain = 0.8; ///< a level that is hardly smaller than the one before it is none

/// How a level comes out of the finest one.
struct Level {
    float share;     ///< of the triangles that are aimed at
    float deviation; ///< that is allowed, in shares of the part's size
    double coverage; ///< of the view, below which the level before this one gives way to it
    bool isFarAway = true;
};

std::span<const Level> LevelsOf(Mode mode)
{
    static constexpr Level quality[] = {{0.5F, 0.005F, 0.2}, {0.2F, 0.02F, 0.05}};
    static constexpr Level performance[] = {{0.3F, 0.03F, 0.4}, {0.1F, 0.1F, 0.1}};
    switch (mode) {
    case Mode::qualityFirst:
        return quality;
    case Mode::performanceFirst:
        return performance;
    case Mode::staticModel:
        break;
    }
    return {};
}

constexpr Level finestForPerformance{0.5F, 0.01F, 1.0, false};

using Indices = std::vector<std::uint32_t>;
using Look = std::tuple<std::array<float, 4>, bool, bool>; ///< colour, both sides, lines

/// As long as the triangle's area, twice.
std::array<double, 3> AreaNormal(const Vector3& a, const Vector3& b, const Vector3& c)
{
    const std::array<double, 3> u{double{b[0]} - a[0], double{b[1]} - a[1], double{b[2]} - a[2]};
    const std::array<double, 3> v{double{c[0]} - a[0], double{c[1]} - a[1], double{c[2]} - a[2]};
    return {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
}

/// The surface of one look of one component, or its lines. These stay as they are at every level: they are
/// cheap, and a drawing of which some are missing is a wrong one.
struct Surface {
    std::vector<Vertex> vertices;
    Indices indices;
    bool isLines = false;

    [[nodiscard]] const float* positions() const { return vertices.front().position.data(); }

    void shareCorners()
    {
        if (isLines)
            return;
        Indices remap(vertices.size());
        const auto count = meshopt_generateVertexRemap(remap.data(), indices.data(), indices.size(),
                                                       vertices.data(), vertices.size(), sizeof(Vertex));
        std::vector<Vertex> shared(count);
        meshopt_remapVertexBuffer(shared.data(), vertices.data(), vertices.size(), sizeof(Vertex),
                                  remap.data());
        meshopt_remapIndexBuffer(indices.data(), indices.data(), indices.size(), remap.data());
        vertices = std::move(shared);
    }

    [[nodiscard]] bool isNothing(std::size_t first) const
    {
        const auto& at = vertices[indices[first]].position;
        const auto& next = vertices[indices[first + 1]].position;
        return isLines
                   ? at == next
                   : AreaNormal(at, next, vertices[indices[first + 2]].position) == std::array<double, 3>{};
    }

    /// Leaves out triangles without area and lines without length. Gives how many there were.
    std::size_t dropWhatIsNothing()
    {
        const std::size_t step = isLines ? 2 : 3;
        std::size_t kept = 0;
        for (std::size_t i = 0; i + step <= indices.size(); i += step) {
            if (isNothing(i))
                continue;
            for (std::size_t corner = 0; corner < step; ++corner)
                indices[kept++] = indices[i + corner];
        }
        const auto dropped = (indices.size() - kept) / step;
        indices.resize(kept);
        return dropped;
    }

    /// Itself, when it is too small or nothing would be left.
    [[nodiscard]] Indices simplified(const Level& level) const
    {
        if (isLines || indices.size() < smallestToSimplify)
            return indices;
        // Along a hard edge each side has corners of its own, which hold the simplification up: it is done on
        // the places alone.
        Indices places(indices.size());
        meshopt_generateShadowIndexBuffer(places.data(), indices.data(), indices.size(), vertices.data(),
                                          vertices.size(), sizeof(Vector3), sizeof(Vertex));
        std::vector<Indices> cornersAt(vertices.size());
        for (std::size_t i = 0; i < indices.size(); ++i) {
            auto& corners = cornersAt[places[i]];
            if (std::find(corners.begin(), corners.end(), indices[i]) == corners.end())
                corners.push_back(indices[i]);
        }
        Indices result(indices.size());
        const std::size_t triangles = indices.size() / 3;
        const auto aim = static_cast<std::size_t>(level.share * static_cast<float>(triangles)) * 3;
        result.resize(meshopt_simplify(result.data(), places.data(), places.size(), positions(),
                                       vertices.size(), sizeof(Vertex), aim, level.deviation, 0, nullptr));
        if (level.isFarAway &&
            static_cast<double>(result.size()) > leastGain * static_cast<double>(indices.size())) {
            // Surfaces that do not hang together, as buildings have many of.
            result.resize(indices.size());
            result.resize(meshopt_simplifySloppy(result.data(), places.data(), places.size(), positions(),
                                                 vertices.size(), sizeof(Vertex), aim, level.deviation,
                                                 nullptr));
        }
        if (result.empty())
            return indices;
        for (std::size_t i = 0; i + 2 < result.size(); i += 3)
            chooseCorners(cornersAt, &result[i]);
        return result;
    }

    /// Takes for each corner of a triangle the one that looks most like the triangle does.
    void chooseCorners(const std::vector<Indices>& cornersAt, std::uint32_t* triangle) const
    {
        const auto normal = AreaNormal(vertices[triangle[0]].position, vertices[triangle[1]].position,
                                       vertices[triangle[2]].position);
        const auto likeness = [&](std::uint32_t corner) {
            const auto& own = vertices[corner].normal;
            return own[0] * normal[0] + own[1] * normal[1] + own[2] * normal[2];
        };
        for (std::size_t i = 0; i < 3; ++i) {
            const auto& corners = cornersAt[triangle[i]];
            triangle[i] = *std::max_element(corners.begin(), corners.end(), [&](auto left, auto right) {
                return likeness(left) < likeness(right);
            });
        }
    }

    void order()
    {
        if (isLines)
            return;
        meshopt_optimizeVertexCache(indices.data(), indices.data(), indices.size(), vertices.size());
        meshopt_optimizeOverdraw(indices.data(), Indices(indices).data(), indices.size(), positions(),
                                 vertices.size(), sizeof(Vertex), overdrawPrice);
        std::vector<Vertex> ordered(vertices.size());
        ordered.resize(meshopt_optimizeVertexFetch(ordered.data(), indices.data(), indices.size(),
                                                   vertices.data(), vertices.size(), sizeof(Vertex)));
        vertices = std::move(ordered);
    }
};

/// A model that is put together anew, surface by surface.
class Optimised
{
public:
    Optimised(Model& from, Mode mode)
        : m_from(from)
        , m_mode(mode)
    {
        m_to.nodes = std::move(from.nodes);
        m_hasChildren.resize(m_to.nodes.size());
        for (const auto& node : m_to.nodes) {
            if (node.parent >= 0)
                m_hasChildren[static_cast<std::size_t>(node.parent)] = true;
        }
    }

    /// Counts what it leaves out.
    void run(Dropped& dropped)
    {
        std::map<std::uint32_t, std::map<Look, std::vector<const Part*>>> nodes;
        for (const auto& part : m_from.parts)
            nodes[part.node][{part.color, part.isDoubleSided, part.isLines}].push_back(&part);
        for (const auto& [node, looks] : nodes) {
            std::vector<Placed> placed;
            for (const auto& [look, parts] : looks)
                put(gather(parts), *parts.front(), placed);
            if (!m_hasChildren[node])
                putLevels(placed);
        }
        m_from = std::move(m_to);
        dropped.triangles += m_triangles;
        dropped.primitives += m_lines;
    }

private:
    [[nodiscard]] Surface gather(const std::vector<const Part*>& parts) const
    {
        Surface surface;
        surface.isLines = parts.front()->isLines;
        std::unordered_map<std::uint32_t, std::uint32_t> known;
        for (const auto* part : parts) {
            for (std::uint32_t i = 0; i < part->indexCount; ++i) {
                const auto old = m_from.indices[part->firstIndex + i];
                const auto [entry, isNew] =
                    known.try_emplace(old, static_cast<std::uint32_t>(surface.vertices.size()));
                if (isNew)
                    surface.vertices.push_back(m_from.vertices[old]);
                surface.indices.push_back(entry->second);
            }
        }
        return surface;
    }

    /// A surface with its place in the new model.
    struct Placed {
        Surface surface;
        Part part;
        std::uint32_t base;
    };

    void put(Surface surface, const Part& look, std::vector<Placed>& placed)
    {
        surface.shareCorners();
        (surface.isLines ? m_lines : m_triangles) += surface.dropWhatIsNothing();
        if (surface.indices.empty())
            return;
        if (m_mode == Mode::performanceFirst)
            surface.indices = surface.simplified(finestForPerformance);
        surface.order();
        const auto base = static_cast<std::uint32_t>(m_to.vertices.size());
        m_to.vertices.insert(m_to.vertices.end(), surface.vertices.begin(), surface.vertices.end());
        for (const auto& vertex : surface.vertices)
            m_to.bounds.include(vertex.position);
        m_to.parts.push_back(partOf(surface.indices, base, look));
        placed.push_back({std::move(surface), m_to.parts.back(), base});
    }

    /// A level holds every surface of its component, also those that cannot be any simpler.
    void putLevels(const std::vector<Placed>& placed)
    {
        const auto sizeOf = [](const std::vector<Indices>& all) {
            std::size_t size = 0;
            for (const auto& indices : all)
                size += indices.size();
            return static_cast<double>(size);
        };
        std::vector<Indices> before;
        before.reserve(placed.size());
        for (const auto& each : placed)
            before.push_back(each.surface.indices);
        unsigned number = 0;
        for (const auto& level : LevelsOf(m_mode)) {
            std::vector<Indices> simple;
            simple.reserve(placed.size());
            for (const auto& each : placed)
                simple.push_back(each.surface.simplified(level));
            if (sizeOf(simple) > leastGain * sizeOf(before))
                continue;
            ++number;
            for (std::size_t i = 0; i < placed.size(); ++i) {
                if (!placed[i].surface.isLines)
                    meshopt_optimizeVertexCache(simple[i].data(), simple[i].data(), simple[i].size(),
                                                placed[i].surface.vertices.size());
                auto part = partOf(simple[i], placed[i].base, placed[i].part);
                part.level = number;
                part.coverage = level.coverage;
                m_to.coarser.push_back(part);
            }
            before = std::move(simple);
        }
    }

    Part partOf(const Indices& indices, std::uint32_t base, const Part& look)
    {
        Part part = look;
        part.firstIndex = static_cast<std::uint32_t>(m_to.indices.size());
        part.indexCount = static_cast<std::uint32_t>(indices.size());
        for (auto index : indices)
            m_to.indices.push_back(base + index);
        return part;
    }

    Model& m_from;
    Model m_to;
    Mode m_mode;
    std::vector<bool> m_hasChildren; ///< by node
    std::size_t m_triangles = 0;     ///< that were left out
    std::size_t m_lines = 0;         ///< likewise
};

} // namespace

void Optimise(SourceModel& source, Mode mode)
{
    Optimised(source.model, mode).run(source.dropped);
}

} // namespace kyvconvert
