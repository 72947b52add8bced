// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartDB/zrproject.h"
#include "ZRSmartDB/zrsceneobject.h"
#include "smartdb/data/projectdata.h"
#include "smartdb/data/syncstate.h"

#include <array>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace ZRSmartDB
{

class ModelStore;
class Project;

/// An object of an open scene.
class SceneObject final : public IZRSceneObject
{
public:
    SceneObject(Project& project, ObjectData data);

    [[nodiscard]] ZRSmartFormat::SZRFTGuid GetGuid() const override;
    [[nodiscard]] ZRSmartFormat::SZRFTGuid GetLinkedProj() const override;
    void SetObjectText(const std::wstring& text) override;
    [[nodiscard]] std::wstring GetObjectText() const override;

    /// A copy of everything that is known of the object.
    [[nodiscard]] ObjectData data() const;

private:
    Project& m_project;
    ObjectData m_data; ///< under the project's mutex
};

/// An open project. Its head is read when it is opened, the rest when it is asked for. Any thread.
class Project final : public IZRProject
{
public:
    /// Reads the project in `folder`. Throws ProjectFileError.
    explicit Project(std::filesystem::path folder);
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

    [[nodiscard]] const std::filesystem::path& folder() const { return m_folder; }
    [[nodiscard]] std::string type() const;
    [[nodiscard]] std::string note() const;
    void setNote(const std::string& note);

    /// The objects, read at the first call. Throws ProjectFileError.
    [[nodiscard]] std::vector<IZRSceneObject*> objects();

    /// Guids of the assigned models that are projects of their own.
    [[nodiscard]] std::vector<std::string> modelGuids() const;
    void setModelGuids(std::vector<std::string> guids);

    /// Writes what was changed since the last time. Throws ProjectFileError; the changes then stay in memory.
    void save();

    /// Changed in memory and not written yet.
    [[nodiscard]] bool isDirty() const;

    /// The project's counter and its memory of the server, as they stand on disk: another process may have
    /// written.
    struct DiskState {
        std::int64_t changeCounter = 0;
        std::optional<SyncState> sync;
    };
    /// Throws ProjectFileError.
    [[nodiscard]] DiskState diskState();

private:
    friend class SceneObject;

    /// By what it is seen that somebody has written into the folder.
    using Stamp = std::array<std::pair<std::filesystem::file_time_type, std::uintmax_t>, 3>;

    [[nodiscard]] Stamp stampOfFiles() const;

    std::filesystem::path m_folder;
    mutable std::mutex m_mutex; ///< protects everything below
    ProjectHead m_head;
    mutable std::optional<std::string> m_template;
    std::optional<std::vector<std::unique_ptr<SceneObject>>> m_objects;
    std::unique_ptr<ModelStore> m_models;
    bool m_isHeadChanged = false;
    bool m_isTemplateChanged = false;
    bool m_areObjectsChanged = false;
    Stamp m_stamp{};
    DiskState m_diskState;
};

} // namespace ZRSmartDB
