// SPDX-License-Identifier: MIT
#include "fakes/fakemodelstore.h"

#include "fakes/calls.h"

#include <algorithm>

namespace Fakes
{

namespace
{

QString Text(const ZRSmartFormat::SZRFTGuid& guid)
{
    return QString::fromStdWString(ZRSmartFormat::GuidToText(guid));
}

} // namespace

std::wstring ModelRecord::GetAttribute(const std::wstring& key) const
{
    const auto found = attributes.find(key);
    return found != attributes.end() ? found->second : std::wstring();
}

ModelRecord& ModelStore::add(const QString& guid, const QString& name)
{
    auto& record = *records.emplace_back(std::make_unique<ModelRecord>());
    record.guid = ZRSmartFormat::GuidFromText(guid.toStdWString());
    record.name = name.toStdWString();
    return record;
}

bool ModelStore::ImportModelProj(const Guid& model, const std::wstring& dataFolder)
{
    Called(QStringLiteral("ImportModelProj(%1,%2)").arg(Text(model), QString::fromStdWString(dataFolder)));
    if (takesIn)
        add(Text(model), QStringLiteral("imported"));
    return takesIn;
}

bool ModelStore::UpdateModelProj(const Guid& oldModel, const Guid& newModel, const std::wstring& dataFolder)
{
    Called(QStringLiteral("UpdateModelProj(%1,%2,%3)")
               .arg(Text(oldModel), Text(newModel), QString::fromStdWString(dataFolder)));
    if (takesIn) {
        drop(oldModel);
        add(Text(newModel), QStringLiteral("imported"));
    }
    return takesIn;
}

void ModelStore::RemoveModelProj(const Guid& model)
{
    Called(QStringLiteral("RemoveModelProj(%1)").arg(Text(model)));
    drop(model);
}

bool ModelStore::HasModelProj(const Guid& model) const
{
    return std::any_of(records.begin(), records.end(),
                       [&](const auto& record) { return record->guid == model; });
}

void ModelStore::GetModelProjIds(std::vector<Guid>& models) const
{
    models.clear();
    for (const auto& record : records)
        models.push_back(record->guid);
}

ZRSmartDB::IZRModelRecord* ModelStore::GetModelProj(const Guid& model)
{
    const auto found = std::find_if(records.begin(), records.end(),
                                    [&](const auto& record) { return record->guid == model; });
    return losesRecords || found == records.end() ? nullptr : found->get();
}

void ModelStore::drop(const Guid& model)
{
    std::erase_if(records, [&](const auto& record) { return record->guid == model; });
}

} // namespace Fakes
