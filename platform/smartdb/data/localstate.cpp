// SPDX-License-Identifier: MIT
#include "smartdb/data/localstate.h"

#include "smartdb/data/syncstate.h"
#include "smartdb/failure.h"

namespace ZRSmartDB
{

LocalState LocalStateOf(Disk& disk, const std::filesystem::path& folder, const std::string& head)
{
    auto noted = ReadSyncState(folder);
    const bool isEqual = noted && noted->revision == head;
    if (!isEqual && !head.empty() && AdoptAttempt(disk, folder, head))
        noted = ReadSyncState(folder);
    if (!noted)
        return {};
    auto seen = *noted;
    if (HasChanged(folder, seen))
        return {noted->revision, true};
    try {
        if (seen != *noted)
            WriteSyncState(disk, folder, seen);
    } catch (const Failure&) {
        // What looks different now is only read again the next time.
    }
    return {noted->revision, false};
}

ProjectState StateOf(const LocalState& local, const std::string& head)
{
    if (head.empty())
        return ProjectState::onlyHere;
    // Without a memory of having been equal, both sides count as changed: nobody's work is overwritten
    // unasked.
    const bool isChangedThere = local.revision != head;
    if (local.isChanged)
        return isChangedThere ? ProjectState::changedOnBoth : ProjectState::changedHere;
    return isChangedThere ? ProjectState::changedThere : ProjectState::same;
}

} // namespace ZRSmartDB
