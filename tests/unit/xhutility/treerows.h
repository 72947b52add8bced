// SPDX-License-Identifier: MIT
#pragma once

#include "XHUtility/treemodel.h"

#include <QAbstractItemModel>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// An item for a project.
[[nodiscard]] inline QStandardItem* ProjectItem(const QString& name)
{
    auto* item = new QStandardItem;
    item->setData(
        QVariantMap{{QStringLiteral("text1"), name}, {QStringLiteral("text2"), QStringLiteral("guid")}},
        XHUTILITY::CTreeModel::valueRole);
    return item;
}

/// An item for a department.
[[nodiscard]] inline QStandardItem* DepartmentItem(const QString& name)
{
    auto* item = new QStandardItem;
    item->setData(
        QVariantMap{{QStringLiteral("text1"), name}, {QStringLiteral("type"), QStringLiteral("orgType")}},
        XHUTILITY::CTreeModel::valueRole);
    return item;
}

[[nodiscard]] inline QString NameAt(const QModelIndex& index)
{
    return index.data(XHUTILITY::CTreeModel::valueRole).toMap().value(QStringLiteral("text1")).toString();
}

/// The names of all items from the top down, each with a dot before it for every item above it.
[[nodiscard]] inline QStringList Outline(const QAbstractItemModel& model, const QModelIndex& parent = {},
                                         const QString& indent = {})
{
    QStringList lines;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const auto index = model.index(row, 0, parent);
        lines += indent + NameAt(index);
        lines += Outline(model, index, indent + QLatin1Char('.'));
    }
    return lines;
}
