// SPDX-License-Identifier: MIT
#include "project/projectinforecord.h"

#include <cmath>

namespace TorvoEditor
{

namespace
{

/// The texts "nan" and "inf" are numbers to Qt, but no place.
double CoordinateOf(const QString& text)
{
    const double number = text.toDouble();
    return std::isfinite(number) ? number : 0.0;
}

} // namespace

ZRIMGeometryModel::CZRIMPosition PositionOf(const SProjectInfoRecord& record)
{
    return {CoordinateOf(record.longitude), CoordinateOf(record.latitude), 0.0};
}

} // namespace TorvoEditor
