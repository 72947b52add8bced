// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonArray>
#include <QMap>
#include <QObject>
#include <QString>

namespace TorvoEditor
{

class CProjectMgr;

/// The tree of administrative regions for the place of a project, read from the server level by level.
/// Published as "regionModel". Waits for the server; GUI thread.
class CAdministrativeRegion : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QJsonArray cityArray READ cityArray NOTIFY cityArrayChanged)

public:
    /// `projectMgr` is not owned.
    explicit CAdministrativeRegion(CProjectMgr* projectMgr);

    /// Reads the top level, the provinces. Without a server they stay away until the next start.
    void Load();

    /// The provinces: objects with "id", "name", "latitude" and "longitude".
    [[nodiscard]] QJsonArray cityArray() const { return m_cityArray; }

    /// What lies directly below a region. Asked for once; a failure is empty, and is asked for again.
    Q_INVOKABLE QJsonArray getChildRegionList(const QString& parentId);

signals:
    void cityArrayChanged();

private:
    /// The regions below `parentId` as the server tells them.
    [[nodiscard]] bool fetch(const QString& parentId, QJsonArray& regions) const;

    CProjectMgr* m_projectMgr;
    QJsonArray m_cityArray;
    QMap<QString, QJsonArray> m_children; ///< by the parent's id
};

} // namespace TorvoEditor
