// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <QString>

namespace TorvoSDK
{
struct SOrgNode;
struct SServerProjectRecord;
} // namespace TorvoSDK

namespace ZRSmartDB
{
class IZRProject;
}

namespace TorvoEditor
{

/// The department that a project says it belongs to; empty when it says none.
[[nodiscard]] QString DepartmentOf(ZRSmartDB::IZRProject* project);

/// The projects that go into a tree, for each of its nodes. Each project is read once for the whole build and
/// not once for each department. Lives as long as one build. GUI thread.
class CTreeProjects
{
public:
    struct LocalProject {
        QString guid;
        ZRSmartDB::IZRProject* project; ///< never null
    };
    using ServerProjects = std::vector<const TorvoSDK::SServerProjectRecord*>;
    using LocalProjects = std::vector<LocalProject>;

    /// The server's records of the department `node` in the server's order; all for an empty node. Throws
    /// std::out_of_range when there are departments and any record does not say its own.
    [[nodiscard]] const ServerProjects& serverProjectsOf(const TorvoSDK::SOrgNode& node);

    /// The projects of the local list that can be opened, of the department `node`, in the list's order; all
    /// for an empty node.
    [[nodiscard]] const LocalProjects& localProjectsOf(const TorvoSDK::SOrgNode& node);

private:
    std::optional<std::map<std::wstring, ServerProjects>> m_serverProjects; ///< by department
    std::optional<std::map<std::wstring, LocalProjects>> m_localProjects;   ///< by department
    ServerProjects m_allServerProjects;
    LocalProjects m_allLocalProjects;
};

} // namespace TorvoEditor
