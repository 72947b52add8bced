// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <QSortFilterProxyModel>
#include <QString>

namespace XHUTILITY
{

/// A sorted view of a CTreeModel, and of what a search in it finds. GUI thread.
///
/// Order: departments (items whose map has the "type" "orgType") before projects; then by the text at the
/// search key in natural order of the user's locale ("2" before "10", case and width not regarded; the locale
/// "C", which knows no such order, counts as Chinese); equal texts keep the source's order. The order is
/// stable under change.
class CSortTreeModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit CSortTreeModel(QObject* parent = nullptr);
    ~CSortTreeModel() override;

    /// Gives the tree to be shown, a CTreeModel.
    void setSourceModel(QAbstractItemModel* source) override;

    /// The key of the items' map that `search` and the order look at.
    void setSearchKey(const QString& key);

    /// A model of the items whose text at the search key contains `text`, without regard to case, with the
    /// items above them; everything below a found department stays as well. Owned by this model, one and the
    /// same for all searches. Call freshModel on it to have the search done.
    [[nodiscard]] Q_INVOKABLE XHUTILITY::CSortTreeModel* search(const QString& text);

    /// Does the search anew on the source as it is now. On a model that is no search result it sorts anew.
    Q_INVOKABLE void freshModel();

    /// Asks the view to open every item that has children, from the top down.
    Q_INVOKABLE void expandAll();

signals:
    /// The view is to open or to close an item.
    void expand(const QModelIndex& index);
    void collapse(const QModelIndex& index);

protected:
    [[nodiscard]] bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;
    [[nodiscard]] bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

private:
    void followHits(QAbstractItemModel* source);
    void followFilter(QAbstractItemModel* source);

    class Private;
    std::unique_ptr<Private> m_private;
};

} // namespace XHUTILITY
