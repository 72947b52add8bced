// SPDX-License-Identifier: MIT
#include "kyvconvert/modelfolder.h"

#include "gltf/modelwriter.h"

#include <fstream>

#include <nlohmann/json.hpp>

namespace kyvconvert
{

namespace
{

using nlohmann::json;

json DroppedFacts(const Dropped& dropped)
{
    return {{"pointsAndLines", dropped.primitives},
            {"textures", dropped.textures},
            {"components", dropped.components},
            {"componentNames", dropped.names},
            {"faces", dropped.faces},
            {"triangles", dropped.triangles},
            {"kinds", dropped.kinds}};
}

std::size_t CountTriangles(const std::vector<gltf::Part>& parts, unsigned level)
{
    std::size_t count = 0;
    for (const auto& part : parts)
        count += part.level == level ? part.triangles() : 0;
    return count;
}

std::size_t CountLines(const std::vector<gltf::Part>& parts)
{
    std::size_t count = 0;
    for (const auto& part : parts)
        count += part.isLines ? part.indexCount / part.cornersPerPiece() : 0;
    return count;
}

json ModelFacts(const SourceModel& source, const std::string& name, const std::string& sourceName)
{
    const auto& model = source.model;
    json levels = json::array({CountTriangles(model.parts, 0)});
    for (unsigned level = 1; CountTriangles(model.coarser, level) > 0; ++level)
        levels.push_back(CountTriangles(model.coarser, level));
    return {{"name", name},
            {"type", source.type},
            {"attributes", source.attributes},
            {"source", sourceName},
            {"bounds", {{"low", model.bounds.low}, {"high", model.bounds.high}}},
            {"triangles", levels.front()},
            {"lines", CountLines(model.parts)},
            {"levels", levels},
            {"vertices", model.vertices.size()},
            {"nodes", model.nodes.size()},
            {"parts", model.parts.size()},
            {"origin", source.origin},
            {"dropped", DroppedFacts(source.dropped)}};
}

json FloorList(const std::vector<Floor>& floors)
{
    json list = json::array();
    for (const auto& floor : floors)
        list.push_back({{"name", floor.name}, {"elevation", floor.elevation}});
    return list;
}

bool WriteJson(const json& value, const std::filesystem::path& file)
{
    std::ofstream stream(file, std::ios::binary);
    stream << value.dump(4, ' ', false, json::error_handler_t::replace) << '\n';
    return static_cast<bool>(stream.flush());
}

} // namespace

std::string WriteModelFolder(const SourceModel& source, const std::string& name,
                             const std::string& sourceName, const std::filesystem::path& folder)
{
    std::error_code error;
    const bool isNew = std::filesystem::create_directories(folder, error);
    if (error)
        return "the folder " + folder.string() + " cannot be made: " + error.message();
    const auto geometry = folder / "model.glb";
    const auto facts = folder / "model.json";
    const auto floors = folder / "floors.json";
    const bool isWritten = gltf::WriteModel(source.model, geometry, "Torvo Home kyv-convert") &&
                           WriteJson(ModelFacts(source, name, sourceName), facts) &&
                           WriteJson(FloorList(source.floors), floors);
    if (isWritten)
        return {};
    for (const auto& file : {geometry, facts, floors}) {
        if (std::filesystem::is_regular_file(file, error))
            std::filesystem::remove(file, error);
    }
    if (isNew)
        std::filesystem::remove(folder, error);
    return "the folder " + folder.string() + " cannot be written";
}

bool RenameModel(const std::filesystem::path& folder, const std::string& name, const std::string& sourceName)
{
    std::ifstream stream(folder / "model.json", std::ios::binary);
    auto facts = json::parse(stream, nullptr, false);
    if (!facts.is_object())
        return false;
    facts["name"] = name;
    facts["source"] = sourceName;
    return WriteJson(facts, folder / "model.json");
}

} // namespace kyvconvert
