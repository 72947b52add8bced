// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace ZRSmartDB
{

// What stands in a project's database, as plain values. All texts are UTF-8.

using TextMap = std::map<std::string, std::string>;

/// An object of a scene.
struct ObjectData {
    std::string guid;
    std::string name;
    std::string link; ///< guid of the project that it places in the scene; empty for none
    std::string text;
    std::array<double, 3> position{}; ///< metres: east, north, up from the scene's own position
    double rotation = 0.0;            ///< degrees, counter-clockwise seen from above

    friend bool operator==(const ObjectData&, const ObjectData&) = default;
};

/// A model assigned to a building project.
struct ModelData {
    std::string guid;
    std::string name;
    std::string type; ///< "MODEL", "3DTILES", "DWG"
    TextMap attributes;

    friend bool operator==(const ModelData&, const ModelData&) = default;
};

/// What is read when a project is opened.
struct ProjectHead {
    std::string guid;
    std::string name;
    std::string type; ///< "CIM", "BIM" or "MODEL"
    double longitude = 0.0;
    double latitude = 0.0;
    double height = 0.0;
    std::string iotCode;
    std::string proj4;
    std::string note;
    TextMap attributes;
    std::vector<std::string> modelGuids; ///< of the assigned models that are projects of their own
    std::int64_t objectCount = 0;
    std::int64_t changeCounter = 0; ///< grows with every change of the project

    friend bool operator==(const ProjectHead&, const ProjectHead&) = default;
};

} // namespace ZRSmartDB
