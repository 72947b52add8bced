// SPDX-License-Identifier: MIT
#pragma once

#include "server/http/connection.h"

#include <cstdint>
#include <string>

#include <boost/asio/io_context.hpp>

namespace server
{

/// The listening server. Construct, run, and stop from anywhere.
class Server
{
public:
    /// Listens on `address`:`port`; port 0 takes a free one. `threads` is the number of threads that run()
    /// uses besides the pool. Throws std::exception when the address cannot be had.
    Server(Api& api, const std::string& address, std::uint16_t port, unsigned threads);

    [[nodiscard]] std::uint16_t port() const;

    /// Serves until stop() is called or the process gets SIGTERM or SIGINT.
    void run();

    /// Ends run(); connections are dropped. Any thread.
    void stop();

private:
    boost::asio::awaitable<void> accept();
    boost::asio::awaitable<void> tick();

    unsigned m_threads;
    boost::asio::io_context m_context;
    boost::asio::thread_pool m_pool;
    boost::asio::ip::tcp::acceptor m_acceptor;
    Shared m_shared;
};

} // namespace server
