// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/treeprojects.h"

#include "TorvoSDK/projectrecords.h"
#include "core/homeapp.h"
#include "project/localprojectinfomgr.h"
#include "project/projectmgr.h"

#include <stdexcept>

#include <QMap>

namespace TorvoEditor
{

namespace
{

CProjectMgr& ProjectMgr()
{
    return *CHomeApp::instance().GetMgr<CProjectMgr>();
}

const std::wstring& OwnDepartmentOf(const TorvoSDK::SServerProjectRecord& record)
{
    const auto department = record.customMap.find(L"deptId");
    if (department == record.customMap.end())
        throw std::out_of_range("invalid map<K, T> key");
    return department->second;
}

CTreeProjects::ServerProjects AllServerProjects()
{
    CTreeProjects::ServerProjects records;
    records.reserve(ProjectMgr().serverProjects().size());
    for (const auto& record : ProjectMgr().serverProjects())
        records.push_back(&record);
    return records;
}

CTreeProjects::LocalProjects AllLocalProjects()
{
    CTreeProjects::LocalProjects projects;
    const auto& guids = CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>()->projectGuids();
    projects.reserve(static_cast<std::size_t>(guids.size()));
    for (const auto& guid : guids) {
        if (auto* project = ProjectMgr().GetProject(guid))
            projects.push_back({guid, project});
    }
    return projects;
}

} // namespace

QString DepartmentOf(ZRSmartDB::IZRProject* project)
{
    QMap<QString, QString> attributes;
    ProjectMgr().GetProjExtAttrs(project, attributes);
    return attributes.value(QStringLiteral("deptId"));
}

const CTreeProjects::ServerProjects& CTreeProjects::serverProjectsOf(const TorvoSDK::SOrgNode& node)
{
    if (IsEmptyOrgNode(node))
        return m_allServerProjects = AllServerProjects();
    if (!m_serverProjects) {
        std::map<std::wstring, ServerProjects> byDepartment;
        for (const auto& record : ProjectMgr().serverProjects())
            byDepartment[OwnDepartmentOf(record)].push_back(&record);
        m_serverProjects = std::move(byDepartment);
    }
    return (*m_serverProjects)[node.id];
}

const CTreeProjects::LocalProjects& CTreeProjects::localProjectsOf(const TorvoSDK::SOrgNode& node)
{
    if (IsEmptyOrgNode(node))
        return m_allLocalProjects = AllLocalProjects();
    if (!m_localProjects) {
        m_localProjects.emplace();
        for (const auto& local : AllLocalProjects())
            (*m_localProjects)[DepartmentOf(local.project).toStdWString()].push_back(local);
    }
    return (*m_localProjects)[node.id];
}

} // namespace TorvoEditor
