// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <thread>
#include <vector>

namespace bench
{

/// Passes connections on to another port of this machine and counts the bytes of both directions.
class CountingProxy
{
public:
    explicit CountingProxy(int target);
    ~CountingProxy();

    [[nodiscard]] int port() const { return m_port; }

    /// The bytes since the last call.
    [[nodiscard]] std::uint64_t take() { return m_bytes.exchange(0); }

private:
    void accept();
    void pass(int from, int to);
    void serve(int client);

    const int m_target;
    int m_listener = -1;
    int m_port = 0;
    std::atomic<bool> m_isEnding = false;
    std::atomic<std::uint64_t> m_bytes = 0;
    std::mutex m_mutex; ///< protects the connections
    std::vector<std::thread> m_connections;
    std::vector<int> m_sockets;
    std::thread m_thread;
};

} // namespace bench
