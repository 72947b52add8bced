// SPDX-License-Identifier: MIT
#include "convert/kyvrepackageworker.h"

#include "EditorCommon/zip.h"
#include "convert/kyvuploadtask.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace TorvoEditor
{

namespace
{

/// Moves the model files of a folder into a folder below it. What cannot be moved stays.
void MoveModelFiles(const QString& from, const QString& to)
{
    const QStringList models{QStringLiteral("*.zrg"), QStringLiteral("*.zrim"), QStringLiteral("*.hsf")};
    const auto files = QDir(from).entryInfoList(models, QDir::NoFilter, QDir::NoSort);
    QDir().mkdir(to);
    for (const auto& file : files)
        QFile::rename(file.filePath(), to + '/' + file.fileName());
}

} // namespace

void CKyvRepackageWorker::OnStartRepackage(const QString& aliasGuid, const QString& kyvPath)
{
    m_running = true;
    m_aliasGuid = aliasGuid;
    m_kyvPath = kyvPath;
    GetUploadFile();
    m_running = false;
}

void CKyvRepackageWorker::GetUploadFile()
{
    if (!QFileInfo::exists(m_kyvPath))
        return;
    const bool isDone = repackage();
    m_running = false; // whoever hears of the end looks at once whether the next task can start
    emit sigRepackageFinished(m_aliasGuid, isDone);
}

bool CKyvRepackageWorker::repackage() const
{
    const auto workFolder = KyvWorkFolder(m_aliasGuid);
    QDir().mkdir(workFolder);
    if (!EditorCommon::CZip::unZip(m_kyvPath, workFolder))
        return false;
    const auto models = workFolder + QStringLiteral("/kyvunzip");
    MoveModelFiles(workFolder, models);
    return EditorCommon::CZip::zip(models, workFolder + '/' + QFileInfo(m_kyvPath).fileName());
}

} // namespace TorvoEditor
