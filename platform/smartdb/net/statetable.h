// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"

#include <chrono>
#include <mutex>
#include <string>
#include <unordered_map>

namespace ZRSmartDB
{

/// How a project stands on the server.
struct ServerState {
    std::string status = "2"; ///< "-1", "0", "1", "2" (not there) or "3"
    std::string head;         ///< name of the newest revision, empty when there is none
};

/// The states of all projects of the account, fetched in one request and kept for half a second, so that
/// asking for the state of every project costs one request. Any thread; whoever asks first when the table is
/// old fetches it, and the others wait for him.
class StateTable
{
public:
    explicit StateTable(http::Client& client)
        : m_client(client)
    {
    }

    /// The state of a project. `fault` is set when the server could not be asked; the state means nothing
    /// then.
    [[nodiscard]] ServerState find(const std::string& guid, http::Fault& fault);

    /// True when find would not ask the server.
    [[nodiscard]] bool isFresh();

    /// The next question asks the server, whatever the age of the table.
    void forget();

private:
    using Clock = std::chrono::steady_clock;

    [[nodiscard]] bool isFreshAt(Clock::time_point now) const;
    [[nodiscard]] http::Fault fetch();

    http::Client& m_client;
    std::mutex m_mutex; ///< protects everything below, also while it is fetched
    std::unordered_map<std::string, ServerState> m_states;
    std::string m_etag;
    Clock::time_point m_askedAt;
    bool m_isKnown = false;
};

} // namespace ZRSmartDB
