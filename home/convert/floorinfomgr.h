// SPDX-License-Identifier: MIT
#pragma once

#include "BizCommon/floorinfo.h"
#include "core/mgrobj.h"

#include <memory>

#include <QMap>
#include <QString>
#include <QStringList>

namespace TorvoEditor
{

/// The floors of the building projects whose models are on the screen: one CFloorInfo for each, from Create
/// to Remove. An operation on a project without one does nothing and gives nothing. GUI thread.
class CFloorInfoMgr : public IMgrObj
{
public:
    void Init() override {}
    void UnInit() override {}

    /// The floors to offer when nothing has been stored.
    [[nodiscard]] virtual QList<BIZCOMMON::FLOORINFO::TFloorRec> GetDefaultFloors(const QString& bimGuid);

    /// Reads the project's floors, unless that has been done already.
    void Create(const QString& bimGuid);
    void Remove(const QString& bimGuid);

    /// A model has joined the project, left it, or was replaced.
    void AddKyvProj(const QString& bimGuid, const QString& model);
    void RemoveKyvProj(const QString& bimGuid, const QString& model);
    void UpdateKyvProj(const QString& bimGuid, const QString& oldModel, const QString& newModel);

    void SaveFloors(const QString& bimGuid, const QList<BIZCOMMON::FLOORINFO::TFloorRec>& floors);

    /// What is stored.
    [[nodiscard]] QList<BIZCOMMON::FLOORINFO::TFloorRec> GetFloors(const QString& bimGuid) const;
    /// What a new start would begin with.
    [[nodiscard]] QList<BIZCOMMON::FLOORINFO::TFloorRec> GetResetFloors(const QString& bimGuid) const;
    /// The floors of each model, by model guid.
    [[nodiscard]] QMap<QString, QStringList> GetProjFloors(const QString& bimGuid) const;

private:
    using FloorInfo = std::shared_ptr<BIZCOMMON::FLOORINFO::CFloorInfo>;

    QMap<QString, FloorInfo> m_floorInfos; ///< by building project
};

} // namespace TorvoEditor
