// SPDX-License-Identifier: MIT
#pragma once

#include "BizCommon/floorinfo.h"

#include <vector>

#include <QList>
#include <QString>

namespace BIZCOMMON::FLOORINFO
{

/// One floor of a model as the converter has found it.
struct ModelFloor {
    QString name;
    double elevation = 0; ///< metres
};

/// A model of a building project with its floors, lowest first, no two of one name.
struct ModelFloors {
    QString guid;
    std::vector<ModelFloor> floors;
};

/// The floors in the folder of a model. Names are trimmed and cut to 256 characters; floors without a name,
/// and what exceeds 10,000 of them, are left out. No floors when the file is missing or cannot be read; all
/// but the missing file is told in the log.
[[nodiscard]] std::vector<ModelFloor> ReadModelFloors(const QString& dataDir, const QString& model);

/// The models that the building project has now, in its own order, with their floors.
[[nodiscard]] std::vector<ModelFloors> ReadFloorsOfModels(const QString& dataDir, const QString& bimGuid);

/// One floor for each name in the models, with all of that name under it, lowest first. Where models differ
/// in a floor's elevation, the lowest counts.
[[nodiscard]] QList<TFloorRec> UnionOf(const std::vector<ModelFloors>& models);

} // namespace BIZCOMMON::FLOORINFO
