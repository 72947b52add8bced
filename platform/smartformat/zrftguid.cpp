// SPDX-License-Identifier: MIT
#include "ZRSmartFormat/zrftguid.h"

#include <array>
#include <optional>

namespace ZRSmartFormat
{

namespace
{

constexpr std::size_t guidTextLength = 36;
constexpr std::array<std::size_t, 8> data4Positions = {19, 21, 24, 26, 28, 30, 32, 34};
constexpr wchar_t noGuid[] = L"none";

std::optional<std::uint32_t> HexDigit(wchar_t character)
{
    if (character >= L'0' && character <= L'9')
        return static_cast<std::uint32_t>(character - L'0');
    if (character >= L'a' && character <= L'f')
        return static_cast<std::uint32_t>(character - L'a' + 10);
    if (character >= L'A' && character <= L'F')
        return static_cast<std::uint32_t>(character - L'A' + 10);
    return std::nullopt;
}

std::optional<std::uint32_t> HexNumber(std::wstring_view digits)
{
    std::uint32_t value = 0;
    for (wchar_t character : digits) {
        const auto digit = HexDigit(character);
        if (!digit)
            return std::nullopt;
        value = value << 4U | *digit;
    }
    return value;
}

std::optional<SZRFTGuid> TrueGuid(std::wstring_view text)
{
    if (text.size() != guidTextLength)
        return std::nullopt;
    const auto data1 = HexNumber(text.substr(0, 8));
    const auto data2 = HexNumber(text.substr(9, 4));
    const auto data3 = HexNumber(text.substr(14, 4));
    if (!data1 || !data2 || !data3)
        return std::nullopt;

    SZRFTGuid guid;
    guid.Data1 = *data1;
    guid.Data2 = static_cast<std::uint16_t>(*data2);
    guid.Data3 = static_cast<std::uint16_t>(*data3);
    for (std::size_t i = 0; i < data4Positions.size(); ++i) {
        const auto byte = HexNumber(text.substr(data4Positions[i], 2));
        if (!byte)
            return std::nullopt;
        guid.Data4[i] = static_cast<std::uint8_t>(*byte);
    }
    return guid;
}

void PrintHex(std::wstring& text, std::size_t position, std::uint32_t value, std::size_t digits)
{
    for (std::size_t i = digits; i > 0; --i) {
        text[position + i - 1] = L"0123456789abcdef"[value & 0xfU];
        value >>= 4U;
    }
}

} // namespace

SZRFTGuid GuidFromText(std::wstring_view text)
{
    if (auto guid = TrueGuid(text))
        return *guid;
    SZRFTGuid key;
    key.alias = text.empty() ? std::wstring_view(noGuid) : text;
    return key;
}

std::wstring GuidToText(const SZRFTGuid& guid)
{
    if (guid.alias == noGuid)
        return {};
    if (!guid.alias.empty())
        return guid.alias;

    // By hand: every question to the project database prints a key or two, and the formatted functions for
    // wide texts take ten times as long.
    std::wstring text(guidTextLength, L'-');
    PrintHex(text, 0, guid.Data1, 8);
    PrintHex(text, 9, guid.Data2, 4);
    PrintHex(text, 14, guid.Data3, 4);
    for (std::size_t i = 0; i < data4Positions.size(); ++i)
        PrintHex(text, data4Positions[i], guid.Data4[i], 2);
    return text;
}

} // namespace ZRSmartFormat

std::size_t
std::hash<ZRSmartFormat::SZRFTGuid>::operator()(const ZRSmartFormat::SZRFTGuid& guid) const noexcept
{
    if (!guid.alias.empty())
        return std::hash<std::wstring>()(guid.alias);
    std::uint64_t bits = std::uint64_t(guid.Data1) << 32U | std::uint64_t(guid.Data2) << 16U | guid.Data3;
    for (auto byte : guid.Data4)
        bits = bits * 1099511628211ULL ^ byte;
    return std::hash<std::uint64_t>()(bits);
}
