// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

#include <nlohmann/json_fwd.hpp>

namespace ZRSmartDB
{

/// What the server's list says of a project, taken from its folder: type, name, position and the like.
/// `parent` is the project of a model, empty for others. Throws Failure.
[[nodiscard]] nlohmann::json ProjectRecordOf(const std::filesystem::path& folder, const std::string& parent);

} // namespace ZRSmartDB
