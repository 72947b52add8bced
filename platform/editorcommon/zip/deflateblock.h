// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include <QByteArray>

namespace EditorCommon::Zip
{

/// A piece of a file, packed so that it can be put behind the piece before it.
struct PackedBlock {
    QByteArray bytes;
    std::uint32_t crc = 0; ///< of what was packed
    std::int64_t size = 0; ///< of what was packed
    bool isLast = false;   ///< of its file
};

/// As far back as a packed block refers to what stands before it.
inline constexpr int backReference = 32 * 1024;

/// Packs a block. `before` is what stands before it in its file, of which the last `backReference` bytes
/// count. Any thread. Throws BadArchive when there is no memory.
[[nodiscard]] PackedBlock PackBlock(const QByteArray& before, const QByteArray& block, bool isLast);

/// Whether packing is worth the time: a sample becomes smaller by it.
[[nodiscard]] bool IsWorthPacking(const QByteArray& sample);

} // namespace EditorCommon::Zip
