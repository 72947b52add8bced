// SPDX-License-Identifier: MIT
#include "project/asyncworker.h"

#include "core/homeapp.h"
#include "project/projectmgr.h"

namespace TorvoEditor
{

namespace
{

bool RunJob(CProjectMgr& projectMgr, int jobType, const QString& guid)
{
    switch (jobType) {
    case CAsyncWorker::Download:
        return projectMgr.DownLoadProj(guid);
    case CAsyncWorker::Upload:
        return projectMgr.UploadProject(guid, false);
    case CAsyncWorker::ForcedUpload:
        return projectMgr.UploadProject(guid, true);
    case CAsyncWorker::Update:
        return projectMgr.UpdateProject(guid);
    case CAsyncWorker::Upgrade:
        return projectMgr.UpgradeProject(guid);
    default:
        return false;
    }
}

} // namespace

CAsyncWorker::CAsyncWorker(int jobType, const QString& guid)
    : m_jobType(jobType)
    , m_guid(guid)
{
    connect(this, &QThread::finished, this, &QObject::deleteLater);
}

void CAsyncWorker::run()
{
    // Nobody waits for a job when the program ends.
    const auto projectMgr = CHomeApp::instance().ShareMgr<CProjectMgr>();
    if (!projectMgr)
        return;
    const bool isDone = RunJob(*projectMgr, m_jobType, m_guid);
    emit singSyncFinish(m_guid, isDone, isDone ? QString() : projectMgr->GetLastError());
}

} // namespace TorvoEditor
