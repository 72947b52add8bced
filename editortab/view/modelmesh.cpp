// SPDX-License-Identifier: MIT
#include "editortab/view/modelmesh.h"

#include <QOpenGLFunctions>

namespace editortab
{

ModelMesh::ModelMesh(SharedModel model, const QVector3D& place)
    : m_model(std::move(model))
    , m_place(place)
    , m_isHidden(m_model->nodes.size())
{
}

void ModelMesh::upload(QOpenGLShaderProgram& program)
{
    m_array.create();
    m_array.bind();
    m_vertices.create();
    m_vertices.bind();
    m_vertices.allocate(m_model->vertices.data(),
                        static_cast<int>(m_model->vertices.size() * sizeof(gltf::Vertex)));
    m_indices.create();
    m_indices.bind();
    m_indices.allocate(m_model->indices.data(),
                       static_cast<int>(m_model->indices.size() * sizeof(std::uint32_t)));
    program.enableAttributeArray("position");
    program.setAttributeBuffer("position", GL_FLOAT, offsetof(gltf::Vertex, position), 3,
                               sizeof(gltf::Vertex));
    program.enableAttributeArray("normal");
    program.setAttributeBuffer("normal", GL_FLOAT, offsetof(gltf::Vertex, normal), 3, sizeof(gltf::Vertex));
    m_array.release();
}

void ModelMesh::release()
{
    m_array.destroy();
    m_vertices.destroy();
    m_indices.destroy();
}

bool ModelMesh::isBelow(std::uint32_t node, int ancestor) const
{
    if (ancestor < 0)
        return ancestor == -1;
    for (int above = static_cast<int>(node); above >= ancestor;
         above = m_model->nodes[static_cast<std::size_t>(above)].parent) {
        if (above == ancestor)
            return true;
    }
    return false;
}

void ModelMesh::drawPart(QOpenGLFunctions& gl, const gltf::Part& part) const
{
    const auto* offset =
        reinterpret_cast<const void*>(static_cast<std::uintptr_t>(part.firstIndex) * sizeof(std::uint32_t));
    gl.glDrawElements(part.isLines ? GL_LINES : GL_TRIANGLES, static_cast<GLsizei>(part.indexCount),
                      GL_UNSIGNED_INT, offset);
}

void ModelMesh::draw(QOpenGLShaderProgram& program, QOpenGLFunctions& gl, bool isOpaquePass)
{
    program.setUniformValue("place", m_place);
    m_array.bind();
    for (const auto& part : m_model->parts) {
        if (isHidden(part.node) || (part.color[3] >= 1.0F) != isOpaquePass)
            continue;
        program.setUniformValue("color", part.color[0], part.color[1], part.color[2], part.color[3]);
        program.setUniformValue("highlight", isBelow(part.node, m_selected) ? 1.0F : 0.0F);
        program.setUniformValue("lit", part.isLines ? 0.0F : 1.0F);
        drawPart(gl, part);
    }
    m_array.release();
}

void ModelMesh::drawIds(QOpenGLShaderProgram& program, QOpenGLFunctions& gl, quint32 firstId)
{
    program.setUniformValue("place", m_place);
    m_array.bind();
    for (std::size_t i = 0; i < m_model->parts.size(); ++i) {
        const auto& part = m_model->parts[i];
        if (isHidden(part.node))
            continue;
        const quint32 id = firstId + static_cast<quint32>(i);
        program.setUniformValue("color", static_cast<float>(id & 0xFFU) / 255.0F,
                                static_cast<float>(id >> 8U & 0xFFU) / 255.0F,
                                static_cast<float>(id >> 16U & 0xFFU) / 255.0F, 1.0F);
        drawPart(gl, part);
    }
    m_array.release();
}

gltf::Bounds ModelMesh::bounds() const
{
    gltf::Bounds placed;
    for (const auto& corner : {m_model->bounds.low, m_model->bounds.high})
        placed.include(
            gltf::Vector3{corner[0] + m_place.x(), corner[1] + m_place.y(), corner[2] + m_place.z()});
    return placed;
}

gltf::Bounds ModelMesh::boundsOf(int node) const
{
    gltf::Bounds bounds;
    for (const auto& part : m_model->parts) {
        if (!isBelow(part.node, node))
            continue;
        for (std::uint32_t i = 0; i < part.indexCount; ++i) {
            const auto& at = m_model->vertices[m_model->indices[part.firstIndex + i]].position;
            bounds.include(gltf::Vector3{at[0] + m_place.x(), at[1] + m_place.y(), at[2] + m_place.z()});
        }
    }
    return bounds;
}

void ModelMesh::setVisible(int node, bool isVisible)
{
    for (std::uint32_t i = 0; i < m_isHidden.size(); ++i) {
        if (isBelow(i, node))
            m_isHidden[i] = !isVisible;
    }
}

void ModelMesh::setOnHiddenFloor(std::vector<bool> isOnHiddenFloor)
{
    m_isOnHiddenFloor = std::move(isOnHiddenFloor);
}

bool ModelMesh::isHidden(std::uint32_t node) const
{
    return m_isHidden[node] || (node < m_isOnHiddenFloor.size() && m_isOnHiddenFloor[node]);
}

void ModelMesh::select(int node)
{
    m_selected = node;
}

} // namespace editortab
