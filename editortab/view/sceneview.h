// SPDX-License-Identifier: MIT
#pragma once

#include "editortab/view/camera.h"
#include "editortab/view/modelmesh.h"

#include <memory>
#include <vector>

#include <QOpenGLFunctions>
#include <QOpenGLWidget>

class QOpenGLFramebufferObject;

namespace editortab
{

/// Shows models in 3D: left button turns, middle or right button or shift moves, wheel zooms towards the
/// pointer, a click selects. Arrow keys turn, plus and minus zoom. GUI thread.
class SceneView : public QOpenGLWidget
{
    Q_OBJECT

public:
    explicit SceneView(QWidget* parent = nullptr);
    ~SceneView() override;

    /// Adds a model; it gets the number of models before it.
    int addModel(const SharedModel& model, const QVector3D& place);

    /// Takes all models away.
    void clear();

    void setVisible3D(int model, int node, bool isVisible);
    void setOnHiddenFloor(int model, std::vector<bool> isOnHiddenFloor);
    /// Highlights a node; model -1 highlights nothing, node -1 a whole model.
    void select(int model, int node);

    void fitAll();
    void fitSelection();
    void look(Camera::Preset preset);

    [[nodiscard]] QSize minimumSizeHint() const override;

signals:
    /// The user has clicked on a node, or on nothing (-1, -1).
    void picked(int model, int node);
    /// The graphics cannot be used; `reason` is for the user.
    void unusable(const QString& reason);

protected:
    void initializeGL() override;
    void resizeGL(int width, int height) override;
    void paintGL() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Programs;

    [[nodiscard]] bool buildPrograms();
    void drawGround(const QMatrix4x4& camera);
    void drawBackground();
    [[nodiscard]] static quint32 idNear(QOpenGLFunctions& gl, const QPoint& pixel, const QSize& size);
    void pick(const QPoint& point);
    void releaseAll();
    [[nodiscard]] gltf::Bounds allBounds() const;

    std::unique_ptr<Programs> m_programs;
    std::vector<std::unique_ptr<ModelMesh>> m_meshes;
    std::size_t m_uploaded = 0; ///< so many of them are on the graphics card
    Camera m_camera;
    QPoint m_pressedAt;
    QPoint m_lastPoint;
    bool m_isDragging = false;
    bool m_wasMoved = false; ///< the user has chosen a view: new models do not change it
    int m_selectedModel = -1;
    int m_selectedNode = -1;
};

} // namespace editortab
