// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <vector>

namespace TorvoSDK
{

/// Free attributes of a project, by name.
using AttributeMap = std::map<std::wstring, std::wstring>;

/// One project that exists on this machine, as host and plugin tell each other of it.
struct SLocalProjectRecord {
    std::wstring guid;      ///< guid text of the project
    std::wstring name;      ///< display name
    AttributeMap customMap; ///< free attributes; the plugin itself sets only "needUpgrade" to "true"
};

/// One project that the account sees on the server.
struct SServerProjectRecord {
    int type = 0;           ///< 0 a scene ("CIM"), 1 a building project ("BIM")
    std::wstring name;      ///< display name
    std::wstring guid;      ///< project key; empty marks the record as "not found"
    std::wstring longitude; ///< decimal text, degrees, WGS 84
    std::wstring latitude;  ///< decimal text, degrees, WGS 84
    bool isDemo = false;    ///< a demonstration project of the server
    std::wstring iotCode;   ///< IoT asset number
    std::wstring earthConfig;
    std::wstring proj4;     ///< projection parameters in PROJ4 form
    AttributeMap customMap; ///< "deptId", "deptName" and the like
};

/// A node of the account's organisation tree.
struct SOrgNode {
    std::wstring id;
    std::wstring name;
    bool canSelect = false; ///< projects may hang under this node
    std::vector<SOrgNode> children;
};

} // namespace TorvoSDK
