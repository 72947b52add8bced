// SPDX-License-Identifier: MIT
#include "kyvconvert/sourcereader.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include <assimp/Importer.hpp>
#include <assimp/ProgressHandler.hpp>
#include <assimp/config.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

namespace kyvconvert
{

namespace
{

constexpr unsigned steps = aiProcess_Triangulate | aiProcess_JoinIdenticalVertices | aiProcess_GenNormals |
                           aiProcess_SortByPType | aiProcess_FindDegenerates |
                           aiProcess_ValidateDataStructure;
constexpr std::size_t ifcIdLength = 22;

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

/// What the importer calls an element of a building: "IfcWall_<name>_<id>".
struct IfcName {
    std::string type;
    std::string name;
};

IfcName SplitIfcName(const std::string& text)
{
    if (!text.starts_with("Ifc"))
        return {{}, text};
    const auto first = text.find('_');
    if (first == std::string::npos)
        return {text, {}};
    IfcName split{text.substr(0, first), text.substr(first + 1)};
    if (split.name.size() > ifcIdLength && split.name[split.name.size() - ifcIdLength - 1] == '_')
        split.name.resize(split.name.size() - ifcIdLength - 1);
    else if (split.name.size() == ifcIdLength)
        split.name.clear();
    if (split.name.empty() || split.name == "Unnamed")
        split.name = split.type.substr(3);
    return split;
}

/// Elements that are no matter: the air of rooms, the holes in walls.
bool IsImmaterial(const std::string& type)
{
    return type == "IfcSpace" || type == "IfcOpeningElement" || type == "IfcAnnotation" || type == "IfcGrid";
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
            m_source.droppedTextures += m_scene.mMaterials[i]->GetTextureCount(aiTextureType_DIFFUSE);
        takeNode(*m_scene.mRootNode, -1, aiMatrix4x4());
        std::stable_sort(
            m_source.floors.begin(), m_source.floors.end(),
            [](const Floor& left, const Floor& right) { return left.elevation < right.elevation; });
        return std::move(m_source);
    }

private:
    /// Returns whether anything below the node has a surface; a node without is left out again.
    bool takeNode(const aiNode& node, int parent, const aiMatrix4x4& above)
    {
        const auto name = SplitIfcName(node.mName.C_Str());
        if (IsImmaterial(name.type))
            return false;
        const aiMatrix4x4 matrix = above * node.mTransformation;
        // Relations between elements and the placing of repeated parts are no elements: their children move
        // up.
        const bool isElement = !name.name.starts_with("$Rel") && name.type != "IfcMappedItem";
        auto& nodes = m_source.model.nodes;
        const std::size_t before = nodes.size();
        int self = parent;
        if (isElement || parent < 0) {
            self = static_cast<int>(before);
            nodes.push_back({name.name, parent});
        }
        if (name.type == "IfcBuildingStorey")
            m_source.floors.push_back({name.name, matrix.b4});
        bool hasSurface = false;
        for (unsigned i = 0; i < node.mNumMeshes; ++i)
            hasSurface =
                takeMesh(*m_scene.mMeshes[node.mMeshes[i]], static_cast<std::uint32_t>(self), matrix) ||
                hasSurface;
        for (unsigned i = 0; i < node.mNumChildren; ++i)
            hasSurface = takeNode(*node.mChildren[i], self, matrix) || hasSurface;
        if (!hasSurface && name.type != "IfcBuildingStorey")
            nodes.resize(before);
        return hasSurface || name.type == "IfcBuildingStorey";
    }

    bool takeMesh(const aiMesh& mesh, std::uint32_t node, const aiMatrix4x4& matrix)
    {
        if (mesh.mPrimitiveTypes != aiPrimitiveType_TRIANGLE) {
            m_source.droppedPrimitives += mesh.mNumFaces;
            return false;
        }
        auto& model = m_source.model;
        const auto first = static_cast<std::uint32_t>(model.vertices.size());
        const aiMatrix3x3 normalMatrix = aiMatrix3x3(matrix).Inverse().Transpose();
        const bool isMirrored = aiMatrix3x3(matrix).Determinant() < 0.0F;
        for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
            const aiVector3D point = matrix * mesh.mVertices[i];
            aiVector3D normal = normalMatrix * mesh.mNormals[i];
            normal.NormalizeSafe();
            if (normal.SquareLength() < 0.5F)
                normal = {0, 1, 0};
            model.vertices.push_back({{point.x, point.y, point.z}, {normal.x, normal.y, normal.z}});
            model.bounds.include(model.vertices.back().position);
        }
        gltf::Part part = materialOf(mesh.mMaterialIndex);
        part.node = node;
        part.firstIndex = static_cast<std::uint32_t>(model.indices.size());
        for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
            const auto* corners = mesh.mFaces[i].mIndices;
            model.indices.push_back(first + corners[0]);
            model.indices.push_back(first + corners[isMirrored ? 2 : 1]);
            model.indices.push_back(first + corners[isMirrored ? 1 : 2]);
        }
        part.indexCount = static_cast<std::uint32_t>(model.indices.size()) - part.firstIndex;
        if (part.indexCount > 0)
            model.parts.push_back(part);
        return part.indexCount > 0;
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
    SourceModel m_source;
};

} // namespace

std::variant<SourceModel, Failure> ReadSource(const std::filesystem::path& file,
                                              const std::function<void(int)>& onPercent)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        return Failure{"there is no file " + file.string()};
    Assimp::Importer importer;
    importer.SetProgressHandler(new Progress(onPercent));
    importer.SetPropertyInteger(AI_CONFIG_PP_SBP_REMOVE, 0);
    importer.SetPropertyBool(AI_CONFIG_FBX_CONVERT_TO_M, true);
    importer.SetPropertyBool(AI_CONFIG_IMPORT_FBX_PRESERVE_PIVOTS, false);
    const aiScene* scene = importer.ReadFile(file.string(), steps);
    if (scene == nullptr || scene->mRootNode == nullptr)
        return Failure{std::string("the file cannot be read: ") + importer.GetErrorString()};
    auto source = Reader(*scene).read();
    if (source.model.parts.empty())
        return Failure{"the file has no surfaces"};
    return source;
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
        kept.nodes.push_back(
            {model.nodes[i].name, parent < 0 ? -1 : newNode[static_cast<std::size_t>(parent)]});
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
