// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace ZRSmartDB
{

/// How a project stands on the server.
struct ServerState {
    std::string status = "2"; ///< "-1", "0", "1", "2" (not there) or "3"
    std::string head;         ///< name of the newest revision, empty when there is none

    friend bool operator==(const ServerState&, const ServerState&) = default;
};

/// The states of all projects of the account, fetched in one request and kept for half a second, so that asking for the
/// state of every project costs one request. Any thread; whoever asks first when the table is old fetches it, and the
/// others wait for him.
///
/// That the server could not be asked is kept for half a second too: a server that does not answer must not keep every
/// project waiting.
class StateTable
{
public:
    explicit StateTable(http::Client& client)
        : m_client(client)
    {
    }

    struct Answer {
        http::Fault fault; ///< why the server could not be asked; the state means nothing then
        ServerState state;
    };

    /// The state of a project. Waits for the server when the table is old.
    [[nodiscard]] Answer find(const std::string& guid);

    /// The same without waiting: nothing when the server has to be asked.
    [[nodiscard]] std::optional<Answer> known(const std::string& guid);

    /// The next question asks the server, whatever the age of the table.
    void forget();

private:
    using Clock = std::chrono::steady_clock;
    using States = std::unordered_map<std::string, ServerState>;

    [[nodiscard]] bool isFreshFor(Clock::time_point asked) const;
    [[nodiscard]] Answer answerFor(const std::string& guid) const;
    void fetch(std::unique_lock<std::mutex>& lock);
    void take(const http::Reply& reply);

    http::Client& m_client;
    std::mutex m_mutex; ///< protects everything below; not held while the server is asked
    std::condition_variable m_hasChanged;
    bool m_isAsking = false;
    std::uint64_t m_generation = 0; ///< grows when what is known is forgotten
    bool m_isKnown = false;
    Clock::time_point m_asOf; ///< what is known is at least as new as this
    http::Fault m_fault;
    States m_states;
    std::string m_etag;
};

} // namespace ZRSmartDB
