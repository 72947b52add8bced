// SPDX-License-Identifier: MIT
#include "smartdb/modeluse.h"

#include "smartdb/data/projectfile.h"
#include "smartdb/disk/sidefolder.h"
#include "smartdb/failure.h"
#include "smartdb/text.h"

#include <algorithm>

namespace ZRSmartDB
{

namespace
{

namespace fs = std::filesystem;
using Guid = ModelUse::Guid;

/// What is no project has no say in what is still needed. One that this program cannot read, because it is of
/// a later version or because the disk fails, may need anything, and its failure goes on.
TextMap ModelTypesOnDisk(const fs::path& folder)
{
    try {
        return ProjectFile(folder).readModelTypes();
    } catch (const Failure& failure) {
        if (failure.code() != localcode::damaged && fs::exists(DatabaseIn(folder)))
            throw;
        return {};
    }
}

} // namespace

void ModelUse::opened(const Guid& project, const fs::path& dataFolder, const std::vector<Guid>& models)
{
    closed(project);
    const std::scoped_lock lock(m_mutex);
    m_owners[project] = {dataFolder, {models.begin(), models.end()}};
    for (const auto& model : models)
        m_ownersOfModel[model].insert(project);
}

void ModelUse::closed(const Guid& project)
{
    const std::scoped_lock lock(m_mutex);
    const auto owner = m_owners.find(project);
    if (owner == m_owners.end())
        return;
    for (const auto& model : owner->second.models) {
        auto& owners = m_ownersOfModel[model];
        owners.erase(project);
        if (owners.empty())
            m_ownersOfModel.erase(model);
    }
    m_owners.erase(owner);
}

void ModelUse::added(const Guid& project, const Guid& model)
{
    const std::scoped_lock lock(m_mutex);
    const auto owner = m_owners.find(project);
    if (owner == m_owners.end())
        return;
    owner->second.models.insert(model);
    m_ownersOfModel[model].insert(project);
}

void ModelUse::removed(const Guid& project, const Guid& model)
{
    const std::scoped_lock lock(m_mutex);
    const auto owner = m_owners.find(project);
    if (owner == m_owners.end() || owner->second.models.erase(model) == 0)
        return;
    auto& owners = m_ownersOfModel[model];
    owners.erase(project);
    if (owners.empty())
        m_ownersOfModel.erase(model);
}

std::optional<fs::path> ModelUse::dataFolderOf(const Guid& model) const
{
    const std::scoped_lock lock(m_mutex);
    const auto owners = m_ownersOfModel.find(model);
    if (owners == m_ownersOfModel.end())
        return std::nullopt;
    return m_owners.at(*owners->second.begin()).dataFolder;
}

std::vector<Guid> ModelUse::unusedOf(const fs::path& dataFolder, const std::vector<Guid>& models,
                                     const Guid& besides) const
{
    std::set<Guid> unused(models.begin(), models.end());
    {
        const std::scoped_lock lock(m_mutex);
        std::erase_if(unused, [&](const Guid& model) { return m_ownersOfModel.contains(model); });
    }
    for (const auto& text : ProjectGuids(dataFolder)) {
        if (unused.empty())
            return {};
        if (const auto project = GuidOf(text); project == besides || isOpen(project))
            continue;
        for (const auto& [model, type] : ModelTypesOnDisk(ProjectFolder(dataFolder, text)))
            unused.erase(GuidOf(model));
    }
    return {unused.begin(), unused.end()};
}

void ModelUse::removeIfUnused(const fs::path& dataFolder, const Guid& model) const
{
    if (fs::exists(ProjectFolder(dataFolder, GuidTextOf(model))) &&
        !unusedOf(dataFolder, {model}, {}).empty())
        SideFolder(m_disk, dataFolder).takeOut({GuidTextOf(model)});
}

bool ModelUse::isOpen(const Guid& project) const
{
    const std::scoped_lock lock(m_mutex);
    return m_owners.contains(project);
}

} // namespace ZRSmartDB
