// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <vector>

#include <QCollator>
#include <QObject>
#include <QPointer>
#include <QStandardItemModel>
#include <QString>

namespace XHUTILITY
{

/// What the items of a tree are sorted by. Sorting compares an item many times, and a key for a text in
/// natural order is dear: each item's key is made once and kept until the item changes or goes. GUI thread.
///
/// Create it before a proxy is attached to the same model, so that it hears of each change first.
class CSortKeys : public QObject
{
    Q_OBJECT

public:
    struct Key {
        bool isDepartment;
        QCollatorSortKey text;
    };

    /// Keys over the text at `textKey` of the items' maps.
    CSortKeys(const QStandardItemModel* model, const QString& textKey);

    /// Null when the model is gone.
    [[nodiscard]] const QStandardItemModel* model() const { return m_model.data(); }

    void setTextKey(const QString& textKey);

    /// The key of an item of the model; valid until the item or the model changes.
    [[nodiscard]] const Key& of(const QModelIndex& index);

    /// How many keys are kept.
    [[nodiscard]] std::size_t count() const;

private:
    /// The keys of the rows below one item; those at the end that were never asked for may be missing.
    using Rows = std::vector<std::optional<Key>>;

    [[nodiscard]] Key make(const QStandardItem& item) const;
    [[nodiscard]] Rows* rowsBelow(const QModelIndex& parent);
    void forgetBelow(const QModelIndex& parent, int first, int last);
    void onDataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight);
    void onRowsInserted(const QModelIndex& parent, int first, int last);
    void onRowsRemoved(const QModelIndex& parent, int first, int last);

    QPointer<const QStandardItemModel> m_model;
    QString m_textKey;
    QCollator m_collator;
    std::map<const void*, Rows> m_keys; ///< by the item above, the root included
};

} // namespace XHUTILITY
