// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartDB/zrmodelstore.h"
#include "smartdb/data/projectdata.h"

#include <map>
#include <memory>
#include <mutex>

namespace ZRSmartDB
{

class Project;

class ModelRecord final : public IZRModelRecord
{
public:
    explicit ModelRecord(ModelData data)
        : m_data(std::move(data))
    {
    }

    [[nodiscard]] ZRSmartFormat::SZRFTGuid GetGuid() const override;
    [[nodiscard]] std::wstring GetName() const override;
    [[nodiscard]] std::wstring GetType() const override;
    [[nodiscard]] std::wstring GetAttribute(const std::wstring& key) const override;

    [[nodiscard]] const ModelData& data() const { return m_data; }

private:
    ModelData m_data;
};

/// The models of an open building project, read at first use; changes go to disk at once. Any thread.
class ModelStore final : public IZRModelStore
{
public:
    explicit ModelStore(Project& project)
        : m_project(project)
    {
    }

    [[nodiscard]] bool ImportModelProj(const ZRSmartFormat::SZRFTGuid& model,
                                       const std::wstring& dataFolder) override;
    [[nodiscard]] bool UpdateModelProj(const ZRSmartFormat::SZRFTGuid& oldModel,
                                       const ZRSmartFormat::SZRFTGuid& newModel,
                                       const std::wstring& dataFolder) override;
    void RemoveModelProj(const ZRSmartFormat::SZRFTGuid& model) override;
    [[nodiscard]] bool HasModelProj(const ZRSmartFormat::SZRFTGuid& model) const override;
    void GetModelProjIds(std::vector<ZRSmartFormat::SZRFTGuid>& models) const override;
    [[nodiscard]] IZRModelRecord* GetModelProj(const ZRSmartFormat::SZRFTGuid& model) override;

    /// Guid and type text of every model.
    [[nodiscard]] std::vector<std::pair<std::string, std::string>> types() const;

private:
    void load() const;
    [[nodiscard]] ModelRecord* find(const std::string& guid) const;
    /// Takes in `added`, unless it is empty, and takes out `removed`, unless it is empty, in one transaction.
    [[nodiscard]] bool change(const std::string& added, const std::string& removed,
                              const std::wstring& dataFolder);

    Project& m_project;
    mutable std::mutex m_mutex; ///< protects the records
    mutable bool m_isLoaded = false;
    mutable std::vector<std::unique_ptr<ModelRecord>> m_records; ///< in the order in which they were taken in
};

} // namespace ZRSmartDB
