// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

/// An HTTP server on the loopback address that answers every request with the bytes that a test gives, and
/// then closes the connection.
class ScriptedServer
{
public:
    struct Answer {
        std::string bytes;                ///< the whole answer, status line and header included
        int millisecondsBetweenBytes = 0; ///< 0: all at once
        bool neverEnds = false;           ///< the connection stays open after the last byte
    };
    using Script = std::function<Answer(const std::string& path)>;

    explicit ScriptedServer(Script script);
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;
    ~ScriptedServer();

    [[nodiscard]] std::string address() const { return "http://127.0.0.1:" + std::to_string(m_port); }

    /// The paths that were asked for.
    [[nodiscard]] std::vector<std::string> paths() const;

    /// An answer with a body.
    [[nodiscard]] static Answer reply(int status, const std::string& body, const std::string& header = {});

private:
    void serve();
    void answer(int connection);

    Script m_script;
    int m_listener = -1;
    int m_port = 0;
    std::atomic<bool> m_isStopped = false;
    mutable std::mutex m_mutex; ///< protects what follows
    std::vector<std::string> m_paths;
    std::vector<std::thread> m_connections;
    std::thread m_thread; // last: it uses all of the above
};
