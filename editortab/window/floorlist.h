// SPDX-License-Identifier: MIT
#pragma once

#include "editortab/document/document.h"
#include "editortab/document/modelloader.h"

#include <vector>

#include <QAbstractListModel>

namespace editortab
{

/// The floors of the buildings that are shown, from the top down as in a section. Each can be hidden with
/// what stands on it. GUI thread.
class FloorList : public QAbstractListModel
{
    Q_OBJECT

public:
    explicit FloorList(QObject* parent = nullptr);

    /// Shows the floors of the document; those that were hidden before stay so.
    void setDocument(const Document& document);

    /// For each node of a model of the document whether the floors that it belongs to are hidden. A node that
    /// belongs to none is not.
    [[nodiscard]] std::vector<bool> hiddenNodes(const Document& document, int model,
                                                const gltf::Model& nodes) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

signals:
    void visibilityChanged();

private:
    struct Item {
        FloorEntry floor;
        QString building;
        bool isVisible = true;
    };

    [[nodiscard]] QString nameOf(const Item& item) const;
    [[nodiscard]] bool isHidden(int building, const QString& model, const QString& floor) const;

    std::vector<Item> m_items;
};

} // namespace editortab
