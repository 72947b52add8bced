// SPDX-License-Identifier: MIT
#include "smartdb/data/syncstate.h"

#include "smartdb/data/projectfile.h"
#include "smartdb/failure.h"
#include "smartdb/text.h"
#include "wire/cutting.h"
#include "wire/projectfolder.h"

#include <algorithm>
#include <fstream>

#include <nlohmann/json.hpp>

namespace ZRSmartDB
{

namespace
{

namespace fs = std::filesystem;
using nlohmann::json;

fs::path FileIn(const fs::path& folder, std::string_view name)
{
    return folder / std::string(name);
}

json JsonOf(const FileStamp& stamp)
{
    return {{"size", stamp.size}, {"modified", stamp.modified}, {"identity", stamp.identity}};
}

FileStamp StampFrom(const json& object)
{
    return {object.at("size"), object.at("modified"), object.at("identity")};
}

json JsonOf(const SyncState& state)
{
    auto files = json::array();
    for (const auto& file : state.files)
        files.push_back({{"path", file.path}, {"stamp", JsonOf(file.stamp)}, {"content", file.content}});
    return {{"revision", state.revision},
            {"changeCounter", state.changeCounter},
            {"database", JsonOf(state.database)},
            {"files", files}};
}

SyncState StateFrom(const json& object)
{
    SyncState state{object.at("revision"), object.at("changeCounter"), StampFrom(object.at("database")), {}};
    for (const auto& file : object.at("files"))
        state.files.push_back({file.at("path"), StampFrom(file.at("stamp")), file.at("content")});
    return state;
}

std::string ContentOfFile(const fs::path& file)
{
    const auto entry = wire::CutFile(file, {}, [](const wire::Piece&, std::span<const std::byte>) {});
    if (const auto* refusal = std::get_if<wire::Refusal>(&entry))
        throw Failure(localcode::cannotWrite, refusal->reason);
    return wire::ToHex(std::get<wire::FileEntry>(entry).content);
}

/// The files of a revision beside the database.
std::vector<std::string> OtherFiles(const fs::path& folder)
{
    try {
        auto paths = wire::ProjectFiles(folder);
        std::erase(paths, std::string(wire::projectDatabaseName));
        return paths;
    } catch (const fs::filesystem_error& error) {
        throw Failure(localcode::cannotWrite, folder.string() + " cannot be read: " + error.what());
    }
}

/// Whether SQLite has written something that is not in the database's own file yet.
bool HasLog(fs::path database)
{
    std::error_code missing;
    const auto size = fs::file_size(database += "-wal", missing);
    return !missing && size > 0;
}

bool DatabaseHasChanged(const fs::path& folder, SyncState& state)
{
    const auto file = DatabaseIn(folder);
    // In this order: an edit goes from the log into the file, so it shows in one of the two.
    const bool hasLog = HasLog(file);
    const auto stamp = StampOf(file);
    if (!hasLog && LooksUnchanged(state.database, stamp))
        return false;
    if (ProjectFile(folder).readChangeCounter() != state.changeCounter)
        return true;
    if (!hasLog)
        state.database = stamp;
    return false;
}

bool FileHasChanged(const fs::path& file, SyncedFile& noted)
{
    if (HasLog(file))
        return true;
    const auto stamp = StampOf(file);
    if (LooksUnchanged(noted.stamp, stamp))
        return false;
    if (stamp.size != noted.stamp.size || ContentOfFile(file) != noted.content)
        return true;
    noted.stamp = stamp;
    return false;
}

std::optional<SyncState> ReadState(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        return std::nullopt;
    try {
        return StateFrom(json::parse(stream));
    } catch (const json::exception&) {
        return std::nullopt;
    }
}

std::string TextOfState(const SyncState& state)
{
    return JsonOf(state).dump(-1, ' ', false, json::error_handler_t::replace);
}

/// Another thread or process may see the same at the same time and be faster.
void MoveIfThere(Disk& disk, const fs::path& from, const fs::path& to)
{
    try {
        disk.move(from, to);
    } catch (const Failure&) {
        std::error_code missing;
        if (fs::exists(from, missing))
            throw;
    }
}

} // namespace

std::optional<SyncState> ReadSyncState(const fs::path& folder)
{
    return ReadState(FileIn(folder, wire::syncStateName));
}

SyncState SyncStateOf(const fs::path& folder, const wire::Manifest& manifest)
{
    SyncState state{wire::ToHex(wire::RootOf(manifest)),
                    ProjectFile(folder).readChangeCounter(),
                    StampOf(DatabaseIn(folder)),
                    {}};
    for (const auto& file : manifest.files) {
        if (file.path != wire::projectDatabaseName)
            state.files.push_back(
                {file.path, StampOf(folder / PathOfUtf8(file.path)), wire::ToHex(file.content)});
    }
    return state;
}

void WriteSynced(Disk& disk, const fs::path& folder, const SyncState& state, const wire::Manifest& manifest)
{
    // The manifest first: one that is not the memory's is only of no use.
    WriteWhole(disk, FileIn(folder, wire::syncManifestName), wire::EncodeManifest(manifest));
    WriteSyncState(disk, folder, state);
}

void WriteSyncState(Disk& disk, const fs::path& folder, const SyncState& state)
{
    WriteWhole(disk, FileIn(folder, wire::syncStateName), TextOfState(state));
}

std::optional<wire::Manifest> ReadSyncedManifest(const fs::path& folder, const std::string& revision)
{
    std::ifstream stream(FileIn(folder, wire::syncManifestName), std::ios::binary);
    if (!stream)
        return std::nullopt;
    const std::string bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    auto decoded = wire::DecodeManifest(bytes);
    auto* manifest = std::get_if<wire::Manifest>(&decoded);
    if (manifest == nullptr || wire::ToHex(wire::RootOf(*manifest)) != revision)
        return std::nullopt;
    return std::move(*manifest);
}

void WriteAttempt(Disk& disk, const fs::path& folder, const SyncState& state, const wire::Manifest& manifest)
{
    WriteWhole(disk, FileIn(folder, wire::attemptManifestName), wire::EncodeManifest(manifest));
    WriteWhole(disk, FileIn(folder, wire::attemptStateName), TextOfState(state));
}

bool AdoptAttempt(Disk& disk, const fs::path& folder, const std::string& head)
{
    const auto attempt = ReadState(FileIn(folder, wire::attemptStateName));
    if (!attempt || attempt->revision != head)
        return false;
    MoveIfThere(disk, FileIn(folder, wire::attemptManifestName), FileIn(folder, wire::syncManifestName));
    MoveIfThere(disk, FileIn(folder, wire::attemptStateName), FileIn(folder, wire::syncStateName));
    return true;
}

FileStamp DatabaseStamp(const fs::path& folder)
{
    // In this order: an edit goes from the log into the file, so it shows in one of the two.
    const auto file = DatabaseIn(folder);
    const bool hasLog = HasLog(file);
    return hasLog ? FileStamp() : StampOf(file);
}

bool HasChanged(const fs::path& folder, SyncState& state)
{
    if (DatabaseHasChanged(folder, state))
        return true;
    const auto paths = OtherFiles(folder);
    const auto isSame = [](const std::string& path, const SyncedFile& file) { return path == file.path; };
    if (!std::equal(paths.begin(), paths.end(), state.files.begin(), state.files.end(), isSame))
        return true;
    return std::any_of(state.files.begin(), state.files.end(), [&](SyncedFile& file) {
        return FileHasChanged(folder / PathOfUtf8(file.path), file);
    });
}

} // namespace ZRSmartDB
