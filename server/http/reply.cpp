// SPDX-License-Identifier: MIT
#include "server/http/reply.h"

#include <nlohmann/json.hpp>

namespace server
{

namespace
{

int HexValue(char digit)
{
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F')
        return digit - 'A' + 10;
    return -1;
}

bool Decode(std::string_view encoded, std::string& decoded)
{
    for (std::size_t i = 0; i < encoded.size(); ++i) {
        if (encoded[i] != '%') {
            decoded += encoded[i];
            continue;
        }
        if (i + 2 >= encoded.size())
            return false;
        const int high = HexValue(encoded[i + 1]);
        const int low = HexValue(encoded[i + 2]);
        if (high < 0 || low < 0)
            return false;
        decoded += static_cast<char>(high << 4 | low);
        i += 2;
    }
    return true;
}

} // namespace

std::uint64_t Reply::contentLength() const
{
    if (ranges.empty() && source)
        return source->size();
    if (ranges.empty())
        return sharedBody ? sharedBody->size() : body.size();
    std::uint64_t length = 0;
    for (const auto& range : ranges)
        length += range.length;
    return length;
}

Reply EmptyReply(unsigned status)
{
    Reply reply;
    reply.status = status;
    return reply;
}

Reply JsonReply(unsigned status, std::string body)
{
    Reply reply;
    reply.status = status;
    reply.contentType = "application/json";
    reply.body = std::move(body);
    return reply;
}

Reply ErrorReply(unsigned status, int code, std::string_view msg)
{
    // Words that are not UTF-8 can only come from a request; they are shown with replacement characters.
    const nlohmann::json error{{"code", code}, {"msg", msg}};
    return JsonReply(status, error.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

std::vector<std::string> PathBehind(std::string_view prefix, std::string_view target, bool& isValid)
{
    isValid = target.starts_with(prefix);
    if (!isValid)
        return {};
    target.remove_prefix(prefix.size());
    target = target.substr(0, target.find('?'));
    std::vector<std::string> names;
    while (isValid) {
        const auto slash = target.find('/');
        isValid = Decode(target.substr(0, slash), names.emplace_back()) && !names.back().empty();
        if (slash == std::string_view::npos)
            break;
        target.remove_prefix(slash + 1);
    }
    return names;
}

std::optional<std::string> QueryValue(std::string_view query, std::string_view name)
{
    while (!query.empty()) {
        const auto end = query.find('&');
        const auto entry = query.substr(0, end);
        if (entry.starts_with(name) && entry.substr(name.size()).starts_with('=')) {
            std::string value;
            return Decode(entry.substr(name.size() + 1), value) ? std::optional(value) : std::nullopt;
        }
        query.remove_prefix(end == std::string_view::npos ? query.size() : end + 1);
    }
    return std::nullopt;
}

} // namespace server
