// SPDX-License-Identifier: MIT
#include "smartdb/net/piecesender.h"

#include "smartdb/failure.h"
#include "smartdb/net/servercodes.h"
#include "wire/piecestream.h"

#include <thread>
#include <utility>

namespace ZRSmartDB
{

namespace
{

constexpr unsigned threads = 2;
constexpr std::size_t batchBytes = 3U << 20U; ///< before compression; the server takes 4 MiB
constexpr int attempts = 4;
constexpr std::chrono::milliseconds restAfterBreak(300);

bool MayPass(const http::Fault& fault)
{
    return fault.code == http::faultcode::unreachable || fault.code == http::faultcode::timedOut;
}

} // namespace

http::Reply SendUntilAnswered(http::Client& client, const http::Request& request)
{
    const auto isGivenUp = [&] { return request.isGivenUp != nullptr && *request.isGivenUp; };
    auto reply = client.send(request);
    for (int attempt = 1; attempt < attempts && MayPass(reply.fault) && !isGivenUp(); ++attempt) {
        std::this_thread::sleep_for(restAfterBreak * attempt);
        reply = client.send(request);
    }
    return reply;
}

PieceSender::PieceSender(http::Client& client, std::string path, const LocalTree& tree,
                         std::span<const PiecePlace> pieces, Progress& progress)
    : m_client(client)
    , m_path(std::move(path))
    , m_tree(tree)
    , m_pieces(pieces)
    , m_progress(progress)
{
}

Sending PieceSender::run()
{
    std::vector<std::thread> helpers;
    for (unsigned i = 1; i < threads && m_pieces.size() > 1; ++i)
        helpers.emplace_back([this] { work(); });
    work();
    for (auto& helper : helpers)
        helper.join();
    if (m_fault)
        throw Failure(m_fault);
    return m_end;
}

void PieceSender::work()
{
    try {
        sendBatches();
    } catch (const std::exception& exception) {
        stopWith(Sending::done, {localcode::badInput, exception.what()});
    }
}

void PieceSender::sendBatches()
{
    PieceReader reader(m_tree);
    http::Request request;
    request.method = "POST";
    request.path = m_path + "/pieces";
    request.contentType = "application/x-torvo-pieces";
    request.timeout = std::chrono::seconds(0);
    request.isGivenUp = &m_isGivenUp;
    while (!m_isGivenUp) {
        const auto batch = takeBatch();
        if (batch.empty())
            return;
        request.body.clear();
        std::uint64_t bytes = 0;
        for (const auto& place : batch) {
            const auto piece = reader.read(place);
            if (!piece)
                return stopWith(Sending::fileHasChanged, {});
            wire::AppendFrame(request.body, *piece);
            bytes += place.size;
        }
        const auto reply = SendUntilAnswered(m_client, request);
        if (reply.fault.code == servercode::uploadGone)
            return stopWith(Sending::uploadIsGone, {});
        if (reply.fault)
            return stopWith(Sending::done, reply.fault);
        m_progress.add(bytes);
    }
}

std::span<const PiecePlace> PieceSender::takeBatch()
{
    const std::lock_guard lock(m_mutex);
    const auto first = m_next;
    std::size_t bytes = 0;
    while (m_next < m_pieces.size() && (bytes == 0 || bytes + m_pieces[m_next].size <= batchBytes))
        bytes += m_pieces[m_next++].size;
    return m_pieces.subspan(first, m_next - first);
}

void PieceSender::stopWith(Sending end, const http::Fault& fault)
{
    m_isGivenUp = true;
    const std::lock_guard lock(m_mutex);
    if (m_fault || m_end != Sending::done)
        return;
    m_end = end;
    m_fault = fault;
}

} // namespace ZRSmartDB
