// SPDX-License-Identifier: MIT
#include "smartdb/net/download.h"

#include "smartdb/data/projectfile.h"
#include "smartdb/data/syncstate.h"
#include "smartdb/failure.h"
#include "smartdb/log.h"
#include "smartdb/net/piecesource.h"
#include "smartdb/net/revisionplan.h"
#include "smartdb/net/revisionwriter.h"
#include "smartdb/text.h"
#include "wire/projectfolder.h"

#include <algorithm>
#include <deque>
#include <random>
#include <utility>

#include <nlohmann/json.hpp>

namespace ZRSmartDB
{

namespace
{

namespace fs = std::filesystem;
using nlohmann::json;

constexpr std::size_t largestManifest = 64U << 20U;
constexpr std::chrono::seconds manifestTime(120);

// Two requests at once, so that the line is never idle; together they bound the memory that a download takes.
constexpr std::size_t requestsAtOnce = 2;
constexpr std::uint64_t batchBytes = 16U << 20U;

constexpr const char* tilesType = "3DTILES";

Failure BadReply(const std::string& what)
{
    return {http::faultcode::badReply, "the project server answered with something that is no " + what};
}

http::Reply Send(http::Client& client, const http::Request& request)
{
    auto reply = client.send(request);
    if (reply.fault)
        throw Failure(reply.fault);
    return reply;
}

std::string ProjectPath(const std::string& guid)
{
    return "/api/v1/projects/" + http::EncodedName(guid);
}

std::string RevisionPath(const std::string& guid, const wire::Digest& root)
{
    return ProjectPath(guid) + "/revisions/" + wire::ToHex(root);
}

/// The server must not put anything into a project's folder that is this machine's own.
void RequireProjectFiles(const wire::Manifest& manifest)
{
    const auto isStrange = [](const wire::FileEntry& file) { return !wire::IsProjectFile(file.path); };
    const auto strange = std::find_if(manifest.files.begin(), manifest.files.end(), isStrange);
    if (strange != manifest.files.end())
        throw Failure(http::faultcode::badReply,
                      "the project server named a file that is none of a project: " + strange->path);
    const auto isDatabase = [](const wire::FileEntry& file) {
        return file.path == wire::projectDatabaseName;
    };
    if (std::none_of(manifest.files.begin(), manifest.files.end(), isDatabase))
        throw Failure(http::faultcode::badReply, "the project server named a project without a database");
}

void RequireRoom(Disk& disk, const fs::path& folder, const wire::Manifest& manifest)
{
    constexpr std::uint64_t mebibyte = 1U << 20U;
    std::uint64_t needed = 0;
    for (const auto& file : manifest.files)
        needed += file.size;
    const auto room = disk.room(folder);
    if (room < needed)
        throw Failure(localcode::diskFull, "the disk is full: the project needs " +
                                               std::to_string(needed / mebibyte + 1) + " MiB, and " +
                                               std::to_string(room / mebibyte) + " MiB are free");
}

} // namespace

Download::Download(http::Client& client, std::shared_ptr<Disk> disk, fs::path dataFolder)
    : m_client(client)
    , m_disk(std::move(disk))
    , m_dataFolder(std::move(dataFolder))
    , m_side(m_disk, m_dataFolder)
{
}

void Download::run(const std::string& guid, bool withModels)
{
    fetch(guid);
    if (withModels) {
        for (const auto& model : missingModels(m_side.folderOf(guid)))
            fetch(model);
    }
    // Models first: a project that can be seen has all that belongs to it.
    std::reverse(m_fetched.begin(), m_fetched.end());
    moveIn();
}

void Download::complete(const std::string& guid)
{
    for (const auto& model : missingModels(ProjectFolder(m_dataFolder, guid)))
        fetch(model);
    moveIn();
}

void Download::moveIn()
{
    for (const auto& guid : m_fetched)
        keepUnreadable(guid);
    m_side.moveIn(m_fetched);
}

void Download::fetch(const std::string& guid)
{
    const auto root = fetchHead(guid);
    const auto manifest = fetchManifest(guid, root);
    const auto folder = m_side.folderOf(guid);
    m_disk->makeFolder(folder);
    RequireRoom(*m_disk, folder, manifest);
    fetchFiles(guid, manifest);
    if (GuidOf(ProjectFile(folder).readGuid()) != GuidOf(guid))
        throw Failure(http::faultcode::badReply,
                      "the project server sent another project than the one asked for");
    WriteSyncState(*m_disk, folder, SyncStateOf(folder, manifest));
    m_fetched.push_back(guid);
}

wire::Digest Download::fetchHead(const std::string& guid)
{
    const auto reply = Send(m_client, {.path = ProjectPath(guid)});
    const auto project = json::parse(reply.body, nullptr, false);
    if (!project.is_object() || !project.contains("head") || !project["head"].is_string())
        throw BadReply("project");
    const auto head = project["head"].get<std::string>();
    if (head.empty())
        throw Failure(localcode::notHere, "the project has no content on the server yet");
    const auto root = wire::DigestFromHex(head);
    if (!root)
        throw BadReply("project");
    return *root;
}

wire::Manifest Download::fetchManifest(const std::string& guid, const wire::Digest& root)
{
    const auto reply =
        Send(m_client,
             {.path = RevisionPath(guid, root), .timeout = manifestTime, .largestReply = largestManifest});
    auto decoded = wire::DecodeManifest(reply.body);
    if (const auto* refusal = std::get_if<wire::Refusal>(&decoded))
        throw Failure(http::faultcode::badReply,
                      "the project server named files that cannot be taken: " + refusal->reason);
    auto manifest = std::get<wire::Manifest>(std::move(decoded));
    if (wire::RootOf(manifest) != root)
        throw BadReply("list of the project's files");
    RequireProjectFiles(manifest);
    return manifest;
}

void Download::fetchFiles(const std::string& guid, const wire::Manifest& manifest)
{
    const auto path = RevisionPath(guid, wire::RootOf(manifest)) + "/pieces";
    RevisionWriter writer(*m_disk, manifest, m_side.folderOf(guid));
    auto batches = PlanBatches(manifest, batchBytes);
    PacketPool pool;
    std::deque<PieceSource> sources; // behind the pool that they use
    for (auto batch = batches.begin(); batch != batches.end() || !sources.empty();) {
        while (batch != batches.end() && sources.size() < requestsAtOnce)
            sources.emplace_back(m_client, path, manifest, std::move(*batch++), pool);
        while (auto packet = sources.front().next()) {
            writer.write(*packet);
            pool.give(std::move(*packet));
        }
        sources.pop_front();
    }
    writer.finish();
}

std::vector<std::string> Download::missingModels(const fs::path& projectFolder) const
{
    std::vector<std::string> missing;
    for (const auto& [text, type] : ProjectFile(projectFolder).readModelTypes()) {
        const auto model = GuidTextOf(GuidOf(text));
        if (type != tilesType && ProjectFolder(m_dataFolder, model).filename() != projectFolder.filename() &&
            !IsProjectHere(ProjectFolder(m_dataFolder, model)))
            missing.push_back(model);
    }
    return missing;
}

/// Whatever stands where the project belongs is no project, but it may be all that is left of somebody's
/// work.
void Download::keepUnreadable(const std::string& guid)
{
    const auto folder = ProjectFolder(m_dataFolder, guid);
    if (!fs::exists(folder))
        return;
    const auto kept = m_dataFolder / (".unreadable-" + folder.filename().string() + '-' +
                                      std::to_string(std::random_device()()));
    m_disk->move(folder, kept);
    qCWarning(smartdbLog) << "a folder without a readable project was put aside:" << kept.c_str();
}

} // namespace ZRSmartDB
