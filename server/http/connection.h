// SPDX-License-Identifier: MIT
#pragma once

#include "server/http/api.h"

#include <atomic>
#include <chrono>
#include <memory>

#include <boost/asio/awaitable.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/thread_pool.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/http/string_body.hpp>

namespace server
{

/// What all connections share.
struct Shared {
    Api& api;
    boost::asio::thread_pool& pool; ///< where requests are answered that wait for something
    std::atomic<int> connections = 0;
};

/// One client: reads requests, one after the other, and writes the answers. A client that is too slow at any
/// step is dropped, so that none can hold a connection by doing nothing. Runs on the executor of its socket
/// alone.
class Connection : public std::enable_shared_from_this<Connection>
{
public:
    Connection(boost::asio::ip::tcp::socket socket, Shared& shared);
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection();

    /// Starts serving; the connection keeps itself alive until it ends.
    void start();

private:
    using Clock = std::chrono::steady_clock;

    boost::asio::awaitable<void> serve();
    boost::asio::awaitable<void> watch();
    /// One request and its answer. False when the connection is to end.
    boost::asio::awaitable<bool> serveOne();
    // Requests and replies stay in the frame of serveOne: passed by reference, since the compiler's
    // coroutines have destroyed by-value arguments twice.
    using Header = boost::beast::http::request<boost::beast::http::string_body>;
    boost::asio::awaitable<void> askWhetherLarge(const Header& header, bool& isLarge);
    boost::asio::awaitable<void> answerTo(const Request& request, Reply& reply);
    boost::asio::awaitable<void> write(Reply& reply, unsigned version, bool keepAlive, bool withBody);
    boost::asio::awaitable<void> stream(BodySource& source);
    boost::asio::awaitable<void> pump(const PackRange& range);
    void allow(std::chrono::seconds time) { m_deadline = Clock::now() + time; }
    void close();

    boost::asio::ip::tcp::socket m_socket;
    Shared& m_shared;
    boost::asio::steady_timer m_timer;
    Clock::time_point m_deadline;
    boost::beast::flat_buffer m_buffer;
};

} // namespace server
