// SPDX-License-Identifier: MIT
#include "server/projects/projectlists.h"

#include <nlohmann/json.hpp>

namespace server
{

namespace
{

using nlohmann::json;

constexpr std::size_t mostAccounts = 256;

std::string EncodeProjects(const std::vector<Project>& projects)
{
    json list = json::array();
    for (const auto& project : projects) {
        json entry = json::parse(project.record);
        entry["guid"] = project.guid;
        entry["type"] = project.type;
        entry["name"] = project.name;
        entry["isDemo"] = project.isDemo;
        list.push_back(std::move(entry));
    }
    return json{{"note", ""}, {"projects", std::move(list)}}.dump();
}

std::string EncodeStates(const std::vector<ProjectState>& states)
{
    json byGuid = json::object();
    for (const auto& state : states) {
        byGuid[state.guid] = {{"status", StatusWord(state.status)}, {"head", state.head}};
    }
    return json{{"states", std::move(byGuid)}}.dump();
}

} // namespace

template<class Encode>
std::shared_ptr<const TaggedAnswer> ProjectLists::answer(Answers& known, std::int64_t account,
                                                         Encode&& encode)
{
    // Read before the data: a change in between makes the answer newer than its tag, never older.
    const std::string tag =
        '"' + std::to_string(account) + '-' + std::to_string(m_store.changeCounter()) + '"';
    {
        const std::lock_guard lock(m_mutex);
        const auto found = known.find(account);
        if (found != known.end() && found->second->tag == tag)
            return found->second;
    }
    auto fresh = std::make_shared<const TaggedAnswer>(TaggedAnswer{tag, encode()});
    const std::lock_guard lock(m_mutex);
    if (known.size() >= mostAccounts)
        known.clear();
    known[account] = fresh;
    return fresh;
}

std::shared_ptr<const TaggedAnswer> ProjectLists::projects(std::int64_t account)
{
    return answer(m_projects, account, [&] { return EncodeProjects(m_store.visibleProjects(account)); });
}

std::shared_ptr<const TaggedAnswer> ProjectLists::states(std::int64_t account)
{
    return answer(m_states, account, [&] { return EncodeStates(m_store.visibleStates(account)); });
}

} // namespace server
