// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kyvconvert
{

/// Runs a program to its end and hands over each line of what it prints. It ends with the one that started
/// it. Gives its exit code; 128 and the number of the signal when it was killed by one; 127 when it could not
/// be started. Its other words are dropped.
[[nodiscard]] int RunChild(const std::vector<std::string>& command,
                           const std::function<void(std::string_view)>& onLine);

} // namespace kyvconvert
