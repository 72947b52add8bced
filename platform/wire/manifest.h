// SPDX-License-Identifier: MIT
#pragma once

#include "wire/digest.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// What client and server share on the wire. docs/transfer.md tells the formats byte by byte.
namespace wire
{

/// How the pieces of a file were cut.
enum class Cutting : std::uint8_t {
    contentDefined = 0, ///< by a rolling hash over the content
    pages = 1,          ///< a SQLite file, one piece a page
};

/// A part of a file. Its name is the digest of its bytes.
struct Piece {
    Digest name;
    std::uint32_t size = 0; ///< bytes, 1 to maximumPieceSize

    friend bool operator==(const Piece&, const Piece&) = default;
};

inline constexpr std::uint32_t maximumPieceSize = 1U << 20U;

/// A file of a project.
struct FileEntry {
    std::string path;          ///< relative, UTF-8, "/" between its names
    std::uint64_t size = 0;    ///< bytes, the sum of the pieces
    std::uint32_t mode = 0644; ///< permission bits, 0644 or 0755
    Digest content;            ///< see ContentOf
    Cutting cutting = Cutting::contentDefined;
    std::vector<Piece> pieces; ///< in the order of the file

    friend bool operator==(const FileEntry&, const FileEntry&) = default;
};

/// The name of what stands in a file: a digest over its cutting and its pieces, so that the bytes are hashed
/// once.
[[nodiscard]] Digest ContentOf(const FileEntry& file);

/// A revision of a project: all its files, ascending by the bytes of their paths.
struct Manifest {
    std::vector<FileEntry> files;

    friend bool operator==(const Manifest&, const Manifest&) = default;
};

/// Why something that came over the wire is refused, in words for the log.
struct Refusal {
    std::string reason;
};

/// The name of a revision: the root of the hash tree over its files.
[[nodiscard]] Digest RootOf(const Manifest& manifest);

[[nodiscard]] std::string EncodeManifest(const Manifest& manifest);

/// Reads an encoded manifest and checks everything that a hostile one could do: unsafe paths, wrong order,
/// names that differ only in case, sizes that do not add up, lengths beyond the end. Never allocates more
/// than a small multiple of the input.
[[nodiscard]] std::variant<Manifest, Refusal> DecodeManifest(std::string_view bytes);

/// Why a manifest cannot be a revision, or empty when it can.
[[nodiscard]] std::string ManifestRefusal(const Manifest& manifest);

/// Why a path cannot be a project's file, or empty when it can: it must be relative, valid UTF-8 of at most
/// 1,024 bytes, with names of 1 to 255 bytes that are none of ".", "..", hold no control character, no
/// backslash and no colon, and do not end in a blank or a dot (Windows would drop those).
[[nodiscard]] std::string PathRefusal(std::string_view path);

/// A run of consecutive pieces of one file of a manifest.
struct PieceRun {
    std::uint32_t file = 0;  ///< index in Manifest::files
    std::uint32_t first = 0; ///< index in FileEntry::pieces
    std::uint32_t count = 0;

    friend bool operator==(const PieceRun&, const PieceRun&) = default;
};

[[nodiscard]] std::string EncodeRuns(std::span<const PieceRun> runs);

/// Reads encoded runs; refuses a run that is empty or reaches beyond its file.
[[nodiscard]] std::variant<std::vector<PieceRun>, Refusal> DecodeRuns(std::string_view bytes,
                                                                      const Manifest& manifest);

} // namespace wire
