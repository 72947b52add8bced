// SPDX-License-Identifier: MIT
#include "bizcommon/modelfloors.h"

#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrdbdirector.h"
#include "ZRSmartDB/zrmodelstore.h"
#include "ZRSmartDB/zrproject.h"
#include "bizcommon/bizcommonlog.h"
#include "bizcommon/floorspath.h"
#include "bizcommon/jsonfile.h"

#include <algorithm>

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QSet>

namespace BIZCOMMON::FLOORINFO
{

namespace
{

constexpr qint64 maximumBytes = 16 * 1024 * 1024;
constexpr std::size_t maximumFloors = 10'000;
constexpr int maximumName = 256;

std::vector<ModelFloor> FloorsFrom(const QJsonArray& array)
{
    std::vector<ModelFloor> floors;
    for (const auto& entry : array) {
        const auto object = entry.toObject();
        const auto name = object.value(QLatin1String("name")).toString().left(maximumName).simplified();
        if (!name.isEmpty() && floors.size() < maximumFloors)
            floors.push_back({name, object.value(QLatin1String("elevation")).toDouble()});
    }
    return floors;
}

bool IsLower(const ModelFloor& one, const ModelFloor& other)
{
    return one.elevation < other.elevation;
}

/// A name stands for a floor from here on: of two floors of one name the lower one stays.
void SortAndUnite(std::vector<ModelFloor>& floors)
{
    std::stable_sort(floors.begin(), floors.end(), IsLower);
    QSet<QString> seen;
    std::erase_if(floors, [&](const ModelFloor& floor) {
        const auto known = seen.size();
        seen.insert(floor.name);
        return seen.size() == known;
    });
}

std::vector<ZRSmartFormat::SZRFTGuid> ModelsOf(const QString& dataDir, const QString& bimGuid)
{
    std::vector<ZRSmartFormat::SZRFTGuid> models;
    auto* database = ZRSmartDB::GetIDBDirector()->GetDatabase();
    if (database == nullptr)
        return models;
    auto* project =
        database->OpenProject(ZRSmartFormat::GuidFromText(bimGuid.toStdWString()), dataDir.toStdWString());
    auto* store = project != nullptr ? project->GetModelStore() : nullptr;
    if (store != nullptr)
        store->GetModelProjIds(models);
    return models;
}

} // namespace

std::vector<ModelFloor> ReadModelFloors(const QString& dataDir, const QString& model)
{
    const auto path = FloorsPath(dataDir, model);
    const auto file = ReadJson(path, maximumBytes);
    if (file.state == JsonFile::State::missing)
        return {};
    if (file.state == JsonFile::State::unreadable || !file.document.isArray()) {
        qCWarning(bizcommonLog) << "the floors in" << path << "cannot be read:" << file.reason;
        return {};
    }
    const auto array = file.document.array();
    auto floors = FloorsFrom(array);
    if (floors.size() < static_cast<std::size_t>(array.size()))
        qCWarning(bizcommonLog) << "of" << array.size() << "floors in" << path << floors.size() << "are used";
    SortAndUnite(floors);
    return floors;
}

std::vector<ModelFloors> ReadFloorsOfModels(const QString& dataDir, const QString& bimGuid)
{
    std::vector<ModelFloors> models;
    for (const auto& model : ModelsOf(dataDir, bimGuid)) {
        const auto guid = QString::fromStdWString(ZRSmartFormat::GuidToText(model));
        models.push_back({guid, ReadModelFloors(dataDir, guid)});
    }
    return models;
}

QList<TFloorRec> UnionOf(const std::vector<ModelFloors>& models)
{
    std::vector<ModelFloor> all;
    QHash<QString, TFloorRec> byName;
    for (const auto& model : models) {
        for (const auto& floor : model.floors) {
            byName[floor.name].mapping[model.guid].append(floor.name);
            all.push_back(floor);
        }
    }
    SortAndUnite(all);
    QList<TFloorRec> united;
    for (const auto& floor : all)
        united.append({floor.name, byName.value(floor.name).mapping});
    return united;
}

} // namespace BIZCOMMON::FLOORINFO
