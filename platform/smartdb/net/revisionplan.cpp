// SPDX-License-Identifier: MIT
#include "smartdb/net/revisionplan.h"

#include <algorithm>
#include <utility>

namespace ZRSmartDB
{

Batch AllRuns(const wire::Manifest& manifest)
{
    Batch runs;
    for (std::uint32_t file = 0; file < manifest.files.size(); ++file) {
        const auto count = static_cast<std::uint32_t>(manifest.files[file].pieces.size());
        if (count > 0)
            runs.push_back({file, 0, count});
    }
    return runs;
}

std::uint64_t BytesOf(const wire::Manifest& manifest)
{
    std::uint64_t bytes = 0;
    for (const auto& file : manifest.files)
        bytes += file.size;
    return bytes;
}

std::vector<Batch> PlanBatches(const wire::Manifest& manifest, const Batch& runs, std::uint64_t bytes)
{
    std::vector<Batch> batches;
    std::uint64_t left = 0;
    for (auto rest : runs) {
        const auto& pieces = manifest.files[rest.file].pieces;
        while (rest.count > 0) {
            if (left == 0) {
                batches.emplace_back();
                left = bytes;
            }
            wire::PieceRun run{rest.file, rest.first, 0};
            for (; rest.count > 0 && left > 0; ++rest.first, --rest.count, ++run.count)
                left -= std::min<std::uint64_t>(left, pieces[rest.first].size);
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
