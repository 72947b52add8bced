// SPDX-License-Identifier: MIT
#include "kyvconvert/archive.h"

#include "gltf/modelreader.h"
#include "gltf/modelwriter.h"
#include "kyvconvert/scratchfolder.h"
#include "kyvconvert/ziparchive.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <set>
#include <unordered_map>

#include <nlohmann/json.hpp>

namespace kyvconvert
{

namespace
{

using nlohmann::json;

constexpr int formatVersion = 1;
constexpr std::size_t mostComponents = 1U << 20U;

/// A model that is put together from the parts of an archive.
class Assembly
{
public:
    void takeIndex(const json& index)
    {
        if (index.value("format", std::string()) != "kyv" || index.value("version", 0) != formatVersion)
            throw BadArchive("its index is of another format");
        for (const auto& floor : index.value("floors", json::array()))
            takeFloor(floor);
        for (const auto& component : index.value("components", json::array()))
            takeComponent(component);
        const auto& dropped = index.value("dropped", json::object());
        m_source.dropped.primitives += dropped.value("pointsAndLines", 0U);
        m_source.dropped.textures += dropped.value("textures", 0U);
        m_source.dropped.components += dropped.value("components", 0U);
        m_source.dropped.faces += dropped.value("faces", 0U);
        m_source.dropped.triangles += dropped.value("triangles", 0U);
        for (const auto& [kind, count] : dropped.value("kinds", std::map<std::string, std::size_t>()))
            m_source.dropped.kinds[kind] += count;
        if (index.contains("origin"))
            m_source.origin = index.at("origin");
    }

    /// To be called when all indices are there: parents stand before their children from then on.
    void buildTree()
    {
        for (std::size_t i = 0; i < m_components.size(); ++i)
            place(i, 0);
    }

    void takeGeometry(gltf::Model part)
    {
        auto& model = m_source.model;
        std::vector<int> nodeOf(part.nodes.size(), -1);
        for (std::size_t i = 0; i < part.nodes.size(); ++i) {
            const auto known = m_placed.find(part.nodes[i].name);
            const int above =
                part.nodes[i].parent < 0 ? -1 : nodeOf[static_cast<std::size_t>(part.nodes[i].parent)];
            nodeOf[i] = known != m_placed.end() ? known->second : above;
        }
        const auto firstVertex = static_cast<std::uint32_t>(model.vertices.size());
        const auto firstIndex = static_cast<std::uint32_t>(model.indices.size());
        model.vertices.insert(model.vertices.end(), part.vertices.begin(), part.vertices.end());
        for (auto index : part.indices)
            model.indices.push_back(firstVertex + index);
        for (auto& surface : part.parts) {
            // Surfaces of no component are one of their own.
            if (nodeOf[surface.node] < 0) {
                nodeOf[surface.node] = static_cast<int>(model.nodes.size());
                model.nodes.push_back({part.nodes[surface.node].name, -1});
            }
            surface.node = static_cast<std::uint32_t>(nodeOf[surface.node]);
            surface.firstIndex += firstIndex;
            model.parts.push_back(surface);
        }
        model.bounds.include(part.bounds);
    }

    SourceModel finish()
    {
        std::stable_sort(
            m_source.floors.begin(), m_source.floors.end(),
            [](const Floor& left, const Floor& right) { return left.elevation < right.elevation; });
        countLost();
        return std::move(m_source);
    }

private:
    struct Component {
        gltf::Node node;
        std::string parent;
        bool hasGeometry = false;
    };

    void takeFloor(const json& floor)
    {
        Floor taken{floor.at("name"), floor.at("elevation")};
        if (!std::isfinite(taken.elevation))
            throw BadArchive("a floor of it has no height");
        if (std::find(m_source.floors.begin(), m_source.floors.end(), taken) == m_source.floors.end())
            m_source.floors.push_back(std::move(taken));
    }

    void takeComponent(const json& from)
    {
        Component component;
        component.node.id = from.at("id");
        component.node.name = from.value("name", std::string());
        component.node.type = from.value("type", std::string());
        component.node.properties = from.value("properties", gltf::Properties());
        component.parent = from.value("parent", std::string());
        component.hasGeometry = from.value("geometry", false);
        if (m_components.size() >= mostComponents)
            throw BadArchive("it has more components than can be meant");
        if (component.node.id.empty() || !m_known.try_emplace(component.node.id, m_components.size()).second)
            throw BadArchive("two components of it have one id, or one has none");
        m_components.push_back(std::move(component));
    }

    int place(std::size_t index, std::size_t depth)
    {
        auto& component = m_components[index];
        if (const auto placed = m_placed.find(component.node.id); placed != m_placed.end())
            return placed->second;
        if (depth > deepestTree)
            throw BadArchive("its tree is too deep or runs in a circle");
        const auto parent = m_known.find(component.parent);
        if (parent == m_known.end() && !component.parent.empty())
            throw BadArchive("a component of it stands below one that is not there");
        component.node.parent = parent != m_known.end() ? place(parent->second, depth + 1) : -1;
        const int self = static_cast<int>(m_source.model.nodes.size());
        m_source.model.nodes.push_back(component.node);
        m_placed.emplace(component.node.id, self);
        return self;
    }

    /// Components that the index promises surfaces of and the parts have none of.
    void countLost()
    {
        std::vector<bool> hasSurface(m_source.model.nodes.size());
        for (const auto& part : m_source.model.parts)
            hasSurface[part.node] = true;
        for (const auto& component : m_components) {
            if (!component.hasGeometry ||
                hasSurface[static_cast<std::size_t>(m_placed.at(component.node.id))])
                continue;
            ++m_source.dropped.components;
            if (m_source.dropped.names.size() < mostNamed)
                m_source.dropped.names.push_back(component.node.name);
        }
    }

    static constexpr std::size_t deepestTree = 256;
    static constexpr std::size_t mostNamed = 20;

    SourceModel m_source;
    std::vector<Component> m_components;
    std::unordered_map<std::string, std::size_t> m_known; ///< components by id
    std::unordered_map<std::string, int> m_placed;        ///< nodes by the ids of their components
};

json IndexOf(const SourceModel& source, const std::string& name)
{
    std::vector<bool> hasSurface(source.model.nodes.size());
    for (const auto& part : source.model.parts)
        hasSurface[part.node] = true;
    json components = json::array();
    for (std::size_t i = 0; i < source.model.nodes.size(); ++i) {
        const auto& node = source.model.nodes[i];
        json component{{"id", node.id}, {"name", node.name}, {"geometry", static_cast<bool>(hasSurface[i])}};
        if (!node.type.empty())
            component["type"] = node.type;
        if (node.parent >= 0)
            component["parent"] = source.model.nodes[static_cast<std::size_t>(node.parent)].id;
        if (!node.properties.empty())
            component["properties"] = node.properties;
        components.push_back(std::move(component));
    }
    json floors = json::array();
    for (const auto& floor : source.floors)
        floors.push_back({{"name", floor.name}, {"elevation", floor.elevation}});
    const auto& dropped = source.dropped;
    return {{"format", "kyv"},
            {"version", formatVersion},
            {"name", name},
            {"origin", source.origin},
            {"floors", std::move(floors)},
            {"components", std::move(components)},
            {"dropped",
             {{"pointsAndLines", dropped.primitives},
              {"textures", dropped.textures},
              {"components", dropped.components},
              {"faces", dropped.faces},
              {"triangles", dropped.triangles},
              {"kinds", dropped.kinds}}}};
}

/// Every component gets an id of its own; those of the source stay as long as they are its own.
void GiveIds(gltf::Model& model)
{
    std::set<std::string> taken;
    for (std::size_t i = 0; i < model.nodes.size(); ++i) {
        auto& id = model.nodes[i].id;
        for (std::size_t number = i; id.empty() || !taken.insert(id).second; ++number)
            id = "c" + std::to_string(number);
    }
}

std::string BytesOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace

Read ReadArchive(const std::filesystem::path& file, const OnPercent& onPercent)
{
    try {
        const ZipReader archive(file);
        const auto indices = archive.namesEndingWith(".zrim");
        const auto parts = archive.namesEndingWith(".zrg");
        if (indices.empty())
            return Failure{"the file cannot be read: it has no index"};
        Assembly assembly;
        for (const auto& name : indices)
            assembly.takeIndex(json::parse(archive.read(name)));
        assembly.buildTree();
        for (std::size_t i = 0; i < parts.size(); ++i) {
            auto read = gltf::ReadModel(archive.read(parts[i]));
            if (const auto* unreadable = std::get_if<gltf::Unreadable>(&read))
                return Failure{"the file cannot be read: " + parts[i] + ": " + unreadable->reason};
            assembly.takeGeometry(std::move(std::get<gltf::Model>(read)));
            onPercent(static_cast<int>(100 * (i + 1) / parts.size()));
        }
        auto source = assembly.finish();
        if (source.model.parts.empty())
            return Failure{"the file has no surfaces"};
        return source;
    } catch (const BadArchive& bad) {
        return Failure{std::string("the file cannot be read: ") + bad.what()};
    } catch (const json::exception&) {
        return Failure{"the file cannot be read: its index is damaged"};
    }
}

std::string WriteArchive(const SourceModel& source, const std::string& name,
                         const std::filesystem::path& file)
{
    std::error_code error;
    const std::filesystem::path half = file.string() + ".half";
    try {
        SourceModel packed = source;
        GiveIds(packed.model);
        const auto index = IndexOf(packed, name).dump(-1, ' ', false, json::error_handler_t::replace);
        // Surfaces find their components by the names of their nodes.
        for (auto& node : packed.model.nodes)
            node = {node.id, node.parent};
        const ScratchFolder scratch;
        if (scratch.path().empty() ||
            !gltf::WriteModel(packed.model, scratch.path() / "geometry.glb", "Torvo Home kyv-pack"))
            return "the surfaces cannot be written";
        const auto geometry = BytesOf(scratch.path() / "geometry.glb");
        ZipWriter archive(half);
        archive.add("index.zrim", index);
        archive.add("geometry.zrg", geometry);
        archive.finish();
        std::filesystem::rename(half, file, error);
        if (!error)
            return {};
    } catch (const BadArchive& bad) {
        std::filesystem::remove(half, error);
        return bad.what();
    }
    std::filesystem::remove(half, error);
    return "the archive " + file.string() + " cannot be written";
}

} // namespace kyvconvert
