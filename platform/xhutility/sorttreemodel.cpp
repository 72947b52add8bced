// SPDX-License-Identifier: MIT
#include "XHUtility/sorttreemodel.h"

#include "XHUtility/treemodel.h"
#include "searchhits.h"
#include "sortkeys.h"

#include <utility>

namespace XHUTILITY
{

class CSortTreeModel::Private
{
public:
    /// The keys for a source. A search result shares those of the model that it searches.
    [[nodiscard]] std::shared_ptr<CSortKeys> keysFor(const QStandardItemModel* source) const
    {
        if (source == nullptr)
            return nullptr;
        for (const auto& known : {sortKeys, searched != nullptr ? searched->m_private->sortKeys : nullptr}) {
            if (known != nullptr && known->model() == source)
                return known;
        }
        return std::make_shared<CSortKeys>(source, searchKey);
    }

    QString searchKey;
    QString searchText;                  ///< of the last search, done or not
    CSearchHits hits;                    ///< of the last search that was done
    std::shared_ptr<CSortKeys> sortKeys; ///< null without a tree to sort
    CSortTreeModel* searchResult = nullptr;
    CSortTreeModel* searched = nullptr;        ///< the model whose search result this is
    std::unique_ptr<QObject> sourceConnection; ///< context of what is connected to the source
    bool isFilterOutdated = false;
};

CSortTreeModel::CSortTreeModel(QObject* parent)
    : QSortFilterProxyModel(parent)
    , m_private(std::make_unique<Private>())
{
}

CSortTreeModel::~CSortTreeModel() = default;

void CSortTreeModel::setSourceModel(QAbstractItemModel* source)
{
    const auto* tree = qobject_cast<const QStandardItemModel*>(source);
    m_private->sourceConnection = std::make_unique<QObject>();
    m_private->sortKeys = m_private->keysFor(tree);
    m_private->hits.search(tree, m_private->searchKey, m_private->searchText);
    // Of two receivers of a signal the one connected first hears it first: keys and hits are right before the
    // base class asks for them, and rows whose hits changed along with the change come and go after it.
    if (m_private->hits.isSearching())
        followHits(source);
    QSortFilterProxyModel::setSourceModel(source);
    if (m_private->hits.isSearching())
        followFilter(source);
}

void CSortTreeModel::followHits(QAbstractItemModel* source)
{
    auto* context = m_private->sourceConnection.get();
    const auto searchAgain = [this] {
        m_private->hits.searchAgain();
        m_private->isFilterOutdated = true;
    };
    connect(source, &QAbstractItemModel::rowsInserted, context, searchAgain);
    connect(source, &QAbstractItemModel::rowsRemoved, context, searchAgain);
    connect(source, &QAbstractItemModel::modelReset, context, searchAgain);
    connect(source, &QAbstractItemModel::dataChanged, context,
            [this, searchAgain](const QModelIndex& topLeft, const QModelIndex& bottomRight) {
                if (m_private->hits.isOutdated(topLeft, bottomRight))
                    searchAgain();
            });
    connect(source, &QObject::destroyed, context, [this] { m_private->hits.search(nullptr, {}, {}); });
}

void CSortTreeModel::followFilter(QAbstractItemModel* source)
{
    auto* context = m_private->sourceConnection.get();
    const auto filterAgain = [this] {
        if (std::exchange(m_private->isFilterOutdated, false))
            invalidateFilter();
    };
    connect(source, &QAbstractItemModel::rowsInserted, context, filterAgain);
    connect(source, &QAbstractItemModel::rowsRemoved, context, filterAgain);
    connect(source, &QAbstractItemModel::modelReset, context, filterAgain);
    connect(source, &QAbstractItemModel::dataChanged, context, filterAgain);
}

void CSortTreeModel::setSearchKey(const QString& key)
{
    if (m_private->searchKey == key)
        return;
    m_private->searchKey = key;
    if (m_private->sortKeys != nullptr) {
        m_private->sortKeys->setTextKey(key);
        freshModel();
    }
}

CSortTreeModel* CSortTreeModel::search(const QString& text)
{
    auto*& result = m_private->searchResult;
    if (result == nullptr) {
        result = new CSortTreeModel(this);
        result->m_private->searched = this;
    }
    result->m_private->searchKey = m_private->searchKey;
    result->m_private->searchText = text;
    return result;
}

void CSortTreeModel::freshModel()
{
    auto* source = m_private->searched != nullptr ? m_private->searched->sourceModel() : sourceModel();
    sort(0, Qt::AscendingOrder);
    // Taking the source anew resets the model, which views follow at less cost than thousands of single rows.
    QSortFilterProxyModel::setSourceModel(nullptr);
    setSourceModel(source);
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
    if (m_private->sortKeys == nullptr)
        return QSortFilterProxyModel::lessThan(left, right);
    // Both keys stay where they are: making the second one moves no other.
    const auto& leftKey = m_private->sortKeys->of(left);
    const auto& rightKey = m_private->sortKeys->of(right);
    if (leftKey.isDepartment != rightKey.isDepartment)
        return leftKey.isDepartment;
    const int order = leftKey.text.compare(rightKey.text);
    return order != 0 ? order < 0 : left.row() < right.row();
}

bool CSortTreeModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    return !m_private->hits.isSearching() ||
           m_private->hits.isShown(sourceModel()->index(sourceRow, 0, sourceParent));
}

} // namespace XHUTILITY
