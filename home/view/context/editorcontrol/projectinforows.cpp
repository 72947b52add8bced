// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/projectinforows.h"

#include "project/projectinforecord.h"

#include <QJsonObject>

namespace TorvoEditor
{

namespace InfoLabel
{
QString name()
{
    return QStringLiteral("工程名称");
}
QString guid()
{
    return QStringLiteral("工程Guid");
}
QString type()
{
    return QStringLiteral("工程类型");
}
QString templateFile()
{
    return QStringLiteral("属性模板");
}
QString region()
{
    return QStringLiteral("所属行政区");
}
QString proj4()
{
    return QStringLiteral("地理坐标系投影参数（PROJ4标准参数）");
}
QString iotCode()
{
    return QStringLiteral("物联资产编号");
}
QString earthConfig()
{
    return QStringLiteral("三维地球配置");
}
QString templateEdit()
{
    return QStringLiteral("属性模板编辑");
}
QString department()
{
    return QStringLiteral("所属项目部");
}
} // namespace InfoLabel

namespace
{

enum RowType { TextRow = 0, TemplateRow = 2, RegionRow = 3 };

QJsonObject Row(const QString& label, const QJsonValue& value, bool isReadOnly, RowType type)
{
    return {
        {QStringLiteral("key"), label},
        {QStringLiteral("value"), value},
        {QStringLiteral("visible"), true},
        {QStringLiteral("readOnly"), isReadOnly},
        {QStringLiteral("type"), static_cast<int>(type)},
    };
}

QJsonObject RegionValue(const SProjectInfoRecord& record)
{
    return {
        {QStringLiteral("pId"), record.provinceId}, {QStringLiteral("pName"), record.provinceName},
        {QStringLiteral("cId"), record.cityId},     {QStringLiteral("cName"), record.cityName},
        {QStringLiteral("rId"), record.regionId},   {QStringLiteral("rName"), record.regionName},
    };
}

} // namespace

QJsonArray ProjectInfoRows(const SProjectInfoRecord& record, const InfoRowsMode& mode)
{
    const bool isBim = record.type == QLatin1String("BIM");
    const QString type =
        record.type == QLatin1String("CIM") ? QStringLiteral("场景工程") : QStringLiteral("BIM工程");
    const QString deptName = QStringLiteral("deptName");

    QJsonArray rows;
    rows.append(Row(InfoLabel::name(), record.name, false, TextRow));
    if (!isBim)
        rows.append(Row(InfoLabel::guid(), record.guid, true, TextRow));
    rows.append(Row(InfoLabel::type(), type, true, TextRow));
    if (record.extAttrs.contains(deptName))
        rows.append(Row(InfoLabel::department(), record.extAttrs.value(deptName), true, TextRow));
    if (mode.isLocal && !isBim) {
        rows.append(Row(InfoLabel::templateFile(), record.templateName, true, TemplateRow));
        rows.append(Row(InfoLabel::region(), RegionValue(record), false, RegionRow));
    }
    if (mode.isBimSdk || (mode.showsProj4 && !isBim))
        rows.append(Row(InfoLabel::proj4(), record.proj4, false, TextRow));
    if (mode.isBimSdk)
        rows.append(Row(InfoLabel::iotCode(), record.iotCode, false, TextRow));
    return rows;
}

} // namespace TorvoEditor
