// SPDX-License-Identifier: MIT
#pragma once

#include "gltf/model.h"

#include <QMatrix4x4>
#include <QPointF>
#include <QSizeF>
#include <QVector3D>

namespace editortab
{

/// Looks at a point from a distance, Y up. Positions in metres, the pointer in device-independent pixels. A
/// plain value.
class Camera
{
public:
    enum class Preset { isometric, top, front, right };

    void setViewport(const QSizeF& size);

    /// Everything within the bounds is to be seen; the direction stays.
    void fit(const gltf::Bounds& bounds);
    void look(Preset preset);

    /// Turns around the target, by pixels of the pointer's way.
    void orbit(const QPointF& way);
    /// Moves along with the pointer.
    void pan(const QPointF& way);
    /// Comes nearer (steps above 0) or goes away; what lies under the pointer stays there.
    void zoom(double steps, const QPointF& pointer);

    [[nodiscard]] QMatrix4x4 view() const;
    [[nodiscard]] QMatrix4x4 projection() const;
    [[nodiscard]] QVector3D eye() const;
    [[nodiscard]] QVector3D target() const { return m_target; }
    [[nodiscard]] double distance() const { return m_distance; }

private:
    [[nodiscard]] QVector3D direction() const; ///< from the target to the eye
    [[nodiscard]] QVector3D right() const;
    [[nodiscard]] QVector3D up() const;
    [[nodiscard]] double metresPerPixel() const; ///< at the target

    QSizeF m_viewport{1, 1};
    QVector3D m_target;
    double m_distance = 30.0;
    double m_yaw = 35.0;    ///< degrees
    double m_pitch = 28.0;  ///< degrees above the ground
    double m_radius = 10.0; ///< of what is shown
};

} // namespace editortab
