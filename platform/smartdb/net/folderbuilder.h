// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"
#include "smartdb/disk/disk.h"
#include "smartdb/net/fetchstream.h"
#include "smartdb/net/localtree.h"
#include "wire/syncplan.h"

#include <filesystem>
#include <string>
#include <unordered_map>
#include <vector>

namespace ZRSmartDB
{

/// Puts the files of a revision together in a new folder, from what an older revision of the project on this
/// machine has and from the server. Each piece and each file is checked. One thread; operations throw
/// Failure.
class FolderBuilder
{
public:
    /// Everything must outlive the builder. `folder` must exist and be empty.
    FolderBuilder(http::Client& client, Disk& disk, const LocalTree& have, const wire::Manifest& want,
                  std::string guid, std::filesystem::path folder);

    void build();

private:
    class Writer;

    void buildFile(const wire::FileStep& step, FetchStream& stream);
    void takeLocal(const wire::FileEntry& file, std::uint32_t index, const wire::PieceOrigin& origin,
                   const wire::FileStep& step, Writer& writer);
    void fetchAlone(const wire::FileStep& step, std::uint32_t index, Writer& writer);
    [[nodiscard]] std::uint64_t offsetOf(std::uint32_t file, std::uint32_t piece);

    http::Client& m_client;
    Disk& m_disk;
    const LocalTree& m_have;
    const wire::Manifest& m_want;
    const std::string m_guid;
    const std::filesystem::path m_folder;
    PieceReader m_reader;
    std::unordered_map<std::uint32_t, std::vector<std::uint64_t>>
        m_offsets; ///< of the pieces of a local file
};

} // namespace ZRSmartDB
