// SPDX-License-Identifier: MIT
#include "project/projectmgr.h"

#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrdbnetaccess.h"
#include "project/guidtext.h"

#include <exception>

#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>

namespace TorvoEditor
{

namespace
{

using ReplyText = std::shared_ptr<std::wstring>;

/// The JSON of a region query; empty when it failed, which is logged. Both region queries log the same words.
QJsonDocument RegionReply(const Concurrency::task<std::wstring>& request, const ReplyText& reply)
{
    const std::wstring error = request.get();
    if (!error.empty()) {
        qDebug() << "CProjectMgr::GetCountryList error : " << QString::fromStdWString(error);
        return {};
    }
    const QString text = QString::fromStdWString(*reply);
    const auto document = QJsonDocument::fromJson(text.toUtf8());
    if (document.isEmpty())
        qDebug() << "CProjectMgr::GetCountryList has no data!";
    else
        qDebug() << text;
    return document;
}

} // namespace

QString CProjectMgr::GetProjType(const QString& guid)
{
    if (m_projectDB == nullptr)
        return {};
    const auto reply = std::make_shared<std::wstring>();
    const std::wstring error = m_projectDB->GetNetAccess()->GetProjType(KeyOf(guid), reply).get();
    return error.empty() ? QString::fromStdWString(*reply) : QString();
}

bool CProjectMgr::CanAppIdUpload(const QString& appId, QString& msg)
{
    if (m_projectDB == nullptr)
        return false;
    try {
        const std::wstring refusal = m_projectDB->GetNetAccess()->CanAppIdUpload(appId.toStdWString()).get();
        if (refusal.empty())
            return true;
        const auto document = QJsonDocument::fromJson(QString::fromStdWString(refusal).toUtf8());
        if (!document.isEmpty())
            msg = document.object().value(QLatin1String("msg")).toString();
    } catch (const std::exception& exception) {
        qDebug() << "CProjectMgr::CanAppIdUpload GetProjStatus error: " << exception.what();
    }
    return false;
}

bool CProjectMgr::GetCountryId(QString& id)
{
    if (m_projectDB == nullptr)
        return false;
    const auto reply = std::make_shared<std::wstring>();
    const auto document = RegionReply(m_projectDB->GetNetAccess()->GetCountryList(reply), reply);
    if (document.isEmpty())
        return false;
    id = document.array().at(0).toObject().value(QLatin1String("id")).toString();
    return true;
}

bool CProjectMgr::GetAdministrativeRegion(const QString& id, QJsonArray& regions)
{
    if (m_projectDB == nullptr)
        return false;
    const auto reply = std::make_shared<std::wstring>();
    const auto request = m_projectDB->GetNetAccess()->GetAdministrativeRegion(id.toStdWString(), reply);
    const auto document = RegionReply(request, reply);
    if (document.isEmpty())
        return false;
    regions = document.array();
    return true;
}

bool CProjectMgr::DownloadProjFile(const QString& guid, const QString& fileName, const QString& localPath)
{
    if (m_projectDB == nullptr)
        return false;
    const QString serverPath = QStringLiteral("/proj_") + guid + QLatin1Char('/') + fileName;
    const std::wstring error = m_projectDB->GetNetAccess()
                                   ->DownloadFileAry({serverPath.toStdWString()}, {localPath.toStdWString()})
                                   .get();
    if (error.empty())
        return true;
    qDebug() << "downLoadProjRes:" << serverPath << " falid, error:" << QString::fromStdWString(error);
    return false;
}

} // namespace TorvoEditor
