// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartDB/zrmodelstore.h"

#include <map>
#include <memory>
#include <vector>

#include <QString>

namespace Fakes
{

class ModelRecord final : public ZRSmartDB::IZRModelRecord
{
public:
    [[nodiscard]] ZRSmartFormat::SZRFTGuid GetGuid() const override { return guid; }
    [[nodiscard]] std::wstring GetName() const override { return name; }
    [[nodiscard]] std::wstring GetType() const override { return type; }
    [[nodiscard]] std::wstring GetAttribute(const std::wstring& key) const override;

    ZRSmartFormat::SZRFTGuid guid;
    std::wstring name;
    std::wstring type = L"MODEL";
    std::map<std::wstring, std::wstring> attributes;
};

/// The models of a project. A model that is taken in is called "imported".
class ModelStore final : public ZRSmartDB::IZRModelStore
{
public:
    using Guid = ZRSmartFormat::SZRFTGuid;

    bool takesIn = true;       ///< ImportModelProj and UpdateModelProj succeed
    bool losesRecords = false; ///< GetModelProj gives null
    std::vector<std::unique_ptr<ModelRecord>> records;

    ModelRecord& add(const QString& guid, const QString& name);

    [[nodiscard]] bool ImportModelProj(const Guid& model, const std::wstring& dataFolder) override;
    [[nodiscard]] bool UpdateModelProj(const Guid& oldModel, const Guid& newModel,
                                       const std::wstring& dataFolder) override;
    void RemoveModelProj(const Guid& model) override;
    [[nodiscard]] bool HasModelProj(const Guid& model) const override;
    void GetModelProjIds(std::vector<Guid>& models) const override;
    [[nodiscard]] ZRSmartDB::IZRModelRecord* GetModelProj(const Guid& model) override;

private:
    void drop(const Guid& model);
};

} // namespace Fakes
