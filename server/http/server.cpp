// SPDX-License-Identifier: MIT
#include "server/http/server.h"

#include <thread>
#include <vector>

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/strand.hpp>
#include <boost/asio/use_awaitable.hpp>

namespace server
{

namespace
{

namespace net = boost::asio;

constexpr int mostConnections = 4096;
constexpr unsigned poolThreads = 4;
constexpr std::chrono::milliseconds restAfterFailure(50);
constexpr std::chrono::seconds tickTime(1);

} // namespace

Server::Server(Api& api, const std::string& address, std::uint16_t port, unsigned threads)
    : m_threads(threads)
    , m_context(static_cast<int>(threads))
    , m_pool(poolThreads)
    , m_acceptor(m_context, net::ip::tcp::endpoint(net::ip::make_address(address), port))
    , m_shared{api, m_pool}
{
}

std::uint16_t Server::port() const
{
    return m_acceptor.local_endpoint().port();
}

void Server::run()
{
    net::signal_set signals(m_context, SIGTERM, SIGINT);
    signals.async_wait([this](const boost::system::error_code& error, int) {
        if (!error)
            stop();
    });
    net::co_spawn(
        m_context, [this] { return accept(); }, net::detached);
    net::co_spawn(
        m_context, [this] { return tick(); }, net::detached);

    std::vector<std::thread> threads;
    for (unsigned i = 1; i < m_threads; ++i)
        threads.emplace_back([this] { m_context.run(); });
    m_context.run();
    for (auto& thread : threads)
        thread.join();
    m_pool.join();
}

void Server::stop()
{
    m_context.stop();
}

net::awaitable<void> Server::tick()
{
    net::steady_timer timer(m_context);
    const auto work = [this]() -> net::awaitable<void> {
        m_shared.api.tick();
        co_return;
    };
    while (true) {
        timer.expires_after(tickTime);
        co_await timer.async_wait(net::use_awaitable);
        co_await net::co_spawn(m_pool, work, net::use_awaitable);
    }
}

net::awaitable<void> Server::accept()
{
    net::steady_timer timer(m_context);
    while (m_acceptor.is_open()) {
        boost::system::error_code error;
        net::ip::tcp::socket socket(net::make_strand(m_context));
        co_await m_acceptor.async_accept(socket, net::redirect_error(net::use_awaitable, error));
        if (error) {
            // Out of descriptors, most likely: connections that end free some.
            timer.expires_after(restAfterFailure);
            co_await timer.async_wait(net::redirect_error(net::use_awaitable, error));
        } else if (m_shared.connections < mostConnections) {
            std::make_shared<Connection>(std::move(socket), m_shared)->start();
        }
    }
}

} // namespace server
