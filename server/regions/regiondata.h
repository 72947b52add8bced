// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace server
{

/// What make-regions.mjs made when the program was built.
[[nodiscard]] std::string_view RegionData();

} // namespace server
