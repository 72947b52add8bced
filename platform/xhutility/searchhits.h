// SPDX-License-Identifier: MIT
#pragma once

#include <unordered_set>

#include <QString>

class QModelIndex;
class QStandardItem;
class QStandardItemModel;

namespace XHUTILITY
{

/// Which items of a tree a search shows: those that hold the text, those above them, and everything below.
/// Looked up for all items in one walk, because asking each item for what lies above and below it is
/// quadratic in the depth. GUI thread.
class CSearchHits
{
public:
    /// Searches `model` for `text` in the texts at `textKey`. An empty text, or no model, shows everything.
    void search(const QStandardItemModel* model, const QString& textKey, const QString& text);

    /// The same search on the model as it is now.
    void searchAgain();

    [[nodiscard]] bool isSearching() const { return m_model != nullptr && !m_text.isEmpty(); }

    [[nodiscard]] bool isShown(const QModelIndex& index) const;

    /// One of the rows holds the text now and did not at the last search, or the other way round.
    [[nodiscard]] bool isOutdated(const QModelIndex& first, const QModelIndex& last) const;

private:
    [[nodiscard]] bool isMatch(const QStandardItem& item) const;
    bool visit(const QStandardItem& item, bool isBelowMatch);

    const QStandardItemModel* m_model = nullptr;
    QString m_textKey;
    QString m_text;
    std::unordered_set<const QStandardItem*> m_matches;
    std::unordered_set<const QStandardItem*> m_shown;
};

} // namespace XHUTILITY
