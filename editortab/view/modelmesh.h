// SPDX-License-Identifier: MIT
#pragma once

#include "editortab/document/modelloader.h"

#include <vector>

#include <QOpenGLBuffer>
#include <QOpenGLShaderProgram>
#include <QOpenGLVertexArrayObject>
#include <QVector3D>

class QOpenGLFunctions;

namespace editortab
{

/// A model on the graphics card, with what is hidden and selected of it. Only with the view's context
/// current, but for the questions.
class ModelMesh
{
public:
    ModelMesh(SharedModel model, const QVector3D& place);

    void upload(QOpenGLShaderProgram& program);
    void release();

    /// Draws what is seen: the opaque parts, or the others. The program needs the uniforms "color",
    /// "highlight" and "lit".
    void draw(QOpenGLShaderProgram& program, QOpenGLFunctions& gl, bool isOpaquePass);

    /// Draws every part that is seen in a colour of its own, so that a pixel tells the part: `firstId` plus
    /// its number.
    void drawIds(QOpenGLShaderProgram& program, QOpenGLFunctions& gl, quint32 firstId);

    [[nodiscard]] const gltf::Model& model() const { return *m_model; }
    [[nodiscard]] QVector3D place() const { return m_place; }

    /// Bounds of the whole model where it is placed.
    [[nodiscard]] gltf::Bounds bounds() const;
    /// Bounds of what stands at or below a node.
    [[nodiscard]] gltf::Bounds boundsOf(int node) const;

    /// Hides or shows what stands at or below a node; node -1 is the whole model.
    void setVisible(int node, bool isVisible);
    /// Hides nodes for another reason: what is seen is hidden for neither. One answer for each node.
    void setOnHiddenFloor(std::vector<bool> isOnHiddenFloor);
    /// Highlights what stands at or below a node; -2 highlights nothing, -1 the whole model.
    void select(int node);

private:
    [[nodiscard]] bool isHidden(std::uint32_t node) const;
    [[nodiscard]] bool isBelow(std::uint32_t node, int ancestor) const;
    void drawPart(QOpenGLFunctions& gl, const gltf::Part& part) const;

    SharedModel m_model;
    QVector3D m_place;
    QOpenGLVertexArrayObject m_array;
    QOpenGLBuffer m_vertices{QOpenGLBuffer::VertexBuffer};
    QOpenGLBuffer m_indices{QOpenGLBuffer::IndexBuffer};
    std::vector<bool> m_isHidden;        ///< by node
    std::vector<bool> m_isOnHiddenFloor; ///< by node; empty when none is
    int m_selected = -2;
};

} // namespace editortab
