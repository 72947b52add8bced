// SPDX-License-Identifier: MIT
#include "convert/floorinfomgr.h"

#include "core/filefunctions.h"

namespace TorvoEditor
{

using BIZCOMMON::FLOORINFO::CFloorInfo;
using BIZCOMMON::FLOORINFO::TFloorRec;

void CFloorInfoMgr::Create(const QString& bimGuid)
{
    if (m_floorInfos.contains(bimGuid))
        return;
    auto floors = std::make_shared<CFloorInfo>(bimGuid, DataDir());
    floors->LoadFloors({bimGuid});
    m_floorInfos.insert(bimGuid, std::move(floors));
}

void CFloorInfoMgr::Remove(const QString& bimGuid)
{
    m_floorInfos.remove(bimGuid);
}

void CFloorInfoMgr::AddKyvProj(const QString& bimGuid, const QString& model)
{
    if (const auto floors = m_floorInfos.value(bimGuid))
        floors->AddKyvProj(model);
}

void CFloorInfoMgr::RemoveKyvProj(const QString& bimGuid, const QString& model)
{
    if (const auto floors = m_floorInfos.value(bimGuid))
        floors->RemoveKyvProj(model);
}

void CFloorInfoMgr::UpdateKyvProj(const QString& bimGuid, const QString& oldModel, const QString& newModel)
{
    if (const auto floors = m_floorInfos.value(bimGuid))
        floors->UpdateKyvProj(oldModel, newModel);
}

void CFloorInfoMgr::SaveFloors(const QString& bimGuid, const QList<TFloorRec>& floors)
{
    if (const auto info = m_floorInfos.value(bimGuid))
        info->SaveFloors(floors);
}

QList<TFloorRec> CFloorInfoMgr::GetFloors(const QString& bimGuid) const
{
    const auto floors = m_floorInfos.value(bimGuid);
    return floors ? floors->GetFloors() : QList<TFloorRec>();
}

QList<TFloorRec> CFloorInfoMgr::GetDefaultFloors(const QString& bimGuid)
{
    const auto floors = m_floorInfos.value(bimGuid);
    return floors ? floors->GetDefaultFloors() : QList<TFloorRec>();
}

QList<TFloorRec> CFloorInfoMgr::GetResetFloors(const QString& bimGuid) const
{
    const auto floors = m_floorInfos.value(bimGuid);
    return floors ? floors->GetResetFloors() : QList<TFloorRec>();
}

QMap<QString, QStringList> CFloorInfoMgr::GetProjFloors(const QString& bimGuid) const
{
    const auto floors = m_floorInfos.value(bimGuid);
    return floors ? floors->GetProjFloors() : QMap<QString, QStringList>();
}

} // namespace TorvoEditor
