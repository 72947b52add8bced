// SPDX-License-Identifier: MIT
#include "kyvconvert/optimise.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <map>
#include <span>
#include <thread>
#include <tuple>
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

/// A surface as it comes out, finest first; each level over the same corners.
struct Made {
    Surface surface;
    Part look;
    std::vector<Indices> levels; ///< one for each of the mode, empty where it has none
};

/// All surfaces of a node.
struct Component {
    std::uint32_t node = 0;
    std::vector<std::vector<const Part*>> looks;
    std::vector<Made> made;
    std::size_t droppedTriangles = 0;
    std::size_t droppedLines = 0;
};

/// What one thread needs to make components.
class Maker
{
public:
    Maker(const Model& from, Mode mode)
        : m_from(from)
        , m_mode(mode)
        , m_known(from.vertices.size(), unknown)
    {
    }

    void make(Component& component, bool hasLevels)
    {
        for (const auto& parts : component.looks) {
            auto surface = gather(parts);
            surface.shareCorners();
            (surface.isLines ? component.droppedLines : component.droppedTriangles) +=
                surface.dropWhatIsNothing();
            if (surface.indices.empty())
                continue;
            if (m_mode == Mode::performanceFirst)
                surface.indices = surface.simplified(finestForPerformance);
            surface.order();
            component.made.push_back({std::move(surface), *parts.front(), {}});
        }
        if (hasLevels)
            makeLevels(component.made);
    }

private:
    static constexpr std::uint32_t unknown = UINT32_MAX;

    [[nodiscard]] Surface gather(const std::vector<const Part*>& parts)
    {
        Surface surface;
        surface.isLines = parts.front()->isLines;
        std::size_t count = 0;
        for (const auto* part : parts)
            count += part->indexCount;
        surface.indices.reserve(count);
        m_touched.clear();
        for (const auto* part : parts) {
            for (std::uint32_t i = 0; i < part->indexCount; ++i) {
                const auto old = m_from.indices[part->firstIndex + i];
                if (m_known[old] == unknown) {
                    m_known[old] = static_cast<std::uint32_t>(m_touched.size());
                    m_touched.push_back(old);
                }
                surface.indices.push_back(m_known[old]);
            }
        }
        surface.vertices.reserve(m_touched.size());
        for (auto old : m_touched) {
            surface.vertices.push_back(m_from.vertices[old]);
            m_known[old] = unknown;
        }
        return surface;
    }

    /// A level holds every surface of its component, also those that cannot be any simpler.
    void makeLevels(std::vector<Made>& made) const
    {
        const auto sizeOf = [](const std::vector<Indices>& all) {
            std::size_t size = 0;
            for (const auto& indices : all)
                size += indices.size();
            return static_cast<double>(size);
        };
        std::vector<Indices> before;
        before.reserve(made.size());
        for (const auto& each : made)
            before.push_back(each.surface.indices);
        for (const auto& level : LevelsOf(m_mode)) {
            std::vector<Indices> simple;
            simple.reserve(made.size());
            for (const auto& each : made)
                simple.push_back(each.surface.simplified(level));
            const bool isWorthIt = sizeOf(simple) <= leastGain * sizeOf(before);
            for (std::size_t i = 0; i < made.size(); ++i) {
                if (isWorthIt && !made[i].surface.isLines)
                    meshopt_optimizeVertexCache(simple[i].data(), simple[i].data(), simple[i].size(),
                                                made[i].surface.vertices.size());
                made[i].levels.push_back(isWorthIt ? simple[i] : Indices());
            }
            if (isWorthIt)
                before = std::move(simple);
        }
    }

    const Model& m_from;
    Mode m_mode;
    Indices m_known;   ///< by corner of the model: its number in the surface that is gathered
    Indices m_touched; ///< the corners of that surface
};

/// A model that is put together anew, component by component, on all processors.
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
        std::vector<Component> components;
        components.reserve(nodes.size());
        for (auto& [node, looks] : nodes) {
            components.push_back({node, {}, {}, 0, 0});
            for (auto& [look, parts] : looks)
                components.back().looks.push_back(std::move(parts));
        }
        makeAll(components);
        m_from.vertices = {};
        m_from.indices = {};
        makeRoom(components);
        for (auto& component : components) {
            put(component);
            dropped.triangles += component.droppedTriangles;
            dropped.primitives += component.droppedLines;
            component.made = {};
        }
        m_from = std::move(m_to);
    }

private:
    void makeAll(std::vector<Component>& components) const
    {
        std::atomic<std::size_t> next = 0;
        const auto work = [&] {
            Maker maker(m_from, m_mode);
            for (auto i = next++; i < components.size(); i = next++)
                maker.make(components[i], !m_hasChildren[components[i].node]);
        };
        const std::size_t most = std::max(1U, std::thread::hardware_concurrency());
        std::vector<std::exception_ptr> problems(std::min(most, components.size()));
        {
            std::vector<std::jthread> threads;
            for (auto& problem : problems) {
                threads.emplace_back([&] {
                    try {
                        work();
                    } catch (...) {
                        problem = std::current_exception();
                    }
                });
            }
        }
        for (const auto& problem : problems) {
            if (problem)
                std::rethrow_exception(problem);
        }
    }

    /// A list that grows needs memory twice.
    void makeRoom(const std::vector<Component>& components)
    {
        std::size_t vertices = 0;
        std::size_t indices = 0;
        for (const auto& component : components) {
            for (const auto& made : component.made) {
                vertices += made.surface.vertices.size();
                indices += made.surface.indices.size();
                for (const auto& level : made.levels)
                    indices += level.size();
            }
        }
        m_to.vertices.reserve(vertices);
        m_to.indices.reserve(indices);
    }

    void put(const Component& component)
    {
        std::vector<std::uint32_t> bases;
        for (const auto& made : component.made) {
            bases.push_back(static_cast<std::uint32_t>(m_to.vertices.size()));
            m_to.vertices.insert(m_to.vertices.end(), made.surface.vertices.begin(),
                                 made.surface.vertices.end());
            for (const auto& vertex : made.surface.vertices)
                m_to.bounds.include(vertex.position);
            m_to.parts.push_back(partOf(made.surface.indices, bases.back(), made.look));
        }
        unsigned number = 0;
        const auto levels = LevelsOf(m_mode);
        for (std::size_t level = 0; level < levels.size(); ++level) {
            const auto hasLevel = [&](const Made& made) {
                return made.levels.size() > level && !made.levels[level].empty();
            };
            if (!std::all_of(component.made.begin(), component.made.end(), hasLevel))
                continue;
            ++number;
            for (std::size_t i = 0; i < component.made.size(); ++i) {
                auto part = partOf(component.made[i].levels[level], bases[i], component.made[i].look);
                part.level = number;
                part.coverage = levels[level].coverage;
                m_to.coarser.push_back(part);
            }
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
};

} // namespace

void Optimise(SourceModel& source, Mode mode)
{
    Optimised(source.model, mode).run(source.dropped);
}

} // namespace kyvconvert
