// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

/// Passes connections on to another port of this machine, and breaks them as it is told.
class CuttingProxy
{
public:
    /// Throws std::runtime_error when it cannot listen.
    explicit CuttingProxy(int target);
    CuttingProxy(const CuttingProxy&) = delete;
    CuttingProxy& operator=(const CuttingProxy&) = delete;
    ~CuttingProxy();

    [[nodiscard]] std::string address() const { return "http://127.0.0.1:" + std::to_string(m_port); }

    /// Nothing is broken from now on; the count begins anew.
    void passAll();

    /// All connections break when so many more bytes have passed, in both directions together. `isForGood`:
    /// later ones break at once; else they pass.
    void cutAfter(std::uint64_t bytes, bool isForGood);

    /// The next `count` requests whose bytes hold `text` reach the server, and its answers are swallowed: the
    /// connection breaks instead. `isForGood` as above, from the last of them on.
    void loseAnswersTo(const std::string& text, int count, bool isForGood);

    /// Whether an answer was swallowed within this time.
    [[nodiscard]] bool waitForLoss(std::chrono::milliseconds time);

    /// The bytes since the last order.
    [[nodiscard]] std::uint64_t bytes() const;

private:
    struct Connection;

    void accept();
    void serve(int client);
    void passRequests(Connection& connection);
    void passAnswers(Connection& connection);
    /// How many of the bytes may pass; fewer than all when the connections are to break behind them.
    [[nodiscard]] std::size_t admit(std::size_t bytes);
    /// False when the connection has ended.
    [[nodiscard]] bool pass(int to, std::string_view bytes);
    /// Whether the answer to what was asked last on this connection goes astray.
    [[nodiscard]] bool swallow(Connection& connection);
    void breakAll();
    void endFinished();

    const int m_target;
    int m_listener = -1;
    int m_port = 0;
    std::thread m_thread;

    mutable std::mutex m_mutex; ///< protects everything below
    std::condition_variable m_hasLost;
    bool m_isEnding = false;
    bool m_isDown = false;
    bool m_isForGood = false;
    std::uint64_t m_bytes = 0;
    std::uint64_t m_cut = 0; ///< 0: no cut
    std::string m_text;
    int m_toLose = 0;
    int m_lost = 0;
    std::vector<std::unique_ptr<Connection>> m_connections;
};
