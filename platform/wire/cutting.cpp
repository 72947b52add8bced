// SPDX-License-Identifier: MIT
#include "wire/cutting.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <vector>

namespace wire
{

namespace
{

constexpr std::size_t readSize = 1U << 20U;

// One bit more must be zero before the average length is reached and one bit less behind it, which draws the
// lengths together around the average.
constexpr std::uint64_t strictMask = 0x0000'7FFF'0000'0000ULL;
constexpr std::uint64_t looseMask = 0x0000'1FFF'0000'0000ULL;

/// A random number for each byte. Part of the format: other numbers cut elsewhere.
constexpr std::array<std::uint64_t, 256> MakeGear()
{
    std::array<std::uint64_t, 256> gear{};
    std::uint64_t state = 0x546F72766F486F6DULL;
    for (auto& number : gear) {
        state += 0x9E3779B97F4A7C15ULL;
        std::uint64_t mixed = state;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9ULL;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBULL;
        number = mixed ^ (mixed >> 31U);
    }
    return gear;
}

constexpr auto gear = MakeGear();

/// The first length behind `length` at which the rolling hash meets the mask; `end` when it does nowhere
/// before.
std::size_t Roll(std::span<const std::byte> data, std::size_t length, std::size_t end, std::uint64_t mask,
                 std::uint64_t& hash)
{
    while (length < end) {
        hash = (hash << 1U) + gear[static_cast<std::uint8_t>(data[length])];
        ++length;
        if ((hash & mask) == 0)
            return length;
    }
    return end;
}

/// Reads a file from front to back, and keeps what has been read and not been taken yet.
class Window
{
public:
    explicit Window(const std::filesystem::path& file)
        : m_stream(file, std::ios::binary)
    {
        m_buffer.resize(readSize + largestContentPiece);
    }

    [[nodiscard]] bool isOpen() const { return m_stream.is_open(); }
    [[nodiscard]] bool hasFailed() const { return m_stream.bad(); }

    /// What is at hand: at least `wanted` bytes, or all up to the end of the file.
    std::span<const std::byte> ahead(std::size_t wanted)
    {
        if (m_end - m_begin < wanted && !m_atEnd)
            refill();
        return std::span(m_buffer).subspan(m_begin, m_end - m_begin);
    }

    void take(std::size_t length) { m_begin += length; }

private:
    void refill()
    {
        std::memmove(m_buffer.data(), m_buffer.data() + m_begin, m_end - m_begin);
        m_end -= m_begin;
        m_begin = 0;
        while (m_end < m_buffer.size() && !m_atEnd) {
            m_stream.read(reinterpret_cast<char*>(m_buffer.data() + m_end),
                          static_cast<std::streamsize>(m_buffer.size() - m_end));
            m_end += static_cast<std::size_t>(m_stream.gcount());
            m_atEnd = !m_stream;
        }
    }

    std::ifstream m_stream;
    std::vector<std::byte> m_buffer;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    bool m_atEnd = false;
};

std::uint32_t ModeOf(const std::filesystem::path& file)
{
    const auto permissions = std::filesystem::status(file).permissions();
    const bool isProgram = (permissions & std::filesystem::perms::owner_exec) != std::filesystem::perms::none;
    return isProgram ? 0755 : 0644;
}

} // namespace

std::size_t ContentPieceLength(std::span<const std::byte> data)
{
    const std::size_t end = std::min(data.size(), largestContentPiece);
    if (end <= smallestContentPiece)
        return end;
    const std::size_t middle = std::min(end, averageContentPiece);
    std::uint64_t hash = 0;
    const std::size_t length = Roll(data, smallestContentPiece, middle, strictMask, hash);
    if (length < middle)
        return length;
    return Roll(data, middle, end, looseMask, hash);
}

std::size_t SqlitePageSize(std::span<const std::byte> head, std::uint64_t fileSize)
{
    constexpr char magic[] = "SQLite format 3";
    constexpr std::size_t pageSizeOffset = 16;
    if (head.size() < pageSizeOffset + 2 || std::memcmp(head.data(), magic, sizeof magic) != 0)
        return 0;
    const auto high = std::to_integer<std::size_t>(head[pageSizeOffset]);
    const auto low = std::to_integer<std::size_t>(head[pageSizeOffset + 1]);
    // 65,536 does not fit into its two bytes and is written as 1.
    const std::size_t pageSize = (high << 8U | low) == 1 ? 65536 : high << 8U | low;
    const bool isPowerOfTwo = pageSize >= 512 && (pageSize & (pageSize - 1)) == 0;
    return isPowerOfTwo && fileSize % pageSize == 0 ? pageSize : 0;
}

std::variant<FileEntry, Refusal> CutFile(const std::filesystem::path& file, const std::string& path,
                                         const PieceSink& sink)
{
    Window window(file);
    std::error_code noSize;
    const auto fileSize = std::filesystem::file_size(file, noSize);
    if (!window.isOpen() || noSize)
        return Refusal{"cannot read " + file.string()};

    const std::size_t pageSize = SqlitePageSize(window.ahead(largestContentPiece), fileSize);
    FileEntry entry;
    entry.path = path;
    entry.mode = ModeOf(file);
    entry.cutting = pageSize > 0 ? Cutting::pages : Cutting::contentDefined;
    for (auto data = window.ahead(largestContentPiece); !data.empty();
         data = window.ahead(largestContentPiece)) {
        const auto length = pageSize > 0 ? std::min(pageSize, data.size()) : ContentPieceLength(data);
        const auto bytes = data.first(length);
        const Piece piece{DigestOf(bytes), static_cast<std::uint32_t>(length)};
        sink(piece, bytes);
        entry.pieces.push_back(piece);
        entry.size += length;
        window.take(length);
    }
    if (window.hasFailed())
        return Refusal{"cannot read " + file.string()};
    entry.content = ContentOf(entry);
    return entry;
}

} // namespace wire
