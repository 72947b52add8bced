// SPDX-License-Identifier: MIT
#include "smartdb/net/fetchstream.h"

#include "smartdb/failure.h"
#include "smartdb/net/remotetree.h"

#include <algorithm>
#include <utility>

namespace ZRSmartDB
{

namespace
{

constexpr std::size_t requestsAtOnce = 2;

} // namespace

FetchStream::FetchStream(http::Client& client, const std::string& guid, const wire::Manifest& manifest,
                         std::vector<Batch> batches, Progress& progress)
    : m_client(client)
    , m_path(RevisionPath(guid, wire::RootOf(manifest)) + "/pieces")
    , m_manifest(manifest)
    , m_batches(std::move(batches))
    , m_progress(progress)
{
}

bool FetchStream::nextPacket()
{
    if (!m_packet.empty())
        m_pool.give(std::exchange(m_packet, {}));
    m_used = 0;
    while (true) {
        while (m_nextBatch < m_batches.size() && m_sources.size() < requestsAtOnce)
            m_sources.emplace_back(m_client, m_path, m_manifest, std::move(m_batches[m_nextBatch++]), m_pool);
        if (m_sources.empty())
            return false;
        if (auto packet = m_sources.front().next()) {
            m_packet = std::move(*packet);
            m_progress.add(m_packet.size());
            return true;
        }
        m_sources.pop_front();
    }
}

void FetchStream::read(std::uint64_t size, const std::function<void(std::span<const std::byte>)>& take)
{
    while (size > 0) {
        if (m_used == m_packet.size() && !nextPacket())
            throw Failure(http::faultcode::badReply,
                          "the project server sent less data than the project consists of");
        const auto length = std::min<std::uint64_t>(size, m_packet.size() - m_used);
        take(std::span(m_packet).subspan(m_used, static_cast<std::size_t>(length)));
        m_used += static_cast<std::size_t>(length);
        size -= length;
    }
}

void FetchStream::finish()
{
    if (m_used < m_packet.size() || nextPacket())
        throw Failure(http::faultcode::badReply,
                      "the project server sent more data than the project consists of");
}

} // namespace ZRSmartDB
