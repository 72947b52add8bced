// SPDX-License-Identifier: MIT
#include "smartdb/modelstore.h"

#include "smartdb/data/projectfile.h"
#include "smartdb/project.h"
#include "smartdb/text.h"

#include <algorithm>

namespace ZRSmartDB
{

ZRSmartFormat::SZRFTGuid ModelRecord::GetGuid() const
{
    return GuidOf(m_data.guid);
}

std::wstring ModelRecord::GetName() const
{
    return WideOf(m_data.name);
}

std::wstring ModelRecord::GetType() const
{
    return WideOf(m_data.type);
}

std::wstring ModelRecord::GetAttribute(const std::wstring& key) const
{
    const auto attribute = m_data.attributes.find(Utf8Of(key));
    return attribute != m_data.attributes.end() ? WideOf(attribute->second) : std::wstring();
}

void ModelStore::load() const
{
    if (m_isLoaded)
        return;
    try {
        for (auto& data : ProjectFile(m_project.folder()).readModels())
            m_records.push_back(std::make_unique<ModelRecord>(std::move(data)));
        m_isLoaded = true;
    } catch (const ProjectFileError&) {
        // The project opened a moment ago; whoever asks again finds the models, or the project gone.
        m_records.clear();
    }
}

ModelRecord* ModelStore::find(const std::string& guid) const
{
    const auto found = std::find_if(m_records.begin(), m_records.end(),
                                    [&](const auto& record) { return record->data().guid == guid; });
    return found != m_records.end() ? found->get() : nullptr;
}

bool ModelStore::change(const std::string& added, const std::string& removed, const std::wstring& dataFolder)
{
    const std::lock_guard lock(m_mutex);
    load();
    try {
        ProjectChange change;
        if (!added.empty()) {
            const auto head = ProjectFile(ProjectFolder(PathOf(dataFolder), added)).readHead();
            change.putModels.push_back({added, head.name, head.type, head.attributes});
        }
        if (!removed.empty())
            change.removedModels.push_back(removed);
        ProjectFile(m_project.folder()).write(change);
        std::erase_if(m_records, [&](const auto& record) {
            return record->data().guid == removed || record->data().guid == added;
        });
        for (auto& data : change.putModels)
            m_records.push_back(std::make_unique<ModelRecord>(std::move(data)));
    } catch (const ProjectFileError&) {
        return false;
    }
    std::vector<std::string> guids;
    for (const auto& record : m_records) {
        if (record->data().type == "MODEL")
            guids.push_back(record->data().guid);
    }
    m_project.setModelGuids(std::move(guids));
    return true;
}

bool ModelStore::ImportModelProj(const ZRSmartFormat::SZRFTGuid& model, const std::wstring& dataFolder)
{
    return change(GuidTextOf(model), {}, dataFolder);
}

bool ModelStore::UpdateModelProj(const ZRSmartFormat::SZRFTGuid& oldModel,
                                 const ZRSmartFormat::SZRFTGuid& newModel, const std::wstring& dataFolder)
{
    return change(GuidTextOf(newModel), GuidTextOf(oldModel), dataFolder);
}

void ModelStore::RemoveModelProj(const ZRSmartFormat::SZRFTGuid& model)
{
    if (HasModelProj(model))
        static_cast<void>(change({}, GuidTextOf(model), {}));
}

bool ModelStore::HasModelProj(const ZRSmartFormat::SZRFTGuid& model) const
{
    const std::lock_guard lock(m_mutex);
    load();
    return find(GuidTextOf(model)) != nullptr;
}

void ModelStore::GetModelProjIds(std::vector<ZRSmartFormat::SZRFTGuid>& models) const
{
    const std::lock_guard lock(m_mutex);
    load();
    models.clear();
    for (const auto& record : m_records)
        models.push_back(record->GetGuid());
}

IZRModelRecord* ModelStore::GetModelProj(const ZRSmartFormat::SZRFTGuid& model)
{
    const std::lock_guard lock(m_mutex);
    load();
    return find(GuidTextOf(model));
}

std::vector<std::pair<std::string, std::string>> ModelStore::types() const
{
    const std::lock_guard lock(m_mutex);
    load();
    std::vector<std::pair<std::string, std::string>> types;
    for (const auto& record : m_records)
        types.emplace_back(record->data().guid, record->data().type);
    return types;
}

} // namespace ZRSmartDB
