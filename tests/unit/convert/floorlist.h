// SPDX-License-Identifier: MIT
#pragma once

#include "convert/floortempmodel.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

// The floor list as lines of text.

inline TorvoEditor::CFloorTempData& RowAt(const TorvoEditor::CFloorTempModel& model, int index)
{
    const auto value = model.data(model.index(index), TorvoEditor::CFloorTempModel::listDataRole);
    return *value.value<TorvoEditor::CFloorTempData*>();
}

/// The names, with a star behind those of selected rows.
inline QStringList ListOf(const TorvoEditor::CFloorTempModel& model)
{
    QStringList lines;
    for (int index = 0; index < model.rowCount(); ++index) {
        const auto& row = RowAt(model, index);
        lines.append(row.floorName() + (row.isSelected() ? "*" : ""));
    }
    return lines;
}

/// What is matched to the current row: "guid name floor" of each.
inline QStringList MatchedOf(const TorvoEditor::CFloorTempModel& model)
{
    QStringList lines;
    const auto floors = model.curMatchedFloors();
    for (const auto& entry : floors) {
        const auto floor = entry.toObject();
        lines.append(QStringList({floor["projGuid"].toString(), floor["projName"].toString(),
                                  floor["floorName"].toString()})
                         .join(' '));
    }
    return lines;
}
