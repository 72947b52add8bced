// SPDX-License-Identifier: MIT
#include "kyvconvert/sourcereader.h"

#include "kyvconvert/archive.h"
#include "kyvconvert/assimpreader.h"
#include "kyvconvert/dwgreader.h"
#include "kyvconvert/ifcreader.h"

#include <algorithm>
#include <cctype>

namespace kyvconvert
{

namespace
{

struct Reader {
    const char* ending;
    Read (*read)(const std::filesystem::path&, const OnPercent&);
    bool isWhole;               ///< what it reads names no other files
    const char* type = "MODEL"; ///< of the model, for the project database
    const char* imported = "";  ///< what the project database is told the model was imported as
};

/// Who reads what; a new format is a line here.
constexpr Reader readers[] = {
    {".kyv", ReadArchive, true},           {".ifc", ReadIfc, true},
    {".dwg", ReadDwg, true, "DWG", "DWG"}, {".fbx", ReadWithAssimp, true, "MODEL", "FBX"},
    {".glb", ReadWithAssimp, true},        {".gltf", ReadWithAssimp, false},
    {".obj", ReadWithAssimp, false},
};

/// The project database tells models that were imported from those of an archive by it.
constexpr const char* importAttribute = "editor_import_source_type";

const Reader* ReaderOf(const std::filesystem::path& file)
{
    auto ending = file.extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    const auto* found = std::find_if(std::begin(readers), std::end(readers),
                                     [&](const Reader& reader) { return ending == reader.ending; });
    return found != std::end(readers) ? found : nullptr;
}

} // namespace

Read ReadSource(const std::filesystem::path& file, const OnPercent& onPercent)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        return Failure{"there is no file " + file.string()};
    const auto* reader = ReaderOf(file);
    if (reader == nullptr)
        return Failure{"the file cannot be read: there is no reader for files of the kind \"" +
                       file.extension().string() + '"'};
    auto read = reader->read(file, onPercent);
    if (auto* source = std::get_if<SourceModel>(&read)) {
        source->type = reader->type;
        if (*reader->imported != '\0')
            source->attributes[importAttribute] = reader->imported;
    }
    return read;
}

bool IsWhole(const std::filesystem::path& file)
{
    const auto* reader = ReaderOf(file);
    return reader != nullptr && reader->isWhole;
}

bool KeepOnly(gltf::Model& model, const std::string& nodeName)
{
    std::vector<bool> isKept(model.nodes.size());
    std::vector<bool> isNeeded(model.nodes.size());
    for (std::size_t i = 0; i < model.nodes.size(); ++i) {
        const int parent = model.nodes[i].parent;
        isKept[i] =
            model.nodes[i].name == nodeName || (parent >= 0 && isKept[static_cast<std::size_t>(parent)]);
        for (int above = static_cast<int>(i); isKept[i] && above >= 0;
             above = model.nodes[static_cast<std::size_t>(above)].parent)
            isNeeded[static_cast<std::size_t>(above)] = true;
    }
    if (std::find(isKept.begin(), isKept.end(), true) == isKept.end())
        return false;

    gltf::Model kept;
    std::vector<int> newNode(model.nodes.size(), -1);
    for (std::size_t i = 0; i < model.nodes.size(); ++i) {
        if (!isNeeded[i])
            continue;
        newNode[i] = static_cast<int>(kept.nodes.size());
        const int parent = model.nodes[i].parent;
        kept.nodes.push_back(model.nodes[i]);
        kept.nodes.back().parent = parent < 0 ? -1 : newNode[static_cast<std::size_t>(parent)];
    }
    std::vector<std::uint32_t> newVertex(model.vertices.size(), UINT32_MAX);
    for (const auto& part : model.parts) {
        if (!isKept[part.node])
            continue;
        gltf::Part copy = part;
        copy.node = static_cast<std::uint32_t>(newNode[part.node]);
        copy.firstIndex = static_cast<std::uint32_t>(kept.indices.size());
        for (std::uint32_t i = 0; i < part.indexCount; ++i) {
            const auto old = model.indices[part.firstIndex + i];
            if (newVertex[old] == UINT32_MAX) {
                newVertex[old] = static_cast<std::uint32_t>(kept.vertices.size());
                kept.vertices.push_back(model.vertices[old]);
                kept.bounds.include(model.vertices[old].position);
            }
            kept.indices.push_back(newVertex[old]);
        }
        kept.parts.push_back(copy);
    }
    model = std::move(kept);
    return !model.parts.empty();
}

} // namespace kyvconvert
