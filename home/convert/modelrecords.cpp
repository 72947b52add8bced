// SPDX-License-Identifier: MIT
#include "convert/modelrecords.h"

#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrdbdirector.h"
#include "ZRSmartDB/zrmodelstore.h"
#include "ZRSmartDB/zrproject.h"
#include "core/filefunctions.h"
#include "project/guidtext.h"

namespace TorvoEditor
{

namespace
{

ZRSmartDB::IZRModelStore* ModelStore(const QString& bimGuid, const std::wstring& dataFolder)
{
    auto* database = ZRSmartDB::GetIDBDirector()->GetDatabase();
    if (database == nullptr)
        return nullptr;
    auto* project = database->OpenProject(KeyOf(bimGuid), dataFolder);
    return project != nullptr ? project->GetModelStore() : nullptr;
}

} // namespace

ZRSmartDB::IZRModelStore* OpenedModelStore(const QString& bimGuid)
{
    return ModelStore(bimGuid, {});
}

ZRSmartDB::IZRModelStore* ModelStoreOnDisk(const QString& bimGuid)
{
    return ModelStore(bimGuid, DataDir().toStdWString());
}

std::vector<const ZRSmartDB::IZRModelRecord*> ModelRecords(const QString& bimGuid)
{
    auto* store = ModelStoreOnDisk(bimGuid);
    if (store == nullptr)
        return {};
    std::vector<ZRSmartFormat::SZRFTGuid> keys;
    store->GetModelProjIds(keys);
    std::vector<const ZRSmartDB::IZRModelRecord*> records;
    for (const auto& key : keys) {
        if (const auto* record = store->GetModelProj(key))
            records.push_back(record);
    }
    return records;
}

bool CloseProject(const QString& bimGuid)
{
    auto* database = ZRSmartDB::GetIDBDirector()->GetDatabase();
    if (database == nullptr)
        return false;
    database->CloseProject(KeyOf(bimGuid));
    return true;
}

} // namespace TorvoEditor
