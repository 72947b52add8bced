// SPDX-License-Identifier: MIT
#include "editortab/view/camera.h"

#include <QtMath>

namespace editortab
{

namespace
{

constexpr double fieldOfView = 40.0;
constexpr double degreesPerPixel = 0.35;
constexpr double zoomPerStep = 0.85;
constexpr double steepest = 89.5;
constexpr double nearest = 0.05;

} // namespace

void Camera::setViewport(const QSizeF& size)
{
    m_viewport = QSizeF(qMax(1.0, size.width()), qMax(1.0, size.height()));
}

void Camera::fit(const gltf::Bounds& bounds)
{
    if (bounds.isEmpty)
        return;
    const QVector3D low(bounds.low[0], bounds.low[1], bounds.low[2]);
    const QVector3D high(bounds.high[0], bounds.high[1], bounds.high[2]);
    m_target = (low + high) / 2.0F;
    m_radius = qMax(0.1, static_cast<double>((high - low).length()) / 2.0);
    const double aspect = m_viewport.width() / m_viewport.height();
    const double halfAngle = qDegreesToRadians(fieldOfView / 2.0);
    const double narrow = aspect < 1.0 ? qAtan(qTan(halfAngle) * aspect) : halfAngle;
    m_distance = m_radius / qSin(narrow) * 0.95;
}

void Camera::look(Preset preset)
{
    switch (preset) {
    case Preset::isometric:
        m_yaw = 35.0;
        m_pitch = 28.0;
        break;
    case Preset::top:
        m_yaw = 0.0;
        m_pitch = steepest;
        break;
    case Preset::front:
        m_yaw = 0.0;
        m_pitch = 0.0;
        break;
    case Preset::right:
        m_yaw = 90.0;
        m_pitch = 0.0;
        break;
    }
}

void Camera::orbit(const QPointF& way)
{
    m_yaw = std::fmod(m_yaw - way.x() * degreesPerPixel, 360.0);
    m_pitch = qBound(-steepest, m_pitch + way.y() * degreesPerPixel, steepest);
}

void Camera::pan(const QPointF& way)
{
    const double scale = metresPerPixel();
    m_target += right() * static_cast<float>(-way.x() * scale) + up() * static_cast<float>(way.y() * scale);
}

void Camera::zoom(double steps, const QPointF& pointer)
{
    const QPointF fromCentre = pointer - QPointF(m_viewport.width() / 2.0, m_viewport.height() / 2.0);
    const double before = metresPerPixel();
    m_distance = qBound(nearest, m_distance * qPow(zoomPerStep, steps), m_radius * 1000.0);
    const double difference = before - metresPerPixel();
    m_target += right() * static_cast<float>(fromCentre.x() * difference) -
                up() * static_cast<float>(fromCentre.y() * difference);
}

QVector3D Camera::direction() const
{
    const double yaw = qDegreesToRadians(m_yaw);
    const double pitch = qDegreesToRadians(m_pitch);
    return {static_cast<float>(qCos(pitch) * qSin(yaw)), static_cast<float>(qSin(pitch)),
            static_cast<float>(qCos(pitch) * qCos(yaw))};
}

QVector3D Camera::right() const
{
    const double yaw = qDegreesToRadians(m_yaw);
    return {static_cast<float>(qCos(yaw)), 0.0F, static_cast<float>(-qSin(yaw))};
}

QVector3D Camera::up() const
{
    return QVector3D::crossProduct(direction(), right()).normalized();
}

double Camera::metresPerPixel() const
{
    return 2.0 * m_distance * qTan(qDegreesToRadians(fieldOfView / 2.0)) / m_viewport.height();
}

QVector3D Camera::eye() const
{
    return m_target + direction() * static_cast<float>(m_distance);
}

QMatrix4x4 Camera::view() const
{
    QMatrix4x4 matrix;
    matrix.lookAt(eye(), m_target, up());
    return matrix;
}

QMatrix4x4 Camera::projection() const
{
    // Near and far follow what is shown: a fixed range would spend the depth buffer on empty space.
    const double far = m_distance + m_radius * 20.0;
    const double near = qMax(far / 20000.0, qMin(m_distance * 0.1, m_distance - m_radius * 1.5));
    QMatrix4x4 matrix;
    matrix.perspective(static_cast<float>(fieldOfView),
                       static_cast<float>(m_viewport.width() / m_viewport.height()), static_cast<float>(near),
                       static_cast<float>(far));
    return matrix;
}

} // namespace editortab
