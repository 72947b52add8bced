// SPDX-License-Identifier: MIT
#include "smartdb/net/download.h"

#include "smartdb/data/projectfile.h"
#include "smartdb/data/syncstate.h"
#include "smartdb/lasterror.h"
#include "smartdb/net/piecefetch.h"
#include "wire/manifest.h"

#include <cstdio>

#include <nlohmann/json.hpp>
#include <unistd.h>

namespace ZRSmartDB
{

namespace
{

using nlohmann::json;

constexpr std::size_t largestManifest = 256U << 20U;

http::Fault BadReply(const std::string& what)
{
    return {http::faultcode::badReply, "the project server answered with something that is no " + what};
}

http::Fault Unwritable(const std::filesystem::path& folder)
{
    return {localcode::cannotWrite, "the folder " + folder.string() + " cannot be written"};
}

/// A folder name of our own that no other process uses at the same time.
std::string SideFolderName()
{
    return ".incoming-" + std::to_string(::getpid());
}

/// The number of the process whose side folder this is; 0 when it is none.
pid_t OwnerOf(const std::filesystem::path& folder)
{
    long owner = 0;
    return std::sscanf(folder.filename().c_str(), ".incoming-%ld", &owner) == 1 ? static_cast<pid_t>(owner)
                                                                                : 0;
}

/// Side folders whose process has gone, or that this process has left behind.
void RemoveDeadSideFolders(const std::filesystem::path& dataFolder)
{
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(dataFolder, ignored)) {
        const pid_t owner = OwnerOf(entry.path());
        const auto proc = std::filesystem::path("/proc") / std::to_string(owner);
        if (owner != 0 && (owner == ::getpid() || !std::filesystem::exists(proc, ignored)))
            std::filesystem::remove_all(entry.path(), ignored);
    }
}

std::uint64_t SizeOf(const wire::Manifest& manifest)
{
    std::uint64_t size = 0;
    for (const auto& file : manifest.files)
        size += file.size;
    return size;
}

http::Fault CheckRoom(const std::filesystem::path& folder, std::uint64_t needed)
{
    std::error_code error;
    const auto room = std::filesystem::space(folder, error);
    if (error || room.available >= needed)
        return {};
    constexpr std::uint64_t mebibyte = 1U << 20U;
    return {localcode::cannotWrite, "the disk is full: the project needs " +
                                        std::to_string(needed / mebibyte + 1) + " MiB, and " +
                                        std::to_string(room.available / mebibyte) + " MiB are free"};
}

} // namespace

Download::Download(http::Client& client, std::filesystem::path dataFolder)
    : m_client(client)
    , m_dataFolder(std::move(dataFolder))
    , m_sideFolder(m_dataFolder / SideFolderName())
{
}

Download::~Download()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_sideFolder, ignored);
}

std::filesystem::path Download::sideFolderOf(const std::string& guid) const
{
    return ProjectFolder(m_sideFolder, guid);
}

http::Fault Download::run(const std::string& guid, bool withModels)
{
    std::error_code error;
    std::filesystem::create_directories(m_dataFolder, error);
    RemoveDeadSideFolders(m_dataFolder);
    std::filesystem::create_directories(m_sideFolder, error);
    if (error)
        return Unwritable(m_dataFolder);
    if (auto fault = fetch(guid))
        return fault;
    if (withModels) {
        if (auto fault = fetchModelsOf(guid))
            return fault;
    }
    return moveIn();
}

http::Fault Download::fetch(const std::string& guid)
{
    const std::string path = "/api/v1/projects/" + http::EncodedName(guid);
    const auto about = m_client.send({.path = path});
    if (about.fault)
        return about.fault;
    const auto project = json::parse(about.body, nullptr, false);
    if (!project.is_object() || !project.contains("head") || !project["head"].is_string())
        return BadReply("project");
    const auto head = project["head"].get<std::string>();
    const auto root = wire::DigestFromHex(head);
    if (!root)
        return {localcode::notHere, "the project has no content on the server yet"};

    const auto answer = m_client.send({.path = path + "/revisions/" + head,
                                       .timeout = std::chrono::seconds(120),
                                       .largestReply = largestManifest});
    if (answer.fault)
        return answer.fault;
    auto decoded = wire::DecodeManifest(answer.body);
    if (const auto* refusal = std::get_if<wire::Refusal>(&decoded))
        return {http::faultcode::badReply,
                "the project server named files that cannot be taken: " + refusal->reason};
    const auto& manifest = std::get<wire::Manifest>(decoded);
    if (wire::RootOf(manifest) != *root)
        return BadReply("list of the project's files");

    const auto folder = sideFolderOf(guid);
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        return Unwritable(m_sideFolder);
    if (auto fault = CheckRoom(folder, SizeOf(manifest)))
        return fault;
    if (auto fault = PieceFetch(m_client, guid, head, manifest, folder).run())
        return fault;
    try {
        const auto counter = ProjectFile::formatOf(folder) == ProjectFile::Format::older
                                 ? 0
                                 : ProjectFile(folder).readChangeCounter();
        if (!WriteSyncState(folder, {head, counter}))
            return Unwritable(folder);
    } catch (const ProjectFileError& problem) {
        return {localcode::damaged, problem.what()};
    }
    m_fetched.push_back(guid);
    return {};
}

http::Fault Download::fetchModelsOf(const std::string& guid)
{
    if (ProjectFile::formatOf(sideFolderOf(guid)) != ProjectFile::Format::current)
        return {};
    try {
        for (const auto& model : ProjectFile(sideFolderOf(guid)).readHead().modelGuids) {
            std::error_code ignored;
            if (std::filesystem::exists(ProjectFolder(m_dataFolder, model), ignored))
                continue;
            if (auto fault = fetch(model))
                return fault;
        }
    } catch (const ProjectFileError& problem) {
        return {localcode::damaged, problem.what()};
    }
    return {};
}

http::Fault Download::moveIn()
{
    // Models first: a project that can be seen has all that belongs to it.
    for (auto guid = m_fetched.rbegin(); guid != m_fetched.rend(); ++guid) {
        std::error_code error;
        std::filesystem::rename(sideFolderOf(*guid), ProjectFolder(m_dataFolder, *guid), error);
        if (error)
            return {localcode::cannotWrite, "the project cannot be put into its place: " + error.message()};
    }
    return {};
}

} // namespace ZRSmartDB
