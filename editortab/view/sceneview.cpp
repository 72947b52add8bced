// SPDX-License-Identifier: MIT
#include "editortab/view/sceneview.h"

#include <array>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QOpenGLFramebufferObject>
#include <QOpenGLShaderProgram>
#include <QSurfaceFormat>
#include <QtMath>

namespace editortab
{

namespace
{

constexpr int clickTolerance = 4; ///< pixels that a hand moves while it clicks
constexpr int keyTurn = 24;       ///< pixels of pointer way that a key press stands for
constexpr double groundStep = 1.0;

const char* const modelVertexShader = R"(#version 150
in vec3 position;
in vec3 normal;
uniform mat4 camera;
uniform vec3 place;
out vec3 worldNormal;
out vec3 worldPosition;
void main() {
    worldPosition = position + place;
    worldNormal = normal;
    gl_Position = camera * vec4(worldPosition, 1.0);
})";

const char* const modelFragmentShader = R"(#version 150
in vec3 worldNormal;
in vec3 worldPosition;
uniform vec4 color;
uniform vec3 eye;
uniform float highlight;
uniform float lit;
out vec4 pixel;
void main() {
    // Lines have no normal.
    vec3 n = lit > 0.5 ? normalize(worldNormal) : vec3(0.0);
    vec3 v = normalize(eye - worldPosition);
    if (dot(n, v) < 0.0) n = -n;
    float light = 0.42 + 0.50 * max(0.0, dot(n, normalize(vec3(0.42, 0.78, 0.46))))
                + 0.14 * max(0.0, dot(n, normalize(vec3(-0.70, 0.25, 0.35)))) + 0.08 * max(0.0, n.y)
                + 0.08 * max(0.0, dot(n, v));
    vec3 plain = pow(min(color.rgb * mix(1.0, light, lit), vec3(1.0)), vec3(1.0 / 2.2));
    vec3 marked = mix(plain, vec3(0.08, 0.55, 1.0), mix(0.95, 0.55, lit));
    pixel = vec4(mix(plain, marked, highlight), color.a);
})";

const char* const idFragmentShader = R"(#version 150
in vec3 worldNormal;
in vec3 worldPosition;
uniform vec4 color;
out vec4 pixel;
void main() { pixel = color; })";

const char* const screenVertexShader = R"(#version 150
out float height;
void main() {
    vec2 corner = vec2((gl_VertexID & 1) * 4 - 1, (gl_VertexID & 2) * 2 - 1);
    height = corner.y * 0.5 + 0.5;
    gl_Position = vec4(corner, 0.9999, 1.0);
})";

const char* const screenFragmentShader = R"(#version 150
in float height;
out vec4 pixel;
void main() { pixel = vec4(mix(vec3(0.137, 0.137, 0.145), vec3(0.255, 0.260, 0.280), height), 1.0); })";

const char* const groundVertexShader = R"(#version 150
uniform mat4 inverseCamera;
out vec4 nearPoint;
out vec4 farPoint;
void main() {
    vec2 corner = vec2((gl_VertexID & 1) * 4 - 1, (gl_VertexID & 2) * 2 - 1);
    nearPoint = inverseCamera * vec4(corner, -1.0, 1.0);
    farPoint = inverseCamera * vec4(corner, 1.0, 1.0);
    gl_Position = vec4(corner, 0.0, 1.0);
})";

// Lines a metre and ten metres apart on the plane under the models, fading with the distance.
const char* const groundFragmentShader = R"(#version 150
in vec4 nearPoint;
in vec4 farPoint;
uniform mat4 camera;
uniform vec3 eye;
uniform float level;
uniform float step;
out vec4 pixel;
float line(vec2 at, float width) {
    vec2 coordinate = at / width;
    vec2 change = fwidth(coordinate);
    vec2 distance = abs(fract(coordinate - 0.5) - 0.5) / change;
    return (1.0 - min(min(distance.x, distance.y), 1.0)) * (1.0 - smoothstep(0.2, 0.6, max(change.x, change.y)));
}
void main() {
    vec3 near = nearPoint.xyz / nearPoint.w;
    vec3 far = farPoint.xyz / farPoint.w;
    float t = (level - near.y) / (far.y - near.y);
    if (t <= 0.0 || t >= 1.0) discard;
    vec3 at = mix(near, far, t);
    vec4 clip = camera * vec4(at, 1.0);
    gl_FragDepth = (clip.z / clip.w) * 0.5 + 0.5;
    float strength = max(line(at.xz, step) * 0.16, line(at.xz, step * 10.0) * 0.30);
    float fade = 1.0 - smoothstep(40.0, 160.0, length(at - eye) / step);
    pixel = vec4(vec3(0.75), strength * fade);
})";

} // namespace

struct SceneView::Programs {
    QOpenGLShaderProgram model;
    QOpenGLShaderProgram ids;
    QOpenGLShaderProgram background;
    QOpenGLShaderProgram ground;
    QOpenGLVertexArrayObject empty; ///< for what is drawn without vertices
};

SceneView::SceneView(QWidget* parent)
    : QOpenGLWidget(parent)
{
    QSurfaceFormat format;
    format.setVersion(3, 2);
    format.setProfile(QSurfaceFormat::CoreProfile);
    format.setDepthBufferSize(24);
    format.setSamples(4);
    setFormat(format);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("三维视图"));
    setObjectName(QStringLiteral("sceneView"));
}

SceneView::~SceneView()
{
    makeCurrent();
    releaseAll();
    doneCurrent();
}

QSize SceneView::minimumSizeHint() const
{
    return {160, 120};
}

bool SceneView::buildPrograms()
{
    const auto build = [](QOpenGLShaderProgram& program, const char* vertex, const char* fragment) {
        return program.addShaderFromSourceCode(QOpenGLShader::Vertex, vertex) &&
               program.addShaderFromSourceCode(QOpenGLShader::Fragment, fragment) && program.link();
    };
    m_programs = std::make_unique<Programs>();
    m_programs->model.bindAttributeLocation("position", 0);
    m_programs->model.bindAttributeLocation("normal", 1);
    m_programs->ids.bindAttributeLocation("position", 0);
    m_programs->ids.bindAttributeLocation("normal", 1);
    m_programs->empty.create();
    return build(m_programs->model, modelVertexShader, modelFragmentShader) &&
           build(m_programs->ids, modelVertexShader, idFragmentShader) &&
           build(m_programs->background, screenVertexShader, screenFragmentShader) &&
           build(m_programs->ground, groundVertexShader, groundFragmentShader);
}

void SceneView::initializeGL()
{
    connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, [this] {
        makeCurrent();
        releaseAll();
        doneCurrent();
    });
    if (context()->format().version() < qMakePair(3, 2) || !buildPrograms()) {
        m_programs.reset();
        emit unusable(tr("显卡驱动不支持 OpenGL 3.2，无法显示三维模型。请更新显卡驱动。"));
    }
}

void SceneView::releaseAll()
{
    for (std::size_t i = 0; i < m_uploaded; ++i)
        m_meshes[i]->release();
    m_uploaded = 0;
    m_programs.reset();
}

void SceneView::resizeGL(int width, int height)
{
    m_camera.setViewport(QSizeF(width, height));
}

int SceneView::addModel(const SharedModel& model, const QVector3D& place)
{
    m_meshes.push_back(std::make_unique<ModelMesh>(model, place));
    if (!m_wasMoved)
        m_camera.fit(allBounds());
    update();
    return static_cast<int>(m_meshes.size()) - 1;
}

void SceneView::paintGL()
{
    auto& gl = *context()->functions();
    gl.glClearColor(0.137F, 0.137F, 0.145F, 1.0F);
    gl.glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (!m_programs)
        return;
    for (; m_uploaded < m_meshes.size(); ++m_uploaded)
        m_meshes[m_uploaded]->upload(m_programs->model);
    drawBackground();

    const QMatrix4x4 camera = m_camera.projection() * m_camera.view();
    gl.glEnable(GL_DEPTH_TEST);
    gl.glEnable(GL_BLEND);
    gl.glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    auto& program = m_programs->model;
    program.bind();
    program.setUniformValue("camera", camera);
    program.setUniformValue("eye", m_camera.eye());
    // Lines that lie on a surface, as those around a filled area do, are seen before it.
    gl.glEnable(GL_POLYGON_OFFSET_FILL);
    gl.glPolygonOffset(1.0F, 1.0F);
    for (const auto& mesh : m_meshes)
        mesh->draw(program, gl, true);
    gl.glDisable(GL_POLYGON_OFFSET_FILL);
    program.release();
    drawGround(camera);
    program.bind();
    gl.glDepthMask(GL_FALSE);
    for (const auto& mesh : m_meshes)
        mesh->draw(program, gl, false);
    gl.glDepthMask(GL_TRUE);
    program.release();
    gl.glDisable(GL_BLEND);
    gl.glDisable(GL_DEPTH_TEST);
}

void SceneView::drawBackground()
{
    auto& gl = *context()->functions();
    m_programs->background.bind();
    m_programs->empty.bind();
    gl.glDrawArrays(GL_TRIANGLES, 0, 3);
    m_programs->empty.release();
    m_programs->background.release();
}

void SceneView::drawGround(const QMatrix4x4& camera)
{
    const auto bounds = allBounds();
    if (bounds.isEmpty)
        return;
    auto& gl = *context()->functions();
    // A grid of metres under a house, of ten metres under a quarter of the town.
    const double step =
        groundStep * qPow(10.0, qMax(-2.0, std::floor(std::log10(m_camera.distance() / 20.0))));
    auto& program = m_programs->ground;
    program.bind();
    program.setUniformValue("camera", camera);
    program.setUniformValue("inverseCamera", camera.inverted());
    program.setUniformValue("eye", m_camera.eye());
    program.setUniformValue("level", bounds.low[1] - 0.01F);
    program.setUniformValue("step", static_cast<float>(step));
    m_programs->empty.bind();
    gl.glDrawArrays(GL_TRIANGLES, 0, 3);
    m_programs->empty.release();
    program.release();
}

gltf::Bounds SceneView::allBounds() const
{
    gltf::Bounds bounds;
    for (const auto& mesh : m_meshes)
        bounds.include(mesh->bounds());
    return bounds;
}

void SceneView::setVisible3D(int model, int node, bool isVisible)
{
    if (model < 0 || model >= static_cast<int>(m_meshes.size()))
        return;
    m_meshes[static_cast<std::size_t>(model)]->setVisible(node, isVisible);
    update();
}

void SceneView::setOnHiddenFloor(int model, std::vector<bool> isOnHiddenFloor)
{
    if (model < 0 || model >= static_cast<int>(m_meshes.size()))
        return;
    m_meshes[static_cast<std::size_t>(model)]->setOnHiddenFloor(std::move(isOnHiddenFloor));
    update();
}

void SceneView::clear()
{
    makeCurrent();
    for (std::size_t i = 0; i < m_uploaded; ++i)
        m_meshes[i]->release();
    doneCurrent();
    m_uploaded = 0;
    m_meshes.clear();
    m_selectedModel = m_selectedNode = -1;
    update();
}

void SceneView::select(int model, int node)
{
    m_selectedModel = model;
    m_selectedNode = node;
    constexpr int nothing = -2;
    for (std::size_t i = 0; i < m_meshes.size(); ++i)
        m_meshes[i]->select(static_cast<int>(i) == model ? node : nothing);
    update();
}

void SceneView::fitAll()
{
    m_camera.fit(allBounds());
    m_wasMoved = false;
    update();
}

void SceneView::fitSelection()
{
    if (m_selectedModel < 0 || m_selectedModel >= static_cast<int>(m_meshes.size())) {
        fitAll();
        return;
    }
    m_camera.fit(m_meshes[static_cast<std::size_t>(m_selectedModel)]->boundsOf(m_selectedNode));
    m_wasMoved = true;
    update();
}

void SceneView::look(Camera::Preset preset)
{
    m_camera.look(preset);
    m_camera.fit(allBounds());
    update();
}

/// The part at a pixel, or the nearest one beside it: a hand does not meet a line that is a pixel wide.
quint32 SceneView::idNear(QOpenGLFunctions& gl, const QPoint& pixel, const QSize& size)
{
    constexpr int reach = 4;
    const QRect area = QRect(pixel, pixel).adjusted(-reach, -reach, reach, reach) & QRect(QPoint(), size);
    std::vector<std::array<unsigned char, 4>> colors(static_cast<std::size_t>(area.width() * area.height()));
    if (colors.empty())
        return 0;
    gl.glReadPixels(area.left(), size.height() - 1 - area.bottom(), area.width(), area.height(), GL_RGBA,
                    GL_UNSIGNED_BYTE, colors.data());
    quint32 found = 0;
    int nearest = reach * reach + 1;
    for (int i = 0; i < static_cast<int>(colors.size()); ++i) {
        const auto& color = colors[static_cast<std::size_t>(i)];
        const quint32 id =
            color[0] | static_cast<quint32>(color[1]) << 8U | static_cast<quint32>(color[2]) << 16U;
        // The rows come from the bottom up.
        const QPoint away = QPoint(area.left() + i % area.width(), area.bottom() - i / area.width()) - pixel;
        if (id > 0 && QPoint::dotProduct(away, away) < nearest) {
            found = id;
            nearest = QPoint::dotProduct(away, away);
        }
    }
    return found;
}

void SceneView::pick(const QPoint& point)
{
    if (!m_programs)
        return;
    makeCurrent();
    auto& gl = *context()->functions();
    const QSize size = QSize(width(), height()) * devicePixelRatioF();
    QOpenGLFramebufferObject target(size, QOpenGLFramebufferObject::Depth);
    target.bind();
    gl.glViewport(0, 0, size.width(), size.height());
    gl.glClearColor(0.0F, 0.0F, 0.0F, 0.0F);
    gl.glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    gl.glEnable(GL_DEPTH_TEST);
    gl.glDisable(GL_BLEND);
    auto& program = m_programs->ids;
    program.bind();
    program.setUniformValue("camera", m_camera.projection() * m_camera.view());
    quint32 firstId = 1;
    for (const auto& mesh : m_meshes) {
        mesh->drawIds(program, gl, firstId);
        firstId += static_cast<quint32>(mesh->model().parts.size());
    }
    program.release();
    quint32 id = idNear(gl, point * devicePixelRatioF(), size);
    gl.glDisable(GL_DEPTH_TEST);
    target.release();
    doneCurrent();

    for (std::size_t i = 0; id > 0 && i < m_meshes.size(); ++i) {
        const auto& parts = m_meshes[i]->model().parts;
        if (id <= parts.size()) {
            emit picked(static_cast<int>(i), static_cast<int>(parts[id - 1].node));
            return;
        }
        id -= static_cast<quint32>(parts.size());
    }
    emit picked(-1, -1);
}

void SceneView::mousePressEvent(QMouseEvent* event)
{
    m_pressedAt = event->pos();
    m_lastPoint = event->pos();
    m_isDragging = false;
}

void SceneView::mouseMoveEvent(QMouseEvent* event)
{
    if ((event->pos() - m_pressedAt).manhattanLength() > clickTolerance)
        m_isDragging = true;
    if (!m_isDragging || event->buttons() == Qt::NoButton)
        return;
    const QPointF way = event->pos() - m_lastPoint;
    m_lastPoint = event->pos();
    const bool isTurning = event->buttons() == Qt::LeftButton && !(event->modifiers() & Qt::ShiftModifier);
    if (isTurning)
        m_camera.orbit(way);
    else
        m_camera.pan(way);
    m_wasMoved = true;
    update();
}

void SceneView::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_isDragging && event->button() == Qt::LeftButton)
        pick(event->pos());
    m_isDragging = false;
}

void SceneView::mouseDoubleClickEvent(QMouseEvent* /*event*/)
{
    fitSelection();
}

void SceneView::wheelEvent(QWheelEvent* event)
{
    constexpr double notch = 120.0;
    m_camera.zoom(event->angleDelta().y() / notch, event->position());
    m_wasMoved = true;
    update();
}

void SceneView::keyPressEvent(QKeyEvent* event)
{
    const QPointF centre(width() / 2.0, height() / 2.0);
    switch (event->key()) {
    case Qt::Key_Left:
        m_camera.orbit({-keyTurn, 0});
        break;
    case Qt::Key_Right:
        m_camera.orbit({keyTurn, 0});
        break;
    case Qt::Key_Up:
        m_camera.orbit({0, keyTurn});
        break;
    case Qt::Key_Down:
        m_camera.orbit({0, -keyTurn});
        break;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        m_camera.zoom(1.0, centre);
        break;
    case Qt::Key_Minus:
        m_camera.zoom(-1.0, centre);
        break;
    default:
        QOpenGLWidget::keyPressEvent(event);
        return;
    }
    m_wasMoved = true;
    update();
}

} // namespace editortab
