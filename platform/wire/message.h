// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace wire
{

/// A JSON head and bytes behind it, in one body.
struct Message {
    std::string_view head;
    std::string_view body;
};

/// 4 bytes with the length of the head, the head, the body.
[[nodiscard]] std::string WriteMessage(std::string_view head, std::string_view body);

/// Nothing when the bytes are no message. The result points into them.
[[nodiscard]] std::optional<Message> ReadMessage(std::string_view bytes);

} // namespace wire
