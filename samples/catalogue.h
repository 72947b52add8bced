// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace samples
{

/// A model of a sample project and where it comes from.
struct SampleModel {
    std::string guid;
    std::string name;
    std::string source;    ///< file in the folder of sources
    std::string only = {}; ///< keep only what stands at or below this node; empty keeps all
    double size =
        0.0; ///< metres of the longest edge, set on the ground; 0 keeps the source's own measure and place
};

/// A project of the demonstration content.
struct SampleProject {
    std::string guid;
    std::string name;
    std::string type; ///< "CIM" or "BIM"
    double longitude = 0.0;
    double latitude = 0.0;
    std::string owner; ///< name of an account
    std::string department =
        {}; ///< id of a department of the owner's organisation; empty for an account without one
    std::vector<SampleModel> models = {};
    std::vector<std::string> linked = {}; ///< guids of the building projects that a scene places
    bool isDemo = false;
    bool isOldFormat = false;
};

struct Department {
    std::string id;
    std::string name;
    bool canSelect = false;
    std::vector<Department> children = {};
};

struct SampleAccount {
    std::string name;
    std::string loginName;
    std::string password;
    bool hasOrganisation = false;
};

[[nodiscard]] const Department& Organisation();
[[nodiscard]] const std::vector<SampleAccount>& Accounts();
[[nodiscard]] const std::vector<SampleProject>& Projects();

/// The name of a department of the organisation; empty for an unknown id.
[[nodiscard]] std::string DepartmentName(const std::string& id);

} // namespace samples
