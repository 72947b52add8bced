// SPDX-License-Identifier: MIT
#include "smartdb/net/download.h"

#include "smartdb/data/projectfile.h"
#include "smartdb/data/syncstate.h"
#include "smartdb/failure.h"
#include "smartdb/log.h"
#include "smartdb/net/fetchstream.h"
#include "smartdb/net/remotetree.h"
#include "smartdb/net/revisionplan.h"
#include "smartdb/net/revisionwriter.h"
#include "smartdb/net/room.h"
#include "smartdb/text.h"
#include "wire/projectfolder.h"

#include <algorithm>
#include <random>
#include <utility>

namespace ZRSmartDB
{

namespace
{

namespace fs = std::filesystem;

constexpr const char* tilesType = "3DTILES";

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

void Download::runModelsOf(const fs::path& projectFolder)
{
    for (const auto& model : missingModels(projectFolder))
        fetch(model);
    moveIn();
}

void Download::moveIn()
{
    if (m_fetched.empty())
        return;
    for (const auto& guid : m_fetched)
        keepUnreadable(guid);
    m_side.moveIn(m_fetched);
}

void Download::fetch(const std::string& guid)
{
    const RemoteTree remote(m_client, guid);
    const auto manifest = remote.files(remote.existingHead());
    const auto folder = m_side.folderOf(guid);
    m_disk->makeFolder(folder);
    RequireRoom(*m_disk, folder, BytesOf(manifest));
    fetchFiles(guid, manifest);
    if (GuidOf(ProjectFile(folder).readGuid()) != GuidOf(guid))
        throw Failure(http::faultcode::badReply,
                      "the project server sent another project than the one asked for");
    WriteSynced(*m_disk, folder, SyncStateOf(folder, manifest), manifest);
    m_fetched.push_back(guid);
}

void Download::fetchFiles(const std::string& guid, const wire::Manifest& manifest)
{
    const auto bytes = BytesOf(manifest);
    Progress progress("download " + guid, bytes);
    progress.add(0);
    RevisionWriter writer(*m_disk, manifest, m_side.folderOf(guid));
    FetchStream stream(m_client, guid, manifest, PlanBatches(manifest, AllRuns(manifest), batchBytes),
                       progress);
    stream.read(bytes, [&](std::span<const std::byte> part) { writer.write(part); });
    stream.finish();
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
