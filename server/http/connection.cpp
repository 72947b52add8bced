// SPDX-License-Identifier: MIT
#include "server/http/connection.h"

#include <cerrno>
#include <iostream>
#include <utility>

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/http.hpp>

#ifdef __linux__
#include <sys/sendfile.h>
#endif
#include <unistd.h>

namespace server
{

namespace
{

namespace net = boost::asio;
namespace http = boost::beast::http;

constexpr std::uint32_t largestHeader = 16U << 10U;
constexpr std::uint64_t largestBody = 4U << 20U;
constexpr std::uint64_t largestMessage = 64U << 20U;
constexpr std::size_t largestRead = 256U << 10U;
constexpr std::size_t pumpSize = 4U << 20U;
constexpr std::chrono::seconds idleTime(75); ///< for the next request to arrive, with its header
constexpr std::chrono::seconds bodyTime(60);
constexpr std::chrono::seconds answerTime(60);
constexpr std::chrono::seconds stepTime(60); ///< for each step of a long answer

std::string Text(boost::string_view text)
{
    return {text.data(), text.size()};
}

/// Everything but the body.
Request RequestOf(const http::request<http::string_body>& message, bool& isValid)
{
    Request request;
    request.method = Text(message.method_string());
    const std::string target = Text(message.target());
    request.path = PathBehind("/api/v1/", target, isValid);
    if (!isValid) {
        request.path = PathBehind("/web/", target, isValid);
        request.isForPage = isValid;
    }
    const auto query = target.find('?');
    if (query != std::string::npos)
        request.query = target.substr(query + 1);
    request.cookie = Text(message[http::field::cookie]);
    request.guard = Text(message["X-Torvo-Guard"]);
    request.isEncrypted = message["X-Forwarded-Proto"] == "https";
    request.authorization = Text(message[http::field::authorization]);
    request.ifNoneMatch = Text(message[http::field::if_none_match]);
    request.acceptEncoding = Text(message[http::field::accept_encoding]);
    return request;
}

/// The answer to a request that could not even be read.
Reply Unreadable(const boost::system::error_code& error)
{
    if (error == http::error::body_limit)
        return ErrorReply(413, code::tooLarge, "the request is too large");
    if (error == http::error::header_limit || error == http::error::buffer_overflow)
        return ErrorReply(431, code::tooLarge, "the header of the request is too large");
    return ErrorReply(400, code::badRequest, "the request is malformed");
}

bool IsHttpError(const boost::system::error_code& error)
{
    return error.category() == make_error_code(http::error::bad_method).category() &&
           error != http::error::end_of_stream && error != http::error::partial_message;
}

} // namespace

Connection::Connection(net::ip::tcp::socket socket, Shared& shared)
    : m_socket(std::move(socket))
    , m_shared(shared)
    , m_timer(m_socket.get_executor())
    , m_buffer(largestRead)
{
    ++m_shared.connections;
    allow(idleTime);
}

Connection::~Connection()
{
    --m_shared.connections;
}

void Connection::start()
{
    boost::system::error_code ignored;
    m_socket.set_option(net::ip::tcp::no_delay(true), ignored);
    const auto self = shared_from_this();
    net::co_spawn(
        m_socket.get_executor(), [self] { return self->watch(); }, net::detached);
    net::co_spawn(
        m_socket.get_executor(), [self] { return self->serve(); }, net::detached);
}

net::awaitable<void> Connection::watch()
{
    while (m_socket.is_open()) {
        m_timer.expires_at(m_deadline);
        boost::system::error_code cancelled;
        co_await m_timer.async_wait(net::redirect_error(net::use_awaitable, cancelled));
        if (m_deadline <= Clock::now())
            close();
    }
}

net::awaitable<void> Connection::serve()
{
    try {
        while (co_await serveOne()) {
        }
    } catch (const std::exception&) {
        // The client has gone, or was dropped: nobody is left to be told.
    }
    close();
}

net::awaitable<bool> Connection::serveOne()
{
    http::request_parser<http::string_body> parser;
    parser.header_limit(largestHeader);
    // How much it may be depends on who asks, which the header tells.
    parser.body_limit(largestMessage);
    allow(idleTime);
    boost::system::error_code error;
    co_await http::async_read_header(m_socket, m_buffer, parser,
                                     net::redirect_error(net::use_awaitable, error));
    if (!error) {
        bool isLarge = false;
        co_await askWhetherLarge(parser.get(), isLarge);
        if (!isLarge)
            parser.body_limit(largestBody);
        // The parser reads as much as the buffer holds at the moment, which is little at first.
        if (parser.content_length().value_or(0) > largestRead)
            m_buffer.reserve(largestRead);
        allow(bodyTime);
        co_await http::async_read(m_socket, m_buffer, parser, net::redirect_error(net::use_awaitable, error));
    }
    if (error) {
        if (IsHttpError(error)) {
            Reply refusal = Unreadable(error);
            co_await write(refusal, 11, false, true);
        }
        co_return false;
    }
    auto& message = parser.get();
    bool isValid = false;
    Request request = RequestOf(message, isValid);
    request.body = std::move(message.body());
    const bool keepAlive = message.keep_alive();
    const bool withBody = message.method() != http::verb::head;
    allow(answerTime);
    Reply reply;
    if (isValid)
        co_await answerTo(request, reply);
    else
        reply = ErrorReply(404, code::missing, "there is no such thing here");
    co_await write(reply, message.version(), keepAlive, withBody);
    co_return keepAlive;
}

net::awaitable<void> Connection::askWhetherLarge(const Header& header, bool& isLarge)
{
    bool isValid = false;
    if (!header.target().ends_with("/uploads"))
        co_return;
    const Request request = RequestOf(header, isValid);
    if (!isValid)
        co_return;
    const auto work = [&]() -> net::awaitable<void> {
        isLarge = m_shared.api.mayBeLarge(request);
        co_return;
    };
    co_await net::co_spawn(m_shared.pool, work, net::use_awaitable);
}

net::awaitable<void> Connection::answerTo(const Request& request, Reply& reply)
{
    if (Api::isQuick(request)) {
        reply = m_shared.api.answer(request);
        co_return;
    }
    const auto work = [&]() -> net::awaitable<void> {
        reply = m_shared.api.answer(request);
        co_return;
    };
    co_await net::co_spawn(m_shared.pool, work, net::use_awaitable);
}

net::awaitable<void> Connection::write(Reply& reply, unsigned version, bool keepAlive, bool withBody)
{
    http::response<http::string_body> message;
    message.version(version);
    message.result(reply.status);
    message.keep_alive(keepAlive);
    for (const auto& [name, value] : reply.headers)
        message.set(name, value);
    if (!reply.contentType.empty())
        message.set(http::field::content_type, reply.contentType);
    if (reply.status != 204 && reply.status != 304)
        message.content_length(reply.contentLength());
    const bool isSimple = withBody && reply.ranges.empty() && !reply.sharedBody && !reply.source;
    if (isSimple)
        message.body() = std::move(reply.body);

    http::response_serializer<http::string_body> serializer(message);
    allow(answerTime);
    if (isSimple) {
        co_await http::async_write(m_socket, serializer, net::use_awaitable);
        co_return;
    }
    co_await http::async_write_header(m_socket, serializer, net::use_awaitable);
    if (!withBody)
        co_return;
    if (reply.source)
        co_await stream(*reply.source);
    if (reply.sharedBody)
        co_await net::async_write(m_socket, net::buffer(*reply.sharedBody), net::use_awaitable);
    for (const auto& range : reply.ranges)
        co_await pump(range);
}

net::awaitable<void> Connection::stream(BodySource& source)
{
    std::string bytes;
    const auto work = [&]() -> net::awaitable<void> {
        bytes = source.next();
        co_return;
    };
    while (true) {
        co_await net::co_spawn(m_shared.pool, work, net::use_awaitable);
        if (bytes.empty())
            co_return;
        allow(stepTime);
        co_await net::async_write(m_socket, net::buffer(bytes), net::use_awaitable);
    }
}

#ifdef __linux__

net::awaitable<void> Connection::pump(const PackRange& range)
{
    const auto file = m_shared.api.packs().open(range.pack);
    if (!file)
        throw std::runtime_error("a pack is missing");
    m_socket.native_non_blocking(true);
    auto offset = static_cast<off_t>(range.offset);
    std::uint64_t left = range.length;
    while (left > 0) {
        const auto sent = ::sendfile(m_socket.native_handle(), file->descriptor(), &offset,
                                     static_cast<std::size_t>(std::min<std::uint64_t>(left, pumpSize)));
        if (sent > 0) {
            left -= static_cast<std::uint64_t>(sent);
            allow(stepTime);
        } else if (sent < 0 && errno == EAGAIN) {
            co_await m_socket.async_wait(net::ip::tcp::socket::wait_write, net::use_awaitable);
        } else if (sent == 0 || errno != EINTR) {
            throw std::runtime_error("a pack cannot be sent");
        }
    }
}

#else

net::awaitable<void> Connection::pump(const PackRange& range)
{
    const auto file = m_shared.api.packs().open(range.pack);
    if (!file)
        throw std::runtime_error("a pack is missing");
    std::vector<char> buffer(std::min<std::uint64_t>(range.length, pumpSize));
    for (std::uint64_t done = 0; done < range.length;) {
        const auto got = ::pread(file->descriptor(), buffer.data(),
                                 std::min<std::uint64_t>(buffer.size(), range.length - done),
                                 static_cast<off_t>(range.offset + done));
        if (got <= 0)
            throw std::runtime_error("a pack cannot be read");
        co_await net::async_write(m_socket, net::buffer(buffer.data(), static_cast<std::size_t>(got)),
                                  net::use_awaitable);
        done += static_cast<std::uint64_t>(got);
        allow(stepTime);
    }
}

#endif

void Connection::close()
{
    boost::system::error_code ignored;
    m_socket.shutdown(net::ip::tcp::socket::shutdown_both, ignored);
    m_socket.close(ignored);
    m_timer.cancel();
}

} // namespace server
