// SPDX-License-Identifier: MIT
#include "gltf/modelreader.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <limits>
#include <optional>
#include <span>

#define TINYGLTF_NO_STB_IMAGE
#define TINYGLTF_NO_STB_IMAGE_WRITE
#include <tiny_gltf.h>

namespace gltf
{

namespace
{

constexpr std::uintmax_t largestFile = 1ULL << 30U;
constexpr std::size_t mostVertices = 1U << 26U;
constexpr std::size_t mostNodes = 1U << 21U;
constexpr int deepestTree = 256;

using Matrix = std::array<double, 16>; ///< column by column, as glTF has it

constexpr Matrix identity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

class Problem : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

Matrix Product(const Matrix& left, const Matrix& right)
{
    Matrix product{};
    for (std::size_t column = 0; column < 4; ++column) {
        for (std::size_t row = 0; row < 4; ++row) {
            for (std::size_t i = 0; i < 4; ++i)
                product[column * 4 + row] += left[i * 4 + row] * right[column * 4 + i];
        }
    }
    return product;
}

Matrix MatrixOf(const tinygltf::Node& node)
{
    Matrix matrix = identity;
    if (node.matrix.size() == 16) {
        std::copy(node.matrix.begin(), node.matrix.end(), matrix.begin());
        return matrix;
    }
    if (node.rotation.size() == 4) {
        const double x = node.rotation[0];
        const double y = node.rotation[1];
        const double z = node.rotation[2];
        const double w = node.rotation[3];
        matrix = {1 - 2 * (y * y + z * z),
                  2 * (x * y + z * w),
                  2 * (x * z - y * w),
                  0,
                  2 * (x * y - z * w),
                  1 - 2 * (x * x + z * z),
                  2 * (y * z + x * w),
                  0,
                  2 * (x * z + y * w),
                  2 * (y * z - x * w),
                  1 - 2 * (x * x + y * y),
                  0,
                  0,
                  0,
                  0,
                  1};
    }
    if (node.scale.size() == 3) {
        for (std::size_t i = 0; i < 12; ++i)
            matrix[i] *= node.scale[i / 4];
    }
    if (node.translation.size() == 3)
        std::copy(node.translation.begin(), node.translation.end(), matrix.begin() + 12);
    return matrix;
}

Vector3 Transformed(const Matrix& matrix, const Vector3& point, double w)
{
    Vector3 result{};
    for (std::size_t row = 0; row < 3; ++row) {
        result[row] = static_cast<float>(matrix[row] * point[0] + matrix[4 + row] * point[1] +
                                         matrix[8 + row] * point[2] + matrix[12 + row] * w);
    }
    return result;
}

Vector3 Normalised(const Vector3& vector)
{
    const float length = std::sqrt(vector[0] * vector[0] + vector[1] * vector[1] + vector[2] * vector[2]);
    if (!(length > 0.0F) || !std::isfinite(length))
        return {0, 1, 0};
    return {vector[0] / length, vector[1] / length, vector[2] / length};
}

/// The cofactors of the upper left part: what normals are turned by, also under uneven scaling.
Matrix NormalMatrix(const Matrix& m)
{
    Matrix n = identity;
    n[0] = m[5] * m[10] - m[6] * m[9];
    n[1] = m[6] * m[8] - m[4] * m[10];
    n[2] = m[4] * m[9] - m[5] * m[8];
    n[4] = m[2] * m[9] - m[1] * m[10];
    n[5] = m[0] * m[10] - m[2] * m[8];
    n[6] = m[1] * m[8] - m[0] * m[9];
    n[8] = m[1] * m[6] - m[2] * m[5];
    n[9] = m[2] * m[4] - m[0] * m[6];
    n[10] = m[0] * m[5] - m[1] * m[4];
    return n;
}

/// The elements of an accessor, after every bound has been checked.
struct Elements {
    const unsigned char* data;
    std::size_t count;
    std::size_t stride;
    int componentType;
};

Elements ElementsOf(const tinygltf::Model& model, int accessorIndex, int type)
{
    if (accessorIndex < 0 || static_cast<std::size_t>(accessorIndex) >= model.accessors.size())
        throw Problem("it points to data that is not there");
    const auto& accessor = model.accessors[static_cast<std::size_t>(accessorIndex)];
    if (accessor.type != type || accessor.sparse.isSparse || accessor.bufferView < 0 ||
        static_cast<std::size_t>(accessor.bufferView) >= model.bufferViews.size())
        throw Problem("it stores its data in a way that is not read");
    const auto& view = model.bufferViews[static_cast<std::size_t>(accessor.bufferView)];
    if (view.buffer < 0 || static_cast<std::size_t>(view.buffer) >= model.buffers.size())
        throw Problem("it points to a buffer that is not there");
    const auto& buffer = model.buffers[static_cast<std::size_t>(view.buffer)].data;
    const int stride = accessor.ByteStride(view);
    const int elementSize =
        tinygltf::GetComponentSizeInBytes(static_cast<std::uint32_t>(accessor.componentType)) *
        tinygltf::GetNumComponentsInType(static_cast<std::uint32_t>(type));
    if (stride <= 0 || elementSize <= 0)
        throw Problem("it stores its data in a way that is not read");
    const std::size_t begin = view.byteOffset + accessor.byteOffset;
    const std::size_t needed = accessor.count == 0 ? 0
                                                   : (accessor.count - 1) * static_cast<std::size_t>(stride) +
                                                         static_cast<std::size_t>(elementSize);
    if (accessor.count > mostVertices * 8 || begin > buffer.size() || needed > buffer.size() - begin)
        throw Problem("its data is shorter than it says");
    return {buffer.data() + begin, accessor.count, static_cast<std::size_t>(stride), accessor.componentType};
}

Vector3 VectorAt(const Elements& elements, std::size_t index)
{
    Vector3 vector{};
    std::memcpy(vector.data(), elements.data + index * elements.stride, sizeof vector);
    for (float& component : vector) {
        if (!std::isfinite(component))
            component = 0.0F;
    }
    return vector;
}

std::uint32_t IndexAt(const Elements& elements, std::size_t index)
{
    const auto* data = elements.data + index * elements.stride;
    switch (elements.componentType) {
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
        return *data;
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT: {
        std::uint16_t value = 0;
        std::memcpy(&value, data, sizeof value);
        return value;
    }
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT: {
        std::uint32_t value = 0;
        std::memcpy(&value, data, sizeof value);
        return value;
    }
    default:
        throw Problem("its triangles are numbered in a way that is not read");
    }
}

std::string TextOf(const tinygltf::Value& object, const std::string& key)
{
    if (!object.IsObject() || !object.Has(key) || !object.Get(key).IsString())
        return {};
    return object.Get(key).Get<std::string>();
}

class Reader
{
public:
    explicit Reader(const tinygltf::Model& source)
        : m_source(source)
    {
    }

    Model read()
    {
        const int sceneIndex = m_source.defaultScene >= 0 ? m_source.defaultScene : 0;
        if (static_cast<std::size_t>(sceneIndex) >= m_source.scenes.size())
            throw Problem("it has no scene");
        for (int node : m_source.scenes[static_cast<std::size_t>(sceneIndex)].nodes)
            takeNode(node, -1, identity, 0);
        return std::move(m_model);
    }

private:
    void takeNode(int index, int parent, const Matrix& above, int depth)
    {
        if (index < 0 || static_cast<std::size_t>(index) >= m_source.nodes.size())
            throw Problem("its tree points to a node that is not there");
        if (depth > deepestTree || m_model.nodes.size() >= mostNodes)
            throw Problem("its tree is too deep or runs in a circle");
        const auto& node = m_source.nodes[static_cast<std::size_t>(index)];
        const auto matrix = Product(above, MatrixOf(node));
        const int self = static_cast<int>(m_model.nodes.size());
        m_model.nodes.push_back({node.name, parent});
        takeExtras(node.extras, m_model.nodes.back());
        if (node.mesh >= 0)
            takeMesh(node.mesh, static_cast<std::uint32_t>(self), matrix);
        for (int child : node.children)
            takeNode(child, self, matrix, depth + 1);
    }

    static void takeExtras(const tinygltf::Value& extras, Node& node)
    {
        node.type = TextOf(extras, "type");
        node.id = TextOf(extras, "id");
        if (!extras.IsObject() || !extras.Has("properties"))
            return;
        const auto& groups = extras.Get("properties");
        for (const auto& group : groups.Keys()) {
            const auto& properties = groups.Get(group);
            for (const auto& name : properties.Keys())
                node.properties[group][name] = TextOf(properties, name);
        }
    }

    void takeMesh(int index, std::uint32_t node, const Matrix& matrix)
    {
        if (static_cast<std::size_t>(index) >= m_source.meshes.size())
            throw Problem("its tree points to a mesh that is not there");
        for (const auto& primitive : m_source.meshes[static_cast<std::size_t>(index)].primitives) {
            // Points, and strips of anything, are not drawn; mode -1 is how the library says "triangles" by
            // default.
            if (primitive.mode == TINYGLTF_MODE_TRIANGLES || primitive.mode == TINYGLTF_MODE_LINE ||
                primitive.mode == -1)
                takePrimitive(primitive, node, matrix);
        }
    }

    void takePrimitive(const tinygltf::Primitive& primitive, std::uint32_t node, const Matrix& matrix)
    {
        const auto position = primitive.attributes.find("POSITION");
        if (position == primitive.attributes.end())
            return;
        const auto positions = ElementsOf(m_source, position->second, TINYGLTF_TYPE_VEC3);
        if (positions.componentType != TINYGLTF_COMPONENT_TYPE_FLOAT)
            throw Problem("its corners are stored in a way that is not read");
        if (positions.count > mostVertices - m_model.vertices.size())
            throw Problem("it has more corners than can be shown");
        const auto first = static_cast<std::uint32_t>(m_model.vertices.size());
        for (std::size_t i = 0; i < positions.count; ++i) {
            const auto point = Transformed(matrix, VectorAt(positions, i), 1.0);
            m_model.vertices.push_back({point, {}});
            m_model.bounds.include(point);
        }
        Part part;
        part.node = node;
        part.isLines = primitive.mode == TINYGLTF_MODE_LINE;
        part.firstIndex = static_cast<std::uint32_t>(m_model.indices.size());
        takeIndices(primitive, first, static_cast<std::uint32_t>(positions.count), part.cornersPerPiece());
        part.indexCount = static_cast<std::uint32_t>(m_model.indices.size()) - part.firstIndex;
        if (!part.isLines)
            takeNormals(primitive, first, positions.count, part, matrix);
        takeMaterial(primitive.material, part);
        if (part.indexCount > 0)
            m_model.parts.push_back(part);
    }

    void takeIndices(const tinygltf::Primitive& primitive, std::uint32_t first, std::uint32_t vertexCount,
                     std::uint32_t cornersPerPiece)
    {
        if (primitive.indices < 0) {
            for (std::uint32_t i = 0; i < vertexCount - vertexCount % cornersPerPiece; ++i)
                m_model.indices.push_back(first + i);
            return;
        }
        const auto elements = ElementsOf(m_source, primitive.indices, TINYGLTF_TYPE_SCALAR);
        for (std::size_t i = 0; i < elements.count - elements.count % cornersPerPiece; ++i) {
            const auto index = IndexAt(elements, i);
            if (index >= vertexCount)
                throw Problem("its triangles have corners that are not there");
            m_model.indices.push_back(first + index);
        }
    }

    void takeNormals(const tinygltf::Primitive& primitive, std::uint32_t first, std::size_t count,
                     const Part& part, const Matrix& matrix)
    {
        const auto normal = primitive.attributes.find("NORMAL");
        if (normal == primitive.attributes.end()) {
            computeNormals(part);
            return;
        }
        const auto normals = ElementsOf(m_source, normal->second, TINYGLTF_TYPE_VEC3);
        if (normals.count != count || normals.componentType != TINYGLTF_COMPONENT_TYPE_FLOAT) {
            computeNormals(part);
            return;
        }
        const auto turned = NormalMatrix(matrix);
        for (std::size_t i = 0; i < count; ++i)
            m_model.vertices[first + i].normal = Normalised(Transformed(turned, VectorAt(normals, i), 0.0));
    }

    void computeNormals(const Part& part)
    {
        auto& vertices = m_model.vertices;
        const auto corners = std::span(m_model.indices).subspan(part.firstIndex, part.indexCount);
        for (std::size_t i = 0; i < corners.size(); i += 3) {
            const auto& a = vertices[corners[i]].position;
            const auto& b = vertices[corners[i + 1]].position;
            const auto& c = vertices[corners[i + 2]].position;
            const Vector3 u{b[0] - a[0], b[1] - a[1], b[2] - a[2]};
            const Vector3 v{c[0] - a[0], c[1] - a[1], c[2] - a[2]};
            const Vector3 normal{u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2],
                                 u[0] * v[1] - u[1] * v[0]};
            for (std::size_t corner = 0; corner < 3; ++corner) {
                for (std::size_t axis = 0; axis < 3; ++axis)
                    vertices[corners[i + corner]].normal[axis] += normal[axis];
            }
        }
        for (auto corner : corners)
            vertices[corner].normal = Normalised(vertices[corner].normal);
    }

    void takeMaterial(int index, Part& part) const
    {
        if (index < 0 || static_cast<std::size_t>(index) >= m_source.materials.size())
            return;
        const auto& material = m_source.materials[static_cast<std::size_t>(index)];
        const auto& factor = material.pbrMetallicRoughness.baseColorFactor;
        for (std::size_t i = 0; i < 4 && i < factor.size(); ++i)
            part.color[i] = static_cast<float>(std::clamp(factor[i], 0.0, 1.0));
        if (material.alphaMode == "OPAQUE")
            part.color[3] = 1.0F;
        part.isDoubleSided = material.doubleSided;
    }

    const tinygltf::Model& m_source;
    Model m_model;
};

/// Pictures are not drawn; nothing is decoded for them.
bool IgnoreImage(tinygltf::Image*, const int, std::string*, std::string*, int, int, const unsigned char*, int,
                 void*)
{
    return true;
}

/// A model file holds all that belongs to it. One that names other files would read whatever lies there.
bool NoOtherFile(const std::string& /*file*/, void* /*context*/)
{
    return false;
}

} // namespace

std::variant<Model, Unreadable> ReadModel(std::span<const unsigned char> bytes)
{
    if (bytes.size() > largestFile)
        return Unreadable{"the file is larger than 1 GiB"};
    try {
        tinygltf::TinyGLTF loader;
        loader.SetImageLoader(IgnoreImage, nullptr);
        loader.SetFsCallbacks({NoOtherFile, tinygltf::ExpandFilePath, tinygltf::ReadWholeFile,
                               tinygltf::WriteWholeFile, nullptr});
        tinygltf::Model source;
        std::string problem;
        std::string warning;
        if (!loader.LoadBinaryFromMemory(&source, &problem, &warning, bytes.data(),
                                         static_cast<unsigned>(bytes.size())))
            return Unreadable{"it is no model file, or it is damaged"};
        auto model = Reader(source).read();
        if (model.parts.empty())
            return Unreadable{"it has no surfaces"};
        return model;
    } catch (const std::exception& exception) {
        return Unreadable{exception.what()};
    }
}

std::variant<Model, Unreadable> ReadModel(const std::filesystem::path& file)
{
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    if (error)
        return Unreadable{"the file " + file.filename().string() + " is missing"};
    if (size > largestFile)
        return Unreadable{"the file is larger than 1 GiB"};
    std::vector<unsigned char> bytes(size);
    std::ifstream stream(file, std::ios::binary);
    if (!stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size)))
        return Unreadable{"it is no model file, or it is damaged"};
    return ReadModel(bytes);
}

} // namespace gltf
