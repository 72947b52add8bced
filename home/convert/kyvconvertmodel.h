// SPDX-License-Identifier: MIT
#pragma once

#include "convert/kyvconvertdata.h"

#include <vector>

#include <QAbstractListModel>
#include <QByteArray>
#include <QHash>
#include <QString>

namespace TorvoEditor
{

/// The models of the project whose dialog is open. Owns its rows. Published as "serviceConvertModel".
/// GUI thread.
class CKyvConvertModel : public QAbstractListModel
{
    Q_OBJECT

public:
    /// The one role, "listData": the row's CKyvConvertData.
    static constexpr int listDataRole = Qt::UserRole;

    using Rows = std::vector<CKyvConvertData*>;

    explicit CKyvConvertModel(QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    [[nodiscard]] Q_INVOKABLE int getCount() const;
    /// Empty for a row that is not there.
    [[nodiscard]] Q_INVOKABLE QString getName(int index) const;
    /// How many finished models there are.
    [[nodiscard]] Q_INVOKABLE int getValidCount() const;
    /// The name of a finished model, empty for any other row.
    [[nodiscard]] Q_INVOKABLE QString getValidName(int index) const;

    /// Appends a row and takes it over.
    void addData(CKyvConvertData* row);
    /// The first row of that guid, or null.
    [[nodiscard]] CKyvConvertData* findData(const QString& guid) const;
    /// Takes the first row of that guid out of the list; it is then the caller's.
    void removeData(const QString& guid);
    /// Deletes all rows and takes these over.
    void resetData(const Rows& rows);

private:
    [[nodiscard]] const CKyvConvertData* rowAt(int index) const;

    Rows m_rows;
};

} // namespace TorvoEditor
