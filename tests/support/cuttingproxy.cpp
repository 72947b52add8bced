// SPDX-License-Identifier: MIT
#include "cuttingproxy.h"

#include <algorithm>
#include <stdexcept>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{

constexpr std::size_t bufferBytes = 64U << 10U;

sockaddr_in Loopback(int port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

bool WriteAll(int socket, std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

void Hurry(int socket)
{
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

} // namespace

struct CuttingProxy::Connection {
    Connection(int clientSocket, int serverSocket)
        : client(clientSocket)
        , server(serverSocket)
    {
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection()
    {
        requests.join();
        answers.join();
        ::close(client);
        ::close(server);
    }

    void breakOff() const
    {
        ::shutdown(client, SHUT_RDWR);
        ::shutdown(server, SHUT_RDWR);
    }

    const int client;
    const int server;
    bool isDoomed = false; ///< its next answer goes astray
    int ended = 0;         ///< directions that have ended
    std::thread requests;
    std::thread answers;
};

CuttingProxy::CuttingProxy(int target)
    : m_target(target)
    , m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    auto address = Loopback(0);
    socklen_t length = sizeof address;
    const bool isUp = ::bind(m_listener, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
                      ::listen(m_listener, 64) == 0 &&
                      ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &length) == 0;
    if (!isUp)
        throw std::runtime_error("the proxy cannot listen");
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { accept(); });
}

CuttingProxy::~CuttingProxy()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    ::shutdown(m_listener, SHUT_RDWR);
    m_thread.join();
    ::close(m_listener);
    {
        const std::lock_guard lock(m_mutex);
        breakAll();
    }
    m_connections.clear();
}

void CuttingProxy::passAll()
{
    const std::lock_guard lock(m_mutex);
    m_isDown = false;
    m_bytes = 0;
    m_cut = 0;
    m_toLose = 0;
    m_lost = 0;
    m_text.clear();
}

void CuttingProxy::cutAfter(std::uint64_t bytes, bool isForGood)
{
    passAll();
    const std::lock_guard lock(m_mutex);
    m_cut = bytes;
    m_isForGood = isForGood;
}

void CuttingProxy::loseAnswersTo(const std::string& text, int count, bool isForGood)
{
    passAll();
    const std::lock_guard lock(m_mutex);
    m_text = text;
    m_toLose = count;
    m_isForGood = isForGood;
}

bool CuttingProxy::waitForLoss(std::chrono::milliseconds time)
{
    std::unique_lock lock(m_mutex);
    return m_hasLost.wait_for(lock, time, [this] { return m_lost > 0; });
}

std::uint64_t CuttingProxy::bytes() const
{
    const std::lock_guard lock(m_mutex);
    return m_bytes;
}

void CuttingProxy::accept()
{
    while (true) {
        const int client = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        const std::lock_guard lock(m_mutex);
        if (m_isEnding) {
            if (client >= 0)
                ::close(client);
            return;
        }
        if (client >= 0)
            serve(client);
    }
}

void CuttingProxy::serve(int client)
{
    endFinished();
    const int server = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const auto address = Loopback(m_target);
    if (m_isDown || ::connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        ::close(client);
        ::close(server);
        return;
    }
    Hurry(client);
    Hurry(server);
    auto& connection = *m_connections.emplace_back(std::make_unique<Connection>(client, server));
    connection.requests = std::thread([this, &connection] { passRequests(connection); });
    connection.answers = std::thread([this, &connection] { passAnswers(connection); });
}

void CuttingProxy::passRequests(Connection& connection)
{
    std::string buffer(bufferBytes, '\0');
    std::string end; // of what came before: a text may come in two parts
    while (true) {
        const auto got = ::recv(connection.client, buffer.data(), buffer.size(), 0);
        if (got <= 0)
            break;
        const std::string_view bytes(buffer.data(), static_cast<std::size_t>(got));
        {
            const std::lock_guard lock(m_mutex);
            end += bytes;
            if (m_toLose > 0 && end.find(m_text) != std::string::npos) {
                connection.isDoomed = true;
                end.clear();
            }
            end.erase(0, end.size() - std::min(end.size(), m_text.size()));
        }
        if (!pass(connection.server, bytes))
            break;
    }
    const std::lock_guard lock(m_mutex);
    ::shutdown(connection.server, SHUT_WR);
    ++connection.ended;
}

void CuttingProxy::passAnswers(Connection& connection)
{
    std::string buffer(bufferBytes, '\0');
    while (true) {
        const auto got = ::recv(connection.server, buffer.data(), buffer.size(), 0);
        if (got <= 0 || swallow(connection))
            break;
        if (!pass(connection.client, {buffer.data(), static_cast<std::size_t>(got)}))
            break;
    }
    const std::lock_guard lock(m_mutex);
    connection.breakOff();
    ++connection.ended;
}

std::size_t CuttingProxy::admit(std::size_t bytes)
{
    const std::lock_guard lock(m_mutex);
    if (m_cut == 0 || m_bytes + bytes <= m_cut) {
        m_bytes += bytes;
        return bytes;
    }
    const auto part = static_cast<std::size_t>(m_cut - m_bytes);
    m_bytes = m_cut;
    m_cut = 0;
    m_isDown = m_isForGood;
    return part;
}

bool CuttingProxy::pass(int to, std::string_view bytes)
{
    const auto part = admit(bytes.size());
    if (!WriteAll(to, bytes.substr(0, part)))
        return false;
    if (part == bytes.size())
        return true;
    const std::lock_guard lock(m_mutex);
    breakAll();
    return false;
}

bool CuttingProxy::swallow(Connection& connection)
{
    const std::lock_guard lock(m_mutex);
    if (!connection.isDoomed)
        return false;
    ++m_lost;
    if (--m_toLose == 0)
        m_isDown = m_isForGood;
    m_hasLost.notify_all();
    return true;
}

void CuttingProxy::breakAll()
{
    for (const auto& connection : m_connections)
        connection->breakOff();
}

void CuttingProxy::endFinished()
{
    std::erase_if(m_connections, [](const auto& connection) { return connection->ended == 2; });
}
