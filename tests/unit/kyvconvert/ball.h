// SPDX-License-Identifier: MIT
#pragma once

#include "gltf/model.h"

#include <cmath>

/// A ball of radius 1 about the origin in a node of its own, with 2 * rings * rings quadrangles of two
/// triangles each.
inline gltf::Model Ball(std::uint32_t rings)
{
    gltf::Model ball;
    ball.nodes = {{"ball", -1}};
    const std::uint32_t around = 2 * rings;
    for (std::uint32_t ring = 0; ring <= rings; ++ring) {
        for (std::uint32_t step = 0; step <= around; ++step) {
            const auto down = static_cast<float>(M_PI * ring / rings);
            const auto turn = static_cast<float>(2 * M_PI * (step % around) / around);
            // The poles are points.
            const float width = ring % rings == 0 ? 0.0F : std::sin(down);
            const gltf::Vector3 point{width * std::cos(turn), std::cos(down), -width * std::sin(turn)};
            ball.vertices.push_back({point, point});
            ball.bounds.include(point);
        }
    }
    for (std::uint32_t ring = 0; ring < rings; ++ring) {
        for (std::uint32_t step = 0; step < around; ++step) {
            const auto a = ring * (around + 1) + step;
            const auto b = a + around + 1;
            for (auto corner : {a, b, b + 1, a, b + 1, a + 1})
                ball.indices.push_back(corner);
        }
    }
    gltf::Part part;
    part.indexCount = static_cast<std::uint32_t>(ball.indices.size());
    ball.parts = {part};
    return ball;
}
