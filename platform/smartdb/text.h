// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartFormat/zrftguid.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace ZRSmartDB
{

// The contract speaks wide texts, files and wire speak UTF-8.

[[nodiscard]] std::string Utf8Of(std::wstring_view text);
[[nodiscard]] std::wstring WideOf(std::string_view text);

[[nodiscard]] std::filesystem::path PathOf(std::wstring_view text);
[[nodiscard]] std::filesystem::path PathOfUtf8(std::string_view text);
[[nodiscard]] std::string TextOfPath(const std::filesystem::path& path); ///< with "/" between names

[[nodiscard]] std::string GuidTextOf(const ZRSmartFormat::SZRFTGuid& guid);
[[nodiscard]] ZRSmartFormat::SZRFTGuid GuidOf(std::string_view text);

} // namespace ZRSmartDB
