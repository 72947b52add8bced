// SPDX-License-Identifier: MIT
#pragma once

namespace ZRIMGeometryModel
{

/// A place on the earth: longitude and latitude in degrees (WGS 84), height in metres. A plain value.
class CZRIMPosition
{
public:
    CZRIMPosition() = default;
    CZRIMPosition(double x, double y, double z)
        : m_x(x)
        , m_y(y)
        , m_z(z)
    {
    }

    [[nodiscard]] double GetX() const { return m_x; } ///< longitude
    [[nodiscard]] double GetY() const { return m_y; } ///< latitude
    [[nodiscard]] double GetZ() const { return m_z; } ///< height

private:
    double m_x = 0.0;
    double m_y = 0.0;
    double m_z = 0.0;
};

} // namespace ZRIMGeometryModel
