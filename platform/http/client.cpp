// SPDX-License-Identifier: MIT
#include "http/client.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include <curl/curl.h>

namespace http
{

namespace
{

constexpr std::size_t largestError = 64U << 10U;
constexpr long receiveBuffer = 512L * 1024L;

struct FreeList {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
using HeaderList = std::unique_ptr<curl_slist, FreeList>;

void Append(HeaderList& list, const std::string& header)
{
    auto* longer = curl_slist_append(list.get(), header.c_str());
    if (longer == nullptr)
        return;
    static_cast<void>(list.release());
    list.reset(longer);
}

/// A token or a cookie with a line break in it would smuggle headers into the request.
bool IsHeaderText(const std::string& text)
{
    return std::none_of(text.begin(), text.end(),
                        [](char character) { return character == '\r' || character == '\n'; });
}

/// What arrives of an answer, while it arrives.
struct Arrival {
    CURL* handle;
    const Request& request;
    const std::atomic<bool>& isCancelled;
    Reply reply;
    std::size_t received = 0;
    bool isTooLarge = false;
    bool isRefused = false; ///< by the request's own taker
    bool isSent = false;    ///< the request has gone out, or part of it

    [[nodiscard]] bool isUnwanted() const
    {
        return isCancelled || (request.isGivenUp != nullptr && *request.isGivenUp);
    }
};

std::size_t OnBytes(char* bytes, std::size_t /*one*/, std::size_t count, void* context)
{
    auto& arrival = *static_cast<Arrival*>(context);
    long status = 0;
    curl_easy_getinfo(arrival.handle, CURLINFO_RESPONSE_CODE, &status);
    const bool isGood = status >= 200 && status < 300;
    if (!isGood) {
        arrival.reply.body.append(
            bytes, std::min(count, largestError - std::min(largestError, arrival.reply.body.size())));
        return count;
    }
    arrival.received += count;
    arrival.isTooLarge = arrival.received > arrival.request.largestReply;
    if (arrival.isTooLarge)
        return 0;
    if (!arrival.request.take) {
        arrival.reply.body.append(bytes, count);
        return count;
    }
    arrival.isRefused = !arrival.request.take(std::as_bytes(std::span(bytes, count)));
    return arrival.isRefused ? 0 : count;
}

std::size_t OnHeader(char* bytes, std::size_t /*one*/, std::size_t count, void* context)
{
    constexpr std::string_view etag = "etag:";
    std::string_view line(bytes, count);
    const bool isEtag = line.size() > etag.size() &&
                        std::equal(etag.begin(), etag.end(), line.begin(), [](char left, char right) {
                            return left == std::tolower(static_cast<unsigned char>(right));
                        });
    if (isEtag) {
        line.remove_prefix(etag.size());
        const auto first = line.find_first_not_of(" \t");
        const auto last = line.find_last_not_of(" \t\r\n");
        if (first != std::string_view::npos)
            static_cast<Arrival*>(context)->reply.etag = line.substr(first, last - first + 1);
    }
    return count;
}

int OnProgress(void* context, curl_off_t /*downTotal*/, curl_off_t /*down*/, curl_off_t /*upTotal*/,
               curl_off_t /*up*/)
{
    return static_cast<Arrival*>(context)->isUnwanted() ? 1 : 0;
}

/// The library sends a request anew, of whatever kind, when a connection that it had kept breaks under it.
/// The server may have done by then what it was asked to: a change goes out once.
int OnSending(void* context, char* /*theirs*/, char* /*ours*/, int /*theirPort*/, int /*ourPort*/)
{
    auto& arrival = *static_cast<Arrival*>(context);
    const bool isSentAgain = std::exchange(arrival.isSent, true);
    return isSentAgain && arrival.request.method != "GET" ? CURL_PREREQFUNC_ABORT : CURL_PREREQFUNC_OK;
}

Fault FaultOfTransfer(CURLcode result, const Arrival& arrival, const std::string& server, const char* detail)
{
    if (arrival.isUnwanted())
        return {faultcode::cancelled, "the request was given up"};
    if (arrival.isTooLarge)
        return {faultcode::badReply, "the project server's answer is larger than any answer can be"};
    if (result == CURLE_ABORTED_BY_CALLBACK)
        return {faultcode::unreachable,
                "the connection to the project server at " + server + " broke before it answered"};
    const std::string words = detail[0] != '\0' ? detail : curl_easy_strerror(result);
    if (result == CURLE_OPERATION_TIMEDOUT)
        return {faultcode::timedOut, "the project server at " + server + " does not answer in time"};
    if (arrival.reply.status == 0)
        return {faultcode::unreachable, "the project server at " + server + " cannot be reached: " + words};
    return {faultcode::unreachable, "the connection to the project server at " + server + " broke: " + words};
}

} // namespace

/// One kept-open connection.
class Client::Connection
{
public:
    Connection()
        : m_handle(curl_easy_init())
    {
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() { curl_easy_cleanup(m_handle); }

    Reply send(const Request& request, const Settings& settings, const std::atomic<bool>& isCancelled)
    {
        curl_easy_reset(m_handle);
        Arrival arrival{m_handle, request, isCancelled, {}};
        const auto headers = setRequest(request, settings);
        setLimits(request, settings.limits);
        char detail[CURL_ERROR_SIZE] = "";
        curl_easy_setopt(m_handle, CURLOPT_ERRORBUFFER, detail);
        curl_easy_setopt(m_handle, CURLOPT_WRITEFUNCTION, OnBytes);
        curl_easy_setopt(m_handle, CURLOPT_WRITEDATA, &arrival);
        curl_easy_setopt(m_handle, CURLOPT_HEADERFUNCTION, OnHeader);
        curl_easy_setopt(m_handle, CURLOPT_HEADERDATA, &arrival);
        curl_easy_setopt(m_handle, CURLOPT_PREREQFUNCTION, OnSending);
        curl_easy_setopt(m_handle, CURLOPT_PREREQDATA, &arrival);
        curl_easy_setopt(m_handle, CURLOPT_XFERINFOFUNCTION, OnProgress);
        curl_easy_setopt(m_handle, CURLOPT_XFERINFODATA, &arrival);
        curl_easy_setopt(m_handle, CURLOPT_NOPROGRESS, 0L);

        const CURLcode result = curl_easy_perform(m_handle);
        long status = 0;
        curl_easy_getinfo(m_handle, CURLINFO_RESPONSE_CODE, &status);
        auto& reply = arrival.reply;
        reply.status = static_cast<unsigned>(status);
        if (result != CURLE_OK && !arrival.isRefused)
            reply.fault = FaultOfTransfer(result, arrival, settings.server, detail);
        else if ((status < 200 || status >= 300) && status != 304)
            reply.fault = FaultOfAnswer(reply.status, reply.body);
        return std::move(arrival.reply);
    }

private:
    HeaderList setRequest(const Request& request, const Settings& settings)
    {
        curl_easy_setopt(m_handle, CURLOPT_URL, (settings.server + request.path).c_str());
        curl_easy_setopt(m_handle, CURLOPT_PROTOCOLS_STR, "http,https");
        curl_easy_setopt(m_handle, CURLOPT_ACCEPT_ENCODING, request.take ? nullptr : "");
        HeaderList headers;
        if (!settings.token.empty())
            Append(headers, "Authorization: Bearer " + settings.token);
        if (!settings.cookies.empty())
            Append(headers, "Cookie: " + settings.cookies);
        for (const auto& [name, value] : request.headers)
            Append(headers, name + ": " + value);
        if (request.method != "GET") {
            curl_easy_setopt(m_handle, CURLOPT_CUSTOMREQUEST, request.method.c_str());
            curl_easy_setopt(m_handle, CURLOPT_POSTFIELDSIZE_LARGE,
                             static_cast<curl_off_t>(request.body.size()));
            curl_easy_setopt(m_handle, CURLOPT_POSTFIELDS, request.body.data());
            Append(headers, "Content-Type: " + request.contentType);
            Append(headers, "Expect:");
        }
        curl_easy_setopt(m_handle, CURLOPT_HTTPHEADER, headers.get());
        return headers;
    }

    void setLimits(const Request& request, const Limits& limits)
    {
        curl_easy_setopt(m_handle, CURLOPT_NOSIGNAL, 1L);
        curl_easy_setopt(m_handle, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(limits.connecting.count()));
        curl_easy_setopt(m_handle, CURLOPT_TIMEOUT_MS, static_cast<long>(request.timeout.count()));
        curl_easy_setopt(m_handle, CURLOPT_LOW_SPEED_TIME, limits.slowSeconds);
        curl_easy_setopt(m_handle, CURLOPT_LOW_SPEED_LIMIT, limits.slowBytes);
        curl_easy_setopt(m_handle, CURLOPT_BUFFERSIZE, request.take ? receiveBuffer : 16L * 1024L);
        curl_easy_setopt(
            m_handle, CURLOPT_UPLOAD_BUFFERSIZE,
            static_cast<long>(std::clamp<std::size_t>(request.body.size(), 16U << 10U, 1U << 20U)));
        curl_easy_setopt(m_handle, CURLOPT_TCP_NODELAY, 1L);
    }

    CURL* m_handle;
};

Client::Client()
{
    static const CURLcode isReady = curl_global_init(CURL_GLOBAL_DEFAULT);
    static_cast<void>(isReady);
}

Client::~Client() = default;

bool Client::setServer(const std::string& address)
{
    const bool isAddress = address.starts_with("http://") || address.starts_with("https://");
    const std::unique_ptr<CURLU, void (*)(CURLU*)> url(curl_url(), curl_url_cleanup);
    if (!isAddress || curl_url_set(url.get(), CURLUPART_URL, address.c_str(), 0) != CURLUE_OK)
        return false;
    const std::lock_guard lock(m_mutex);
    m_settings.server = address;
    while (m_settings.server.ends_with('/'))
        m_settings.server.pop_back();
    return true;
}

void Client::setToken(const std::string& token)
{
    const std::lock_guard lock(m_mutex);
    m_settings.token = IsHeaderText(token) ? token : std::string();
}

void Client::setCookies(const std::string& cookies)
{
    const std::lock_guard lock(m_mutex);
    m_settings.cookies = IsHeaderText(cookies) ? cookies : std::string();
}

void Client::setLimits(const Limits& limits)
{
    const std::lock_guard lock(m_mutex);
    m_settings.limits = limits;
}

Client::Settings Client::settings() const
{
    const std::lock_guard lock(m_mutex);
    return m_settings;
}

std::unique_ptr<Client::Connection> Client::lease()
{
    const std::lock_guard lock(m_mutex);
    if (m_free.empty())
        return std::make_unique<Connection>();
    auto connection = std::move(m_free.back());
    m_free.pop_back();
    return connection;
}

void Client::giveBack(std::unique_ptr<Connection> connection)
{
    const std::lock_guard lock(m_mutex);
    m_free.push_back(std::move(connection));
}

Reply Client::send(const Request& request)
{
    const auto current = settings();
    auto connection = lease();
    auto reply = connection->send(request, current, m_isCancelled);
    const bool isHarmless = request.method == "GET" && !request.take;
    if (isHarmless && reply.fault.code == faultcode::unreachable && reply.status == 0 && !m_isCancelled)
        reply = connection->send(request, current, m_isCancelled);
    giveBack(std::move(connection));
    return reply;
}

std::string EncodedName(std::string_view name)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    for (char character : name) {
        const auto byte = static_cast<unsigned char>(character);
        const bool isPlain = byte < 0x80 && (std::isalnum(byte) != 0 || character == '-' ||
                                             character == '_' || character == '.' || character == '~');
        if (isPlain) {
            encoded += character;
        } else {
            encoded += '%';
            encoded += digits[byte >> 4U];
            encoded += digits[byte & 0x0FU];
        }
    }
    return encoded;
}

} // namespace http
