// SPDX-License-Identifier: MIT
#pragma once

#include "wire/manifest.h"

#include <cstdint>
#include <vector>

namespace ZRSmartDB
{

/// Pieces that one request asks for, in the order of the revision.
using Batch = std::vector<wire::PieceRun>;

/// Cuts all pieces of a revision into batches of about `bytes` bytes, over the borders of files.
[[nodiscard]] std::vector<Batch> PlanBatches(const wire::Manifest& manifest, std::uint64_t bytes);

/// What is left of a batch when its first `count` pieces are there.
[[nodiscard]] Batch BatchAfter(const Batch& batch, std::uint32_t count);

/// Goes over the pieces of a batch in order.
class BatchCursor
{
public:
    /// `manifest` must outlive the cursor.
    BatchCursor(const wire::Manifest& manifest, Batch batch);

    [[nodiscard]] bool isAtEnd() const { return m_run == m_batch.size(); }

    /// The piece that comes next; not at the end.
    [[nodiscard]] const wire::Piece& piece() const;
    void advance();

    [[nodiscard]] std::uint32_t passed() const { return m_passed; }

private:
    const wire::Manifest& m_manifest;
    Batch m_batch;
    std::size_t m_run = 0;
    std::uint32_t m_inRun = 0;
    std::uint32_t m_passed = 0;
};

} // namespace ZRSmartDB
