// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/administrativeregion.h"

#include "project/projectmgr.h"

#include <exception>

#include <QDebug>
#include <QJsonObject>

namespace TorvoEditor
{

namespace
{

QJsonArray Converted(const QJsonArray& raw)
{
    QJsonArray regions;
    for (const auto& value : raw) {
        const QJsonObject region = value.toObject();
        regions.append(QJsonObject{
            {QStringLiteral("id"), region.value(QLatin1String("id")).toString()},
            {QStringLiteral("name"), region.value(QLatin1String("name")).toString()},
            {QStringLiteral("latitude"), region.value(QLatin1String("lat")).toDouble()},
            {QStringLiteral("longitude"), region.value(QLatin1String("lon")).toDouble()},
        });
    }
    return regions;
}

/// A query that ends in an exception, as a cancelled one does, has no answer. Screens and start-up cannot
/// take it.
template<typename Query>
bool Answered(Query&& query)
{
    try {
        return query();
    } catch (const std::exception& exception) {
        qDebug() << "CAdministrativeRegion, no answer: " << exception.what();
        return false;
    }
}

} // namespace

CAdministrativeRegion::CAdministrativeRegion(CProjectMgr* projectMgr)
    : m_projectMgr(projectMgr)
{
}

bool CAdministrativeRegion::fetch(const QString& parentId, QJsonArray& regions) const
{
    return Answered([&] { return m_projectMgr->GetAdministrativeRegion(parentId, regions); });
}

void CAdministrativeRegion::Load()
{
    QString countryId;
    QJsonArray raw;
    if (!Answered([&] { return m_projectMgr->GetCountryId(countryId); }) || !fetch(countryId, raw))
        return;
    m_cityArray = Converted(raw);
    emit cityArrayChanged();
}

QJsonArray CAdministrativeRegion::getChildRegionList(const QString& parentId)
{
    const auto known = m_children.constFind(parentId);
    if (known != m_children.constEnd())
        return *known;
    QJsonArray raw;
    if (!fetch(parentId, raw))
        return {};
    return *m_children.insert(parentId, Converted(raw));
}

} // namespace TorvoEditor
