// SPDX-License-Identifier: MIT
#pragma once

#include "ZRIMGeometryModel/zrimposition.h"

#include <QMap>
#include <QString>

namespace TorvoEditor
{

/// What the screens show and edit of one project. A plain value.
struct SProjectInfoRecord {
    QString guid;
    QString name;
    QString type;         ///< "CIM" or "BIM"
    QString templateName; ///< name under which the property template is shown
    QString longitude;    ///< decimal text
    QString latitude;     ///< decimal text
    QString imagePath;    ///< local path of the picture
    QString templateContent;
    QString provinceId;
    QString provinceName;
    QString cityId;
    QString cityName;
    QString regionId;
    QString regionName;
    QString iotCode;
    QString earthConfig;             ///< kept in the project's attribute "basemap"
    QString proj4;                   ///< projection parameters in PROJ4 form
    QMap<QString, QString> extAttrs; ///< "deptId" and "deptName", or "appID" and "appName"
};

/// Where the project lies. A longitude or latitude that is no finite number is 0.
[[nodiscard]] ZRIMGeometryModel::CZRIMPosition PositionOf(const SProjectInfoRecord& record);

} // namespace TorvoEditor
