// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartFormat/zrftguid.h"

#include <filesystem>
#include <string>

#include <QString>

namespace ZRSmartDB
{

// The contract speaks wide texts, files and wire speak UTF-8.

[[nodiscard]] inline std::string Utf8Of(const std::wstring& text)
{
    return QString::fromStdWString(text).toStdString();
}

[[nodiscard]] inline std::wstring WideOf(const std::string& text)
{
    return QString::fromStdString(text).toStdWString();
}

[[nodiscard]] inline std::filesystem::path PathOf(const std::wstring& text)
{
    return std::filesystem::u8path(Utf8Of(text));
}

[[nodiscard]] inline std::string GuidTextOf(const ZRSmartFormat::SZRFTGuid& guid)
{
    return Utf8Of(ZRSmartFormat::GuidToText(guid));
}

[[nodiscard]] inline ZRSmartFormat::SZRFTGuid GuidOf(const std::string& text)
{
    return ZRSmartFormat::GuidFromText(WideOf(text));
}

} // namespace ZRSmartDB
