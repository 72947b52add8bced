// SPDX-License-Identifier: MIT
#include "XHUtility/treemodel.h"

namespace XHUTILITY
{

CTreeModel::CTreeModel(QObject* parent)
    : QStandardItemModel(parent)
{
}

QHash<int, QByteArray> CTreeModel::roleNames() const
{
    auto names = QStandardItemModel::roleNames();
    names.insert(valueRole, QByteArrayLiteral("value"));
    return names;
}

} // namespace XHUTILITY
