// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

namespace server
{

/// A file of server/web/assets, which the program holds.
struct Asset {
    std::string_view name;
    std::string_view type;
    std::string_view bytes;
};

[[nodiscard]] std::span<const Asset> Assets();

} // namespace server
