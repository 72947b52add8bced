// SPDX-License-Identifier: MIT
#pragma once

#include "editortab/document/document.h"
#include "editortab/document/modelloader.h"

#include <vector>

#include <QAbstractItemModel>

namespace editortab
{

/// The tree of what is shown: buildings, their models, the nodes of the models. Each item can be hidden with
/// all that is below it. GUI thread.
class ObjectTree : public QAbstractItemModel
{
    Q_OBJECT

public:
    explicit ObjectTree(QObject* parent = nullptr);

    /// Shows buildings and models, the latter without their nodes.
    void setDocument(const Document& document);
    /// Adds the nodes of a model that has been read.
    void setNodes(int model, const gltf::Model& nodes);
    /// Marks a model that cannot be shown.
    void setProblem(int model, const QString& reason);

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& index) const override;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// The item of a node; node -1 is the model itself.
    [[nodiscard]] QModelIndex indexOf(int model, int node) const;
    /// Which node an item stands for: model -1 for a building, node -1 for a model.
    void placeOf(const QModelIndex& index, int& model, int& node) const;

signals:
    void visibilityChanged(int model, int node, bool isVisible);

private:
    struct Item {
        QString name;
        QString problem;
        int parent = -1; ///< index in m_items
        int row = 0;
        int model = -1;
        int node = -1;
        bool isVisible = true;
        std::vector<int> children;
    };

    int addItem(const QString& name, int parent, int model, int node);
    [[nodiscard]] const Item& itemOf(const QModelIndex& index) const;
    [[nodiscard]] QModelIndex indexOfItem(int item) const;
    void setVisible(int item, bool isVisible);

    std::vector<Item> m_items; ///< the first is the invisible root
    std::vector<int> m_modelItems;
    std::vector<std::vector<int>> m_nodeItems;
};

} // namespace editortab
