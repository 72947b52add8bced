// SPDX-License-Identifier: MIT
#include "smartdb/net/update.h"

#include "smartdb/data/localstate.h"
#include "smartdb/data/projectfile.h"
#include "smartdb/data/syncstate.h"
#include "smartdb/failure.h"
#include "smartdb/log.h"
#include "smartdb/net/download.h"
#include "smartdb/net/folderbuilder.h"
#include "smartdb/net/localtree.h"
#include "smartdb/net/remotetree.h"
#include "smartdb/text.h"

#include <utility>

namespace ZRSmartDB
{

namespace
{

namespace fs = std::filesystem;

constexpr const char* tilesType = "3DTILES";

/// Whether a folder has been changed after it was last looked at.
bool WasChanged(const fs::path& folder)
{
    try {
        auto noted = ReadSyncState(folder);
        return !noted || HasChanged(folder, *noted);
    } catch (const Failure&) {
        return true; // nobody knows
    }
}

Failure ChangedMeanwhile()
{
    return {localcode::cannotWrite,
            "the project was changed while it was being updated; nothing was replaced"};
}

} // namespace

Update::Update(http::Client& client, std::shared_ptr<Disk> disk, fs::path dataFolder)
    : m_client(client)
    , m_disk(std::move(disk))
    , m_dataFolder(std::move(dataFolder))
    , m_side(m_disk, m_dataFolder)
{
}

void Update::run(const std::string& guid, const Replaced& replaced)
{
    if (!prepare(guid))
        return;
    std::vector<std::string> ready;
    for (const auto& [text, type] : ProjectFile(m_side.folderOf(guid)).readModelTypes()) {
        const auto model = GuidTextOf(GuidOf(text));
        if (type != tilesType && model != guid && IsProjectHere(ProjectFolder(m_dataFolder, model)) &&
            prepare(model))
            ready.push_back(model);
    }
    // A project that can be seen has all that belongs to it: first the models that are new to this machine.
    Download(m_client, m_disk, m_dataFolder).runModelsOf(m_side.folderOf(guid));
    ready.push_back(guid);
    for (const auto& project : ready) {
        swapIn(project);
        replaced(project);
    }
}

/// Puts the newest revision together in the side folder. False when there is nothing to do.
bool Update::prepare(const std::string& guid)
{
    const auto folder = ProjectFolder(m_dataFolder, guid);
    const RemoteTree remote(m_client, guid);
    const auto head = remote.head();
    if (!head)
        return false;
    const auto local = LocalStateOf(*m_disk, folder, wire::ToHex(*head));
    if (local.revision == wire::ToHex(*head))
        return false;
    if (local.isChanged) {
        qCWarning(smartdbLog) << "a project was changed here and on the server, and stays as it is:"
                              << guid.c_str();
        return false;
    }
    const LocalTree have(folder, m_side.path());
    const auto want = remote.files(*head, have.baseFiles());
    const auto side = m_side.folderOf(guid);
    m_disk->makeFolder(side);
    FolderBuilder(m_client, *m_disk, have, want, guid, side).build();
    if (GuidOf(ProjectFile(side).readGuid()) != GuidOf(guid))
        throw Failure(http::faultcode::badReply,
                      "the project server sent another project than the one asked for");
    WriteSynced(*m_disk, side, SyncStateOf(side, want), want);
    return true;
}

void Update::swapIn(const std::string& guid)
{
    const auto folder = ProjectFolder(m_dataFolder, guid);
    // An editor that wants to write meanwhile waits, and then writes to the new project.
    const ProjectHold hold(folder);
    if (WasChanged(folder))
        throw ChangedMeanwhile();
    m_side.exchange(guid);
    // Nothing holds the other files still.
    if (!WasChanged(m_side.folderOf(guid)))
        return;
    m_side.exchange(guid);
    throw ChangedMeanwhile();
}

} // namespace ZRSmartDB
