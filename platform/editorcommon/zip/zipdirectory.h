// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class QFile;

namespace EditorCommon::Zip
{

/// What the directory at the end of an archive says of one entry.
struct Entry {
    std::string name; ///< as it stands there, in whatever encoding
    std::uint16_t madeBy = 0;
    std::uint16_t flags = 0;
    std::uint16_t method = 0;
    std::uint32_t attributes = 0;
    std::uint64_t packedSize = 0;
    std::uint64_t size = 0;
    std::uint64_t offset = 0; ///< of its header in the archive

    [[nodiscard]] bool isLocked() const { return (flags & 0x0001U) != 0; }
    [[nodiscard]] bool hasUtf8Name() const { return (flags & 0x0800U) != 0; }
};

/// Reads the directory of an archive that is open for reading, with sizes beyond 4 GiB. Throws BadArchive
/// when it is damaged, has more than `mostEntries`, or when its entries do not lie one behind the other: two
/// that share bytes unfold one piece of an archive many times.
///
/// The zip library finds its entries too, but does not tell where they lie.
[[nodiscard]] std::vector<Entry> ReadDirectory(QFile& archive, std::uint64_t mostEntries);

} // namespace EditorCommon::Zip
