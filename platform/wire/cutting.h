// SPDX-License-Identifier: MIT
#pragma once

#include "wire/manifest.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <variant>

namespace wire
{

inline constexpr std::size_t smallestContentPiece = 4U << 10U;
inline constexpr std::size_t averageContentPiece = 16U << 10U;
inline constexpr std::size_t largestContentPiece = 64U << 10U;

/// The length of the piece that starts where `data` starts, by the content. `data` must hold
/// largestContentPiece bytes or everything up to the end of the file. The same bytes give the same pieces,
/// wherever they stand in a file, as soon as one cut is the same.
[[nodiscard]] std::size_t ContentPieceLength(std::span<const std::byte> data);

/// The page size of a SQLite file that starts with `head` and has `fileSize` bytes; 0 when it is none, or one
/// that is not made of whole pages.
[[nodiscard]] std::size_t SqlitePageSize(std::span<const std::byte> head, std::uint64_t fileSize);

/// Takes each piece of a file in order.
using PieceSink = std::function<void(const Piece& piece, std::span<const std::byte> bytes)>;

/// Cuts a file into pieces and describes it under `path`, a path that PathRefusal takes. The file is read
/// once, 1 MiB at a time; one that changes meanwhile gives a description of what was read. Any thread.
[[nodiscard]] std::variant<FileEntry, Refusal> CutFile(const std::filesystem::path& file,
                                                       const std::string& path, const PieceSink& sink);

} // namespace wire
