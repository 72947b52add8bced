// SPDX-License-Identifier: MIT
#include "smartdb/net/piecesource.h"

#include "smartdb/failure.h"
#include "wire/digest.h"
#include "wire/piecestream.h"

#include <utility>

namespace ZRSmartDB
{

namespace
{

constexpr std::size_t packetBytes = 1U << 20U;
constexpr int attempts = 3;

http::Fault WrongData()
{
    return {http::faultcode::badReply, "the project server sent other data than the project consists of"};
}

bool MayPass(const http::Fault& fault)
{
    return fault.code == http::faultcode::unreachable || fault.code == http::faultcode::timedOut;
}

/// The longest reply that can hold a batch.
std::size_t LongestReply(const wire::Manifest& manifest, const Batch& batch)
{
    std::size_t bytes = 0;
    for (BatchCursor cursor(manifest, batch); !cursor.isAtEnd(); cursor.advance())
        bytes += cursor.piece().size + wire::frameOverhead;
    return bytes;
}

} // namespace

Packet PacketPool::take()
{
    const std::lock_guard lock(m_mutex);
    if (m_packets.empty()) {
        Packet packet;
        packet.reserve(packetBytes + wire::maximumPieceSize);
        return packet;
    }
    auto packet = std::move(m_packets.back());
    m_packets.pop_back();
    packet.clear();
    return packet;
}

void PacketPool::give(Packet packet)
{
    const std::lock_guard lock(m_mutex);
    m_packets.push_back(std::move(packet));
}

PieceSource::PieceSource(http::Client& client, std::string path, const wire::Manifest& manifest, Batch batch,
                         PacketPool& pool)
    : m_client(client)
    , m_path(std::move(path))
    , m_manifest(manifest)
    , m_pool(pool)
    , m_batch(std::move(batch))
    , m_filling(pool.take())
    , m_thread([this] { run(); })
{
}

PieceSource::~PieceSource()
{
    m_isGivenUp = true;
    m_thread.join();
}

std::optional<Packet> PieceSource::next()
{
    std::unique_lock lock(m_mutex);
    m_hasChanged.wait(lock, [this] { return m_isDone || !m_packets.empty(); });
    if (!m_packets.empty()) {
        auto packet = std::move(m_packets.front());
        m_packets.pop_front();
        return packet;
    }
    if (m_fault)
        throw Failure(m_fault);
    return std::nullopt;
}

void PieceSource::run()
{
    http::Fault fault;
    try {
        fault = fetch();
    } catch (const std::exception& exception) {
        fault = {localcode::badInput, exception.what()};
    }
    push();
    const std::lock_guard lock(m_mutex);
    m_fault = std::move(fault);
    m_isDone = true;
    m_hasChanged.notify_one();
}

http::Fault PieceSource::fetch()
{
    http::Fault fault;
    for (int failed = 0; failed < attempts && !m_batch.empty();) {
        const auto before = m_batch;
        fault = fetchOnce();
        if (fault && !MayPass(fault))
            return fault;
        // What came before the connection broke stays; only attempts that brought nothing are counted.
        failed = m_batch == before ? failed + 1 : 0;
    }
    return m_batch.empty() ? http::Fault() : fault;
}

http::Fault PieceSource::fetchOnce()
{
    BatchCursor cursor(m_manifest, m_batch);
    bool isWrong = false;
    wire::PieceStreamReader reader(
        [&](std::span<const std::byte> bytes) { isWrong = isWrong || !take(cursor, bytes); });

    http::Request request;
    request.method = "POST";
    request.path = m_path;
    request.contentType = "application/x-torvo-runs";
    request.body = wire::EncodeRuns(m_batch);
    request.timeout = std::chrono::seconds(0);
    request.largestReply = LongestReply(m_manifest, m_batch);
    request.take = [&](std::span<const std::byte> bytes) { return reader.feed(bytes) && !isWrong; };
    request.isGivenUp = &m_isGivenUp;
    const auto reply = m_client.send(request);

    const bool isWhole = cursor.isAtEnd();
    m_batch = BatchAfter(m_batch, cursor.passed());
    if (isWrong)
        return WrongData();
    if (reply.fault)
        return reply.fault;
    return isWhole && reader.isComplete() ? http::Fault() : WrongData();
}

bool PieceSource::take(BatchCursor& cursor, std::span<const std::byte> bytes)
{
    if (cursor.isAtEnd())
        return false;
    const auto& piece = cursor.piece();
    if (bytes.size() != piece.size || wire::DigestOf(bytes) != piece.name)
        return false;
    cursor.advance();
    m_filling.insert(m_filling.end(), bytes.begin(), bytes.end());
    if (m_filling.size() >= packetBytes)
        push();
    return true;
}

void PieceSource::push()
{
    if (m_filling.empty())
        return;
    const std::lock_guard lock(m_mutex);
    m_packets.push_back(std::exchange(m_filling, m_pool.take()));
    m_hasChanged.notify_one();
}

} // namespace ZRSmartDB
