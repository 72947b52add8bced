// SPDX-License-Identifier: MIT
#include "smartdb/upgrader.h"

#include "smartdb/failure.h"
#include "smartdb/localprojects.h"
#include "smartdb/text.h"

namespace ZRSmartDB
{

bool Upgrader::NeedUpgrade(const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& dataFolder)
{
    return AtBorder(false, [&] { return m_local.needsUpgrade(guid, PathOf(dataFolder)); });
}

bool Upgrader::Upgrade(const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& dataFolder)
{
    return AtBorder(false, [&] {
        m_local.upgrade(guid, PathOf(dataFolder));
        return true;
    });
}

} // namespace ZRSmartDB
