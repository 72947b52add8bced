// SPDX-License-Identifier: MIT
#include "samples/catalogue.h"

namespace samples
{

namespace
{

const char* const house = "AC14-FZK-Haus.ifc";
const char* const engine = "2CylinderEngine.glb";
const char* const truck = "CesiumMilkTruck.gltf";
const char* const sculpture = "spider.fbx";
const char* const groundFloor = "0. Erdgeschoss";
const char* const attic = "1. Dachgeschoss";

const char* const residentialDepartment = "dept-residential";
const char* const municipalDepartment = "dept-municipal";

// Guids of the building projects that scenes link to.
const char* const demonstrationHouse = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a01";
const char* const energyStation = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a03";

const Department* Find(const Department& department, const std::string& id)
{
    if (department.id == id)
        return &department;
    for (const auto& child : department.children) {
        if (const auto* found = Find(child, id))
            return found;
    }
    return nullptr;
}

} // namespace

const Department& Organisation()
{
    static const Department organisation{
        "org-root",
        "华东建筑设计院",
        false,
        {
            {"org-architecture",
             "建筑设计所",
             false,
             {{residentialDepartment, "住宅项目部", true}, {"dept-public", "公共建筑项目部", true}}},
            {"org-urban", "城市规划所", false, {{municipalDepartment, "市政项目部", true}}},
        }};
    return organisation;
}

const std::vector<SampleAccount>& Accounts()
{
    static const std::vector<SampleAccount> accounts = {
        {"zhangwei", "张伟 · 华东建筑设计院", "torvo-zhangwei", true},
        {"lina", "李娜", "torvo-lina", false},
    };
    return accounts;
}

const std::vector<SampleProject>& Projects()
{
    static const std::vector<SampleProject> projects = {
        {.guid = demonstrationHouse,
         .name = "滨江花园 1 号住宅楼",
         .type = "BIM",
         .longitude = 121.4995,
         .latitude = 31.2397,
         .owner = "zhangwei",
         .department = residentialDepartment,
         .models = {{"7e3c1d90-0d52-4a67-8f10-2b9a5e4d1001", "住宅楼整体模型", house}}},
        {.guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a02",
         .name = "滨江花园 2 号住宅楼（分层）",
         .type = "BIM",
         .longitude = 121.49974,
         .latitude = 31.23964,
         .owner = "zhangwei",
         .department = residentialDepartment,
         .models = {{"7e3c1d90-0d52-4a67-8f10-2b9a5e4d2001", "首层", house, groundFloor},
                    {"7e3c1d90-0d52-4a67-8f10-2b9a5e4d2002", "阁楼层", house, attic}}},
        {.guid = energyStation,
         .name = "区域能源站设备间",
         .type = "BIM",
         .longitude = 121.49935,
         .latitude = 31.23952,
         .owner = "zhangwei",
         .department = municipalDepartment,
         .models = {{"7e3c1d90-0d52-4a67-8f10-2b9a5e4d3001", "双缸发动机组", engine, {}, 7.0}}},
        {.guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0b01",
         .name = "滨江新区总体场景",
         .type = "CIM",
         .longitude = 121.49945,
         .latitude = 31.23960,
         .owner = "zhangwei",
         .department = municipalDepartment,
         .linked = {demonstrationHouse, energyStation}},
        {.guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0b02",
         .name = "滨江花园一期场景",
         .type = "CIM",
         .longitude = 121.49962,
         .latitude = 31.23968,
         .owner = "zhangwei",
         .department = residentialDepartment,
         .linked = {demonstrationHouse, "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a02"}},
        {.guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a06",
         .name = "老街旧宅改造（旧版数据）",
         .type = "BIM",
         .longitude = 121.4921,
         .latitude = 31.2278,
         .owner = "zhangwei",
         .department = residentialDepartment,
         .models = {{"7e3c1d90-0d52-4a67-8f10-2b9a5e4d6001", "旧宅首层", house, groundFloor}},
         .isOldFormat = true},
        {.guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a04",
         .name = "物流中心装卸区",
         .type = "BIM",
         .longitude = 120.5853,
         .latitude = 31.2989,
         .owner = "lina",
         .models = {{"7e3c1d90-0d52-4a67-8f10-2b9a5e4d4001", "厢式货车", truck, {}, 6.5}}},
        {.guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0a05",
         .name = "中央公园景观雕塑",
         .type = "BIM",
         .longitude = 120.6196,
         .latitude = 31.3172,
         .owner = "lina",
         .models = {{"7e3c1d90-0d52-4a67-8f10-2b9a5e4d5001", "钢制雕塑", sculpture, {}, 9.0}}},
        {.guid = "5b0f6a52-6c1e-4d0b-9a35-1f1d6b7c0c01",
         .name = "入门示范住宅",
         .type = "BIM",
         .longitude = 121.4737,
         .latitude = 31.2304,
         .owner = "zhangwei",
         .department = "dept-public",
         .models = {{"7e3c1d90-0d52-4a67-8f10-2b9a5e4dc001", "示范住宅模型", house}},
         .isDemo = true},
    };
    return projects;
}

std::string DepartmentName(const std::string& id)
{
    const auto* department = Find(Organisation(), id);
    return department != nullptr ? department->name : std::string();
}

} // namespace samples
