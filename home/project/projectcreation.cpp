// SPDX-License-Identifier: MIT
#include "project/projectmgr.h"

#include "TorvoSDK/projecthost.h"
#include "TorvoSDK/torvosdkplugin.h"
#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrproject.h"
#include "convert/bimmgr.h"
#include "core/homeapp.h"
#include "native/uniqueid.h"
#include "project/guidtext.h"
#include "project/localprojectinfomgr.h"
#include "project/projectinforecord.h"

#include <cstdint>

namespace TorvoEditor
{

namespace
{

TorvoSDK::IProjectHost* ProjectHost()
{
    return CHomeApp::instance().m_plugin->GetProjectHost();
}

QString TextOf(const Native::UniqueId& id)
{
    QString text = QString::asprintf("%08X-%04X-%04X-%02X%02X-", id.data1, static_cast<unsigned>(id.data2),
                                     static_cast<unsigned>(id.data3), static_cast<unsigned>(id.data4[0]),
                                     static_cast<unsigned>(id.data4[1]));
    for (int i = 2; i < 8; ++i)
        text += QString::asprintf("%02X", static_cast<unsigned>(id.data4[i]));
    return text;
}

/// A key that no project has yet; no true guid, but good for a folder.
QString KeyOfThisMoment()
{
    const auto ticks = static_cast<std::int32_t>(Native::TickCount());
    return QStringLiteral("017ADC2B-FE16-4BD7-B616-2CCDA0F54174_%1").arg(ticks);
}

} // namespace

std::wstring CProjectMgr::NewGuid()
{
    Native::UniqueId id;
    return (Native::CreateUniqueId(id) ? TextOf(id) : KeyOfThisMoment()).toStdWString();
}

ZRSmartDB::IZRProject* CProjectMgr::CreateProject(const SProjectInfoRecord& record)
{
    if (m_projectDB == nullptr)
        return nullptr;
    const auto key = KeyOf(QString::fromStdWString(NewGuid()).toLower());
    auto* project = m_projectDB->CreateProj(key, record.name.toStdWString(), record.type.toStdWString(),
                                            PositionOf(record), m_dataPath.toStdWString());
    if (project == nullptr)
        return nullptr;
    fillNewProject(*project, record);
    TorvoSDK::SLocalProjectRecord hostRecord;
    hostRecord.guid = ZRSmartFormat::GuidToText(project->GetGuid());
    hostRecord.name = project->GetName();
    ProjectHost()->AddProjectRecord(hostRecord);
    return project;
}

void CProjectMgr::fillNewProject(ZRSmartDB::IZRProject& project, const SProjectInfoRecord& record)
{
    WriteBelongsRegion(&project, record);
    project.SetType(record.type.toStdWString());
    project.SetTemplate(record.templateContent.toStdWString());
    project.SetIotCode(record.iotCode.toStdWString());
    project.SetAttr(L"basemap", record.earthConfig.toStdWString());
    WriteExtendedAttr(&project, record.extAttrs);
    m_projectDB->SaveAll();
}

bool CProjectMgr::CommitProject()
{
    return m_projectDB != nullptr && m_projectDB->SaveAll();
}

bool CProjectMgr::RemoveLocalData(const QString& guid)
{
    if (m_projectDB == nullptr)
        return false;
    auto* localProjects = CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>();
    const auto subProjects = localProjects->GetSubProjects(guid);
    for (const auto& subProject : subProjects) {
        static_cast<void>(m_projectDB->OpenProject(KeyOf(subProject), std::wstring()));
        m_projectDB->RemoveSubProj(KeyOf(subProject));
    }
    static_cast<void>(m_projectDB->OpenProject(KeyOf(guid), std::wstring()));
    m_projectDB->DeleteProj(KeyOf(guid));
    localProjects->RemoveProject(guid);
    return true;
}

void CProjectMgr::NotifyProjectRemoved(const QString& guid)
{
    ProjectHost()->RemoveProjectRecord(guid.toStdWString());
    if (auto* bimMgr = CHomeApp::instance().GetMgr<CBimMgr>())
        bimMgr->removeBimProj(guid);
}

} // namespace TorvoEditor
