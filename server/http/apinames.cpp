// SPDX-License-Identifier: MIT
#include "server/http/api.h"

#include <algorithm>
#include <string_view>

#include <nlohmann/json.hpp>

namespace server
{

namespace
{

constexpr std::size_t longestName = 128; ///< characters

std::size_t CharactersOf(std::string_view text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
    }));
}

bool IsBlank(std::string_view text)
{
    constexpr std::string_view wideBlank = "\u3000";
    while (!text.empty()) {
        if (text.starts_with(' '))
            text.remove_prefix(1);
        else if (text.starts_with(wideBlank))
            text.remove_prefix(wideBlank.size());
        else
            return false;
    }
    return true;
}

bool HasControlCharacter(std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        // The second range of control characters is C2 80 to C2 9F.
        const bool isSecondRange = byte == 0xC2U && i + 1 < text.size() && //
                                   static_cast<unsigned char>(text[i + 1]) < 0xA0U;
        if (byte < 0x20U || byte == 0x7FU || isSecondRange)
            return true;
    }
    return false;
}

} // namespace

Reply Api::rename(const Request& request, const Session& session, const std::string& guid)
{
    // What is parsed is valid UTF-8.
    const auto given = nlohmann::json::parse(request.body, nullptr, false);
    if (!given.is_object() || !given.contains("name") || !given["name"].is_string())
        return ErrorReply(400, code::badRequest, "a name is needed");
    const auto& name = given["name"].get_ref<const std::string&>();
    if (IsBlank(name) || HasControlCharacter(name) || CharactersOf(name) > longestName)
        return ErrorReply(400, code::badRequest,
                          "a name has 1 to 128 characters, not only blanks and no control characters");
    if (!m_store.mayChange(session.account, guid))
        return ErrorReply(403, code::notAllowed,
                          "only its owner and its organisation may change this project");
    m_store.setName(guid, name);
    return EmptyReply(204);
}

} // namespace server
