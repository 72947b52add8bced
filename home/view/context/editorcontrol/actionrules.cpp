// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/actionrules.h"

#include "project/projectmgr.h"
#include "view/context/editorcontrol/gridviewdata.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace TorvoEditor
{

namespace
{

constexpr int loginExpired = 40014;

} // namespace

QString BusyText(ProjOperateEnum operation)
{
    switch (operation) {
    case PO_Download:
        return QStringLiteral("工程下载中，请稍后重试");
    case PO_Upload:
        return QStringLiteral("工程上传中，请稍后重试");
    case PO_Update:
        return QStringLiteral("工程更新中，请稍后重试");
    default:
        return QString(QLatin1String(""));
    }
}

QString DownloadRefusal(int serverState)
{
    switch (serverState) {
    case SS_UploadFailed:
        return QStringLiteral("服务器本工程已上传失败，请先强制上传");
    case SS_Uploading:
        return QStringLiteral("服务器本工程正在上传中，请稍后再试");
    case SS_Converting:
        return QStringLiteral("服务器本工程正在转换中，请稍后再试");
    default:
        return {};
    }
}

QString UploadRefusal(int serverState)
{
    switch (serverState) {
    case SS_Uploading:
        return QStringLiteral("服务器本工程正在上传中，请稍后重试");
    case SS_Converting:
        return QStringLiteral("服务器本工程正在转换中，请稍后重试");
    default:
        return {};
    }
}

QString UpdateRefusal(int serverState)
{
    switch (serverState) {
    case SS_UploadFailed:
        return QStringLiteral("服务器本工程上传失败，请先强制上传");
    case SS_Uploading:
        return QStringLiteral("服务器本工程正在上传中，请稍后重试");
    default:
        return {};
    }
}

UploadWay UploadWayOf(int projectState, bool hasSubToSend)
{
    switch (projectState) {
    case CGridViewData::ST_LocalState:
    case CGridViewData::ST_ConflictState:
        return UploadWay::Forced;
    case CGridViewData::ST_ModifyState:
        return UploadWay::AsAsked;
    default:
        return hasSubToSend ? UploadWay::AsAsked : UploadWay::None;
    }
}

QString FailureText(const QString& text, const QString& reason)
{
    const auto document = QJsonDocument::fromJson(reason.toUtf8());
    if (!document.isEmpty() && document.object().value(QLatin1String("code")).toInt() == loginExpired)
        return text + QStringLiteral("<br/>登录已过期,请重新登录!");
    return text;
}

} // namespace TorvoEditor
