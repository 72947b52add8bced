// SPDX-License-Identifier: MIT
#include "smartdb/text.h"

#include <QString>

namespace ZRSmartDB
{

std::string Utf8Of(std::wstring_view text)
{
    return QString::fromWCharArray(text.data(), static_cast<int>(text.size())).toStdString();
}

std::wstring WideOf(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<int>(text.size())).toStdWString();
}

std::filesystem::path PathOf(std::wstring_view text)
{
    return PathOfUtf8(Utf8Of(text));
}

std::filesystem::path PathOfUtf8(std::string_view text)
{
    return {std::u8string(text.begin(), text.end())};
}

std::string TextOfPath(const std::filesystem::path& path)
{
    const auto text = path.generic_u8string();
    return {text.begin(), text.end()};
}

std::string GuidTextOf(const ZRSmartFormat::SZRFTGuid& guid)
{
    return Utf8Of(ZRSmartFormat::GuidToText(guid));
}

ZRSmartFormat::SZRFTGuid GuidOf(std::string_view text)
{
    return ZRSmartFormat::GuidFromText(WideOf(text));
}

} // namespace ZRSmartDB
