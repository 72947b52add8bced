// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartDB/zrprojupgrader.h"
#include "smartdb/lasterror.h"

namespace ZRSmartDB
{

class Database;

class Upgrader final : public IZRProjUpgrader
{
public:
    Upgrader(Database& database, LastError& lastError)
        : m_database(database)
        , m_lastError(lastError)
    {
    }

    [[nodiscard]] bool NeedUpgrade(const ZRSmartFormat::SZRFTGuid& guid,
                                   const std::wstring& dataFolder) override;
    [[nodiscard]] bool Upgrade(const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& dataFolder) override;

private:
    Database& m_database;
    LastError& m_lastError;
};

} // namespace ZRSmartDB
