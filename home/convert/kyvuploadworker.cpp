// SPDX-License-Identifier: MIT
#include "convert/kyvuploadworker.h"

#include "EditorCommon/kyvapi.h"
#include "convert/kyvuploadtask.h"

#include <QDir>
#include <QFileInfo>

namespace TorvoEditor
{

namespace
{

constexpr int waitingInServersQueue = 6;
constexpr int lengthOfEnding = 4; ///< ".kyv"

} // namespace

void CKyvUploadWorker::OnStartUpload(const QString& bimProj, const QString& aliasGuid,
                                     const QString& updateGuid, int convertType)
{
    m_running = true;
    m_bimProj = bimProj;
    m_aliasGuid = aliasGuid;
    m_updateGuid = updateGuid;
    m_convertType = convertType;
    QString id;
    const bool isDone = upload(id);
    QDir(KyvWorkFolder(aliasGuid)).removeRecursively();
    m_bimProj.clear();
    m_aliasGuid.clear();
    m_running = false; // whoever hears of the end looks at once whether the next task can start
    emit sigUploadFinished(aliasGuid, id, isDone);
}

bool CKyvUploadWorker::upload(QString& id) const
{
    const QDir workFolder(KyvWorkFolder(m_aliasGuid));
    if (!workFolder.exists())
        return false;
    const auto archives = workFolder.entryInfoList({QStringLiteral("*.kyv")});
    if (archives.size() != 1)
        return false;
    const auto fileName = archives.first().fileName();
    const QString remotePath = m_bimProj + '/' + m_aliasGuid + '/' + fileName;
    QString md5;
    if (!EditorCommon::KYVApi::uploadKyv(archives.first().filePath(), m_bimProj, remotePath, md5))
        return false;
    QJsonObject job{
        {QStringLiteral("projectId"), m_bimProj},
        {QStringLiteral("path"), remotePath},
        {QStringLiteral("name"), fileName.left(fileName.size() - lengthOfEnding)},
        {QStringLiteral("md5"), md5},
        {QStringLiteral("oldModelId"), m_updateGuid},
        {QStringLiteral("status"), waitingInServersQueue},
        {QStringLiteral("origin"), QStringLiteral("1")},
    };
    AddConvertMode(m_convertType, job);
    return EditorCommon::KYVApi::kyvSave(job, id);
}

void AddConvertMode(int convertType, QJsonObject& job)
{
    const bool isPerformanceFirst = convertType == 0;
    const bool isQualityFirst = convertType == 1;
    const bool isByLevels = isPerformanceFirst || isQualityFirst;
    job.insert(QStringLiteral("type"), isByLevels ? QStringLiteral("1") : QStringLiteral("2"));
    if (isByLevels)
        job.insert(QStringLiteral("option"), isPerformanceFirst ? QStringLiteral("3") : QStringLiteral("1"));
}

} // namespace TorvoEditor
