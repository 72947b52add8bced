// SPDX-License-Identifier: MIT
#include "server/regions/regions.h"

#include "server/regions/regiondata.h"
#include "wire/digest.h"

#include <nlohmann/json.hpp>

namespace server
{

namespace
{

TaggedAnswer AnswerOf(const nlohmann::json& list)
{
    std::string body = list.dump();
    std::string tag = '"' + wire::ToHex(wire::DigestOf(body)) + '"';
    return {std::move(tag), std::move(body)};
}

} // namespace

Regions::Regions(std::string_view json)
    : m_countries(AnswerOf(nlohmann::json::array()))
    , m_nothing(m_countries)
{
    const auto lists = nlohmann::json::parse(json);
    for (const auto& [parent, list] : lists.items()) {
        if (parent.empty())
            m_countries = AnswerOf(list);
        else
            m_lists.emplace(parent, AnswerOf(list));
    }
}

const Regions& Regions::known()
{
    static const Regions regions{RegionData()};
    return regions;
}

const TaggedAnswer& Regions::below(const std::string& parent) const
{
    const auto found = m_lists.find(parent);
    return found != m_lists.end() ? found->second : m_nothing;
}

} // namespace server
