// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartFormat/zrftguid.h"

#include <string>

namespace ZRSmartDB
{

/// Brings projects of an older format up to date. Threads as for IZRDatabase.
class IZRProjUpgrader
{
public:
    /// True when the project is on disk in an older format. False when it is current, absent or unreadable.
    [[nodiscard]] virtual bool NeedUpgrade(const ZRSmartFormat::SZRFTGuid& guid,
                                           const std::wstring& dataFolder) = 0;

    /// Migrates the project in one transaction, after a copy that is put back on failure. False leaves the
    /// project as it was. May take minutes.
    [[nodiscard]] virtual bool Upgrade(const ZRSmartFormat::SZRFTGuid& guid,
                                       const std::wstring& dataFolder) = 0;

protected:
    ~IZRProjUpgrader() = default;
};

} // namespace ZRSmartDB
