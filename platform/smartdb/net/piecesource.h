// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"
#include "smartdb/net/revisionplan.h"
#include "wire/manifest.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace ZRSmartDB
{

/// Bytes of a revision, several pieces together.
using Packet = std::vector<std::byte>;

/// Packets that are used again: getting fresh memory for each costs as much as filling it. Any thread.
class PacketPool
{
public:
    [[nodiscard]] Packet take();
    void give(Packet packet);

private:
    std::mutex m_mutex; ///< protects the packets
    std::vector<Packet> m_packets;
};

/// Fetches one batch of pieces by a thread of its own and checks each piece against its name before it gives
/// it on. A connection that breaks is tried again from the first piece that is missing.
///
/// It never holds more than its batch.
class PieceSource
{
public:
    /// `path` is the request's path. Client, manifest and pool must outlive the source.
    PieceSource(http::Client& client, std::string path, const wire::Manifest& manifest, Batch batch,
                PacketPool& pool);
    PieceSource(const PieceSource&) = delete;
    PieceSource& operator=(const PieceSource&) = delete;
    /// Gives up what has not come yet.
    ~PieceSource();

    /// Waits for the next bytes of the batch; nothing at its end. Throws Failure when they cannot be had.
    [[nodiscard]] std::optional<Packet> next();

private:
    void run();
    [[nodiscard]] http::Fault fetch();
    [[nodiscard]] http::Fault fetchOnce();
    [[nodiscard]] bool take(BatchCursor& cursor, std::span<const std::byte> bytes);
    void push();

    http::Client& m_client;
    const std::string m_path;
    const wire::Manifest& m_manifest;
    PacketPool& m_pool;
    std::atomic<bool> m_isGivenUp = false;

    // On the source's thread only.
    Batch m_batch; ///< what is still missing
    Packet m_filling;

    std::mutex m_mutex; ///< protects what follows
    std::condition_variable m_hasChanged;
    std::deque<Packet> m_packets;
    http::Fault m_fault;
    bool m_isDone = false;

    std::thread m_thread; // last: it uses all of the above
};

} // namespace ZRSmartDB
