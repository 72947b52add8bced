// SPDX-License-Identifier: MIT
#include "smartdb/net/statetable.h"

#include <algorithm>
#include <array>
#include <utility>

#include <nlohmann/json.hpp>

namespace ZRSmartDB
{

namespace
{

using nlohmann::json;

constexpr std::chrono::milliseconds lifetime(500);
constexpr std::chrono::milliseconds patience(1500);
constexpr std::chrono::milliseconds quickAnswer(200);
constexpr unsigned unchanged = 304;

bool IsState(const json& state)
{
    constexpr std::array<const char*, 4> statuses = {"-1", "0", "1", "3"};
    return state.is_object() && state.contains("status") && state.contains("head") &&
           state["head"].is_string() &&
           std::any_of(statuses.begin(), statuses.end(),
                       [&](const char* status) { return state["status"] == status; });
}

std::optional<std::unordered_map<std::string, ServerState>> StatesFrom(const std::string& body)
{
    const auto answer = json::parse(body, nullptr, false);
    if (!answer.is_object() || !answer.contains("states") || !answer["states"].is_object())
        return std::nullopt;
    std::unordered_map<std::string, ServerState> states;
    for (const auto& [guid, state] : answer["states"].items()) {
        if (!IsState(state))
            return std::nullopt;
        states[guid] = {state["status"].get<std::string>(), state["head"].get<std::string>()};
    }
    return states;
}

/// Others wait for the end of this request, so it has to have one.
http::Reply Sent(http::Client& client, const http::Request& request)
{
    http::Reply reply;
    try {
        reply = client.send(request);
    } catch (const std::exception& exception) {
        reply.fault = {http::faultcode::unreachable, exception.what()};
    }
    return reply;
}

} // namespace

StateTable::StateTable(http::Client& client)
    : m_client(client)
    , m_thread(1)
{
}

StateTable::~StateTable()
{
    m_thread.stop();
}

StateTable::Answer StateTable::find(const std::string& guid)
{
    const auto asked = Clock::now();
    std::unique_lock lock(m_mutex);
    const auto latest = lastMoment(asked);
    while (!isFreshFor(asked)) {
        if (!m_isAsking)
            ask();
        if (!latest) {
            m_hasChanged.wait(lock);
        } else if (m_hasChanged.wait_until(lock, *latest) == std::cv_status::timeout && !isFreshFor(asked)) {
            m_isSlow = true;
            return lateAnswerFor(guid);
        }
    }
    return answerFor(guid);
}

std::optional<StateTable::Answer> StateTable::known(const std::string& guid)
{
    const std::lock_guard lock(m_mutex);
    if (!isFreshFor(Clock::now()))
        return std::nullopt;
    return answerFor(guid);
}

void StateTable::expire()
{
    const std::lock_guard lock(m_mutex);
    ++m_generation;
    m_isFresh = false;
}

void StateTable::startAnew()
{
    const std::lock_guard lock(m_mutex);
    ++m_generation;
    m_isFresh = false;
    m_isSlow = false;
    m_fault = {};
    m_states.reset();
    m_etag.clear();
    if (!m_isAsking)
        ask();
}

bool StateTable::isFreshFor(Clock::time_point asked) const
{
    return m_isFresh && asked - m_asOf < lifetime;
}

/// Until when a question waits; nothing when it has to wait for the request to end, which has a time limit of
/// its own.
std::optional<StateTable::Clock::time_point> StateTable::lastMoment(Clock::time_point asked) const
{
    // It may have come back: whoever sends the next request gives it the time of a quick answer.
    if (m_isSlow)
        return m_isAsking ? asked : asked + quickAnswer;
    if (!m_states && !m_fault)
        return std::nullopt;
    return asked + patience;
}

StateTable::Answer StateTable::answerFor(const std::string& guid) const
{
    if (m_fault)
        return {m_fault, {}};
    const auto found = m_states->find(guid);
    return {{}, found != m_states->end() ? found->second : ServerState()};
}

StateTable::Answer StateTable::lateAnswerFor(const std::string& guid) const
{
    if (m_states || m_fault)
        return answerFor(guid);
    return {{http::faultcode::timedOut, "the project server does not answer in time"}, {}};
}

void StateTable::ask()
{
    m_isAsking = true;
    m_thread.post([this] { fetch(); });
}

void StateTable::fetch()
{
    std::unique_lock lock(m_mutex);
    const auto sent = Clock::now();
    const auto generation = m_generation;
    http::Request request;
    request.path = "/api/v1/projects/states";
    if (!m_etag.empty())
        request.headers.emplace_back("If-None-Match", m_etag);
    lock.unlock();
    const auto reply = Sent(m_client, request);
    lock.lock();
    m_isAsking = false;
    m_hasChanged.notify_all();
    if (generation != m_generation)
        return; // it answers a question of before
    take(reply);
    m_isFresh = true;
    m_isSlow = m_isSlow && m_fault.code == http::faultcode::timedOut;
    // A failure may have taken long to show; it counts from now on.
    m_asOf = m_fault ? Clock::now() : sent;
}

void StateTable::take(const http::Reply& reply)
{
    m_fault = reply.fault;
    if (m_fault || (reply.status == unchanged && !m_etag.empty()))
        return;
    auto states = StatesFrom(reply.body);
    if (!states) {
        m_etag.clear();
        m_fault = {http::faultcode::badReply,
                   "the project server answered with something that is no list of states"};
        return;
    }
    m_states = *std::move(states);
    m_etag = reply.etag;
}

} // namespace ZRSmartDB
