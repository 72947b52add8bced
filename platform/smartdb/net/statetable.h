// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"
#include "smartdb/net/taskqueue.h"

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

/// The states of all projects of the account, fetched in one request and kept for half a second, so that
/// asking for the state of every project costs one request. Any thread; the request runs on a thread of the
/// table's own.
///
/// Who asks when the table is old waits for the request, but not for long once there has been an answer: the
/// window that asks stands still meanwhile. A server that has kept somebody waiting is not waited for again
/// before it has answered; what it said last counts until then. That it could not be asked is kept for half a
/// second too.
class StateTable
{
public:
    explicit StateTable(http::Client& client);
    /// Waits for a request that is under way: the client should have been cancelled.
    ~StateTable();

    struct Answer {
        http::Fault fault; ///< why the server could not be asked; the state means nothing then
        ServerState state;
    };

    /// The state of a project. May wait for the server.
    [[nodiscard]] Answer find(const std::string& guid);

    /// The same without waiting: nothing when the server has to be asked.
    [[nodiscard]] std::optional<Answer> known(const std::string& guid);

    /// What is known has become old: the next question asks the server.
    void expire();

    /// Makes what is known old when it goes: after an operation that has changed something on the server,
    /// however it ended.
    class Expiry
    {
    public:
        explicit Expiry(StateTable& table)
            : m_table(table)
        {
        }
        Expiry(const Expiry&) = delete;
        Expiry& operator=(const Expiry&) = delete;
        ~Expiry() { m_table.expire(); }

    private:
        StateTable& m_table;
    };

    /// What is known belongs to somebody else and does not count any more. Begins to ask at once, so that the
    /// first question finds an answer.
    void startAnew();

private:
    using Clock = std::chrono::steady_clock;
    using States = std::unordered_map<std::string, ServerState>;

    [[nodiscard]] bool isFreshFor(Clock::time_point asked) const;
    [[nodiscard]] std::optional<Clock::time_point> lastMoment(Clock::time_point asked) const;
    [[nodiscard]] Answer answerFor(const std::string& guid) const;
    [[nodiscard]] Answer lateAnswerFor(const std::string& guid) const;
    void ask();
    void fetch();
    void take(const http::Reply& reply);

    http::Client& m_client;
    std::mutex m_mutex; ///< protects everything below but the thread; not held while the server is asked
    std::condition_variable m_hasChanged;
    bool m_isAsking = false;
    bool m_isSlow = false;          ///< somebody has waited in vain since the last answer
    std::uint64_t m_generation = 0; ///< grows when what is known is not fresh any more
    bool m_isFresh = false;
    Clock::time_point m_asOf; ///< what is fresh is at least as new as this
    http::Fault m_fault;
    std::optional<States> m_states; ///< nothing before the first answer
    std::string m_etag;
    TaskQueue m_thread; // last: it uses all of the above
};

} // namespace ZRSmartDB
