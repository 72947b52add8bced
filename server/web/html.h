// SPDX-License-Identifier: MIT
#pragma once

#include "server/storage/store.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace server
{

/// A text as it may stand in a page, between tags and in the value of an attribute.
[[nodiscard]] std::string Escaped(std::string_view text);

/// A name as it may stand in the path of an address.
[[nodiscard]] std::string PathName(std::string_view name);

/// A moment, in seconds since 1970; the page's script turns it into the reader's own time.
[[nodiscard]] std::string TimeElement(std::int64_t moment);

/// A number with its thousands apart: "1,234,567".
[[nodiscard]] std::string Grouped(std::uint64_t number);

/// A number of bytes for a person: "12.3 MB", and how many exactly.
[[nodiscard]] std::string BytesText(std::uint64_t bytes);

/// What a project's type is called in the editor.
[[nodiscard]] std::string_view TypeText(std::string_view type);

/// How a project stands, as an element: the words, and a class for the look.
[[nodiscard]] std::string StateElement(const ProjectState& state);

} // namespace server
