// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartFormat/zrftguid.h"

#include <string>
#include <vector>

namespace ZRSmartDB
{

/// What a building project knows of one of its models. Owned by the store, valid until the model is removed.
class IZRModelRecord
{
public:
    [[nodiscard]] virtual ZRSmartFormat::SZRFTGuid GetGuid() const = 0;
    [[nodiscard]] virtual std::wstring GetName() const = 0;

    /// One of "CIM", "BIM", "MODEL", "3DTILES", "DWG".
    [[nodiscard]] virtual std::wstring GetType() const = 0;

    /// A free attribute; "editor_import_source_type" is empty for a model that came from a model archive.
    [[nodiscard]] virtual std::wstring GetAttribute(const std::wstring& key) const = 0;

protected:
    ~IZRModelRecord() = default;
};

/// The models of one building project. Each change is one transaction: a model is in the project whole or not
/// at all. A change makes the project modified. Threads as for IZRProject.
class IZRModelStore
{
public:
    /// Takes in a converted model, which stands under its guid in `dataFolder`. False leaves the project as
    /// it was.
    [[nodiscard]] virtual bool ImportModelProj(const ZRSmartFormat::SZRFTGuid& model,
                                               const std::wstring& dataFolder) = 0;

    /// Replaces `oldModel` by the converted model `newModel`. False leaves the project as it was.
    [[nodiscard]] virtual bool UpdateModelProj(const ZRSmartFormat::SZRFTGuid& oldModel,
                                               const ZRSmartFormat::SZRFTGuid& newModel,
                                               const std::wstring& dataFolder) = 0;

    /// Takes a model out of the project; an unknown one is no error.
    virtual void RemoveModelProj(const ZRSmartFormat::SZRFTGuid& model) = 0;

    [[nodiscard]] virtual bool HasModelProj(const ZRSmartFormat::SZRFTGuid& model) const = 0;

    /// Fills `models` with the guids of all models, in the order in which they were taken in.
    virtual void GetModelProjIds(std::vector<ZRSmartFormat::SZRFTGuid>& models) const = 0;

    /// The record of a model, or null when the project has no such model.
    [[nodiscard]] virtual IZRModelRecord* GetModelProj(const ZRSmartFormat::SZRFTGuid& model) = 0;

protected:
    ~IZRModelStore() = default;
};

} // namespace ZRSmartDB
