// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

namespace BIZCOMMON::FLOORINFO
{

/// One floor of a building project with the floors of its models that belong to it.
struct TFloorRec {
    QString floorName;
    QMap<QString, QStringList> mapping; ///< model guid to the names of the model's floors
};

/// The floors of one building project, kept in "floors.json" in the project's folder. GUI thread.
/// The order of the virtual operations is part of the contract.
class CFloorInfo
{
public:
    CFloorInfo(const QString& bimGuid, const QString& dataDir);
    virtual ~CFloorInfo();

    /// Reads what is stored for the projects named, here always the one project alone. A missing or damaged
    /// file reads as nothing stored.
    virtual void LoadFloors(const QStringList& bimGuids);

    /// The floors to offer when nothing has been stored: the union of the models' floors, by elevation.
    [[nodiscard]] virtual QList<TFloorRec> GetDefaultFloors();

    /// The floors of each model, by model guid, lowest first.
    [[nodiscard]] virtual QMap<QString, QStringList> GetProjFloors();

    /// Stores the list in place of the earlier one.
    virtual void SaveFloors(const QList<TFloorRec>& floors);

    /// The stored list; empty when there is none.
    [[nodiscard]] virtual QList<TFloorRec> GetFloors();

    /// The default floors, computed anew from the models as they are now.
    [[nodiscard]] virtual QList<TFloorRec> GetResetFloors();

    /// A model has joined the project: its floors become available.
    void AddKyvProj(const QString& model);

    /// A model has left the project: its floors go from the list, those of the others stay.
    void RemoveKyvProj(const QString& model);

    /// A model was replaced: matched floors of the same name go over to the new one.
    void UpdateKyvProj(const QString& oldModel, const QString& newModel);

private:
    class Storage;
    std::unique_ptr<Storage> m_storage;
};

} // namespace BIZCOMMON::FLOORINFO
