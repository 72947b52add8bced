// SPDX-License-Identifier: MIT
#include "server/storage/layout.h"

#include "wire/bytes.h"

namespace server
{

// Encoded as runs of pieces that lie one behind the other: pack, offset and number of the run, then the
// length of each frame. A revision that was written in one go is one run a pack.

namespace
{

bool Follows(const PieceLocation& before, const PieceLocation& location)
{
    return location.pack == before.pack && location.offset == before.offset + before.length;
}

} // namespace

std::string Layout::encode() const
{
    wire::ByteWriter writer;
    for (std::size_t begin = 0; begin < m_locations.size();) {
        std::size_t end = begin + 1;
        while (end < m_locations.size() && Follows(m_locations[end - 1], m_locations[end]))
            ++end;
        writer.u32(m_locations[begin].pack);
        writer.u64(m_locations[begin].offset);
        writer.u32(static_cast<std::uint32_t>(end - begin));
        for (; begin < end; ++begin)
            writer.u32(m_locations[begin].length);
    }
    return writer.take();
}

std::optional<Layout> Layout::decode(std::string_view bytes, std::size_t pieceCount)
{
    wire::ByteReader reader(bytes);
    Layout layout;
    layout.m_locations.reserve(pieceCount);
    while (reader.good() && reader.left() > 0) {
        PieceLocation location;
        location.pack = reader.u32();
        location.offset = reader.u64();
        for (auto left = reader.u32(); left > 0 && reader.good(); --left) {
            location.length = reader.u32();
            layout.m_locations.push_back(location);
            location.offset += location.length;
        }
    }
    if (!reader.good() || layout.m_locations.size() != pieceCount)
        return std::nullopt;
    return layout;
}

void Layout::appendRanges(std::size_t first, std::size_t count, std::vector<PackRange>& ranges) const
{
    for (std::size_t i = first; i < first + count; ++i) {
        const auto& location = m_locations[i];
        const bool continues = !ranges.empty() && ranges.back().pack == location.pack &&
                               ranges.back().offset + ranges.back().length == location.offset;
        if (continues)
            ranges.back().length += location.length;
        else
            ranges.push_back({location.pack, location.offset, location.length});
    }
}

} // namespace server
