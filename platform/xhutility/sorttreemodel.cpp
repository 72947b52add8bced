// SPDX-License-Identifier: MIT
#include "XHUtility/sorttreemodel.h"

#include "XHUtility/treemodel.h"

#include <unordered_map>

#include <QCollator>
#include <QVariantMap>

namespace XHUTILITY
{

namespace
{

QVariantMap MapOf(const QModelIndex& sourceIndex)
{
    return sourceIndex.data(CTreeModel::valueRole).toMap();
}

bool IsDepartment(const QVariantMap& map)
{
    return map.value(QStringLiteral("type")).toString() == QLatin1String("orgType");
}

} // namespace

class CSortTreeModel::Private
{
public:
    Private()
    {
        collator.setNumericMode(true);
        collator.setCaseSensitivity(Qt::CaseInsensitive);
    }

    /// What a text is sorted by. Each text is turned into a key once: the sorting compares it many times.
    const QCollatorSortKey& sortKeyOf(const QString& text)
    {
        const auto known = sortKeys.find(text);
        return known != sortKeys.end() ? known->second
                                       : sortKeys.try_emplace(text, collator.sortKey(text)).first->second;
    }

    [[nodiscard]] bool isFound(const QModelIndex& sourceIndex) const
    {
        return MapOf(sourceIndex).value(searchKey).toString().contains(searchText, Qt::CaseInsensitive);
    }

    struct TextHash {
        std::size_t operator()(const QString& text) const noexcept { return qHash(text); }
    };

    QString searchKey;
    QString searchText;
    QCollator collator;
    std::unordered_map<QString, QCollatorSortKey, TextHash> sortKeys;
    CSortTreeModel* searchResult = nullptr;
};

CSortTreeModel::CSortTreeModel(QObject* parent) : QSortFilterProxyModel(parent), m_private(std::make_unique<Private>())
{
    setRecursiveFilteringEnabled(true);
}

CSortTreeModel::~CSortTreeModel() = default;

void CSortTreeModel::setSearchKey(const QString& key)
{
    m_private->searchKey = key;
}

CSortTreeModel* CSortTreeModel::search(const QString& text)
{
    auto*& result = m_private->searchResult;
    if (result == nullptr) {
        result = new CSortTreeModel(this);
        result->setSearchKey(m_private->searchKey);
    }
    result->m_private->searchText = text;
    return result;
}

void CSortTreeModel::freshModel()
{
    const auto* searched = qobject_cast<CSortTreeModel*>(parent());
    if (searched != nullptr && searched->m_private->searchResult == this)
        setSourceModel(searched->sourceModel());
    invalidate();
    sort(0, Qt::AscendingOrder);
}

void CSortTreeModel::expandAll()
{
    QList<QModelIndex> open{QModelIndex()};
    while (!open.isEmpty()) {
        const QModelIndex parent = open.takeFirst();
        for (int row = 0; row < rowCount(parent); ++row) {
            const QModelIndex child = index(row, 0, parent);
            if (!hasChildren(child))
                continue;
            emit expand(child);
            open.append(child);
        }
    }
}

bool CSortTreeModel::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    const auto leftMap = MapOf(left);
    const auto rightMap = MapOf(right);
    const bool isLeftDepartment = IsDepartment(leftMap);
    if (isLeftDepartment != IsDepartment(rightMap))
        return isLeftDepartment;
    return m_private->sortKeyOf(leftMap.value(m_private->searchKey).toString()) <
           m_private->sortKeyOf(rightMap.value(m_private->searchKey).toString());
}

bool CSortTreeModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    if (m_private->searchText.isEmpty())
        return true;
    if (m_private->isFound(sourceModel()->index(sourceRow, 0, sourceParent)))
        return true;
    for (QModelIndex above = sourceParent; above.isValid(); above = above.parent()) {
        if (m_private->isFound(above))
            return true;
    }
    return false;
}

} // namespace XHUTILITY
