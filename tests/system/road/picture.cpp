// SPDX-License-Identifier: MIT
#include "road/picture.h"

#include <cstdlib>
#include <set>

namespace road
{

namespace
{

constexpr int visibleStep = 16;

QRgb Coarse(QRgb colour)
{
    return qRgb(qRed(colour) / visibleStep, qGreen(colour) / visibleStep, qBlue(colour) / visibleStep);
}

bool DifferVisibly(QRgb one, QRgb other)
{
    return std::abs(qRed(one) - qRed(other)) > visibleStep ||
           std::abs(qGreen(one) - qGreen(other)) > visibleStep ||
           std::abs(qBlue(one) - qBlue(other)) > visibleStep;
}

} // namespace

int ColoursIn(const QImage& picture, const QRect& area)
{
    std::set<QRgb> colours;
    const QRect inside = area & picture.rect();
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x)
            colours.insert(Coarse(picture.pixel(x, y)));
    }
    return static_cast<int>(colours.size());
}

double DifferenceIn(const QImage& one, const QImage& other, const QRect& area)
{
    const QRect inside = area & one.rect() & other.rect();
    if (inside.isEmpty())
        return 0;
    qint64 count = 0;
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x)
            count += DifferVisibly(one.pixel(x, y), other.pixel(x, y)) ? 1 : 0;
    }
    return static_cast<double>(count) / (static_cast<double>(inside.width()) * inside.height());
}

} // namespace road
