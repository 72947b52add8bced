// SPDX-License-Identifier: MIT
#include "convert/floormatchedctrl.h"

#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrdbdirector.h"
#include "ZRSmartDB/zrproject.h"
#include "convert/floorinfomgr.h"
#include "convert/floortempmodel.h"
#include "core/homeapp.h"

#include <QJsonObject>
#include <QQmlContext>
#include <QSet>

namespace TorvoEditor
{

using BIZCOMMON::FLOORINFO::TFloorRec;

namespace
{

CFloorInfoMgr* FloorInfoMgr()
{
    return CHomeApp::instance().GetMgr<CFloorInfoMgr>();
}

/// The names of models, by guid. One that is not open has none.
QMap<QString, QString> NamesOf(ZRSmartDB::IZRDatabase& database, const QStringList& models)
{
    QMap<QString, QString> names;
    for (const auto& model : models) {
        auto* record = database.OpenProject(ZRSmartFormat::GuidFromText(model.toStdWString()), {});
        names[model] = record != nullptr ? QString::fromStdWString(record->GetName()) : QString();
    }
    return names;
}

FloorItems ItemsOf(const TFloorRec& floor, const QMap<QString, QString>& names)
{
    FloorItems items;
    for (auto model = floor.mapping.begin(); model != floor.mapping.end(); ++model) {
        for (const auto& name : *model)
            items[model.key()].append({model.key(), names.value(model.key()), name});
    }
    return items;
}

/// The names alone, as they are stored.
QMap<QString, QStringList> MappingOf(const FloorItems& items)
{
    QMap<QString, QStringList> mapping;
    for (auto model = items.begin(); model != items.end(); ++model) {
        for (const auto& item : *model)
            mapping[model.key()].append(item.floorName);
    }
    return mapping;
}

/// Adds what `from` has to `all`.
void Join(QMap<QString, QStringList>& all, const QMap<QString, QStringList>& from)
{
    for (auto model = from.begin(); model != from.end(); ++model)
        all[model.key()] += *model;
}

QSet<QString> SetOf(const QStringList& names)
{
    return {names.begin(), names.end()};
}

} // namespace

CFloorMatchedCtrl::CFloorMatchedCtrl()
    : m_floorModel(new CFloorTempModel(this))
{
}

void CFloorMatchedCtrl::RegisterContext(QQmlContext* context)
{
    context->setContextProperty(QStringLiteral("floorModel"), m_floorModel);
    context->setContextProperty(QStringLiteral("floorMatchedCtrl"), this);
}

QJsonArray CFloorMatchedCtrl::allMatchedProj() const
{
    QJsonArray models;
    for (const auto& floors : m_projFloors)
        models.append(QJsonObject{{QStringLiteral("projName"), floors.first().projName}});
    return models;
}

QJsonArray CFloorMatchedCtrl::seletedProjFloor() const
{
    QJsonArray floors;
    const auto chosen = m_projFloors.value(m_selectedProjIndex);
    for (const auto& floor : chosen)
        floors.append(QJsonObject{{QStringLiteral("floorName"), floor.floorName},
                                  {QStringLiteral("projGuid"), floor.projGuid},
                                  {QStringLiteral("projName"), floor.projName},
                                  {QStringLiteral("isMatched"), floor.isMatched}});
    return floors;
}

void CFloorMatchedCtrl::refillFloorInfo(const QString& bimProj)
{
    m_bimProj = bimProj;
    auto* floorInfo = FloorInfoMgr();
    if (floorInfo == nullptr)
        return;
    auto floors = floorInfo->GetFloors(m_bimProj);
    if (floors.isEmpty())
        floors = floorInfo->GetDefaultFloors(m_bimProj);
    fill(floors);
}

void CFloorMatchedCtrl::resetFloorInfo()
{
    if (auto* floorInfo = FloorInfoMgr())
        fill(floorInfo->GetResetFloors(m_bimProj));
}

void CFloorMatchedCtrl::fill(const QList<TFloorRec>& floors)
{
    auto* floorInfo = FloorInfoMgr();
    auto* database = ZRSmartDB::GetIDBDirector()->GetDatabase();
    if (floorInfo == nullptr || database == nullptr)
        return;
    const auto projFloors = floorInfo->GetProjFloors(m_bimProj);
    const auto names = NamesOf(*database, projFloors.keys());
    CFloorTempModel::Rows rows;
    ProjFloors matched;
    for (const auto& floor : floors) {
        rows.emplace_back(floor.floorName, ItemsOf(floor, names));
        Join(matched, floor.mapping);
    }
    m_floorModel->setRows(rows);
    fillProjFloors(projFloors, names, matched);
    emit allMatchedProjChanged();
    emit seletedProjFloorChanged();
}

void CFloorMatchedCtrl::fillProjFloors(const ProjFloors& projFloors, const QMap<QString, QString>& names,
                                       const ProjFloors& matched)
{
    m_projFloors.clear();
    for (auto model = projFloors.begin(); model != projFloors.end(); ++model) {
        const auto ofModel = SetOf(matched.value(model.key()));
        QList<TProjFloor> floors;
        for (const auto& name : *model)
            floors.append({{model.key(), names.value(model.key()), name}, ofModel.contains(name)});
        if (!floors.isEmpty())
            m_projFloors.append(floors);
    }
}

void CFloorMatchedCtrl::mark(const ProjFloors& floors, bool isMatched)
{
    for (auto& ofModel : m_projFloors) {
        const auto marked = SetOf(floors.value(ofModel.first().projGuid));
        if (marked.isEmpty())
            continue;
        for (auto& floor : ofModel) {
            if (marked.contains(floor.floorName))
                floor.isMatched = isMatched;
        }
    }
    emit seletedProjFloorChanged();
}

void CFloorMatchedCtrl::saveMatchedFloorInfo(bool bClearEmptyFloor)
{
    auto* floorInfo = FloorInfoMgr();
    if (floorInfo == nullptr)
        return;
    CFloorTempModel::Rows rows;
    m_floorModel->getRows(rows);
    QList<TFloorRec> floors;
    for (const auto& [name, items] : rows) {
        if (!bClearEmptyFloor || !items.isEmpty())
            floors.append({name, MappingOf(items)});
    }
    floorInfo->SaveFloors(m_bimProj, floors);
}

void CFloorMatchedCtrl::setSelectedProjIndex(int index)
{
    if (m_selectedProjIndex == index)
        return;
    m_selectedProjIndex = index;
    emit seletedProjFloorChanged();
}

bool CFloorMatchedCtrl::addMatchedFloor(const QString& kyvProj, const QString& projName,
                                        const QString& floorName)
{
    if (!m_floorModel->addCurItem(kyvProj, projName, floorName))
        return false;
    mark({{kyvProj, {floorName}}}, true);
    return true;
}

void CFloorMatchedCtrl::removeCurMatchedFloor(const QString& kyvProj, const QString& floorName)
{
    m_floorModel->removeCurItem(kyvProj, floorName);
    mark({{kyvProj, {floorName}}}, false);
}

void CFloorMatchedCtrl::removeFloorMatchedInfo(const QString& kyvProj, const QString& floorName)
{
    m_floorModel->removeItem(kyvProj, floorName);
    mark({{kyvProj, {floorName}}}, false);
}

bool CFloorMatchedCtrl::addModel(const QString& floorName)
{
    return m_floorModel->addFloor(floorName);
}

bool CFloorMatchedCtrl::removeSelectedModel()
{
    CFloorTempModel::Rows rows;
    m_floorModel->getSelectedRows(rows);
    if (rows.empty())
        return false;
    ProjFloors unmatched;
    for (const auto& row : rows)
        Join(unmatched, MappingOf(row.second));
    mark(unmatched, false);
    m_floorModel->removeSelectedRows();
    return true;
}

bool CFloorMatchedCtrl::changeFloorName(const QString& newName)
{
    return m_floorModel->renameCurFloor(newName);
}

void CFloorMatchedCtrl::moveUpCurrentModel()
{
    m_floorModel->moveCurUp();
}

void CFloorMatchedCtrl::movedownCurrentModel()
{
    m_floorModel->moveCurDown();
}

} // namespace TorvoEditor
