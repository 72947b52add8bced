// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

/// An HTTP server on the loopback address that answers every request with the bytes that a test gives, and
/// then closes the connection, unless the test wants it kept.
class ScriptedServer
{
public:
    struct Answer {
        std::string bytes;                 ///< the whole answer, status line and header included
        int millisecondsBetweenPieces = 0; ///< 0: all at once
        bool neverEnds = false;            ///< the connection stays open after the last byte
        bool takesTheNext = false;         ///< the next request may come on the same connection
        std::size_t pieceSize = 1;         ///< bytes
    };
    using Script = std::function<Answer(const std::string& path)>;

    explicit ScriptedServer(Script script);
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;
    ~ScriptedServer();

    [[nodiscard]] std::string address() const { return "http://127.0.0.1:" + std::to_string(m_port); }

    /// The paths that were asked for.
    [[nodiscard]] std::vector<std::string> paths() const;

    /// The requests as they came, with their headers and bodies.
    [[nodiscard]] std::vector<std::string> requests() const;

    /// How many connections were made to this server, and how many of them it has closed.
    [[nodiscard]] int connectionCount() const { return m_connectionCount; }
    [[nodiscard]] int closedCount() const { return m_closedCount; }

    /// An answer with a body.
    [[nodiscard]] static Answer reply(int status, const std::string& body, const std::string& header = {});

private:
    void serve();
    void serveConnection(int connection);
    void send(int connection, const Answer& answer) const;
    [[nodiscard]] std::string receive(int connection) const;

    Script m_script;
    int m_listener = -1;
    int m_port = 0;
    std::atomic<bool> m_isStopped = false;
    std::atomic<int> m_connectionCount = 0;
    std::atomic<int> m_closedCount = 0;
    mutable std::mutex m_mutex; ///< protects what follows
    std::vector<std::string> m_paths;
    std::vector<std::string> m_requests;
    std::vector<std::thread> m_connections;
    std::thread m_thread; // last: it uses all of the above
};
