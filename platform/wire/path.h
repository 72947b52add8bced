// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace wire
{

/// A path as file systems compare it that do not tell upper from lower case or one Unicode form from another:
/// two paths with the same folded form may be one file somewhere.
[[nodiscard]] std::string FoldedPath(std::string_view path);

} // namespace wire
