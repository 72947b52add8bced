// SPDX-License-Identifier: MIT
#include "kyvconvert/nodereader.h"

#include "kyvconvert/childprocess.h"
#include "kyvconvert/scratchfolder.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include <nlohmann/json.hpp>

namespace kyvconvert
{

namespace
{

using nlohmann::json;

constexpr std::size_t mostVertices = 1U << 26U;
constexpr std::size_t mostIndices = 1U << 28U;

/// The script lies beside the program; programs of a build folder that lie elsewhere find it from there.
std::filesystem::path ScriptNamed(const std::string& script)
{
    if (const char* folder = std::getenv("TORVO_READERS"))
        return std::filesystem::path(folder) / script;
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    for (const auto& folder : {program / "readers", program / "../editor/bin/readers"}) {
        if (std::filesystem::exists(folder / script, error))
            return folder / script;
    }
    return program / "readers" / script;
}

/// Copies the surfaces and lines of a model, checking every number that points somewhere.
class Result
{
public:
    Result(const json& index, const std::filesystem::path& geometry)
        : m_index(index)
        , m_stream(geometry, std::ios::binary)
    {
    }

    SourceModel read()
    {
        for (const auto& node : m_index.at("nodes"))
            takeNode(node);
        for (const auto& part : m_index.at("parts"))
            takePart(part);
        for (const auto& floor : m_index.at("floors"))
            m_source.floors.push_back({floor.at("name"), finite(floor.at("elevation"))});
        m_source.origin = m_index.at("origin");
        auto& dropped = m_source.dropped;
        dropped.components = m_index.at("lostComponents");
        dropped.names = m_index.at("lostNames");
        dropped.faces = m_index.at("lostFaces");
        dropped.triangles = m_index.at("lostTriangles");
        dropped.kinds = m_index.value("lostKinds", dropped.kinds);
        return std::move(m_source);
    }

private:
    [[nodiscard]] static double finite(const json& number)
    {
        const double value = number;
        return std::isfinite(value) ? value : 0.0;
    }

    void takeNode(const json& node)
    {
        const int parent = node.at("parent");
        if (parent < -1 || parent >= static_cast<int>(m_source.model.nodes.size()))
            throw std::runtime_error("a node stands below none");
        m_source.model.nodes.push_back(
            {node.at("name"), parent, node.at("type"), node.at("id"), node.at("properties")});
    }

    void takePart(const json& from)
    {
        auto& model = m_source.model;
        gltf::Part part;
        part.node = from.at("node");
        part.isLines = from.value("lines", false);
        const std::size_t vertexCount = from.at("vertexCount");
        const std::size_t indexCount = from.at("indexCount");
        if (part.node >= model.nodes.size() || indexCount % part.cornersPerPiece() != 0 ||
            vertexCount > mostVertices - model.vertices.size() ||
            indexCount > mostIndices - model.indices.size())
            throw std::runtime_error("a part is larger than can be");
        const auto firstVertex = model.vertices.size();
        part.firstIndex = static_cast<std::uint32_t>(model.indices.size());
        part.indexCount = static_cast<std::uint32_t>(indexCount);
        model.vertices.resize(firstVertex + vertexCount);
        model.indices.resize(model.indices.size() + indexCount);
        m_stream.seekg(from.at("offset").get<std::streamoff>());
        readInto(model.vertices.data() + firstVertex, vertexCount * sizeof(gltf::Vertex));
        readInto(model.indices.data() + part.firstIndex, indexCount * sizeof(std::uint32_t));
        for (std::size_t i = firstVertex; i < model.vertices.size(); ++i)
            model.bounds.include(model.vertices[i].position);
        for (std::size_t i = part.firstIndex; i < model.indices.size(); ++i) {
            if (model.indices[i] >= vertexCount)
                throw std::runtime_error("a triangle or line has corners that are not there");
            model.indices[i] += static_cast<std::uint32_t>(firstVertex);
        }
        const std::array<double, 4> color = from.at("color");
        std::transform(color.begin(), color.end(), part.color.begin(), [](double share) {
            return std::isfinite(share) ? static_cast<float>(std::clamp(share, 0.0, 1.0)) : 0.8F;
        });
        // Buildings are drawn from inside too, and many of their surfaces are turned the wrong way.
        part.isDoubleSided = !part.isLines;
        if (part.indexCount > 0)
            model.parts.push_back(part);
    }

    void readInto(void* target, std::size_t size)
    {
        static_assert(sizeof(gltf::Vertex) == 6 * sizeof(float));
        if (!m_stream.read(static_cast<char*>(target), static_cast<std::streamsize>(size)))
            throw std::runtime_error("the surfaces are shorter than they say");
    }

    const json& m_index;
    std::ifstream m_stream;
    SourceModel m_source;
};

} // namespace

Read ReadNodeResult(const std::filesystem::path& folder)
{
    try {
        std::ifstream stream(folder / "index.json", std::ios::binary);
        const auto index = json::parse(stream);
        auto source = Result(index, folder / "geometry.bin").read();
        if (source.model.parts.empty())
            return Failure{"the file has no surfaces"};
        return source;
    } catch (const std::exception& exception) {
        return Failure{std::string("the file cannot be read: ") + exception.what()};
    }
}

Read ReadByNode(const std::string& script, const std::string& kind, const std::filesystem::path& file,
                const OnPercent& onPercent)
{
    const ScratchFolder folder;
    if (folder.path().empty())
        return Failure{"there is no room for the reader's files"};
    std::string reason;
    const auto code = RunChild({"node", ScriptNamed(script).string(), file.string(), folder.path().string()},
                               [&](std::string_view text) {
                                   const auto line = json::parse(text, nullptr, false);
                                   if (!line.is_object())
                                       return;
                                   if (line.value("percent", -1) >= 0)
                                       onPercent(std::min(100, line.value("percent", 0)));
                                   reason = line.value("error", reason);
                               });
    if (code == 0)
        return ReadNodeResult(folder.path());
    if (reason.empty())
        reason = "the reader of " + kind + " files " +
                 (code == 127 ? "could not be started; is Node.js installed?" : "has ended before its time");
    return Failure{"the file cannot be read: " + reason};
}

} // namespace kyvconvert
