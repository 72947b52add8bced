// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartDB/zrproject.h"
#include "ZRSmartDB/zrsceneobject.h"
#include "fakes/fakemodelstore.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Fakes
{

class SceneObject final : public ZRSmartDB::IZRSceneObject
{
public:
    SceneObject(const ZRSmartFormat::SZRFTGuid& guid, const ZRSmartFormat::SZRFTGuid& linkedProj);

    [[nodiscard]] ZRSmartFormat::SZRFTGuid GetGuid() const override { return m_guid; }
    [[nodiscard]] ZRSmartFormat::SZRFTGuid GetLinkedProj() const override { return m_linkedProj; }
    void SetObjectText(const std::wstring& text) override;
    [[nodiscard]] std::wstring GetObjectText() const override { return m_text; }

private:
    ZRSmartFormat::SZRFTGuid m_guid;
    ZRSmartFormat::SZRFTGuid m_linkedProj;
    std::wstring m_text;
};

/// A project in memory. What a test sets before it hands the fake to the code under test, it sets through the
/// same operations as everybody else. Every change is written into the book of calls.
class Project final : public ZRSmartDB::IZRProject
{
public:
    Project(const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& name, const std::wstring& type,
            const ZRIMGeometryModel::CZRIMPosition& position = {});

    [[nodiscard]] ZRSmartFormat::SZRFTGuid GetGuid() const override { return m_guid; }
    [[nodiscard]] ZRIMGeometryModel::CZRIMPosition GetPosition() const override { return m_position; }
    void SetPosition(const ZRIMGeometryModel::CZRIMPosition& position) override;
    [[nodiscard]] std::wstring GetName() const override { return m_name; }
    void SetName(const std::wstring& name) override;
    [[nodiscard]] std::wstring GetType() const override { return m_type; }
    void SetType(const std::wstring& type) override;
    void SetAttr(const std::wstring& key, const std::wstring& value) override;
    [[nodiscard]] std::wstring GetAttr(const std::wstring& key) const override;
    void SetIotCode(const std::wstring& code) override;
    [[nodiscard]] std::wstring GetIotCode() const override { return m_iotCode; }
    void SetProj4(const std::wstring& parameters) override;
    [[nodiscard]] std::wstring GetProj4() const override { return m_proj4; }
    void SetTemplate(const std::wstring& text) override;
    [[nodiscard]] std::wstring GetTemplate() const override { return m_template; }
    [[nodiscard]] std::wstring GetImagePath() const override { return imagePath; }
    [[nodiscard]] ZRSmartDB::IZRModelStore* GetModelStore() override
    {
        return m_type == L"BIM" ? &models : nullptr;
    }

    /// Adds an object that links to `linkedProj`; a key of the alias "none" links to nothing.
    SceneObject& addObject(const ZRSmartFormat::SZRFTGuid& guid, const ZRSmartFormat::SZRFTGuid& linkedProj);

    std::wstring imagePath;
    ModelStore models;
    std::vector<std::unique_ptr<SceneObject>> objects;

private:
    ZRSmartFormat::SZRFTGuid m_guid;
    ZRIMGeometryModel::CZRIMPosition m_position;
    std::wstring m_name;
    std::wstring m_type;
    std::wstring m_iotCode;
    std::wstring m_proj4;
    std::wstring m_template;
    std::map<std::wstring, std::wstring> m_attributes;
};

} // namespace Fakes
