// SPDX-License-Identifier: MIT
#include "smartdb/data/modelfolder.h"

#include "smartdb/data/projectfile.h"
#include "smartdb/failure.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <sstream>

#include <nlohmann/json.hpp>

namespace ZRSmartDB
{

namespace
{

namespace fs = std::filesystem;
using nlohmann::json;

constexpr const char* descriptionFile = "model.json";
constexpr const char* modelType = "MODEL";
constexpr std::array knownTypes = {"CIM", "BIM", "MODEL", "3DTILES", "DWG"};
constexpr std::size_t maximumDescriptionBytes = 1U << 20U;

std::string TextAt(const json& object, const char* key, const std::string& otherwise)
{
    const auto found = object.find(key);
    return found != object.end() && found->is_string() ? found->get<std::string>() : otherwise;
}

json Description(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::string text(maximumDescriptionBytes, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    auto object = json::parse(text, nullptr, false);
    if (!object.is_object())
        throw Failure(localcode::badInput, file.string() + " does not describe a converted model");
    return object;
}

ModelData DataFrom(const json& description, const std::string& guid)
{
    ModelData model{guid, TextAt(description, "name", guid), TextAt(description, "type", modelType), {}};
    if (std::find(knownTypes.begin(), knownTypes.end(), model.type) == knownTypes.end())
        throw Failure(localcode::badInput, "a converted model is of the unknown type \"" + model.type + '"');
    const auto attributes = description.find("attributes");
    if (attributes == description.end() || !attributes->is_object())
        return model;
    for (const auto& [key, value] : attributes->items()) {
        if (value.is_string())
            model.attributes[key] = value.get<std::string>();
    }
    return model;
}

} // namespace

ModelData AdoptModel(const fs::path& dataFolder, const std::string& guid)
{
    const auto folder = ProjectFolder(dataFolder, guid);
    if (!fs::exists(folder / descriptionFile))
        throw Failure(localcode::notHere, "no converted model stands in " + folder.string());
    auto model = DataFrom(Description(folder / descriptionFile), guid);
    if (!fs::exists(DatabaseIn(folder))) {
        ProjectHead head;
        head.guid = guid;
        head.name = model.name;
        head.type = modelType;
        ProjectFile::create(folder, head);
    } else if (ProjectFile(folder).readHead().type != modelType) {
        throw Failure(localcode::badInput, folder.string() + " is a project of its own and no model");
    }
    return model;
}

} // namespace ZRSmartDB
