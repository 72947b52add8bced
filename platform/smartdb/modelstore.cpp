// SPDX-License-Identifier: MIT
#include "smartdb/modelstore.h"

#include "smartdb/data/modelfolder.h"
#include "smartdb/data/projectfile.h"
#include "smartdb/failure.h"
#include "smartdb/modeluse.h"
#include "smartdb/project.h"
#include "smartdb/text.h"

#include <utility>

namespace ZRSmartDB
{

class ModelRecord final : public IZRModelRecord
{
public:
    explicit ModelRecord(ModelData data)
        : m_data(std::move(data))
        , m_guid(GuidOf(m_data.guid))
    {
    }

    [[nodiscard]] ZRSmartFormat::SZRFTGuid GetGuid() const override { return m_guid; }
    [[nodiscard]] std::wstring GetName() const override { return WideOf(m_data.name); }
    [[nodiscard]] std::wstring GetType() const override { return WideOf(m_data.type); }
    [[nodiscard]] std::wstring GetAttribute(const std::wstring& key) const override
    {
        const auto attribute = m_data.attributes.find(Utf8Of(key));
        return attribute != m_data.attributes.end() ? WideOf(attribute->second) : std::wstring();
    }

    [[nodiscard]] const ZRSmartFormat::SZRFTGuid& guid() const { return m_guid; }

private:
    const ModelData m_data;
    const ZRSmartFormat::SZRFTGuid m_guid;
};

ModelStore::ModelStore(const Project& project, ModelUse& use)
    : m_project(project)
    , m_use(use)
{
}

ModelStore::~ModelStore() = default;

void ModelStore::load() const
{
    if (m_isLoaded)
        return;
    for (auto& data : ProjectFile(m_project.folder()).readModels())
        remember(std::move(data));
    m_isLoaded = true;
}

void ModelStore::remember(ModelData data) const
{
    auto* record = m_records.emplace_back(std::make_unique<ModelRecord>(std::move(data))).get();
    m_byGuid[record->guid()] = record;
}

void ModelStore::forget(const Guid& guid) const
{
    if (m_byGuid.erase(guid) == 0)
        return;
    std::erase_if(m_records, [&](const auto& record) { return record->guid() == guid; });
}

ModelRecord* ModelStore::find(const Guid& guid) const
{
    load();
    const auto found = m_byGuid.find(guid);
    return found != m_byGuid.end() ? found->second : nullptr;
}

void ModelStore::require(const Guid& guid) const
{
    if (find(guid) == nullptr)
        throw Failure(localcode::notHere, "the project has no model " + GuidTextOf(guid));
}

void ModelStore::requireNone(const Guid& guid) const
{
    if (find(guid) != nullptr)
        throw Failure(localcode::exists, "the project has the model already: " + GuidTextOf(guid));
}

void ModelStore::replace(const Guid* removed, const Guid& added, const std::wstring& dataFolder)
{
    auto data = AdoptModel(PathOf(dataFolder), GuidTextOf(added));
    ProjectChange change;
    change.putModels.push_back(data);
    if (removed != nullptr)
        change.removedModels.push_back(GuidTextOf(*removed));
    ProjectFile(m_project.folder()).write(change);
    if (removed != nullptr)
        forget(*removed);
    remember(std::move(data));
    m_use.added(m_project.GetGuid(), added);
}

void ModelStore::letGoOf(const Guid& guid)
{
    m_use.removed(m_project.GetGuid(), guid);
    // The project is right already; a folder that cannot be removed is not worth a failure.
    AtBorder([&] { m_use.removeIfUnused(m_project.dataFolder(), guid); });
}

bool ModelStore::ImportModelProj(const ZRSmartFormat::SZRFTGuid& model, const std::wstring& dataFolder)
{
    return AtBorder(false, [&] {
        const std::lock_guard lock(m_mutex);
        requireNone(model);
        replace(nullptr, model, dataFolder);
        return true;
    });
}

bool ModelStore::UpdateModelProj(const ZRSmartFormat::SZRFTGuid& oldModel,
                                 const ZRSmartFormat::SZRFTGuid& newModel, const std::wstring& dataFolder)
{
    return AtBorder(false, [&] {
        const std::lock_guard lock(m_mutex);
        require(oldModel);
        requireNone(newModel);
        replace(&oldModel, newModel, dataFolder);
        letGoOf(oldModel);
        return true;
    });
}

void ModelStore::RemoveModelProj(const ZRSmartFormat::SZRFTGuid& model)
{
    AtBorder([&] {
        const std::lock_guard lock(m_mutex);
        if (find(model) == nullptr)
            return;
        ProjectChange change;
        change.removedModels.push_back(GuidTextOf(model));
        ProjectFile(m_project.folder()).write(change);
        forget(model);
        letGoOf(model);
    });
}

bool ModelStore::HasModelProj(const ZRSmartFormat::SZRFTGuid& model) const
{
    return AtBorder(false, [&] {
        const std::lock_guard lock(m_mutex);
        return find(model) != nullptr;
    });
}

void ModelStore::GetModelProjIds(std::vector<ZRSmartFormat::SZRFTGuid>& models) const
{
    models.clear();
    AtBorder([&] {
        const std::lock_guard lock(m_mutex);
        load();
        models.reserve(m_records.size());
        for (const auto& record : m_records)
            models.push_back(record->guid());
    });
}

IZRModelRecord* ModelStore::GetModelProj(const ZRSmartFormat::SZRFTGuid& model)
{
    return AtBorder<IZRModelRecord*>(nullptr, [&]() -> IZRModelRecord* {
        const std::lock_guard lock(m_mutex);
        return find(model);
    });
}

} // namespace ZRSmartDB
