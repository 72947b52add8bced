// SPDX-License-Identifier: MIT
#pragma once

#include "gltf/modelreader.h"

#include <string>

#include <QString>
#include <QStringList>

/// One triangle with the right angle at `corner`, its legs `size` long, upright and seen from the south.
inline void AddTriangle(gltf::Model& model, std::uint32_t node, const gltf::Vector3& corner, float size,
                        const std::array<float, 4>& color = {0.25F, 0.5F, 0.75F, 1.0F},
                        bool isDoubleSided = false)
{
    const auto first = static_cast<std::uint32_t>(model.vertices.size());
    const auto index = static_cast<std::uint32_t>(model.indices.size());
    for (const gltf::Vector3& leg :
         {gltf::Vector3{0, 0, 0}, gltf::Vector3{size, 0, 0}, gltf::Vector3{0, size, 0}}) {
        const gltf::Vector3 point{corner[0] + leg[0], corner[1] + leg[1], corner[2] + leg[2]};
        model.vertices.push_back({point, {0, 0, 1}});
        model.bounds.include(point);
    }
    for (std::uint32_t i = 0; i < 3; ++i)
        model.indices.push_back(first + i);
    model.parts.push_back({node, index, 3, color, isDoubleSided});
}

/// One line, in a part of its own.
inline void AddLine(gltf::Model& model, std::uint32_t node, const gltf::Vector3& from,
                    const gltf::Vector3& to)
{
    const auto first = static_cast<std::uint32_t>(model.vertices.size());
    gltf::Part part;
    part.node = node;
    part.firstIndex = static_cast<std::uint32_t>(model.indices.size());
    part.indexCount = 2;
    part.color = {1, 0, 0, 1};
    part.isLines = true;
    for (const auto& end : {from, to}) {
        model.vertices.push_back({end, {}});
        model.bounds.include(end);
    }
    model.indices.insert(model.indices.end(), {first, first + 1});
    model.parts.push_back(part);
}

/// A house with two storeys; the upper one has a wall and a pane of glass, the lower one a wall.
[[nodiscard]] inline gltf::Model House()
{
    gltf::Model house;
    house.nodes = {{"房子", -1}, {"一层", 0}, {"墙", 1}, {"二层", 0}, {"墙", 3}, {"窗", 3}};
    AddTriangle(house, 2, {0, 0, 0}, 3);
    AddTriangle(house, 4, {0, 3, 0}, 3);
    AddTriangle(house, 5, {1, 4, -1}, 1, {0.5F, 0.75F, 1.0F, 0.25F}, true);
    return house;
}

/// "/house/storey/wall" for each node.
[[nodiscard]] inline QStringList PathsOf(const gltf::Model& model)
{
    QStringList paths;
    for (const auto& node : model.nodes)
        paths += (node.parent < 0 ? QString() : paths.at(node.parent)) + QLatin1Char('/') +
                 QString::fromStdString(node.name);
    return paths;
}

/// What can be seen of a model, whatever the order of its tables: each part with the path of its node, its
/// look and its corners.
[[nodiscard]] inline QStringList Surfaces(const gltf::Model& model)
{
    const auto paths = PathsOf(model);
    QStringList surfaces;
    for (const auto& part : model.parts) {
        QStringList words{paths.at(static_cast<int>(part.node)),
                          part.isDoubleSided ? QStringLiteral("both") : QStringLiteral("front"),
                          part.isLines ? QStringLiteral("lines") : QStringLiteral("triangles")};
        for (float share : part.color)
            words += QString::number(static_cast<double>(share), 'g', 9);
        for (std::uint32_t i = 0; i < part.indexCount; ++i) {
            const auto& vertex = model.vertices[model.indices[part.firstIndex + i]];
            for (float component : vertex.position)
                words += QString::number(static_cast<double>(component), 'g', 9);
            for (float component : part.isLines ? gltf::Vector3() : vertex.normal)
                words += QString::number(static_cast<double>(component), 'g', 9);
        }
        surfaces += words.join(QLatin1Char(' '));
    }
    surfaces.sort();
    return surfaces;
}

/// Every number of a model that points somewhere points to something.
[[nodiscard]] inline bool IsSound(const gltf::Model& model)
{
    for (std::size_t i = 0; i < model.nodes.size(); ++i) {
        if (model.nodes[i].parent < -1 || model.nodes[i].parent >= static_cast<int>(i))
            return false;
    }
    for (const auto& part : model.parts) {
        if (part.node >= model.nodes.size() || part.indexCount % part.cornersPerPiece() != 0 ||
            part.firstIndex > model.indices.size() ||
            part.indexCount > model.indices.size() - part.firstIndex)
            return false;
    }
    for (auto index : model.indices) {
        if (index >= model.vertices.size())
            return false;
    }
    return !model.parts.empty();
}

/// The words that came in place of a model; empty when there is a model.
[[nodiscard]] inline QString ReasonOf(const std::variant<gltf::Model, gltf::Unreadable>& read)
{
    const auto* unreadable = std::get_if<gltf::Unreadable>(&read);
    return unreadable != nullptr ? QString::fromStdString(unreadable->reason) : QString();
}
