// SPDX-License-Identifier: MIT
#include "gltf/modelwriter.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <map>

#define TINYGLTF_NO_STB_IMAGE
#define TINYGLTF_NO_STB_IMAGE_WRITE
#include <tiny_gltf.h>

namespace gltf
{

namespace
{

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
            addPart(part);
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
            if (m_model.nodes[i].parent >= 0)
                m_target.nodes[static_cast<std::size_t>(m_model.nodes[i].parent)].children.push_back(
                    static_cast<int>(i));
        }
    }

    int addView(const void* data, std::size_t size, int target)
    {
        auto& buffer = m_target.buffers.front().data;
        tinygltf::BufferView view;
        view.buffer = 0;
        view.byteOffset = buffer.size();
        view.byteLength = size;
        view.target = target;
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
        m_positions =
            addView(positions.data(), positions.size() * sizeof(Vector3), TINYGLTF_TARGET_ARRAY_BUFFER);
        m_normals = addView(normals.data(), normals.size() * sizeof(Vector3), TINYGLTF_TARGET_ARRAY_BUFFER);
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

    void addPart(const Part& part)
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
        primitive.mode = TINYGLTF_MODE_TRIANGLES;
        primitive.material = materialOf(part);
        const int position =
            addAccessor(m_positions, offset, count, TINYGLTF_TYPE_VEC3, TINYGLTF_COMPONENT_TYPE_FLOAT);
        setBounds(m_target.accessors.back(), *low, count);
        primitive.attributes["POSITION"] = position;
        primitive.attributes["NORMAL"] =
            addAccessor(m_normals, offset, count, TINYGLTF_TYPE_VEC3, TINYGLTF_COMPONENT_TYPE_FLOAT);
        const int view = addView(indices.data(), indices.size() * sizeof(std::uint32_t),
                                 TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER);
        primitive.indices =
            addAccessor(view, 0, indices.size(), TINYGLTF_TYPE_SCALAR, TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT);

        auto& node = m_target.nodes[part.node];
        if (node.mesh < 0) {
            node.mesh = static_cast<int>(m_target.meshes.size());
            m_target.meshes.emplace_back();
        }
        m_target.meshes[static_cast<std::size_t>(node.mesh)].primitives.push_back(std::move(primitive));
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
