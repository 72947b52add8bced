// SPDX-License-Identifier: MIT
#include "server/web/html.h"

#include <array>
#include <cctype>
#include <cstdio>
#include <ctime>

namespace server
{

std::string Escaped(std::string_view text)
{
    std::string escaped;
    escaped.reserve(text.size());
    for (const char character : text) {
        switch (character) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        case '\'':
            escaped += "&#39;";
            break;
        default:
            escaped += character;
        }
    }
    return escaped;
}

std::string PathName(std::string_view name)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    for (const char character : name) {
        const auto byte = static_cast<unsigned char>(character);
        if (std::isalnum(byte) != 0 || character == '-' || character == '_' || character == '.') {
            encoded += character;
        } else {
            encoded += '%';
            encoded += digits[byte >> 4U];
            encoded += digits[byte & 0x0FU];
        }
    }
    return encoded;
}

std::string TimeElement(std::int64_t moment)
{
    const auto seconds = static_cast<std::time_t>(moment);
    std::tm parts{};
    if (gmtime_r(&seconds, &parts) == nullptr)
        return {};
    std::array<char, 96> text{};
    const auto size = std::strftime(
        text.data(), text.size(), "<time datetime=\"%Y-%m-%dT%H:%M:%SZ\">%Y-%m-%d %H:%M UTC</time>", &parts);
    return {text.data(), size};
}

std::string Grouped(std::uint64_t number)
{
    std::string text = std::to_string(number);
    for (std::size_t place = text.size(); place > 3;) {
        place -= 3;
        text.insert(place, ",");
    }
    return text;
}

std::string BytesText(std::uint64_t bytes)
{
    constexpr std::array<const char*, 4> units{"KB", "MB", "GB", "TB"};
    std::string exact = Grouped(bytes) + " 字节";
    if (bytes < 1024)
        return exact;
    double amount = static_cast<double>(bytes) / 1024;
    std::size_t unit = 0;
    // 1023.95 would be shown as 1024.0 of a unit.
    while (amount >= 1023.95 && unit + 1 < units.size()) {
        amount /= 1024;
        ++unit;
    }
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f %s", amount, units[unit]);
    return text.data() + ("（" + exact) + "）";
}

std::string_view TypeText(std::string_view type)
{
    if (type == "CIM")
        return "场景工程";
    return type == "MODEL" ? "模型" : "BIM工程";
}

std::string StateElement(const ProjectState& state)
{
    const auto element = [](std::string_view look, std::string_view words) {
        return "<span class=\"state " + std::string(look) + "\">" + std::string(words) + "</span>";
    };
    switch (state.status) {
    case ProjectStatus::uploadFailed:
        return element("wrong", "上传失败");
    case ProjectStatus::uploading:
        return element("moving", "正在上传中");
    case ProjectStatus::converting:
        return element("moving", "正在转换中");
    case ProjectStatus::normal:
        break;
    }
    return state.head.empty() ? element("waiting", "还没有数据") : element("good", "正常");
}

} // namespace server
