// SPDX-License-Identifier: MIT
#include "smartdb/net/revisionplan.h"

#include <algorithm>
#include <utility>

namespace ZRSmartDB
{

std::vector<Batch> PlanBatches(const wire::Manifest& manifest, std::uint64_t bytes)
{
    std::vector<Batch> batches;
    std::uint64_t left = 0;
    for (std::uint32_t file = 0; file < manifest.files.size(); ++file) {
        const auto& pieces = manifest.files[file].pieces;
        for (std::uint32_t first = 0; first < pieces.size();) {
            if (left == 0) {
                batches.emplace_back();
                left = bytes;
            }
            wire::PieceRun run{file, first, 0};
            for (; first < pieces.size() && left > 0; ++first, ++run.count)
                left -= std::min<std::uint64_t>(left, pieces[first].size);
            batches.back().push_back(run);
        }
    }
    return batches;
}

Batch BatchAfter(const Batch& batch, std::uint32_t count)
{
    Batch rest;
    for (auto run : batch) {
        const auto there = std::min(run.count, count);
        count -= there;
        run.first += there;
        run.count -= there;
        if (run.count > 0)
            rest.push_back(run);
    }
    return rest;
}

BatchCursor::BatchCursor(const wire::Manifest& manifest, Batch batch)
    : m_manifest(manifest)
    , m_batch(std::move(batch))
{
}

const wire::Piece& BatchCursor::piece() const
{
    const auto& run = m_batch[m_run];
    return m_manifest.files[run.file].pieces[run.first + m_inRun];
}

void BatchCursor::advance()
{
    ++m_passed;
    if (++m_inRun < m_batch[m_run].count)
        return;
    m_inRun = 0;
    ++m_run;
}

} // namespace ZRSmartDB
