// SPDX-License-Identifier: MIT
#include "convert/serviceconvertmgr.h"

#include "core/filefunctions.h"

#include <algorithm>

#include <QCoreApplication>
#include <QDebug>
#include <QQmlContext>

namespace TorvoEditor
{

namespace
{

constexpr int waitingOnServer = 5;

} // namespace

CServiceConvertMgr::CServiceConvertMgr(QObject* parent)
    : QObject(parent)
{
    LoadConfig();
}

void CServiceConvertMgr::Init() {}

void CServiceConvertMgr::UnInit() {}

void CServiceConvertMgr::RegisterContext(QQmlContext* context)
{
    context->setContextProperty(QStringLiteral("serviceConvertMgr"), this);
}

void CServiceConvertMgr::LoadConfig()
{
    QJsonObject config;
    const QString path = QCoreApplication::applicationDirPath() + QStringLiteral("/WebConvert.json");
    const bool isVisible =
        ReadJsonFile(path, config) && config.value(QLatin1String("using")).toString() == QLatin1String("1");
    if (m_isVisible == isVisible)
        return;
    m_isVisible = isVisible;
    emit isVisibleChanged();
}

bool CServiceConvertMgr::hasUploadingProj() const
{
    return HoldsTask(m_localInfos);
}

void CServiceConvertMgr::GetConvertInfo(QMap<QString, QList<int>>& positions) const
{
    AddQueuePositions(m_serviceInfos, positions);
}

bool HoldsTask(const CServiceConvertMgr::TKyvConvertMap& tasks)
{
    return std::any_of(tasks.begin(), tasks.end(),
                       [](const auto& ofProject) { return !ofProject.isEmpty(); });
}

void AddQueuePositions(const CServiceConvertMgr::TKyvConvertMap& jobs, QMap<QString, QList<int>>& positions)
{
    for (auto project = jobs.begin(); project != jobs.end(); ++project) {
        for (const auto& job : project.value()) {
            if (job.state != waitingOnServer)
                positions[project.key()].append(0);
            else if (job.sort >= 0)
                positions[project.key()].append(job.sort);
            else
                qDebug() << "CServiceConvertMgr::GetConvertInfo kyv convert failed guid:" << job.id;
        }
    }
}

} // namespace TorvoEditor
