// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace ZRSmartFormat
{

/// The key of a project, a scene object or a model: a true guid, or any other text kept as `alias`.
///
/// A value type without hidden state; usable on any thread.
struct SZRFTGuid {
    std::uint32_t Data1 = 0;
    std::uint16_t Data2 = 0;
    std::uint16_t Data3 = 0;
    std::uint8_t Data4[8] = {};
    std::wstring alias; ///< empty for a true guid; "none" for the key that names nothing

    friend bool operator==(const SZRFTGuid&, const SZRFTGuid&) = default;
    friend auto operator<=>(const SZRFTGuid&, const SZRFTGuid&) = default;
};

/// Reads a key from its text.
///
/// A text of exactly 36 characters whose pieces 0-7, 9-12, 14-17 and the two-character pieces at 19, 21, 24,
/// 26, 28, 30, 32 and 34 are all base-16 numbers is a true guid, whatever stands at 8, 13, 18 and 23, and in
/// either case. Every other text becomes the `alias` of an all-zero guid; the empty text becomes the alias
/// "none".
[[nodiscard]] SZRFTGuid GuidFromText(std::wstring_view text);

/// Prints a key: a true guid as "%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x", an alias as it stands,
/// and the alias "none" as the empty text.
[[nodiscard]] std::wstring GuidToText(const SZRFTGuid& guid);

} // namespace ZRSmartFormat

template<>
struct std::hash<ZRSmartFormat::SZRFTGuid> {
    std::size_t operator()(const ZRSmartFormat::SZRFTGuid& guid) const noexcept;
};
