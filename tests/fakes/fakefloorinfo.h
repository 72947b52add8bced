// SPDX-License-Identifier: MIT
#pragma once

#include "BizCommon/floorinfo.h"

#include <QMap>
#include <QString>
#include <QStringList>

namespace Fakes
{

/// What the stand-in for CFloorInfo knows of one building project. SaveFloors replaces `stored`; nothing else
/// changes anything.
struct Floors {
    QList<BIZCOMMON::FLOORINFO::TFloorRec> stored;
    QList<BIZCOMMON::FLOORINFO::TFloorRec> defaults;
    QList<BIZCOMMON::FLOORINFO::TFloorRec> reset;
    QMap<QString, QStringList> ofModels;
};

/// The floors of a building project, for a test to fill and to read. Every call of a CFloorInfo is written
/// into the book of calls.
[[nodiscard]] Floors& FloorsOf(const QString& bimGuid);

/// Forgets the floors of every project.
void ForgetFloors();

} // namespace Fakes
