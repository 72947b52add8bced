// SPDX-License-Identifier: MIT
#pragma once

#include "wire/manifest.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace wire
{

inline constexpr std::size_t frameOverhead = 4;

/// A piece as it stands in a piece stream and in the server's packs: 4 bytes with the length of what follows,
/// the top bit telling that it is compressed, then the bytes. Compressed by zstd where that saves a tenth.
[[nodiscard]] std::string FramedPiece(std::span<const std::byte> bytes);

/// The same at the end of a stream.
void AppendFrame(std::string& stream, std::span<const std::byte> bytes);

/// Takes a piece stream apart that lies in memory whole.
class FrameReader
{
public:
    explicit FrameReader(std::string_view stream);

    struct Frame {
        std::span<const std::byte> bytes;  ///< of the piece; valid until the next call
        std::span<const std::byte> stored; ///< the frame as it stands in the stream
    };

    /// The next piece; nothing at the end, and when the rest is no piece stream.
    [[nodiscard]] std::optional<Frame> next();

    /// False when the stream is damaged or cut short.
    [[nodiscard]] bool isGood() const { return m_isGood; }

private:
    std::span<const std::byte> m_rest;
    std::vector<std::byte> m_unpacked;
    bool m_isGood = true;
};

/// Takes the bytes of one piece; they are valid during the call.
using PieceTaker = std::function<void(std::span<const std::byte> bytes)>;

/// Takes a piece stream apart as it comes in. Memory: at most one piece and its compressed form. One thread
/// at a time.
class PieceStreamReader
{
public:
    /// `take` is called for each piece in the order of the stream.
    explicit PieceStreamReader(PieceTaker take);

    /// Reads the next bytes of the stream. False when they are no piece stream; nothing is read any more
    /// then.
    [[nodiscard]] bool feed(std::span<const std::byte> bytes);

    /// The stream may end here: no piece is cut short.
    [[nodiscard]] bool isComplete() const { return !m_failed && m_pending.empty(); }

private:
    bool takeFrame(std::uint32_t header, std::span<const std::byte> stored);

    PieceTaker m_take;
    std::vector<std::byte> m_pending; ///< the front of a frame whose end has not come yet
    std::vector<std::byte> m_unpacked;
    bool m_failed = false;
};

} // namespace wire
