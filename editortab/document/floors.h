// SPDX-License-Identifier: MIT
#pragma once

#include "bizcommon/modelfloors.h"
#include "gltf/model.h"

#include <vector>

#include <QMap>
#include <QString>
#include <QStringList>

namespace editortab
{

/// A floor of a building that is shown, and the floors of its models that belong to it.
struct FloorEntry {
    QString name;
    int building = 0;                   ///< index in Document::buildings
    QMap<QString, QStringList> mapping; ///< model guid to the names of the model's floors
};

/// The floors of a building project, lowest first: those that somebody has stored, or else all that its
/// models have.
[[nodiscard]] std::vector<FloorEntry> ReadFloors(const QString& dataFolder, const QString& guid,
                                                 int building);

/// For each node of a model the number of the floor that it stands on, or -1. A node below one that is named
/// after a floor stands on that; of the others the middle of their height decides, and what is below all
/// floors stands on the lowest.
[[nodiscard]] std::vector<int> FloorsOfNodes(const gltf::Model& model,
                                             const std::vector<BIZCOMMON::FLOORINFO::ModelFloor>& floors);

} // namespace editortab
