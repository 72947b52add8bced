// SPDX-License-Identifier: MIT
#include "smartdb/disk/sidefolder.h"

#include "smartdb/data/projectfile.h"
#include "smartdb/failure.h"
#include "smartdb/log.h"
#include "smartdb/text.h"

#include <fstream>
#include <random>

namespace ZRSmartDB
{

namespace
{

namespace fs = std::filesystem;

constexpr std::string_view projectPrefix = "proj_";
constexpr std::string_view sidePrefix = ".side-";

/// In a side folder: the guids of the projects that are being moved in, one a line, the main one last.
constexpr const char* arrivalsFile = "arrivals";

/// In a side folder: the guids of the projects that are being moved out.
constexpr const char* departuresFile = "departures";

constexpr int lockAttempts = 20;

std::string RandomName()
{
    std::random_device random;
    return std::string(sidePrefix) + std::to_string(random()) + std::to_string(random());
}

std::string LinesOf(const std::vector<std::string>& guids)
{
    std::string lines;
    for (const auto& guid : guids)
        lines += guid + "\n";
    return lines;
}

std::vector<std::string> ReadLines(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// Takes back projects that were moved in without the one that they belong to.
void TakeBackArrivals(Disk& disk, const fs::path& dataFolder, const fs::path& side)
{
    const auto guids = ReadLines(side / arrivalsFile);
    if (guids.empty() || !fs::exists(ProjectFolder(side, guids.back())))
        return;
    for (const auto& guid : guids) {
        if (!fs::exists(ProjectFolder(side, guid)) && fs::exists(ProjectFolder(dataFolder, guid)))
            disk.move(ProjectFolder(dataFolder, guid), ProjectFolder(side, guid));
    }
}

void FinishDepartures(Disk& disk, const fs::path& dataFolder, const fs::path& side)
{
    for (const auto& guid : ReadLines(side / departuresFile)) {
        if (!fs::exists(ProjectFolder(side, guid)) && fs::exists(ProjectFolder(dataFolder, guid)))
            disk.move(ProjectFolder(dataFolder, guid), ProjectFolder(side, guid));
    }
}

/// The lists go last: as long as anything else is there, what they say may still have to be done.
void RemoveAll(Disk& disk, const fs::path& side)
{
    for (const auto& entry : fs::directory_iterator(side)) {
        if (entry.is_directory())
            disk.remove(entry.path());
    }
    disk.remove(side);
}

void RemoveSide(Disk& disk, const fs::path& dataFolder, const fs::path& side)
{
    try {
        TakeBackArrivals(disk, dataFolder, side);
        FinishDepartures(disk, dataFolder, side);
        RemoveAll(disk, side);
    } catch (const std::exception& failure) {
        // The next side folder tries again.
        qCWarning(smartdbLog) << "a side folder could not be removed:" << failure.what();
    }
}

void SweepSides(Disk& disk, const fs::path& dataFolder)
{
    std::vector<fs::path> sides;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(dataFolder, error)) {
        if (entry.path().filename().string().starts_with(sidePrefix))
            sides.push_back(entry.path());
    }
    for (const auto& side : sides) {
        if (const auto abandoned = disk.tryLock(side))
            RemoveSide(disk, dataFolder, side);
    }
}

} // namespace

std::vector<std::string> ProjectGuids(const fs::path& dataFolder)
{
    std::vector<std::string> guids;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(dataFolder, error)) {
        const auto name = TextOfPath(entry.path().filename());
        if (name.starts_with(projectPrefix) && IsProjectKey(name.substr(projectPrefix.size())))
            guids.push_back(name.substr(projectPrefix.size()));
    }
    return guids;
}

SideFolder::SideFolder(std::shared_ptr<Disk> disk, fs::path dataFolder)
    : m_disk(std::move(disk))
    , m_dataFolder(std::move(dataFolder))
{
    m_disk->makeFolder(m_dataFolder);
    SweepSides(*m_disk, m_dataFolder);
    // Another process may sweep the new folder away before it is locked.
    for (int attempt = 0; !m_lock && attempt < lockAttempts; ++attempt) {
        m_path = m_dataFolder / RandomName();
        m_disk->makeFolder(m_path);
        m_lock = m_disk->tryLock(m_path);
    }
    if (m_lock)
        return;
    m_disk->remove(m_path);
    throw Failure(localcode::cannotWrite, "no folder can be locked in " + m_dataFolder.string());
}

SideFolder::~SideFolder()
{
    RemoveSide(*m_disk, m_dataFolder, m_path);
}

fs::path SideFolder::folderOf(const std::string& guid) const
{
    return ProjectFolder(m_path, guid);
}

void SideFolder::moveIn(const std::vector<std::string>& guids)
{
    WriteWhole(*m_disk, m_path / arrivalsFile, LinesOf(guids));
    for (const auto& guid : guids)
        m_disk->move(folderOf(guid), ProjectFolder(m_dataFolder, guid));
}

void SideFolder::exchange(const std::string& guid)
{
    m_disk->exchange(ProjectFolder(m_dataFolder, guid), folderOf(guid));
}

void SideFolder::takeOut(const std::vector<std::string>& guids)
{
    WriteWhole(*m_disk, m_path / departuresFile, LinesOf(guids));
    for (const auto& guid : guids)
        m_disk->move(ProjectFolder(m_dataFolder, guid), folderOf(guid));
}

} // namespace ZRSmartDB
