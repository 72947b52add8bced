// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"
#include "wire/manifest.h"

#include <atomic>
#include <filesystem>
#include <mutex>
#include <string>
#include <vector>

namespace ZRSmartDB
{

/// Fetches the files of a revision into a folder: pieces in large requests, on two connections at once, so
/// that receiving, checking and writing overlap. Every piece is checked against its name before it counts.
class PieceFetch
{
public:
    /// `guid` and `root` name the revision that `manifest` describes. `folder` must exist and be empty.
    PieceFetch(http::Client& client, const std::string& guid, const std::string& root,
               const wire::Manifest& manifest, std::filesystem::path folder);

    /// Waits until all files stand in the folder, or gives the first reason why they do not.
    [[nodiscard]] http::Fault run();

private:
    /// A stretch of pieces that one request brings.
    struct Batch {
        wire::PieceRun run;
        std::uint64_t offset; ///< of the first piece in its file
    };

    [[nodiscard]] http::Fault makeFiles() const;
    void planBatches();
    void work();
    [[nodiscard]] bool takeBatch(Batch& batch);
    [[nodiscard]] http::Fault fetch(Batch batch);
    [[nodiscard]] http::Fault fetchOnce(Batch& batch);
    void fail(http::Fault fault);
    [[nodiscard]] std::filesystem::path pathOf(const wire::FileEntry& file) const;

    http::Client& m_client;
    std::string m_path;
    const wire::Manifest& m_manifest;
    std::filesystem::path m_folder;
    std::vector<Batch> m_batches;
    std::mutex m_mutex; ///< protects the two below
    std::size_t m_nextBatch = 0;
    http::Fault m_fault;
};

} // namespace ZRSmartDB
