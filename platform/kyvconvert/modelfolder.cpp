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

json ModelFacts(const SourceModel& source, const std::string& name, const std::string& sourceName)
{
    const auto& model = source.model;
    return {
        {"name", name},
        {"type", "MODEL"},
        {"source", sourceName},
        {"bounds", {{"low", model.bounds.low}, {"high", model.bounds.high}}},
        {"triangles", model.indices.size() / 3},
        {"vertices", model.vertices.size()},
        {"nodes", model.nodes.size()},
        {"parts", model.parts.size()},
        {"dropped", {{"pointsAndLines", source.droppedPrimitives}, {"textures", source.droppedTextures}}}};
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

} // namespace kyvconvert
