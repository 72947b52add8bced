// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartDB/zrprojupgrader.h"

namespace ZRSmartDB
{

class LocalProjects;

class Upgrader final : public IZRProjUpgrader
{
public:
    explicit Upgrader(LocalProjects& local)
        : m_local(local)
    {
    }

    [[nodiscard]] bool NeedUpgrade(const ZRSmartFormat::SZRFTGuid& guid,
                                   const std::wstring& dataFolder) override;
    [[nodiscard]] bool Upgrade(const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& dataFolder) override;

private:
    LocalProjects& m_local;
};

} // namespace ZRSmartDB
