// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"
#include "smartdb/net/piecesource.h"
#include "smartdb/net/progress.h"
#include "smartdb/net/revisionplan.h"
#include "wire/manifest.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace ZRSmartDB
{

/// The bytes of many pieces of a revision, in their order, as one stream. Keeps two requests under way, so
/// that the line is never idle; together they bound the memory. One thread.
class FetchStream
{
public:
    /// Client, manifest and progress must outlive the stream.
    FetchStream(http::Client& client, const std::string& guid, const wire::Manifest& manifest,
                std::vector<Batch> batches, Progress& progress);

    /// Gives the next `size` bytes to `take`, in parts. Throws Failure when they cannot be had.
    void read(std::uint64_t size, const std::function<void(std::span<const std::byte>)>& take);

    /// Throws Failure when the server sends more than was asked for.
    void finish();

private:
    [[nodiscard]] bool nextPacket();

    http::Client& m_client;
    const std::string m_path;
    const wire::Manifest& m_manifest;
    std::vector<Batch> m_batches;
    Progress& m_progress;
    std::size_t m_nextBatch = 0;
    PacketPool m_pool;
    std::deque<PieceSource> m_sources; // behind the pool that they use
    Packet m_packet;
    std::size_t m_used = 0; ///< of the packet
};

} // namespace ZRSmartDB
