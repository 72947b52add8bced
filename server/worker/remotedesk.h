// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"
#include "server/worker/jobdesk.h"

#include <chrono>
#include <cstdint>
#include <functional>

namespace server
{

/// The server does not know the key of this worker: nothing that it asks will be answered.
class KeyRefused : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The jobs of a server on another machine. What a broken connection has stopped is tried again for as long
/// as the job is still this worker's.
class RemoteDesk : public JobDesk
{
public:
    /// The client knows the server's address and the key; no two workers have one `name`. `isToEnd` is asked
    /// often.
    RemoteDesk(http::Client& client, const std::string& name, std::function<bool()> isToEnd);

    /// Throws KeyRefused.
    [[nodiscard]] std::optional<Job> take() override;
    [[nodiscard]] bool keep(const Job& job, double percent) override;
    [[nodiscard]] std::filesystem::path archive(const Job& job, const std::filesystem::path& folder) override;
    void publish(const Job& job, const std::filesystem::path& folder, const std::string& model) override;
    void fail(const Job& job, const std::string& reason) override;
    void giveBack(const Job& job) override;

private:
    using Clock = std::chrono::steady_clock;

    [[nodiscard]] std::string pathOf(const Job& job, const std::string& what) const;
    /// Asks until there is an answer. Throws JobLost, JobStopped, and std::runtime_error when the server
    /// refuses.
    http::Reply ask(const http::Request& request);
    [[nodiscard]] bool isStillOurs() const { return Clock::now() - m_heard < m_lease; }
    void sendFile(const Job& job, const std::filesystem::path& file, const std::string& path,
                  std::uint64_t size);

    http::Client& m_client;
    std::string m_jobs; ///< the path of this worker's requests
    std::function<bool()> m_isToEnd;
    std::uint64_t m_archiveSize = 0;
    std::string m_archiveMd5;
    std::chrono::seconds m_lease{0};
    Clock::time_point m_heard; ///< when the server has last said that the job is this worker's
};

} // namespace server
