// SPDX-License-Identifier: MIT
#include "kyvconvert/assimpreader.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <set>
#include <sstream>

#include <assimp/Importer.hpp>
#include <assimp/ProgressHandler.hpp>
#include <assimp/config.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

namespace kyvconvert
{

namespace
{

// Corners are shared, triangles without area dropped and missing normals made by ourselves: the library does
// it too, and takes more time for it than for all the rest.
constexpr unsigned steps = aiProcess_Triangulate | aiProcess_SortByPType | aiProcess_ValidateDataStructure;

class Progress : public Assimp::ProgressHandler
{
public:
    explicit Progress(std::function<void(int)> onPercent)
        : m_onPercent(std::move(onPercent))
    {
    }

    bool Update(float share) override
    {
        if (share >= 0.0F)
            m_onPercent(static_cast<int>(std::clamp(share, 0.0F, 1.0F) * 100.0F));
        return true;
    }

private:
    std::function<void(int)> m_onPercent;
};

std::string TextOf(const aiMetadataEntry& entry)
{
    std::ostringstream text;
    switch (entry.mType) {
    case AI_BOOL:
        return *static_cast<const bool*>(entry.mData) ? "true" : "false";
    case AI_INT32:
        text << *static_cast<const std::int32_t*>(entry.mData);
        break;
    case AI_UINT64:
        text << *static_cast<const std::uint64_t*>(entry.mData);
        break;
    case AI_FLOAT:
        text << *static_cast<const float*>(entry.mData);
        break;
    case AI_DOUBLE:
        text << *static_cast<const double*>(entry.mData);
        break;
    case AI_AISTRING:
        return static_cast<const aiString*>(entry.mData)->C_Str();
    default:
        break;
    }
    return text.str();
}

/// The library marks meshes whose triangles it has made of polygons.
bool IsSurface(const aiMesh& mesh)
{
    return (mesh.mPrimitiveTypes & ~unsigned{aiPrimitiveType_NGONEncodingFlag}) == aiPrimitiveType_TRIANGLE;
}

class Reader
{
public:
    explicit Reader(const aiScene& scene)
        : m_scene(scene)
    {
    }

    SourceModel read()
    {
        for (unsigned i = 0; i < m_scene.mNumMaterials; ++i)
            m_source.dropped.textures += m_scene.mMaterials[i]->GetTextureCount(aiTextureType_DIFFUSE);
        makeRoom(*m_scene.mRootNode);
        m_source.model.vertices.reserve(m_vertexCount);
        m_source.model.indices.reserve(m_indexCount);
        takeNode(*m_scene.mRootNode, -1, aiMatrix4x4());
        return std::move(m_source);
    }

private:
    /// Counts what the nodes draw: a list that grows needs memory twice.
    void makeRoom(const aiNode& node)
    {
        for (unsigned i = 0; i < node.mNumMeshes; ++i) {
            const auto& mesh = *m_scene.mMeshes[node.mMeshes[i]];
            if (!IsSurface(mesh))
                continue;
            m_vertexCount += mesh.HasNormals() ? mesh.mNumVertices : 3 * std::size_t(mesh.mNumFaces);
            m_indexCount += 3 * std::size_t(mesh.mNumFaces);
        }
        for (unsigned i = 0; i < node.mNumChildren; ++i)
            makeRoom(*node.mChildren[i]);
    }

    /// Returns whether anything below the node has a surface; a node without is left out again.
    bool takeNode(const aiNode& node, int parent, const aiMatrix4x4& above)
    {
        const aiMatrix4x4 matrix = above * node.mTransformation;
        auto& nodes = m_source.model.nodes;
        const std::size_t before = nodes.size();
        const int self = static_cast<int>(before);
        nodes.push_back({node.mName.C_Str(), parent});
        takeProperties(node, nodes.back());
        bool hasSurface = false;
        for (unsigned i = 0; i < node.mNumMeshes; ++i)
            hasSurface =
                takeMesh(*m_scene.mMeshes[node.mMeshes[i]], static_cast<std::uint32_t>(self), matrix) ||
                hasSurface;
        for (unsigned i = 0; i < node.mNumChildren; ++i)
            hasSurface = takeNode(*node.mChildren[i], self, matrix) || hasSurface;
        if (!hasSurface)
            nodes.resize(before);
        return hasSurface;
    }

    /// What people have written on a node; what the format itself keeps there is about drawing.
    static void takeProperties(const aiNode& source, gltf::Node& node)
    {
        static const std::set<std::string> ownOfTheFormat = {"IsNull",
                                                             "InheritType",
                                                             "DefaultAttributeIndex",
                                                             "RotationActive",
                                                             "ScalingMax",
                                                             "currentUVSet",
                                                             "UDP3DSMAX",
                                                             "MaxHandle",
                                                             "RotationOrder",
                                                             "ScalingMin",
                                                             "Show",
                                                             "Visibility",
                                                             "Visibility Inheritance",
                                                             "QuaternionInterpolate",
                                                             "RotationSpaceForLimitOnly",
                                                             "AxisLen",
                                                             "PreRotation",
                                                             "PostRotation"};
        if (source.mMetaData == nullptr)
            return;
        for (unsigned i = 0; i < source.mMetaData->mNumProperties; ++i) {
            const std::string name = source.mMetaData->mKeys[i].C_Str();
            const auto text = TextOf(source.mMetaData->mValues[i]);
            if (!ownOfTheFormat.contains(name) && !text.empty())
                node.properties["Properties"][name] = text;
        }
    }

    bool takeMesh(const aiMesh& mesh, std::uint32_t node, const aiMatrix4x4& matrix)
    {
        if (!IsSurface(mesh)) {
            m_source.dropped.primitives += mesh.mNumFaces;
            return false;
        }
        auto& model = m_source.model;
        gltf::Part part = materialOf(mesh.mMaterialIndex);
        part.node = node;
        part.firstIndex = static_cast<std::uint32_t>(model.indices.size());
        if (mesh.HasNormals())
            takeSmooth(mesh, matrix);
        else
            takeFlat(mesh, matrix);
        part.indexCount = static_cast<std::uint32_t>(model.indices.size()) - part.firstIndex;
        if (part.indexCount > 0)
            model.parts.push_back(part);
        return part.indexCount > 0;
    }

    void takeCorner(const aiVector3D& point, aiVector3D normal)
    {
        normal.NormalizeSafe();
        if (!(normal.SquareLength() > 0.5F))
            normal = {0, 1, 0};
        m_source.model.vertices.push_back({{point.x, point.y, point.z}, {normal.x, normal.y, normal.z}});
        m_source.model.bounds.include(m_source.model.vertices.back().position);
    }

    void takeSmooth(const aiMesh& mesh, const aiMatrix4x4& matrix)
    {
        auto& model = m_source.model;
        const auto first = static_cast<std::uint32_t>(model.vertices.size());
        const aiMatrix3x3 normalMatrix = aiMatrix3x3(matrix).Inverse().Transpose();
        const bool isMirrored = aiMatrix3x3(matrix).Determinant() < 0.0F;
        for (unsigned i = 0; i < mesh.mNumVertices; ++i)
            takeCorner(matrix * mesh.mVertices[i], normalMatrix * mesh.mNormals[i]);
        for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
            const auto* corners = mesh.mFaces[i].mIndices;
            for (unsigned corner : {0U, isMirrored ? 2U : 1U, isMirrored ? 1U : 2U})
                model.indices.push_back(first + corners[corner]);
        }
    }

    /// A mesh without normals: each of its triangles is flat.
    void takeFlat(const aiMesh& mesh, const aiMatrix4x4& matrix)
    {
        auto& model = m_source.model;
        const bool isMirrored = aiMatrix3x3(matrix).Determinant() < 0.0F;
        for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
            const auto* corners = mesh.mFaces[i].mIndices;
            const auto a = matrix * mesh.mVertices[corners[0]];
            const auto b = matrix * mesh.mVertices[corners[isMirrored ? 2 : 1]];
            const auto c = matrix * mesh.mVertices[corners[isMirrored ? 1 : 2]];
            for (const auto& point : {a, b, c}) {
                model.indices.push_back(static_cast<std::uint32_t>(model.vertices.size()));
                takeCorner(point, (b - a) ^ (c - a));
            }
        }
    }

    [[nodiscard]] gltf::Part materialOf(unsigned index) const
    {
        gltf::Part part;
        if (index >= m_scene.mNumMaterials)
            return part;
        const auto& material = *m_scene.mMaterials[index];
        aiColor4D color(0.8F, 0.8F, 0.8F, 1.0F);
        if (material.Get(AI_MATKEY_BASE_COLOR, color) != AI_SUCCESS)
            material.Get(AI_MATKEY_COLOR_DIFFUSE, color);
        float opacity = 1.0F;
        material.Get(AI_MATKEY_OPACITY, opacity);
        int isTwoSided = 0;
        material.Get(AI_MATKEY_TWOSIDED, isTwoSided);
        const auto share = [](float value) {
            return std::isfinite(value) ? std::clamp(value, 0.0F, 1.0F) : 0.8F;
        };
        part.color = {share(color.r), share(color.g), share(color.b), share(std::min(color.a, opacity))};
        // Files that forget to set it make things invisible; nobody draws what cannot be seen at all.
        if (part.color[3] < 0.05F)
            part.color[3] = 1.0F;
        part.isDoubleSided = isTwoSided != 0;
        return part;
    }

    const aiScene& m_scene;
    std::size_t m_vertexCount = 0;
    std::size_t m_indexCount = 0;
    SourceModel m_source;
};

} // namespace

Read ReadWithAssimp(const std::filesystem::path& file, const OnPercent& onPercent)
{
    Assimp::Importer importer;
    importer.SetProgressHandler(new Progress(onPercent));
    importer.SetPropertyInteger(AI_CONFIG_PP_SBP_REMOVE, 0);
    importer.SetPropertyBool(AI_CONFIG_FBX_CONVERT_TO_M, true);
    importer.SetPropertyBool(AI_CONFIG_IMPORT_FBX_PRESERVE_PIVOTS, false);
    // Nothing of it is drawn; two cameras of one name would have the whole file refused.
    for (const auto* unneeded : {AI_CONFIG_IMPORT_FBX_READ_CAMERAS, AI_CONFIG_IMPORT_FBX_READ_LIGHTS,
                                 AI_CONFIG_IMPORT_FBX_READ_ANIMATIONS, AI_CONFIG_IMPORT_FBX_READ_WEIGHTS})
        importer.SetPropertyBool(unneeded, false);
    const aiScene* scene = importer.ReadFile(file.string(), steps);
    if (scene == nullptr || scene->mRootNode == nullptr)
        return Failure{std::string("the file cannot be read: ") + importer.GetErrorString()};
    auto source = Reader(*scene).read();
    if (source.model.parts.empty())
        return Failure{"the file has no surfaces"};
    return source;
}

} // namespace kyvconvert
