// SPDX-License-Identifier: MIT
#pragma once

#include "server/projects/projectlists.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace server
{

/// The administrative divisions of China, which are part of the program: provinces, cities and districts,
/// each list ready to be sent. A directly governed city has its districts directly below itself. Never
/// changes; any thread.
class Regions
{
public:
    static constexpr std::size_t longestId = 64;

    /// Reads an object with a list for each parent; the countries stand under the empty name.
    explicit Regions(std::string_view json);

    /// Those that the program holds.
    [[nodiscard]] static const Regions& known();

    [[nodiscard]] const TaggedAnswer& countries() const { return m_countries; }

    /// Empty for a parent that is not known or has nothing below.
    [[nodiscard]] const TaggedAnswer& below(const std::string& parent) const;

private:
    TaggedAnswer m_countries;
    TaggedAnswer m_nothing;
    std::unordered_map<std::string, TaggedAnswer> m_lists;
};

} // namespace server
