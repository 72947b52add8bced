// SPDX-License-Identifier: MIT
#include "editortab/window/floorlist.h"

#include <algorithm>

namespace editortab
{

FloorList::FloorList(QObject* parent)
    : QAbstractListModel(parent)
{
}

void FloorList::setDocument(const Document& document)
{
    beginResetModel();
    const auto before = std::move(m_items);
    m_items.clear();
    const auto& buildings = document.buildings();
    for (const auto& floor : document.floors()) {
        Item item{floor, buildings.size() > 1 ? buildings[static_cast<std::size_t>(floor.building)].name
                                              : QString()};
        item.isVisible = std::none_of(before.begin(), before.end(), [&](const Item& old) {
            return !old.isVisible && old.floor.building == floor.building && old.floor.name == floor.name;
        });
        m_items.push_back(std::move(item));
    }
    std::reverse(m_items.begin(), m_items.end());
    std::stable_sort(m_items.begin(), m_items.end(), [](const Item& one, const Item& other) {
        return one.floor.building < other.floor.building;
    });
    endResetModel();
}

bool FloorList::isHidden(int building, const QString& model, const QString& floor) const
{
    bool isKnown = false;
    for (const auto& item : m_items) {
        if (item.floor.building != building || !item.floor.mapping.value(model).contains(floor))
            continue;
        if (item.isVisible)
            return false;
        isKnown = true;
    }
    return isKnown;
}

std::vector<bool> FloorList::hiddenNodes(const Document& document, int model, const gltf::Model& nodes) const
{
    std::vector<bool> hidden(nodes.nodes.size());
    const auto& entry = document.models()[static_cast<std::size_t>(model)];
    std::vector<bool> isFloorHidden;
    for (const auto& floor : entry.floors)
        isFloorHidden.push_back(isHidden(entry.building, entry.guid, floor.name));
    if (std::find(isFloorHidden.begin(), isFloorHidden.end(), true) == isFloorHidden.end())
        return hidden;
    const auto floors = FloorsOfNodes(nodes, entry.floors);
    for (std::size_t i = 0; i < floors.size(); ++i)
        hidden[i] = floors[i] >= 0 && isFloorHidden[static_cast<std::size_t>(floors[i])];
    return hidden;
}

int FloorList::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_items.size());
}

QString FloorList::nameOf(const Item& item) const
{
    return item.building.isEmpty() ? item.floor.name
                                   : QStringLiteral("%1　%2").arg(item.building, item.floor.name);
}

QVariant FloorList::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const auto& item = m_items[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return nameOf(item);
    case Qt::AccessibleTextRole:
        return item.isVisible ? tr("%1，显示").arg(nameOf(item)) : tr("%1，隐藏").arg(nameOf(item));
    case Qt::CheckStateRole:
        return item.isVisible ? Qt::Checked : Qt::Unchecked;
    default:
        return {};
    }
}

bool FloorList::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || index.row() >= rowCount() || role != Qt::CheckStateRole)
        return false;
    m_items[static_cast<std::size_t>(index.row())].isVisible = value.toInt() == Qt::Checked;
    emit dataChanged(index, index, {Qt::CheckStateRole, Qt::AccessibleTextRole});
    emit visibilityChanged();
    return true;
}

Qt::ItemFlags FloorList::flags(const QModelIndex& index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable
                           : Qt::NoItemFlags;
}

} // namespace editortab
