// SPDX-License-Identifier: MIT
#include "smartdb/upgrader.h"

#include "smartdb/data/projectfile.h"
#include "smartdb/database.h"
#include "smartdb/text.h"

namespace ZRSmartDB
{

bool Upgrader::NeedUpgrade(const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& dataFolder)
{
    // What is open is current; asking costs nothing then.
    if (m_database.isOpen(guid))
        return false;
    const auto folder = ProjectFolder(PathOf(dataFolder), GuidTextOf(guid));
    return ProjectFile::formatOf(folder) == ProjectFile::Format::older;
}

bool Upgrader::Upgrade(const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& dataFolder)
{
    try {
        ProjectFile::upgrade(ProjectFolder(PathOf(dataFolder), GuidTextOf(guid)));
        return true;
    } catch (const ProjectFileError& problem) {
        m_lastError.set({localcode::damaged, problem.what()});
        return false;
    }
}

} // namespace ZRSmartDB
