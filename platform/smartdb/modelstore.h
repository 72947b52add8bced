// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartDB/zrmodelstore.h"
#include "smartdb/data/projectdata.h"

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace ZRSmartDB
{

class ModelRecord;
class ModelUse;
class Project;

/// The models of an open building project, read at first use; changes go to disk at once. Any thread.
class ModelStore final : public IZRModelStore
{
public:
    ModelStore(const Project& project, ModelUse& use);
    ~ModelStore();

    [[nodiscard]] bool ImportModelProj(const ZRSmartFormat::SZRFTGuid& model,
                                       const std::wstring& dataFolder) override;
    [[nodiscard]] bool UpdateModelProj(const ZRSmartFormat::SZRFTGuid& oldModel,
                                       const ZRSmartFormat::SZRFTGuid& newModel,
                                       const std::wstring& dataFolder) override;
    void RemoveModelProj(const ZRSmartFormat::SZRFTGuid& model) override;
    [[nodiscard]] bool HasModelProj(const ZRSmartFormat::SZRFTGuid& model) const override;
    void GetModelProjIds(std::vector<ZRSmartFormat::SZRFTGuid>& models) const override;
    [[nodiscard]] IZRModelRecord* GetModelProj(const ZRSmartFormat::SZRFTGuid& model) override;

private:
    void load() const;
    using Guid = ZRSmartFormat::SZRFTGuid;

    [[nodiscard]] ModelRecord* find(const Guid& guid) const;
    void require(const Guid& guid) const;
    void requireNone(const Guid& guid) const;
    void remember(ModelData data) const;
    void forget(const Guid& guid) const;

    /// Takes `added` in and `removed`, unless it is none, out, in one transaction.
    void replace(const Guid* removed, const Guid& added, const std::wstring& dataFolder);
    void letGoOf(const Guid& guid);

    const Project& m_project;
    ModelUse& m_use;
    mutable std::mutex m_mutex; ///< protects the records, and lets changes come one after the other
    mutable bool m_isLoaded = false;
    mutable std::vector<std::unique_ptr<ModelRecord>> m_records; ///< in the order in which they were taken in
    mutable std::unordered_map<Guid, ModelRecord*> m_byGuid;     ///< the same, for finding one
};

} // namespace ZRSmartDB
