// SPDX-License-Identifier: MIT
#include "server/worker/remotedesk.h"

#include "server/conversions/archivefolder.h"
#include "server/conversions/portions.h"
#include "server/http/reply.h"
#include "wire/projectfolder.h"

#include <algorithm>
#include <iostream>
#include <thread>

#include <nlohmann/json.hpp>

namespace server
{

namespace
{

using nlohmann::json;

constexpr std::size_t portion = 1U << 20U;
constexpr std::size_t longestReason = 1000;
constexpr std::chrono::milliseconds shortestWait{250};
constexpr std::chrono::milliseconds longestWait{2000};
constexpr std::chrono::milliseconds exchangeTime{30000};
constexpr std::chrono::milliseconds publishTime{60000};
constexpr int mostSendings = 3; ///< of a model of which the server has lost something

/// The server's answer is of no use, which asking again would not change.
class Refused : public std::runtime_error
{
public:
    explicit Refused(const http::Fault& fault)
        : std::runtime_error("the server refuses: " + fault.msg)
        , m_code(fault.code)
    {
    }
    [[nodiscard]] int code() const { return m_code; }

private:
    int m_code;
};

http::Request Put(const std::string& path, std::string body, const char* type)
{
    return {
        .method = "PUT", .path = path, .contentType = type, .body = std::move(body), .timeout = exchangeTime};
}

http::Request Post(const std::string& path, const json& body, std::chrono::milliseconds time = exchangeTime)
{
    return {.method = "POST",
            .path = path,
            .contentType = "application/json",
            .body = body.dump(-1, ' ', false, json::error_handler_t::replace),
            .timeout = time};
}

std::string EncodedPath(const std::string& path)
{
    std::string encoded;
    for (std::size_t start = 0; start <= path.size();) {
        const auto end = std::min(path.find('/', start), path.size());
        encoded += '/' + http::EncodedName(path.substr(start, end - start));
        start = end + 1;
    }
    return encoded;
}

bool IsRefusal(unsigned status)
{
    return status >= 400 && status < 500;
}

/// The server has not got everything that was sent to it.
bool IsInParts(int code)
{
    return code == code::wrongOffset || code == code::archiveIncomplete;
}

} // namespace

RemoteDesk::RemoteDesk(http::Client& client, const std::string& name, std::function<bool()> isToEnd)
    : m_client(client)
    , m_jobs("/api/v1/workers/" + name + "/jobs")
    , m_isToEnd(std::move(isToEnd))
{
}

std::string RemoteDesk::pathOf(const Job& job, const std::string& what) const
{
    return m_jobs + '/' + job.id + what;
}

std::optional<Job> RemoteDesk::take()
{
    const auto asked = Clock::now();
    const auto reply = m_client.send(Post(m_jobs, json::object()));
    if (reply.fault.code == code::wrongKey)
        throw KeyRefused(reply.fault.msg);
    if (reply.fault)
        throw std::runtime_error(reply.fault.msg);
    if (reply.status == 204)
        return std::nullopt;
    try {
        const auto given = json::parse(reply.body);
        Job job;
        job.id = given.at("id");
        job.name = given.at("name");
        job.mode = given.at("mode");
        m_archiveSize = given.at("size");
        m_archiveMd5 = given.at("md5");
        m_lease = std::chrono::seconds(given.at("leaseSeconds").get<std::int64_t>());
        m_heard = asked;
        return job;
    } catch (const json::exception&) {
        throw std::runtime_error("the server gives jobs of another kind: is it of another version?");
    }
}

http::Reply RemoteDesk::ask(const http::Request& request)
{
    for (auto wait = shortestWait;; wait = std::min(2 * wait, longestWait)) {
        if (m_isToEnd())
            throw JobStopped();
        const auto asked = Clock::now();
        auto reply = m_client.send(request);
        if (!reply.fault) {
            m_heard = asked;
            return reply;
        }
        if (reply.fault.code == code::jobMissing)
            throw JobLost(reply.fault.msg);
        if (IsRefusal(reply.status))
            throw Refused(reply.fault);
        if (!isStillOurs())
            throw JobLost("the server was out of reach for too long: " + reply.fault.msg);
        std::this_thread::sleep_for(wait);
    }
}

bool RemoteDesk::keep(const Job& job, double percent)
{
    const auto asked = Clock::now();
    const json body{{"percent", percent}};
    const auto reply = m_client.send(Put(pathOf(job, "/progress"), body.dump(), "application/json"));
    if (!reply.fault)
        m_heard = asked;
    // However long an answer took: it was the server's word.
    return !reply.fault || (reply.fault.code != code::jobMissing && isStillOurs());
}

std::filesystem::path RemoteDesk::archive(const Job& job, const std::filesystem::path& folder)
{
    const ArchiveFolder archives(folder);
    for (std::uint64_t offset = 0; offset < m_archiveSize;) {
        const auto reply =
            ask({.path = pathOf(job, "/archive/") + std::to_string(offset), .timeout = exchangeTime});
        if (reply.body.empty() || reply.body.size() > m_archiveSize - offset)
            throw std::runtime_error("the archive on the server is of another size than it was");
        WritePortion(archives.file(job.id), offset, reply.body, Keeping::whileItRuns);
        offset += reply.body.size();
    }
    if (archives.md5(job.id, m_archiveSize) != m_archiveMd5)
        throw std::runtime_error("the archive was damaged on its way to the worker");
    return archives.file(job.id);
}

void RemoteDesk::sendFile(const Job& job, const std::filesystem::path& file, const std::string& path,
                          std::uint64_t size)
{
    std::uint64_t offset = 0;
    do {
        auto bytes = ReadPortion(file, offset, portion);
        if (bytes.empty() && size > 0)
            throw std::runtime_error("a file of the model cannot be read");
        const auto next = offset + bytes.size();
        (void)ask(Put(pathOf(job, "/model/") + std::to_string(offset) + EncodedPath(path), std::move(bytes),
                      "application/octet-stream"));
        offset = next;
    } while (offset < size);
}

void RemoteDesk::publish(const Job& job, const std::filesystem::path& folder, const std::string& model)
{
    const auto source = folder / ("proj_" + model);
    for (int sendings = 1;; ++sendings) {
        try {
            json files = json::object();
            for (const auto& path : wire::ProjectFiles(source)) {
                const auto file = source / std::filesystem::u8path(path);
                const auto size = std::filesystem::file_size(file);
                sendFile(job, file, path, size);
                files[path] = size;
            }
            (void)ask(Post(pathOf(job, "/publish"), json{{"files", files}}, publishTime));
            return;
        } catch (const Refused& refusal) {
            if (!IsInParts(refusal.code()) || sendings == mostSendings)
                throw;
        }
    }
}

void RemoteDesk::fail(const Job& job, const std::string& reason)
{
    try {
        (void)ask(Post(pathOf(job, "/fail"), json{{"reason", reason.substr(0, longestReason)}}));
    } catch (const std::exception& exception) {
        // The job goes back into the queue when its time is over.
        std::cerr << "job " << job.id << ": its failure could not be told: " << exception.what() << '\n';
    }
}

void RemoteDesk::giveBack(const Job& job)
{
    http::Request request{.method = "DELETE", .path = pathOf(job, ""), .timeout = exchangeTime};
    if (const auto reply = m_client.send(request); reply.fault)
        std::cerr << "job " << job.id << " could not be given back: " << reply.fault.msg << '\n';
}

} // namespace server
