// SPDX-License-Identifier: MIT
#include "editortab/document/floors.h"

#include <algorithm>

namespace editortab
{

namespace
{

using BIZCOMMON::FLOORINFO::ModelFloor;

constexpr int none = -1;
constexpr const char* storeyType = "IfcBuildingStorey";

std::vector<gltf::Bounds> BoundsOfNodes(const gltf::Model& model)
{
    std::vector<gltf::Bounds> bounds(model.nodes.size());
    for (const auto& part : model.parts) {
        for (std::uint32_t i = 0; i < part.indexCount; ++i)
            bounds[part.node].include(model.vertices[model.indices[part.firstIndex + i]].position);
    }
    return bounds;
}

std::vector<bool> HasChildren(const gltf::Model& model)
{
    std::vector<bool> has(model.nodes.size());
    for (const auto& node : model.nodes) {
        if (node.parent >= 0)
            has[static_cast<std::size_t>(node.parent)] = true;
    }
    return has;
}

int FloorNamed(const std::string& name, const std::vector<ModelFloor>& floors)
{
    const auto text = QString::fromStdString(name).simplified();
    const auto found =
        std::find_if(floors.begin(), floors.end(), [&](const auto& floor) { return floor.name == text; });
    return found != floors.end() ? static_cast<int>(found - floors.begin()) : none;
}

int FloorAt(double height, const std::vector<ModelFloor>& floors)
{
    int at = 0;
    for (std::size_t i = 1; i < floors.size() && floors[i].elevation <= height; ++i)
        at = static_cast<int>(i);
    return at;
}

} // namespace

std::vector<FloorEntry> ReadFloors(const QString& dataFolder, const QString& guid, int building)
{
    BIZCOMMON::FLOORINFO::CFloorInfo info(guid, dataFolder);
    info.LoadFloors({guid});
    auto records = info.GetFloors();
    if (records.isEmpty())
        records = info.GetDefaultFloors();
    std::vector<FloorEntry> floors;
    for (const auto& record : qAsConst(records))
        floors.push_back({record.floorName, building, record.mapping});
    return floors;
}

std::vector<int> FloorsOfNodes(const gltf::Model& model, const std::vector<ModelFloor>& floors)
{
    std::vector<int> floorOf(model.nodes.size(), none);
    if (floors.empty())
        return floorOf;
    const auto bounds = BoundsOfNodes(model);
    const auto hasChildren = HasChildren(model);
    std::vector<int> toldBy(model.nodes.size(), none); ///< the floor of the storey that a node is or is below
    for (std::size_t i = 0; i < model.nodes.size(); ++i) {
        const auto& node = model.nodes[i];
        if (node.type == storeyType || (node.type.empty() && hasChildren[i]))
            toldBy[i] = FloorNamed(node.name, floors);
        if (toldBy[i] == none && node.parent >= 0)
            toldBy[i] = toldBy[static_cast<std::size_t>(node.parent)];
        floorOf[i] = toldBy[i];
        if (floorOf[i] == none && !bounds[i].isEmpty)
            floorOf[i] = FloorAt((double{bounds[i].low[1]} + bounds[i].high[1]) / 2.0, floors);
    }
    return floorOf;
}

} // namespace editortab
