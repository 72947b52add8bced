// SPDX-License-Identifier: MIT
#include "floorscreens.h"

#include "convert/floorinfomgr.h"
#include "convert/floormatchedctrl.h"
#include "convert/floortempmodel.h"
#include "fakes/fakefloorinfo.h"
#include "fakes/floortexts.h"

#include <QJsonArray>
#include <QJsonObject>

using namespace TorvoEditor;

namespace
{

const QString shown = QStringLiteral("shown");

CHomeApp& App()
{
    return CHomeApp::instance();
}

QList<BIZCOMMON::FLOORINFO::TFloorRec> FloorsFrom(const QVariantList& list)
{
    QList<BIZCOMMON::FLOORINFO::TFloorRec> floors;
    for (const auto& entry : list) {
        const auto map = entry.toMap();
        BIZCOMMON::FLOORINFO::TFloorRec floor{map.value(QStringLiteral("name")).toString(), {}};
        const auto models = map.value(QStringLiteral("models")).toMap();
        for (auto model = models.begin(); model != models.end(); ++model)
            floor.mapping.insert(model.key(), model->toStringList());
        floors.append(floor);
    }
    return floors;
}

} // namespace

void FloorScreens::start(const QVariantList& stored, const QVariantList& reset, const QVariantList& models)
{
    end();
    m_surroundings = std::make_unique<Fakes::Surroundings>();
    Fakes::ForgetFloors();
    if (!App().Init(Fakes::TestSession()))
        qFatal("no home");
    auto& floors = Fakes::FloorsOf(shown);
    floors.stored = FloorsFrom(stored);
    floors.reset = FloorsFrom(reset);
    for (const auto& entry : models) {
        const auto model = entry.toMap();
        const auto guid = model.value(QStringLiteral("guid")).toString();
        auto& project = Fakes::SmartDB::instance().add(guid, model.value(QStringLiteral("name")).toString(),
                                                       QStringLiteral("MODEL"));
        project.isOpen = true;
        floors.ofModels.insert(guid, model.value(QStringLiteral("floors")).toStringList());
    }
    App().GetMgr<CFloorInfoMgr>()->Create(shown);
}

void FloorScreens::end()
{
    m_surroundings.reset();
}

QStringList FloorScreens::stored() const
{
    return Fakes::TextsOf(Fakes::FloorsOf(shown).stored);
}

QStringList FloorScreens::rows() const
{
    const auto& rows = *qobject_cast<CFloorTempModel*>(model());
    QStringList lines;
    for (int index = 0; index < rows.rowCount(); ++index) {
        const auto* row =
            rows.data(rows.index(index), CFloorTempModel::listDataRole).value<CFloorTempData*>();
        lines.append(row->floorName() + (row->isSelected() ? QStringLiteral("*") : QString()));
    }
    return lines;
}

QStringList FloorScreens::matched() const
{
    QStringList lines;
    const auto floors = qobject_cast<CFloorTempModel*>(model())->curMatchedFloors();
    for (const auto& entry : floors) {
        const auto floor = entry.toObject();
        lines.append(floor.value(QLatin1String("projGuid")).toString() + QLatin1Char(' ') +
                     floor.value(QLatin1String("floorName")).toString());
    }
    return lines;
}

QObject* FloorScreens::ctrl() const
{
    return App().GetMgr<CFloorMatchedCtrl>();
}

QObject* FloorScreens::model() const
{
    const auto* found = App().GetMgr<CFloorMatchedCtrl>();
    return found != nullptr ? found->findChild<CFloorTempModel*>() : nullptr;
}
