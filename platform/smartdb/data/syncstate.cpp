// SPDX-License-Identifier: MIT
#include "smartdb/data/syncstate.h"

#include "wire/projectfolder.h"

#include <fstream>

#include <nlohmann/json.hpp>

namespace ZRSmartDB
{

namespace
{

using nlohmann::json;

std::filesystem::path SyncFile(const std::filesystem::path& folder)
{
    return folder / std::string(wire::syncStateName);
}

} // namespace

std::optional<SyncState> ReadSyncState(const std::filesystem::path& folder)
{
    std::ifstream stream(SyncFile(folder), std::ios::binary);
    const auto state = json::parse(stream, nullptr, false);
    if (!state.is_object() || !state.contains("revision") || !state.contains("changeCounter"))
        return std::nullopt;
    if (!state["revision"].is_string() || !state["changeCounter"].is_number_integer())
        return std::nullopt;
    return SyncState{state["revision"].get<std::string>(), state["changeCounter"].get<std::int64_t>()};
}

bool WriteSyncState(const std::filesystem::path& folder, const SyncState& state)
{
    const auto half = SyncFile(folder).string() + ".tmp";
    {
        std::ofstream stream(half, std::ios::binary);
        stream << json{{"revision", state.revision}, {"changeCounter", state.changeCounter}}.dump();
        if (!stream.flush())
            return false;
    }
    std::error_code error;
    std::filesystem::rename(half, SyncFile(folder), error);
    return !error;
}

} // namespace ZRSmartDB
