// SPDX-License-Identifier: MIT
#include "smartdb/net/projectrecord.h"

#include "smartdb/data/projectfile.h"

#include <array>
#include <charconv>

#include <nlohmann/json.hpp>

namespace ZRSmartDB
{

namespace
{

using nlohmann::json;

constexpr const char* basemapKey = "basemap";
constexpr const char* extendedKey = "Pa_ExtendedAttr";

/// The shortest text that reads as the same number.
std::string DecimalOf(double number)
{
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
    return {text.data(), end};
}

/// Department or application, which the project keeps as JSON text.
json AttributesOf(const TextMap& attributes)
{
    json result = json::object();
    const auto text = attributes.find(extendedKey);
    const auto extended = text != attributes.end() ? json::parse(text->second, nullptr, false) : json();
    if (!extended.is_object())
        return result;
    for (const auto& [key, value] : extended.items()) {
        if (value.is_string())
            result[key] = value;
    }
    return result;
}

} // namespace

json ProjectRecordOf(const std::filesystem::path& folder, const std::string& parent)
{
    const auto head = ProjectFile(folder).readHead();
    const auto basemap = head.attributes.find(basemapKey);
    return {{"type", head.type},
            {"name", head.name},
            {"parent", parent},
            {"longitude", DecimalOf(head.longitude)},
            {"latitude", DecimalOf(head.latitude)},
            {"iotCode", head.iotCode},
            {"earthConfig", basemap != head.attributes.end() ? basemap->second : std::string()},
            {"proj4", head.proj4},
            {"attributes", AttributesOf(head.attributes)}};
}

} // namespace ZRSmartDB
