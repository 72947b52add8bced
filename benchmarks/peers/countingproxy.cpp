// SPDX-License-Identifier: MIT
#include "peers/countingproxy.h"

#include <QtGlobal>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace bench
{

namespace
{

constexpr std::size_t bufferBytes = 256U << 10U;

sockaddr_in Loopback(int port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

bool WriteAll(int socket, const char* bytes, ssize_t left)
{
    while (left > 0) {
        const auto sent = ::send(socket, bytes, static_cast<std::size_t>(left), MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        bytes += sent;
        left -= sent;
    }
    return true;
}

} // namespace

CountingProxy::CountingProxy(int target)
    : m_target(target)
    , m_listener(::socket(AF_INET, SOCK_STREAM, 0))
{
    auto address = Loopback(0);
    socklen_t length = sizeof address;
    const bool isUp = ::bind(m_listener, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
                      ::listen(m_listener, 64) == 0 &&
                      ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &length) == 0;
    if (!isUp)
        qFatal("the proxy cannot listen");
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { accept(); });
}

CountingProxy::~CountingProxy()
{
    m_isEnding = true;
    ::shutdown(m_listener, SHUT_RDWR);
    m_thread.join();
    ::close(m_listener);
    for (const int socket : m_sockets)
        ::shutdown(socket, SHUT_RDWR);
    for (auto& connection : m_connections)
        connection.join();
    for (const int socket : m_sockets)
        ::close(socket);
}

void CountingProxy::accept()
{
    while (!m_isEnding) {
        const int client = ::accept(m_listener, nullptr, nullptr);
        if (client < 0)
            continue;
        serve(client);
    }
}

void CountingProxy::serve(int client)
{
    const int server = ::socket(AF_INET, SOCK_STREAM, 0);
    const auto address = Loopback(m_target);
    const int on = 1;
    ::setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    ::setsockopt(server, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    if (::connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        ::close(client);
        ::close(server);
        return;
    }
    const std::lock_guard lock(m_mutex);
    m_sockets.insert(m_sockets.end(), {client, server});
    m_connections.emplace_back([this, client, server] { pass(client, server); });
    m_connections.emplace_back([this, client, server] { pass(server, client); });
}

void CountingProxy::pass(int from, int to)
{
    std::vector<char> buffer(bufferBytes);
    while (true) {
        const auto got = ::recv(from, buffer.data(), buffer.size(), 0);
        if (got <= 0 || !WriteAll(to, buffer.data(), got))
            break;
        m_bytes += static_cast<std::uint64_t>(got);
    }
    ::shutdown(to, SHUT_WR);
}

} // namespace bench
