// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QRect>

namespace road
{

// What a look at a picture of the screen tells.

/// How many different colours there are inside of `area`, shades of one colour that an eye cannot tell apart
/// taken as one.
[[nodiscard]] int ColoursIn(const QImage& picture, const QRect& area);

/// The share of the pixels inside of `area` that differ visibly between the two pictures, 0 to 1.
[[nodiscard]] double DifferenceIn(const QImage& one, const QImage& other, const QRect& area);

} // namespace road
