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
    {
    }

    [[nodiscard]] ZRSmartFormat::SZRFTGuid GetGuid() const override { return GuidOf(m_data.guid); }
    [[nodiscard]] std::wstring GetName() const override { return WideOf(m_data.name); }
    [[nodiscard]] std::wstring GetType() const override { return WideOf(m_data.type); }
    [[nodiscard]] std::wstring GetAttribute(const std::wstring& key) const override
    {
        const auto attribute = m_data.attributes.find(Utf8Of(key));
        return attribute != m_data.attributes.end() ? WideOf(attribute->second) : std::wstring();
    }

    [[nodiscard]] const std::string& guid() const { return m_data.guid; }

private:
    const ModelData m_data;
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

void ModelStore::forget(const std::string& guid) const
{
    m_byGuid.erase(guid);
    std::erase_if(m_records, [&](const auto& record) { return record->guid() == guid; });
}

ModelRecord* ModelStore::find(const std::string& guid) const
{
    load();
    const auto found = m_byGuid.find(guid);
    return found != m_byGuid.end() ? found->second : nullptr;
}

ModelRecord& ModelStore::require(const std::string& guid) const
{
    if (auto* record = find(guid))
        return *record;
    throw Failure(localcode::notHere, "the project has no model " + guid);
}

void ModelStore::requireNone(const std::string& guid) const
{
    if (find(guid) != nullptr)
        throw Failure(localcode::exists, "the project has the model already: " + guid);
}

void ModelStore::replace(const std::string& removed, const std::string& added, const std::wstring& dataFolder)
{
    auto data = AdoptModel(PathOf(dataFolder), added);
    ProjectChange change;
    change.putModels.push_back(data);
    if (!removed.empty())
        change.removedModels.push_back(removed);
    ProjectFile(m_project.folder()).write(change);
    forget(removed);
    remember(std::move(data));
    m_use.added(m_project.GetGuid(), GuidOf(added));
}

void ModelStore::letGoOf(const std::string& guid)
{
    m_use.removed(m_project.GetGuid(), GuidOf(guid));
    // The project is right already; a folder that cannot be removed is not worth a failure.
    AtBorder([&] { m_use.removeIfUnused(m_project.dataFolder(), GuidOf(guid)); });
}

bool ModelStore::ImportModelProj(const ZRSmartFormat::SZRFTGuid& model, const std::wstring& dataFolder)
{
    return AtBorder(false, [&] {
        const std::lock_guard lock(m_mutex);
        requireNone(GuidTextOf(model));
        replace({}, GuidTextOf(model), dataFolder);
        return true;
    });
}

bool ModelStore::UpdateModelProj(const ZRSmartFormat::SZRFTGuid& oldModel,
                                 const ZRSmartFormat::SZRFTGuid& newModel, const std::wstring& dataFolder)
{
    return AtBorder(false, [&] {
        const std::lock_guard lock(m_mutex);
        static_cast<void>(require(GuidTextOf(oldModel)));
        requireNone(GuidTextOf(newModel));
        replace(GuidTextOf(oldModel), GuidTextOf(newModel), dataFolder);
        letGoOf(GuidTextOf(oldModel));
        return true;
    });
}

void ModelStore::RemoveModelProj(const ZRSmartFormat::SZRFTGuid& model)
{
    AtBorder([&] {
        const std::lock_guard lock(m_mutex);
        const auto guid = GuidTextOf(model);
        if (find(guid) == nullptr)
            return;
        ProjectChange change;
        change.removedModels.push_back(guid);
        ProjectFile(m_project.folder()).write(change);
        forget(guid);
        letGoOf(guid);
    });
}

bool ModelStore::HasModelProj(const ZRSmartFormat::SZRFTGuid& model) const
{
    return AtBorder(false, [&] {
        const std::lock_guard lock(m_mutex);
        return find(GuidTextOf(model)) != nullptr;
    });
}

void ModelStore::GetModelProjIds(std::vector<ZRSmartFormat::SZRFTGuid>& models) const
{
    models.clear();
    AtBorder([&] {
        const std::lock_guard lock(m_mutex);
        load();
        for (const auto& record : m_records)
            models.push_back(record->GetGuid());
    });
}

IZRModelRecord* ModelStore::GetModelProj(const ZRSmartFormat::SZRFTGuid& model)
{
    return AtBorder<IZRModelRecord*>(nullptr, [&]() -> IZRModelRecord* {
        const std::lock_guard lock(m_mutex);
        return find(GuidTextOf(model));
    });
}

} // namespace ZRSmartDB
