// SPDX-License-Identifier: MIT
#include "gltf/modelwriter.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <limits>
#include <map>

#define TINYGLTF_NO_STB_IMAGE
#define TINYGLTF_NO_STB_IMAGE_WRITE
#include <tiny_gltf.h>

namespace gltf
{

namespace
{

constexpr const char* levelExtension = "MSFT_lod";

tinygltf::Value ExtrasOf(const Node& node)
{
    tinygltf::Value::Object extras;
    if (!node.type.empty())
        extras["type"] = tinygltf::Value(node.type);
    if (!node.id.empty())
        extras["id"] = tinygltf::Value(node.id);
    tinygltf::Value::Object groups;
    for (const auto& [group, properties] : node.properties) {
        tinygltf::Value::Object texts;
        for (const auto& [name, text] : properties)
            texts[name] = tinygltf::Value(text);
        groups[group] = tinygltf::Value(std::move(texts));
    }
    if (!groups.empty())
        extras["properties"] = tinygltf::Value(std::move(groups));
    return extras.empty() ? tinygltf::Value() : tinygltf::Value(std::move(extras));
}

/// Gathers a model into the tables of the format.
class Writer
{
public:
    Writer(const Model& model, const std::string& generator)
        : m_model(model)
    {
        m_target.asset.version = "2.0";
        m_target.asset.generator = generator;
        m_target.buffers.resize(1);
    }

    tinygltf::Model write()
    {
        addNodes();
        addVertexViews();
        for (const auto& part : m_model.parts)
            addPart(part, part.node);
        addLevels();
        tinygltf::Scene scene;
        for (std::size_t i = 0; i < m_model.nodes.size(); ++i) {
            if (m_model.nodes[i].parent < 0)
                scene.nodes.push_back(static_cast<int>(i));
        }
        m_target.scenes.push_back(std::move(scene));
        m_target.defaultScene = 0;
        return std::move(m_target);
    }

private:
    void addNodes()
    {
        m_target.nodes.resize(m_model.nodes.size());
        for (std::size_t i = 0; i < m_model.nodes.size(); ++i) {
            m_target.nodes[i].name = m_model.nodes[i].name;
            m_target.nodes[i].extras = ExtrasOf(m_model.nodes[i]);
            if (m_model.nodes[i].parent >= 0)
                m_target.nodes[static_cast<std::size_t>(m_model.nodes[i].parent)].children.push_back(
                    static_cast<int>(i));
        }
    }

    int addView(const void* data, std::size_t size, int target, std::size_t stride = 0)
    {
        auto& buffer = m_target.buffers.front().data;
        tinygltf::BufferView view;
        view.buffer = 0;
        view.byteOffset = buffer.size();
        view.byteLength = size;
        view.target = target;
        view.byteStride = stride;
        const auto* bytes = static_cast<const unsigned char*>(data);
        buffer.insert(buffer.end(), bytes, bytes + size);
        buffer.resize((buffer.size() + 3) / 4 * 4);
        m_target.bufferViews.push_back(std::move(view));
        return static_cast<int>(m_target.bufferViews.size()) - 1;
    }

    void addVertexViews()
    {
        std::vector<Vector3> positions;
        std::vector<Vector3> normals;
        for (const auto& vertex : m_model.vertices) {
            positions.push_back(vertex.position);
            normals.push_back(vertex.normal);
        }
        // Each view serves many parts, and has to say how far its elements lie apart.
        m_positions = addView(positions.data(), positions.size() * sizeof(Vector3),
                              TINYGLTF_TARGET_ARRAY_BUFFER, sizeof(Vector3));
        m_normals = addView(normals.data(), normals.size() * sizeof(Vector3), TINYGLTF_TARGET_ARRAY_BUFFER,
                            sizeof(Vector3));
    }

    int addAccessor(int view, std::size_t offset, std::size_t count, int type, int componentType)
    {
        tinygltf::Accessor accessor;
        accessor.bufferView = view;
        accessor.byteOffset = offset;
        accessor.count = count;
        accessor.type = type;
        accessor.componentType = componentType;
        m_target.accessors.push_back(std::move(accessor));
        return static_cast<int>(m_target.accessors.size()) - 1;
    }

    /// A node's coarser levels are nodes outside the tree, which the node names: whoever does not know of
    /// levels sees all there is to see.
    void addLevels()
    {
        struct Levels {
            std::vector<tinygltf::Value> ids;
            std::vector<tinygltf::Value> coverage;
        };
        std::map<std::pair<std::uint32_t, unsigned>, std::vector<const Part*>> parts;
        for (const auto& part : m_model.coarser)
            parts[{part.node, part.level}].push_back(&part);
        std::map<std::uint32_t, Levels> levels;
        for (const auto& [key, ofLevel] : parts) {
            const auto node = static_cast<std::uint32_t>(m_target.nodes.size());
            m_target.nodes.emplace_back();
            for (const auto* part : ofLevel)
                addPart(*part, node);
            levels[key.first].ids.emplace_back(static_cast<int>(node));
            levels[key.first].coverage.emplace_back(ofLevel.front()->coverage);
        }
        for (auto& [index, ofNode] : levels) {
            auto& node = m_target.nodes[index];
            ofNode.coverage.emplace_back(0.0);
            auto extras = node.extras.IsObject() ? node.extras.Get<tinygltf::Value::Object>()
                                                 : tinygltf::Value::Object();
            extras["MSFT_screencoverage"] = tinygltf::Value(std::move(ofNode.coverage));
            node.extras = tinygltf::Value(std::move(extras));
            node.extensions[levelExtension] =
                tinygltf::Value(tinygltf::Value::Object{{"ids", tinygltf::Value(std::move(ofNode.ids))}});
        }
        if (!levels.empty())
            m_target.extensionsUsed.emplace_back(levelExtension);
    }

    void addPart(const Part& part, std::uint32_t nodeIndex)
    {
        // A part numbers its own corners from 0: each has a stretch of the vertices to itself.
        const auto* begin = m_model.indices.data() + part.firstIndex;
        const auto* end = begin + part.indexCount;
        const auto [low, high] = std::minmax_element(begin, end);
        std::vector<std::uint32_t> indices(begin, end);
        for (auto& index : indices)
            index -= *low;

        const std::size_t offset = *low * sizeof(Vector3);
        const std::size_t count = *high - *low + 1;
        tinygltf::Primitive primitive;
        primitive.mode = part.isLines ? TINYGLTF_MODE_LINE : TINYGLTF_MODE_TRIANGLES;
        primitive.material = materialOf(part);
        const int position =
            addAccessor(m_positions, offset, count, TINYGLTF_TYPE_VEC3, TINYGLTF_COMPONENT_TYPE_FLOAT);
        setBounds(m_target.accessors.back(), *low, count);
        primitive.attributes["POSITION"] = position;
        // Without normals the format has lines drawn in their plain colour.
        if (!part.isLines)
            primitive.attributes["NORMAL"] =
                addAccessor(m_normals, offset, count, TINYGLTF_TYPE_VEC3, TINYGLTF_COMPONENT_TYPE_FLOAT);
        primitive.indices = addIndices(indices, count);

        auto& node = m_target.nodes[nodeIndex];
        if (node.mesh < 0) {
            node.mesh = static_cast<int>(m_target.meshes.size());
            m_target.meshes.emplace_back();
        }
        m_target.meshes[static_cast<std::size_t>(node.mesh)].primitives.push_back(std::move(primitive));
    }

    int addIndices(const std::vector<std::uint32_t>& indices, std::size_t vertexCount)
    {
        // The highest number of each width ends a strip and is no corner.
        if (vertexCount > std::numeric_limits<std::uint16_t>::max()) {
            const int view = addView(indices.data(), indices.size() * sizeof(std::uint32_t),
                                     TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER);
            return addAccessor(view, 0, indices.size(), TINYGLTF_TYPE_SCALAR,
                               TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT);
        }
        const std::vector<std::uint16_t> narrow(indices.begin(), indices.end());
        const int view = addView(narrow.data(), narrow.size() * sizeof(std::uint16_t),
                                 TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER);
        return addAccessor(view, 0, narrow.size(), TINYGLTF_TYPE_SCALAR,
                           TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT);
    }

    void setBounds(tinygltf::Accessor& accessor, std::uint32_t first, std::size_t count) const
    {
        Bounds bounds;
        for (std::size_t i = 0; i < count; ++i)
            bounds.include(m_model.vertices[first + i].position);
        accessor.minValues.assign(bounds.low.begin(), bounds.low.end());
        accessor.maxValues.assign(bounds.high.begin(), bounds.high.end());
    }

    int materialOf(const Part& part)
    {
        const auto key = std::pair(part.color, part.isDoubleSided);
        const auto [known, isNew] = m_materials.try_emplace(key, static_cast<int>(m_target.materials.size()));
        if (isNew) {
            tinygltf::Material material;
            material.pbrMetallicRoughness.baseColorFactor.assign(part.color.begin(), part.color.end());
            material.pbrMetallicRoughness.metallicFactor = 0.0;
            material.pbrMetallicRoughness.roughnessFactor = 0.9;
            material.alphaMode = part.color[3] < 1.0F ? "BLEND" : "OPAQUE";
            material.doubleSided = part.isDoubleSided;
            m_target.materials.push_back(std::move(material));
        }
        return known->second;
    }

    const Model& m_model;
    tinygltf::Model m_target;
    int m_positions = -1;
    int m_normals = -1;
    std::map<std::pair<std::array<float, 4>, bool>, int> m_materials;
};

/// True when all of it has gone to the file; the library itself does not look.
bool WriteFile(const tinygltf::Model& model, const std::string& file)
{
    std::ofstream stream(file, std::ios::binary);
    tinygltf::TinyGLTF writer;
    if (!stream || !writer.WriteGltfSceneToStream(&model, stream, false, true))
        return false;
    stream.close();
    return static_cast<bool>(stream);
}

} // namespace

bool WriteModel(const Model& model, const std::filesystem::path& file, const std::string& generator)
{
    if (model.parts.empty())
        return false;
    const auto target = Writer(model, generator).write();
    const auto half = file.string() + ".tmp";
    std::error_code error;
    if (WriteFile(target, half)) {
        std::filesystem::rename(half, file, error);
        if (!error)
            return true;
    }
    std::filesystem::remove(half, error);
    return false;
}

} // namespace gltf
