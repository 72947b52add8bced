// SPDX-License-Identifier: MIT
#include "editortab/window/objecttree.h"

#include <QColor>

namespace editortab
{

ObjectTree::ObjectTree(QObject* parent)
    : QAbstractItemModel(parent)
{
    m_items.emplace_back();
}

int ObjectTree::addItem(const QString& name, int parent, int model, int node)
{
    Item item;
    item.name = name;
    item.parent = parent;
    item.model = model;
    item.node = node;
    auto& siblings = m_items[static_cast<std::size_t>(parent)].children;
    item.row = static_cast<int>(siblings.size());
    const int number = static_cast<int>(m_items.size());
    siblings.push_back(number);
    m_items.push_back(std::move(item));
    return number;
}

void ObjectTree::setDocument(const Document& document)
{
    beginResetModel();
    m_items.assign(1, Item());
    m_modelItems.clear();
    std::vector<int> buildings;
    for (const auto& building : document.buildings())
        buildings.push_back(addItem(building.name, 0, -1, -1));
    for (const auto& model : document.models()) {
        const int number = static_cast<int>(m_modelItems.size());
        m_modelItems.push_back(
            addItem(model.name, buildings[static_cast<std::size_t>(model.building)], number, -1));
    }
    m_nodeItems.assign(m_modelItems.size(), {});
    endResetModel();
}

void ObjectTree::setNodes(int model, const gltf::Model& nodes)
{
    // A reset once per model: inserting level by level would cost a signal for each of thousands of nodes.
    beginResetModel();
    const int modelItem = m_modelItems[static_cast<std::size_t>(model)];
    auto& items = m_nodeItems[static_cast<std::size_t>(model)];
    for (std::size_t i = 0; i < nodes.nodes.size(); ++i) {
        const auto& node = nodes.nodes[i];
        const int parent = node.parent < 0 ? modelItem : items[static_cast<std::size_t>(node.parent)];
        const QString name = QString::fromStdString(node.name);
        items.push_back(addItem(name.isEmpty() ? tr("未命名") : name, parent, model, static_cast<int>(i)));
    }
    endResetModel();
}

void ObjectTree::setProblem(int model, const QString& reason)
{
    const int item = m_modelItems[static_cast<std::size_t>(model)];
    m_items[static_cast<std::size_t>(item)].problem = reason;
    const auto index = indexOfItem(item);
    emit dataChanged(index, index);
}

const ObjectTree::Item& ObjectTree::itemOf(const QModelIndex& index) const
{
    return m_items[index.isValid() ? static_cast<std::size_t>(index.internalId()) : 0];
}

QModelIndex ObjectTree::indexOfItem(int item) const
{
    if (item <= 0)
        return {};
    return createIndex(m_items[static_cast<std::size_t>(item)].row, 0, static_cast<quintptr>(item));
}

QModelIndex ObjectTree::index(int row, int column, const QModelIndex& parent) const
{
    const auto& children = itemOf(parent).children;
    if (column != 0 || row < 0 || row >= static_cast<int>(children.size()))
        return {};
    return createIndex(row, 0, static_cast<quintptr>(children[static_cast<std::size_t>(row)]));
}

QModelIndex ObjectTree::parent(const QModelIndex& index) const
{
    return index.isValid() ? indexOfItem(itemOf(index).parent) : QModelIndex();
}

int ObjectTree::rowCount(const QModelIndex& parent) const
{
    return parent.column() > 0 ? 0 : static_cast<int>(itemOf(parent).children.size());
}

int ObjectTree::columnCount(const QModelIndex& /*parent*/) const
{
    return 1;
}

QVariant ObjectTree::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const auto& item = itemOf(index);
    switch (role) {
    case Qt::DisplayRole:
        return item.name;
    case Qt::ToolTipRole:
        return item.problem.isEmpty() ? item.name : item.problem;
    case Qt::CheckStateRole:
        return item.isVisible ? Qt::Checked : Qt::Unchecked;
    case Qt::ForegroundRole:
        return item.problem.isEmpty() ? QVariant() : QVariant(QColor(0xff, 0x6b, 0x6b));
    case Qt::AccessibleDescriptionRole:
        return item.problem;
    default:
        return {};
    }
}

bool ObjectTree::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || role != Qt::CheckStateRole)
        return false;
    setVisible(static_cast<int>(index.internalId()), value.toInt() == Qt::Checked);
    return true;
}

void ObjectTree::setVisible(int item, bool isVisible)
{
    auto& changed = m_items[static_cast<std::size_t>(item)];
    changed.isVisible = isVisible;
    const auto index = indexOfItem(item);
    emit dataChanged(index, index, {Qt::CheckStateRole});
    if (changed.model >= 0)
        emit visibilityChanged(changed.model, changed.node, isVisible);
    for (int child : std::vector<int>(changed.children))
        setVisible(child, isVisible);
}

Qt::ItemFlags ObjectTree::flags(const QModelIndex& index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable
                           : Qt::NoItemFlags;
}

QModelIndex ObjectTree::indexOf(int model, int node) const
{
    if (model < 0 || model >= static_cast<int>(m_modelItems.size()))
        return {};
    if (node < 0)
        return indexOfItem(m_modelItems[static_cast<std::size_t>(model)]);
    const auto& nodes = m_nodeItems[static_cast<std::size_t>(model)];
    return node < static_cast<int>(nodes.size()) ? indexOfItem(nodes[static_cast<std::size_t>(node)])
                                                 : QModelIndex();
}

void ObjectTree::placeOf(const QModelIndex& index, int& model, int& node) const
{
    model = index.isValid() ? itemOf(index).model : -1;
    node = index.isValid() ? itemOf(index).node : -1;
}

} // namespace editortab
