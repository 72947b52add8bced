// SPDX-License-Identifier: MIT
#include "smartdb/net/piecefetch.h"

#include "smartdb/lasterror.h"
#include "wire/piecestream.h"

#include <cerrno>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

namespace ZRSmartDB
{

namespace
{

constexpr unsigned connections = 2;
constexpr std::uint64_t batchBytes = 32U << 20U;
constexpr int attempts = 3;

http::Fault CannotWrite(const std::filesystem::path& file, int error)
{
    return {localcode::cannotWrite,
            "the file " + file.string() + " cannot be written: " + std::generic_category().message(error)};
}

/// A file that pieces are written to at their places.
class Target
{
public:
    explicit Target(std::filesystem::path file)
        : m_file(std::move(file))
    {
        m_descriptor = ::open(m_file.c_str(), O_WRONLY | O_CLOEXEC);
        if (m_descriptor < 0)
            m_fault = CannotWrite(m_file, errno);
    }
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;
    ~Target()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }

    [[nodiscard]] bool write(std::span<const std::byte> bytes, std::uint64_t offset)
    {
        while (!m_fault && !bytes.empty()) {
            const auto written =
                ::pwrite(m_descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset));
            if (written < 0 && errno == EINTR)
                continue;
            if (written < 0) {
                m_fault = CannotWrite(m_file, errno);
                break;
            }
            bytes = bytes.subspan(static_cast<std::size_t>(written));
            offset += static_cast<std::uint64_t>(written);
        }
        return !m_fault;
    }

    [[nodiscard]] const http::Fault& fault() const { return m_fault; }

private:
    std::filesystem::path m_file;
    int m_descriptor;
    http::Fault m_fault;
};

bool IsPassing(const http::Fault& fault)
{
    return fault.code == http::faultcode::unreachable || fault.code == http::faultcode::timedOut;
}

} // namespace

PieceFetch::PieceFetch(http::Client& client, const std::string& guid, const std::string& root,
                       const wire::Manifest& manifest, std::filesystem::path folder)
    : m_client(client)
    , m_path("/api/v1/projects/" + http::EncodedName(guid) + "/revisions/" + root + "/pieces")
    , m_manifest(manifest)
    , m_folder(std::move(folder))
{
}

http::Fault PieceFetch::run()
{
    if (auto fault = makeFiles())
        return fault;
    planBatches();
    std::vector<std::thread> helpers;
    for (unsigned i = 1; i < connections && i < m_batches.size(); ++i)
        helpers.emplace_back([this] { work(); });
    work();
    for (auto& helper : helpers)
        helper.join();
    return m_fault;
}

std::filesystem::path PieceFetch::pathOf(const wire::FileEntry& file) const
{
    return m_folder / std::filesystem::u8path(file.path);
}

http::Fault PieceFetch::makeFiles() const
{
    for (const auto& file : m_manifest.files) {
        std::error_code error;
        const auto path = pathOf(file);
        std::filesystem::create_directories(path.parent_path(), error);
        const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, file.mode);
        if (descriptor < 0)
            return CannotWrite(path, errno);
        ::close(descriptor);
    }
    return {};
}

void PieceFetch::planBatches()
{
    for (std::uint32_t f = 0; f < m_manifest.files.size(); ++f) {
        const auto& pieces = m_manifest.files[f].pieces;
        std::uint64_t offset = 0;
        for (std::uint32_t first = 0; first < pieces.size();) {
            Batch batch{{f, first, 0}, offset};
            std::uint64_t bytes = 0;
            while (first < pieces.size() && bytes < batchBytes) {
                bytes += pieces[first].size;
                ++first;
                ++batch.run.count;
            }
            offset += bytes;
            m_batches.push_back(batch);
        }
    }
}

bool PieceFetch::takeBatch(Batch& batch)
{
    const std::lock_guard lock(m_mutex);
    if (m_fault || m_nextBatch >= m_batches.size())
        return false;
    batch = m_batches[m_nextBatch++];
    return true;
}

void PieceFetch::fail(http::Fault fault)
{
    const std::lock_guard lock(m_mutex);
    if (!m_fault)
        m_fault = std::move(fault);
}

void PieceFetch::work()
{
    Batch batch{};
    while (takeBatch(batch)) {
        if (auto fault = fetch(batch))
            fail(std::move(fault));
    }
}

http::Fault PieceFetch::fetch(Batch batch)
{
    http::Fault fault;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const auto before = batch.run.count;
        fault = fetchOnce(batch);
        if (batch.run.count == 0 || !IsPassing(fault))
            return fault;
        // What came before the connection broke stays; only attempts that brought nothing are counted.
        if (batch.run.count < before)
            attempt = 0;
    }
    return fault;
}

http::Fault PieceFetch::fetchOnce(Batch& batch)
{
    const auto& file = m_manifest.files[batch.run.file];
    Target target(pathOf(file));
    if (target.fault())
        return target.fault();
    bool isWrong = false;
    wire::PieceStreamReader reader([&](std::span<const std::byte> bytes) {
        if (isWrong || batch.run.count == 0 || target.fault()) {
            isWrong = true;
            return;
        }
        const auto& piece = file.pieces[batch.run.first];
        isWrong = bytes.size() != piece.size || wire::DigestOf(bytes) != piece.name;
        if (isWrong || !target.write(bytes, batch.offset))
            return;
        batch.offset += bytes.size();
        ++batch.run.first;
        --batch.run.count;
    });
    http::Request request;
    request.method = "POST";
    request.path = m_path;
    request.contentType = "application/x-torvo-runs";
    request.body = wire::EncodeRuns({&batch.run, 1});
    request.timeout = std::chrono::seconds(0);
    request.largestReply = batchBytes + batch.run.count * 64ULL + wire::maximumPieceSize;
    request.take = [&](std::span<const std::byte> bytes) {
        return reader.feed(bytes) && !isWrong && !target.fault();
    };
    const auto reply = m_client.send(request);
    if (target.fault())
        return target.fault();
    if (reply.fault)
        return reply.fault;
    if (isWrong || batch.run.count > 0 || !reader.isComplete())
        return {http::faultcode::badReply, "the project server sent other data than the project consists of"};
    return {};
}

} // namespace ZRSmartDB
