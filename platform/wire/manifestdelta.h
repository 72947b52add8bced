// SPDX-License-Identifier: MIT
#pragma once

#include "wire/manifest.h"

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace wire
{

/// No revision has more pieces; what a delta unfolds to is bounded by it.
inline constexpr std::size_t mostPieces = 2U << 20U;

/// A manifest, told by what differs from another that both sides know. After a small edit of a large project
/// it is a few hundred bytes where the manifest is megabytes. Against an empty manifest it is a little longer
/// than EncodeManifest.
[[nodiscard]] std::string EncodeManifestDelta(const Manifest& base, const Manifest& manifest);

/// Reads an encoded delta against the same base, and checks the result like DecodeManifest does.
[[nodiscard]] std::variant<Manifest, Refusal> DecodeManifestDelta(const Manifest& base,
                                                                  std::string_view bytes);

/// The pieces of a manifest that its base does not have: each once, in the order of their first place.
[[nodiscard]] std::vector<Piece> FreshPieces(const Manifest& base, const Manifest& manifest);

/// Names and sizes of pieces, for asking which of them are missing.
[[nodiscard]] std::string EncodePieces(std::span<const Piece> pieces);

/// Reads encoded pieces; refuses a piece of an impossible size.
[[nodiscard]] std::variant<std::vector<Piece>, Refusal> DecodePieces(std::string_view bytes);

/// One bit for each piece, the first in the lowest bit of the first byte.
[[nodiscard]] std::string EncodeBits(const std::vector<bool>& bits);

/// Reads `count` bits; a text of another length is refused.
[[nodiscard]] std::variant<std::vector<bool>, Refusal> DecodeBits(std::string_view bytes, std::size_t count);

} // namespace wire
