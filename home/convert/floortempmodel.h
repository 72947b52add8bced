// SPDX-License-Identifier: MIT
#pragma once

#include "convert/floorrows.h"
#include "convert/floortempdata.h"

#include <functional>
#include <utility>
#include <vector>

#include <QAbstractListModel>
#include <QByteArray>
#include <QHash>
#include <QJsonArray>
#include <QString>

namespace TorvoEditor
{

/// The floors of the project in the floor dialog: a working copy, as long as the dialog is in use. Published
/// as "floorModel". GUI thread.
///
/// There are two selections. The selected rows are those that go when rows are removed. The current row is
/// what everything else works on; a plain click makes one, a control or shift click leaves none.
class CFloorTempModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(QJsonArray curMatchedFloors READ curMatchedFloors NOTIFY curMatchedFloorsChanged)

public:
    /// The one role, "listData": the row's CFloorTempData.
    static constexpr int listDataRole = Qt::UserRole;

    /// Name and matched floors of each row.
    using Rows = std::vector<std::pair<QString, FloorItems>>;

    explicit CFloorTempModel(QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// What is matched to the current row: "floorName", "projGuid", "projName" of each.
    [[nodiscard]] QJsonArray curMatchedFloors() const;

    /// A plain click: the row is the only selected one, and current.
    Q_INVOKABLE void clearAndSelected(int index);
    /// A control click: the row changes between selected and not.
    Q_INVOKABLE void ctrlSelected(int index);
    /// A shift click: the rows between the two, both included, are the selected ones.
    Q_INVOKABLE void regionSelected(int nBegin, int nEnd);

    [[nodiscard]] bool hasFloor(const QString& name) const;
    /// Puts a row behind the current one, without a current row on top. False when the name is taken.
    [[nodiscard]] bool addFloor(const QString& name);
    /// False without a current row, or when another row has the name.
    [[nodiscard]] bool renameCurFloor(const QString& name);
    /// False without a current row.
    [[nodiscard]] bool addCurItem(const QString& projGuid, const QString& projName, const QString& floorName);
    /// False without a current row.
    bool removeCurItem(const QString& projGuid, const QString& floorName);
    /// Removes the floor from the first row that has it.
    void removeItem(const QString& projGuid, const QString& floorName);

    void getRows(Rows& rows) const;
    void getSelectedRows(Rows& rows) const;
    /// The number of the current row stays, and may name another floor than before.
    void setRows(const Rows& rows);
    void removeSelectedRows();
    void moveCurUp();
    void moveCurDown();

signals:
    void curMatchedFloorsChanged();

private:
    void setCurIndex(int index);
    void select(const std::function<bool(int)>& isSelected);
    void moveCur(int to);
    void copyRows(Rows& rows, const std::function<bool(const CFloorTempData&)>& isWanted) const;

    FloorRows m_rows;
    int m_curIndex = -1; ///< -1 for none; may lie outside the list
};

} // namespace TorvoEditor
