// SPDX-License-Identifier: MIT
#pragma once

#include "server/storage/packs.h"
#include "wire/manifest.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace server
{

/// A stretch of one pack file.
struct PackRange {
    std::uint32_t pack = 0;
    std::uint64_t offset = 0;
    std::uint64_t length = 0;

    friend bool operator==(const PackRange&, const PackRange&) = default;
};

/// Where all pieces of a revision lie, in the order of its manifest. Made once, when the revision is
/// committed, so that a download needs no look-up per piece.
class Layout
{
public:
    Layout() = default;
    explicit Layout(std::vector<PieceLocation> locations)
        : m_locations(std::move(locations))
    {
    }

    [[nodiscard]] std::string encode() const;

    /// Reads what encode gives for a revision of `pieceCount` pieces; nothing when it is damaged.
    [[nodiscard]] static std::optional<Layout> decode(std::string_view bytes, std::size_t pieceCount);

    /// The stretches that hold the pieces `first` to `first + count`, adjoining ones joined, appended to
    /// `ranges`.
    void appendRanges(std::size_t first, std::size_t count, std::vector<PackRange>& ranges) const;

    [[nodiscard]] const PieceLocation& at(std::size_t piece) const { return m_locations[piece]; }
    [[nodiscard]] std::size_t pieceCount() const { return m_locations.size(); }

private:
    std::vector<PieceLocation> m_locations;
};

} // namespace server
