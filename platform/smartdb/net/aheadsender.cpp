// SPDX-License-Identifier: MIT
#include "smartdb/net/aheadsender.h"

#include "smartdb/failure.h"
#include "smartdb/net/piecesender.h"
#include "smartdb/net/servercodes.h"
#include "wire/manifestdelta.h"
#include "wire/piecestream.h"

#include <utility>

namespace ZRSmartDB
{

namespace
{

constexpr unsigned threads = 2;
constexpr std::size_t batchBytes = 3U << 20U; ///< before compression; the server takes 4 MiB
constexpr std::size_t mostWaiting = 4;        ///< batches
constexpr std::chrono::seconds askTime(60);

const http::Fault wrongBits{http::faultcode::badReply,
                            "the project server answered with something that tells no missing pieces"};

} // namespace

AheadSender::AheadSender(http::Client& client, Begin begin, Progress& progress)
    : m_client(client)
    , m_begin(std::move(begin))
    , m_progress(progress)
{
    for (unsigned i = 0; i < threads; ++i)
        m_threads.emplace_back([this] { work(); });
}

AheadSender::~AheadSender()
{
    giveUp();
}

void AheadSender::take(const wire::Piece& piece, std::span<const std::byte> bytes)
{
    std::unique_lock lock(m_mutex);
    m_hasChanged.wait(lock, [this] { return m_full.size() < mostWaiting || m_isGivenUp; });
    throwFault();
    if (m_isGivenUp)
        return;
    if (m_filling.bytes.size() + bytes.size() > batchBytes && !m_filling.pieces.empty()) {
        m_full.push_back(std::exchange(m_filling, {}));
        m_hasBatches = true;
        m_hasChanged.notify_all();
        if (!m_spare.empty()) {
            m_filling = std::move(m_spare.back());
            m_spare.pop_back();
        }
    }
    if (m_filling.bytes.capacity() < batchBytes)
        m_filling.bytes.reserve(batchBytes);
    m_filling.pieces.push_back(piece);
    m_filling.bytes.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

void AheadSender::finish()
{
    {
        const std::lock_guard lock(m_mutex);
        // Less than a batch is not worth it; it travels when the files have been told.
        if (m_hasBatches && !m_filling.pieces.empty())
            m_full.push_back(std::exchange(m_filling, {}));
        m_isComplete = true;
        m_hasChanged.notify_all();
    }
    join();
    throwFault();
}

void AheadSender::giveUp()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isGivenUp = true;
        m_hasChanged.notify_all();
    }
    join();
}

void AheadSender::join()
{
    for (auto& thread : m_threads) {
        if (thread.joinable())
            thread.join();
    }
}

void AheadSender::throwFault()
{
    if (m_fault)
        throw Failure(m_fault);
}

void AheadSender::work() noexcept
{
    Batch batch;
    http::Request request;
    request.method = "POST";
    request.isGivenUp = &m_isGivenUp;
    while (next(batch)) {
        try {
            if (!send(batch, request))
                stopWith({});
        } catch (const Failure& failure) {
            stopWith(failure.fault());
        } catch (const std::exception& exception) {
            stopWith({localcode::badInput, exception.what()});
        }
    }
}

bool AheadSender::next(Batch& batch)
{
    std::unique_lock lock(m_mutex);
    if (batch.bytes.capacity() > 0) {
        batch.bytes.clear();
        batch.pieces.clear();
        m_spare.push_back(std::move(batch));
    }
    m_hasChanged.wait(lock, [this] { return !m_full.empty() || m_isComplete || m_isGivenUp; });
    if (m_full.empty() || m_isGivenUp)
        return false;
    batch = std::move(m_full.front());
    m_full.pop_front();
    m_hasChanged.notify_all();
    return true;
}

std::string AheadSender::pathOfUpload()
{
    const std::lock_guard lock(m_beginning);
    if (m_path.empty())
        m_path = m_begin();
    return m_path;
}

bool AheadSender::send(const Batch& batch, http::Request& request)
{
    const auto path = pathOfUpload();
    request.path = path + "/wanted";
    request.contentType = "application/x-torvo-names";
    request.body.assign(wire::EncodePieces(batch.pieces));
    request.timeout = askTime;
    auto reply = SendUntilAnswered(m_client, request);
    if (reply.fault.code == servercode::uploadGone)
        return false;
    if (reply.fault)
        throw Failure(reply.fault);
    const auto bits = wire::DecodeBits(reply.body, batch.pieces.size());
    const auto* isWanted = std::get_if<std::vector<bool>>(&bits);
    if (isWanted == nullptr)
        throw Failure(wrongBits);

    request.body.clear();
    request.body.reserve(batch.bytes.size() + batch.pieces.size() * wire::frameOverhead);
    auto rest = std::as_bytes(std::span(batch.bytes));
    for (std::size_t i = 0; i < batch.pieces.size(); ++i) {
        const auto size = batch.pieces[i].size;
        if ((*isWanted)[i])
            wire::AppendFrame(request.body, rest.first(size));
        rest = rest.subspan(size);
    }
    if (!request.body.empty()) {
        request.path = path + "/pieces";
        request.contentType = "application/x-torvo-pieces";
        request.timeout = std::chrono::seconds(0);
        reply = SendUntilAnswered(m_client, request);
        if (reply.fault.code == servercode::uploadGone)
            return false;
        if (reply.fault)
            throw Failure(reply.fault);
    }
    m_progress.add(batch.bytes.size());
    return true;
}

void AheadSender::stopWith(const http::Fault& fault)
{
    const std::lock_guard lock(m_mutex);
    if (!m_isGivenUp)
        m_fault = fault;
    m_isGivenUp = true;
    m_hasChanged.notify_all();
}

} // namespace ZRSmartDB
