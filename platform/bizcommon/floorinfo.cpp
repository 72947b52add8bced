// SPDX-License-Identifier: MIT
#include "BizCommon/floorinfo.h"

#include "bizcommon/floorfile.h"
#include "bizcommon/modelfloors.h"

#include <algorithm>
#include <utility>

namespace BIZCOMMON::FLOORINFO
{

/// Files and models are read anew at each call: an update of the project changes both behind our back.
class CFloorInfo::Storage
{
public:
    Storage(QString bimGuid, QString dataDir)
        : file(bimGuid, dataDir)
        , m_bimGuid(std::move(bimGuid))
        , m_dataDir(std::move(dataDir))
    {
    }

    [[nodiscard]] std::vector<ModelFloors> models() const { return ReadFloorsOfModels(m_dataDir, m_bimGuid); }
    [[nodiscard]] std::vector<ModelFloor> floorsOf(const QString& model) const
    {
        return ReadModelFloors(m_dataDir, model);
    }

    const FloorFile file;

private:
    const QString m_bimGuid;
    const QString m_dataDir;
};

CFloorInfo::CFloorInfo(const QString& bimGuid, const QString& dataDir)
    : m_storage(std::make_unique<Storage>(bimGuid, dataDir))
{
}

CFloorInfo::~CFloorInfo() = default;

void CFloorInfo::LoadFloors(const QStringList& bimGuids)
{
    Q_UNUSED(bimGuids)
    // What is wrong with the file is told when the project is opened, not only when its floors are looked at.
    static_cast<void>(m_storage->file.read());
}

QList<TFloorRec> CFloorInfo::GetDefaultFloors()
{
    return UnionOf(m_storage->models());
}

QMap<QString, QStringList> CFloorInfo::GetProjFloors()
{
    QMap<QString, QStringList> names;
    for (const auto& model : m_storage->models()) {
        auto& list = names[model.guid];
        for (const auto& floor : model.floors)
            list.append(floor.name);
    }
    return names;
}

void CFloorInfo::SaveFloors(const QList<TFloorRec>& floors)
{
    m_storage->file.write(floors);
}

QList<TFloorRec> CFloorInfo::GetFloors()
{
    return m_storage->file.read();
}

QList<TFloorRec> CFloorInfo::GetResetFloors()
{
    return UnionOf(m_storage->models());
}

void CFloorInfo::AddKyvProj(const QString& model)
{
    // Its floors are there to be matched as soon as the project's database has it.
    Q_UNUSED(model)
}

void CFloorInfo::RemoveKyvProj(const QString& model)
{
    auto floors = m_storage->file.read();
    int matched = 0;
    for (auto& floor : floors)
        matched += floor.mapping.remove(model);
    if (matched > 0)
        m_storage->file.write(floors);
}

void CFloorInfo::UpdateKyvProj(const QString& oldModel, const QString& newModel)
{
    QStringList known;
    for (const auto& floor : m_storage->floorsOf(newModel))
        known.append(floor.name);
    auto floors = m_storage->file.read();
    bool isMatched = false;
    for (auto& floor : floors) {
        if (!floor.mapping.contains(oldModel))
            continue;
        isMatched = true;
        auto names = floor.mapping.take(oldModel);
        names.erase(std::remove_if(names.begin(), names.end(),
                                   [&](const QString& name) { return !known.contains(name); }),
                    names.end());
        if (!names.isEmpty())
            floor.mapping[newModel] += names;
    }
    if (isMatched)
        m_storage->file.write(floors);
}

} // namespace BIZCOMMON::FLOORINFO
