// SPDX-License-Identifier: MIT
#pragma once

#include "server/http/reply.h"
#include "server/projects/revisioncache.h"
#include "server/storage/packs.h"
#include "wire/piecestream.h"

#include <memory>
#include <string>
#include <vector>

namespace server
{

/// The bytes of a file of a revision, unpacked as they are asked for: about 1 MiB of memory however large the
/// file is. One thread at a time.
class FileStream : public BodySource
{
public:
    /// `entry` is one of the revision's.
    FileStream(PackReader& packs, std::shared_ptr<const LoadedRevision> revision,
               const wire::FileEntry& entry);

    [[nodiscard]] std::uint64_t size() const override { return m_size; }
    /// Throws std::runtime_error when the packs do not have the file.
    [[nodiscard]] std::string next() override;

private:
    void readStep();

    PackReader& m_packs;
    std::shared_ptr<const LoadedRevision> m_revision; ///< keeps the layout's pieces
    std::uint64_t m_size;
    std::uint64_t m_given = 0;
    std::vector<PackRange> m_ranges;
    std::size_t m_range = 0;  ///< the one that is read
    std::uint64_t m_done = 0; ///< of that one
    std::string m_unpacked;
    wire::PieceStreamReader m_reader;
};

} // namespace server
