// SPDX-License-Identifier: MIT
#pragma once

#include "gltf/model.h"

#include <span>

#include <QImage>

namespace kyvconvert
{

/// Draws models on the processor, seen from above and the side, fitted into the picture on the grey of the
/// cards. Needs no window system. Any thread.
[[nodiscard]] QImage DrawPicture(std::span<const gltf::Model* const> models, const QSize& size);

} // namespace kyvconvert
