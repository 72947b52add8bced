// SPDX-License-Identifier: MIT
#pragma once

#include "http/fault.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace http
{

/// Nothing may take for ever.
struct Limits {
    std::chrono::milliseconds connecting{5000};
    long slowBytes = 512;  ///< an exchange that brings fewer bytes a second than this...
    long slowSeconds = 15; ///< ...for so long is given up
};

/// A request to the project server.
struct Request {
    std::string method = "GET";
    std::string path{}; ///< behind the server's address, for example "/api/v1/projects"; encoded
    std::vector<std::pair<std::string, std::string>> headers{};
    std::string contentType{};
    std::string body{};
    std::chrono::milliseconds timeout{10000}; ///< for the whole exchange; 0: as long as bytes keep coming
    std::size_t largestReply = 64U << 20U;

    /// Takes the bytes of a successful answer as they come; false gives the request up. Without it the bytes
    /// are gathered in Reply::body.
    std::function<bool(std::span<const std::byte>)> take{};

    /// Once it is set the request is given up, within a second. May be null.
    const std::atomic<bool>* isGivenUp = nullptr;
};

struct Reply {
    Fault fault; ///< what went wrong between the two programs, or what the server said; none for 2xx and 304
    unsigned status = 0;
    std::string body;
    std::string etag;
};

/// Requests to one project server. Connections stay open and are used again. Any thread, several at once;
/// every operation waits.
///
/// Requests that change nothing are tried a second time when the connection broke before anything came back.
/// Proxy and TLS settings come from the environment, as libcurl has them.
class Client
{
public:
    Client();
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    ~Client();

    /// The server's address, for example "http://127.0.0.1:8480". False when it is none.
    [[nodiscard]] bool setServer(const std::string& address);
    /// The server's address without a slash at its end; empty before the first one.
    [[nodiscard]] std::string server() const { return settings().server; }
    void setToken(const std::string& token);
    void setCookies(const std::string& cookies);
    void setLimits(const Limits& limits);

    [[nodiscard]] Reply send(const Request& request);

    /// Gives up every request, now and from now on, with the fault `cancelled`. Takes effect within a second.
    void cancel() { m_isCancelled = true; }

    [[nodiscard]] bool isCancelled() const { return m_isCancelled; }

private:
    class Connection;

    struct Settings {
        std::string server;
        std::string token;
        std::string cookies;
        Limits limits{};
    };

    [[nodiscard]] Settings settings() const;
    [[nodiscard]] std::unique_ptr<Connection> lease();
    void giveBack(std::unique_ptr<Connection> connection);

    mutable std::mutex m_mutex; ///< protects the settings and the free connections
    Settings m_settings;
    std::vector<std::unique_ptr<Connection>> m_free;
    std::atomic<bool> m_isCancelled = false;
};

/// Encodes a name for use in a request's path.
[[nodiscard]] std::string EncodedName(std::string_view name);

} // namespace http
