// SPDX-License-Identifier: MIT
#include "scriptedserver.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <string_view>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{

constexpr int patience = 20; ///< milliseconds between two looks at whether the server has been stopped

/// The header has come, and as much behind it as it says.
bool IsWhole(const std::string& request)
{
    constexpr std::string_view separator = "\r\n\r\n";
    constexpr std::string_view lengthHeader = "Content-Length: ";
    const auto headerEnd = request.find(separator);
    if (headerEnd == std::string::npos)
        return false;
    const auto length = request.find(lengthHeader);
    const auto bodySize =
        length < headerEnd ? std::stoul(request.substr(length + lengthHeader.size())) : std::size_t(0);
    return request.size() >= headerEnd + separator.size() + bodySize;
}

} // namespace

ScriptedServer::ScriptedServer(Script script)
    : m_script(std::move(script))
    , m_listener(socket(AF_INET, SOCK_STREAM, 0))
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (bind(m_listener, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(m_listener, 64) != 0 ||
        getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &size) != 0)
        throw std::runtime_error("no port for a scripted server");
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { serve(); });
}

ScriptedServer::~ScriptedServer()
{
    m_isStopped = true;
    m_thread.join();
    for (auto& connection : m_connections)
        connection.join();
    close(m_listener);
}

std::vector<std::string> ScriptedServer::paths() const
{
    const std::lock_guard lock(m_mutex);
    return m_paths;
}

std::vector<std::string> ScriptedServer::requests() const
{
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

ScriptedServer::Answer ScriptedServer::reply(int status, const std::string& body, const std::string& header)
{
    return {"HTTP/1.1 " + std::to_string(status) + " -\r\nConnection: close\r\nContent-Length: " +
                std::to_string(body.size()) + "\r\n" + header + "\r\n" + body,
            0, false};
}

void ScriptedServer::serve()
{
    while (!m_isStopped) {
        pollfd waiting{m_listener, POLLIN, 0};
        if (poll(&waiting, 1, patience) <= 0)
            continue;
        const int connection = accept(m_listener, nullptr, nullptr);
        if (connection < 0)
            continue;
        ++m_connectionCount;
        m_connections.emplace_back([this, connection] { serveConnection(connection); });
    }
}

std::string ScriptedServer::receive(int connection) const
{
    std::string request;
    while (!m_isStopped && !IsWhole(request)) {
        pollfd waiting{connection, POLLIN, 0};
        if (poll(&waiting, 1, patience) <= 0)
            continue;
        char bytes[4096];
        const auto count = recv(connection, bytes, sizeof bytes, 0);
        if (count <= 0)
            break;
        request.append(bytes, static_cast<std::size_t>(count));
    }
    return request;
}

void ScriptedServer::serveConnection(int connection)
{
    for (bool goesOn = true; goesOn && !m_isStopped;) {
        const std::string request = receive(connection);
        if (request.empty())
            break;
        const auto begin = request.find(' ') + 1;
        const std::string path = request.substr(begin, request.find(' ', begin) - begin);
        {
            const std::lock_guard lock(m_mutex);
            m_paths.push_back(path);
            m_requests.push_back(request);
        }
        const auto answer = m_script(path);
        send(connection, answer);
        goesOn = answer.takesTheNext;
    }
    close(connection);
    ++m_closedCount;
}

void ScriptedServer::send(int connection, const Answer& answer) const
{
    if (answer.millisecondsBetweenPieces == 0) {
        ::send(connection, answer.bytes.data(), answer.bytes.size(), MSG_NOSIGNAL);
    } else {
        for (std::size_t i = 0; i < answer.bytes.size() && !m_isStopped; i += answer.pieceSize) {
            const auto size = std::min(answer.pieceSize, answer.bytes.size() - i);
            if (::send(connection, answer.bytes.data() + i, size, MSG_NOSIGNAL) < 0)
                break;
            std::this_thread::sleep_for(std::chrono::milliseconds(answer.millisecondsBetweenPieces));
        }
    }
    while (answer.neverEnds && !m_isStopped)
        std::this_thread::sleep_for(std::chrono::milliseconds(patience));
}
