// SPDX-License-Identifier: MIT
#pragma once

#include "server/http/reply.h"

#include <string>
#include <string_view>

namespace server
{

/// What surrounds the content of every page. Texts are given as they are and escaped here.
struct PageFrame {
    std::string title;
    std::string loginName;       ///< empty for a page that anybody may see
    std::size_t depth = 0;       ///< folders between /web and the page
    bool isBelowConsole = false; ///< a link leads back to the list
    std::string guard{};         ///< what the page's own requests bring along, empty for none
    std::string_view script{};   ///< an asset that the page loads beside what every page loads
};

/// A whole page around `content`, which is HTML, with the headers that keep it to this server.
[[nodiscard]] Reply PageReply(unsigned status, const PageFrame& frame, std::string_view content);

/// A page that says what happened, why, and what to do. Plain texts.
[[nodiscard]] Reply NoticeReply(unsigned status, const PageFrame& frame, std::string_view why,
                                std::string_view whatToDo);

/// The headers of everything below /web.
void AddGuards(Reply& reply);

/// A file that pages load; 404 when there is none of that name. Its address changes with its content.
[[nodiscard]] Reply AssetReply(std::string_view name);

} // namespace server
