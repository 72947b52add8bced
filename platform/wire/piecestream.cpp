// SPDX-License-Identifier: MIT
#include "wire/piecestream.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <utility>

#include <zstd.h>

namespace wire
{

namespace
{

constexpr std::uint32_t compressedBit = 1U << 31U;
constexpr std::size_t headerSize = frameOverhead;
constexpr int compressionLevel = 3;
constexpr std::size_t smallestSampled = 4U << 10U;
constexpr std::size_t sampledBytes = 1U << 10U;
constexpr std::uint32_t noiseSum = 5700;

/// False when the bytes are as evenly spread as noise: pictures and archives, of which projects are full.
/// Looks at a kilobyte from all over the piece, which costs a twentieth of trying to compress it. Where a
/// code for single bytes would save a tenth, the sum is 8,000 and more; noise keeps it near 5,100.
bool IsWorthPacking(std::span<const std::byte> bytes)
{
    if (bytes.size() < smallestSampled)
        return true;
    std::array<std::uint32_t, 256> counts{};
    const auto stride = bytes.size() / sampledBytes;
    for (std::size_t i = 0; i < sampledBytes; ++i)
        ++counts[std::to_integer<std::size_t>(bytes[i * stride])];
    std::uint32_t sum = 0;
    for (const auto count : counts)
        sum += count * count;
    return sum > noiseSum;
}

/// Compresses pieces, in memory that it keeps.
class Packer
{
public:
    /// The size of what then stands at packed(); 0 when it cannot be done.
    std::size_t pack(std::span<const std::byte> bytes, int level)
    {
        m_packed.resize(std::max(m_packed.size(), ZSTD_compressBound(bytes.size())));
        const auto size = ZSTD_compressCCtx(m_context.get(), m_packed.data(), m_packed.size(), bytes.data(),
                                            bytes.size(), level);
        return ZSTD_isError(size) == 0 ? size : 0;
    }

    [[nodiscard]] const char* packed() const { return m_packed.data(); }

private:
    struct FreeContext {
        void operator()(ZSTD_CCtx* context) const { ZSTD_freeCCtx(context); }
    };

    std::unique_ptr<ZSTD_CCtx, FreeContext> m_context{ZSTD_createCCtx()};
    std::vector<char> m_packed;
};

void AppendHeader(std::string& frame, std::uint32_t header)
{
    for (unsigned shift = 0; shift < 32; shift += 8)
        frame += static_cast<char>(header >> shift & 0xFFU);
}

/// The bytes of a piece; none when `stored` is no piece.
std::span<const std::byte> Unpacked(std::uint32_t header, std::span<const std::byte> stored,
                                    std::vector<std::byte>& buffer)
{
    if (stored.empty() || stored.size() > maximumPieceSize)
        return {};
    if ((header & compressedBit) == 0)
        return stored;
    const auto size = ZSTD_getFrameContentSize(stored.data(), stored.size());
    if (size == ZSTD_CONTENTSIZE_UNKNOWN || size == ZSTD_CONTENTSIZE_ERROR || size == 0 ||
        size > maximumPieceSize)
        return {};
    buffer.resize(static_cast<std::size_t>(size));
    const auto unpackedSize = ZSTD_decompress(buffer.data(), buffer.size(), stored.data(), stored.size());
    if (ZSTD_isError(unpackedSize) != 0 || unpackedSize != size)
        return {};
    return buffer;
}

std::uint32_t HeaderOf(std::span<const std::byte> frame)
{
    std::uint32_t header = 0;
    for (std::size_t i = headerSize; i > 0; --i)
        header = header << 8U | std::to_integer<std::uint32_t>(frame[i - 1]);
    return header;
}

} // namespace

std::string FramedPiece(std::span<const std::byte> bytes)
{
    std::string frame;
    AppendFrame(frame, bytes);
    return frame;
}

void AppendFrame(std::string& stream, std::span<const std::byte> bytes)
{
    thread_local Packer packer;
    const auto packed = IsWorthPacking(bytes) ? packer.pack(bytes, compressionLevel) : 0;
    if (packed > 0 && packed < bytes.size() - bytes.size() / 10) {
        AppendHeader(stream, static_cast<std::uint32_t>(packed) | compressedBit);
        stream.append(packer.packed(), packed);
    } else {
        AppendHeader(stream, static_cast<std::uint32_t>(bytes.size()));
        stream.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    }
}

PieceStreamReader::PieceStreamReader(PieceTaker take)
    : m_take(std::move(take))
{
}

bool PieceStreamReader::feed(std::span<const std::byte> bytes)
{
    while (!m_failed && !bytes.empty()) {
        if (m_pending.empty() && bytes.size() >= headerSize) {
            // The common case: a whole frame lies in what came, and need not be copied.
            const std::uint32_t header = HeaderOf(bytes);
            const std::size_t frameSize = headerSize + (header & ~compressedBit);
            if (frameSize <= bytes.size()) {
                m_failed = !takeFrame(header, bytes.subspan(headerSize, frameSize - headerSize));
                bytes = bytes.subspan(frameSize);
                continue;
            }
        }
        const bool hasHeader = m_pending.size() >= headerSize;
        const std::size_t length = hasHeader ? HeaderOf(m_pending) & ~compressedBit : 0;
        if (hasHeader && (length == 0 || length > maximumPieceSize)) {
            m_failed = true;
            break;
        }
        const std::size_t taken = std::min(headerSize + length - m_pending.size(), bytes.size());
        m_pending.insert(m_pending.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(taken));
        bytes = bytes.subspan(taken);
        if (hasHeader && m_pending.size() == headerSize + length) {
            m_failed = !takeFrame(HeaderOf(m_pending), std::span(m_pending).subspan(headerSize));
            m_pending.clear();
        }
    }
    return !m_failed;
}

bool PieceStreamReader::takeFrame(std::uint32_t header, std::span<const std::byte> stored)
{
    const auto bytes = Unpacked(header, stored, m_unpacked);
    if (bytes.empty())
        return false;
    m_take(bytes);
    return true;
}

FrameReader::FrameReader(std::string_view stream)
    : m_rest(std::as_bytes(std::span(stream)))
{
}

std::optional<FrameReader::Frame> FrameReader::next()
{
    if (!m_isGood || m_rest.empty())
        return std::nullopt;
    m_isGood = false;
    if (m_rest.size() < headerSize)
        return std::nullopt;
    const std::uint32_t header = HeaderOf(m_rest);
    const std::size_t length = header & ~compressedBit;
    if (length > m_rest.size() - headerSize)
        return std::nullopt;
    const auto bytes = Unpacked(header, m_rest.subspan(headerSize, length), m_unpacked);
    if (bytes.empty())
        return std::nullopt;
    const Frame frame{bytes, m_rest.first(headerSize + length)};
    m_rest = m_rest.subspan(headerSize + length);
    m_isGood = true;
    return frame;
}

} // namespace wire
