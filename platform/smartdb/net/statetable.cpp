// SPDX-License-Identifier: MIT
#include "smartdb/net/statetable.h"

#include <nlohmann/json.hpp>

namespace ZRSmartDB
{

namespace
{

using nlohmann::json;

constexpr std::chrono::milliseconds lifetime(500);

bool IsText(const json& object, const char* key)
{
    return object.contains(key) && object[key].is_string();
}

bool ReadStates(const std::string& body, std::unordered_map<std::string, ServerState>& states)
{
    const auto answer = json::parse(body, nullptr, false);
    if (!answer.is_object() || !answer.contains("states") || !answer["states"].is_object())
        return false;
    for (const auto& [guid, state] : answer["states"].items()) {
        if (!IsText(state, "status") || !IsText(state, "head"))
            return false;
        states[guid] = {state["status"].get<std::string>(), state["head"].get<std::string>()};
    }
    return true;
}

} // namespace

ServerState StateTable::find(const std::string& guid, http::Fault& fault)
{
    const std::lock_guard lock(m_mutex);
    if (!isFreshAt(Clock::now()))
        fault = fetch();
    if (fault)
        return {};
    const auto found = m_states.find(guid);
    return found != m_states.end() ? found->second : ServerState();
}

bool StateTable::isFresh()
{
    const std::lock_guard lock(m_mutex);
    return isFreshAt(Clock::now());
}

void StateTable::forget()
{
    const std::lock_guard lock(m_mutex);
    m_isKnown = false;
}

bool StateTable::isFreshAt(Clock::time_point now) const
{
    return m_isKnown && now - m_askedAt < lifetime;
}

http::Fault StateTable::fetch()
{
    const auto now = Clock::now();
    http::Request request;
    request.path = "/api/v1/projects/states";
    if (!m_etag.empty())
        request.headers.emplace_back("If-None-Match", m_etag);
    auto reply = m_client.send(request);
    m_isKnown = false;
    if (reply.fault)
        return reply.fault;
    if (reply.status != 304) {
        std::unordered_map<std::string, ServerState> states;
        if (!ReadStates(reply.body, states)) {
            m_etag.clear();
            return {http::faultcode::badReply,
                    "the project server answered with something that is no list of states"};
        }
        m_states = std::move(states);
        m_etag = reply.etag;
    }
    m_isKnown = true;
    m_askedAt = now;
    return {};
}

} // namespace ZRSmartDB
