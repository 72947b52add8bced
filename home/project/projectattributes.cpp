// SPDX-License-Identifier: MIT
#include "project/projectmgr.h"

#include "TorvoSDK/projecthost.h"
#include "TorvoSDK/torvosdkplugin.h"
#include "ZRSmartDB/zrproject.h"
#include "core/homeapp.h"
#include "project/projectinforecord.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace TorvoEditor
{

namespace
{

const wchar_t* const regionKey = L"Pa_BelongsRegion";
const wchar_t* const extendedKey = L"Pa_ExtendedAttr";

/// True when the account belongs to an organisation.
bool HasOrganisation()
{
    TorvoSDK::SOrgNode scratch;
    return CHomeApp::instance().m_plugin->GetProjectHost()->GetOrgTree(scratch);
}

QJsonDocument ReadJson(const ZRSmartDB::IZRProject& project, const wchar_t* key)
{
    return QJsonDocument::fromJson(QString::fromStdWString(project.GetAttr(key)).toUtf8());
}

void WriteJson(ZRSmartDB::IZRProject& project, const wchar_t* key, const QJsonObject& object)
{
    const auto text = QJsonDocument(object).toJson(QJsonDocument::Compact);
    project.SetAttr(key, QString::fromUtf8(text).toStdWString());
}

bool IsScene(const ZRSmartDB::IZRProject* project)
{
    return project != nullptr && project->GetType() == L"CIM";
}

} // namespace

bool CProjectMgr::ReadBelongsRegion(const ZRSmartDB::IZRProject* project, SProjectInfoRecord& record) const
{
    if (!IsScene(project))
        return false;
    const auto document = ReadJson(*project, regionKey);
    if (document.isNull())
        return false;
    const auto object = document.object();
    record.provinceId = object.value(QLatin1String("provinceId")).toString();
    record.provinceName = object.value(QLatin1String("provinceName")).toString();
    record.cityId = object.value(QLatin1String("cityId")).toString();
    record.cityName = object.value(QLatin1String("cityName")).toString();
    record.regionId = object.value(QLatin1String("regionId")).toString();
    record.regionName = object.value(QLatin1String("regionName")).toString();
    return true;
}

void CProjectMgr::WriteBelongsRegion(ZRSmartDB::IZRProject* project, const SProjectInfoRecord& record)
{
    if (!IsScene(project))
        return;
    WriteJson(*project, regionKey,
              {
                  {QStringLiteral("provinceId"), record.provinceId},
                  {QStringLiteral("provinceName"), record.provinceName},
                  {QStringLiteral("cityId"), record.cityId},
                  {QStringLiteral("cityName"), record.cityName},
                  {QStringLiteral("regionId"), record.regionId},
                  {QStringLiteral("regionName"), record.regionName},
              });
}

void CProjectMgr::GetProjExtAttrs(const ZRSmartDB::IZRProject* project,
                                  QMap<QString, QString>& attributes) const
{
    if (project == nullptr)
        return;
    const bool hasOrganisation = HasOrganisation();
    const auto document = ReadJson(*project, extendedKey);
    if (document.isNull())
        return;
    const auto keys = hasOrganisation ? QStringList{QStringLiteral("deptId"), QStringLiteral("deptName")}
                                      : QStringList{QStringLiteral("appID"), QStringLiteral("appName")};
    for (const auto& key : keys)
        attributes[key] = document.object().value(key).toString();
}

void CProjectMgr::WriteExtendedAttr(ZRSmartDB::IZRProject* project, const QMap<QString, QString>& attributes)
{
    if (project == nullptr || !HasOrganisation())
        return;
    WriteJson(*project, extendedKey,
              {
                  {QStringLiteral("deptId"), attributes.value(QStringLiteral("deptId"))},
                  {QStringLiteral("deptName"), attributes.value(QStringLiteral("deptName"))},
              });
}

} // namespace TorvoEditor
