// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartDB/zrproject.h"
#include "smartdb/data/projectdata.h"
#include "smartdb/modelstore.h"
#include "smartdb/sceneobject.h"

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace ZRSmartDB
{

class ModelUse;

/// An open project. Its head is read when it is opened, the rest when it is asked for. Any thread.
///
/// A save writes what was set here to another value and nothing else, so that it neither undoes what another
/// process has written meanwhile nor makes a project modified that is not.
class Project final : public IZRProject
{
public:
    /// Reads the project `guid` in a data folder. Throws Failure. `use` hears of the models that come and go.
    Project(const ZRSmartFormat::SZRFTGuid& guid, std::filesystem::path dataFolder, ModelUse& use);
    ~Project();

    [[nodiscard]] ZRSmartFormat::SZRFTGuid GetGuid() const override;
    [[nodiscard]] ZRIMGeometryModel::CZRIMPosition GetPosition() const override;
    void SetPosition(const ZRIMGeometryModel::CZRIMPosition& position) override;
    [[nodiscard]] std::wstring GetName() const override;
    void SetName(const std::wstring& name) override;
    [[nodiscard]] std::wstring GetType() const override;
    void SetType(const std::wstring& type) override;
    void SetAttr(const std::wstring& key, const std::wstring& value) override;
    [[nodiscard]] std::wstring GetAttr(const std::wstring& key) const override;
    void SetIotCode(const std::wstring& code) override;
    [[nodiscard]] std::wstring GetIotCode() const override;
    void SetProj4(const std::wstring& parameters) override;
    [[nodiscard]] std::wstring GetProj4() const override;
    void SetTemplate(const std::wstring& text) override;
    [[nodiscard]] std::wstring GetTemplate() const override;
    [[nodiscard]] std::wstring GetImagePath() const override;
    [[nodiscard]] IZRModelStore* GetModelStore() override;

    [[nodiscard]] const std::filesystem::path& dataFolder() const { return m_dataFolder; }
    [[nodiscard]] const std::filesystem::path& folder() const { return m_folder; }
    [[nodiscard]] std::string type() const;
    [[nodiscard]] std::string note() const;
    void setNote(const std::string& note);

    /// The objects, read at the first call. Throws Failure.
    [[nodiscard]] std::vector<IZRSceneObject*> objects();

    /// Guids of the assigned models that are projects of their own, as they were when the project was opened.
    [[nodiscard]] std::vector<std::string> modelGuids() const;

    /// Writes what was changed since the last time, in one transaction. Throws Failure; the changes then stay
    /// in memory.
    void save();

    /// Changed in memory and not written yet.
    [[nodiscard]] bool isDirty() const;

private:
    friend class SceneObject;

    void set(std::string ProjectHead::*member, const std::wstring& value);
    [[nodiscard]] std::wstring get(std::string ProjectHead::*member) const;

    const ZRSmartFormat::SZRFTGuid m_guid;
    const std::filesystem::path m_dataFolder;
    const std::filesystem::path m_folder;

    mutable std::mutex m_mutex; ///< protects everything below but m_models, which protects itself
    ProjectHead m_head;
    ProjectHead m_savedHead;
    mutable std::optional<std::string> m_template; ///< read at first use
    bool m_isTemplateChanged = false;
    std::optional<std::vector<std::unique_ptr<SceneObject>>> m_objects; ///< read at first use
    std::set<const SceneObject*> m_changedObjects;
    ModelStore m_models;
};

} // namespace ZRSmartDB
