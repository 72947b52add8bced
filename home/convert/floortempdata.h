// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>

namespace TorvoEditor
{

/// A floor of a model that is matched to a floor of the project.
struct TFloorItem {
    QString projGuid; ///< of the model
    QString projName; ///< of the model
    QString floorName;
};

/// Matched floors by the guid of their model. No list in it is empty.
using FloorItems = QMap<QString, QList<TFloorItem>>;

/// One floor of the project in the floor dialog. GUI thread.
class CFloorTempData : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString floorName READ floorName WRITE setFloorName NOTIFY floorNameChanged)
    Q_PROPERTY(bool isSelected READ isSelected WRITE setIsSelected NOTIFY isSelectedChanged)

public:
    explicit CFloorTempData(QString floorName = {}, FloorItems childFloors = {});

    [[nodiscard]] QString floorName() const { return m_floorName; }
    void setFloorName(const QString& floorName);
    [[nodiscard]] bool isSelected() const { return m_isSelected; }
    void setIsSelected(bool isSelected);

    [[nodiscard]] const FloorItems& childFloors() const { return m_childFloors; }
    void addItem(const TFloorItem& item);
    /// Removes the first item of that name under the model. False when there is none.
    bool removeItem(const QString& projGuid, const QString& floorName);

signals:
    void floorNameChanged();
    void isSelectedChanged();
    /// Never emitted: the matched floors are shown through the model.
    void childFloorsChanged();

private:
    QString m_floorName;
    FloorItems m_childFloors;
    bool m_isSelected = false;
};

} // namespace TorvoEditor
