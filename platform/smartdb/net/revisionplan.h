// SPDX-License-Identifier: MIT
#pragma once

#include "wire/manifest.h"

#include <cstdint>
#include <vector>

namespace ZRSmartDB
{

/// Pieces that one request asks for, in the order of the revision.
using Batch = std::vector<wire::PieceRun>;

/// A request for more would keep too much in memory while it is under way.
inline constexpr std::uint64_t batchBytes = 16U << 20U;

/// All pieces of a revision, a run for each file that has any.
[[nodiscard]] Batch AllRuns(const wire::Manifest& manifest);

/// The bytes of all files of a revision.
[[nodiscard]] std::uint64_t BytesOf(const wire::Manifest& manifest);

/// Cuts runs of pieces into batches of about `bytes` bytes, over the borders of files.
[[nodiscard]] std::vector<Batch> PlanBatches(const wire::Manifest& manifest, const Batch& runs,
                                             std::uint64_t bytes);

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
