// SPDX-License-Identifier: MIT
#pragma once

#include <QStandardItemModel>

namespace XHUTILITY
{

/// A tree of items, each a QVariantMap at the role valueRole. The screens read the map under the role name
/// "value". GUI thread.
class CTreeModel : public QStandardItemModel
{
    Q_OBJECT

public:
    static constexpr int valueRole = Qt::UserRole + 1;

    explicit CTreeModel(QObject* parent = nullptr);

    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
};

} // namespace XHUTILITY
