// SPDX-License-Identifier: MIT
#pragma once

#include "BizCommon/floorinfo.h"
#include "convert/floortempdata.h"
#include "core/mgrobj.h"

#include <QJsonArray>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

namespace TorvoEditor
{

class CFloorTempModel;

/// One floor of one model, as the right-hand list of the floor dialog shows it.
struct TProjFloor : TFloorItem {
    bool isMatched = false; ///< to some floor of the project
};

/// The floor dialog: takes a copy of a project's floors, lets it be edited, and hands it back when the user
/// confirms. Until then nothing is stored, so a cancelled dialog needs no code. Published as
/// "floorMatchedCtrl", its rows as "floorModel". GUI thread.
class CFloorMatchedCtrl : public QObject, public IMgrObj
{
    Q_OBJECT
    /// "projName" of each model that has floors.
    Q_PROPERTY(QJsonArray allMatchedProj READ allMatchedProj NOTIFY allMatchedProjChanged)
    /// "floorName", "projGuid", "projName" and "isMatched" of each floor of the chosen model.
    Q_PROPERTY(QJsonArray seletedProjFloor READ seletedProjFloor NOTIFY seletedProjFloorChanged)

public:
    CFloorMatchedCtrl();

    void Init() override {}
    void UnInit() override {}
    void RegisterContext(QQmlContext* context) override;

    [[nodiscard]] QJsonArray allMatchedProj() const;
    [[nodiscard]] QJsonArray seletedProjFloor() const;

    /// Takes the stored floors of the project, or the default ones when nothing is stored. Comes before
    /// everything else.
    Q_INVOKABLE void refillFloorInfo(const QString& bimProj);
    /// Starts over with what the models give. Nothing is stored.
    Q_INVOKABLE void resetFloorInfo();
    /// Stores the rows, without those that nothing is matched to when `bClearEmptyFloor` is set; they stay in
    /// the list.
    Q_INVOKABLE void saveMatchedFloorInfo(bool bClearEmptyFloor);

    /// Chooses the model of the right-hand list. The choice outlives a refill and a reset.
    Q_INVOKABLE void setSelectedProjIndex(int index);

    /// Matches a model's floor to the current row. Does not look whether it is matched to another one.
    Q_INVOKABLE bool addMatchedFloor(const QString& kyvProj, const QString& projName,
                                     const QString& floorName);
    /// Takes it from the current row.
    Q_INVOKABLE void removeCurMatchedFloor(const QString& kyvProj, const QString& floorName);
    /// Takes it from the first row that has it.
    Q_INVOKABLE void removeFloorMatchedInfo(const QString& kyvProj, const QString& floorName);

    /// Adds a row; false when its name is taken.
    Q_INVOKABLE bool addModel(const QString& floorName);
    /// Removes the selected rows; false when none is.
    Q_INVOKABLE bool removeSelectedModel();
    /// Renames the current row; false when there is none or the name is taken.
    Q_INVOKABLE bool changeFloorName(const QString& newName);
    Q_INVOKABLE void moveUpCurrentModel();
    Q_INVOKABLE void movedownCurrentModel();

signals:
    void allMatchedProjChanged();
    void seletedProjFloorChanged();

private:
    using ProjFloors = QMap<QString, QStringList>; ///< names of floors by model guid

    void fill(const QList<BIZCOMMON::FLOORINFO::TFloorRec>& floors);
    void fillProjFloors(const ProjFloors& projFloors, const QMap<QString, QString>& names,
                        const ProjFloors& matched);
    void mark(const ProjFloors& floors, bool isMatched);

    QString m_bimProj;
    CFloorTempModel* m_floorModel;         ///< owned
    QList<QList<TProjFloor>> m_projFloors; ///< a list for each model that has floors
    int m_selectedProjIndex = 0;           ///< in m_projFloors; may lie outside of it
};

} // namespace TorvoEditor
