// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartFormat/zrftguid.h"

#include <QString>

namespace TorvoEditor
{

// Keys travel as text in this program and as values at the border to the project database.

[[nodiscard]] inline ZRSmartFormat::SZRFTGuid KeyOf(const QString& guid)
{
    return ZRSmartFormat::GuidFromText(guid.toStdWString());
}

[[nodiscard]] inline QString TextOf(const ZRSmartFormat::SZRFTGuid& key)
{
    return QString::fromStdWString(ZRSmartFormat::GuidToText(key));
}

} // namespace TorvoEditor
