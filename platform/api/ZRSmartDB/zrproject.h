// SPDX-License-Identifier: MIT
#pragma once

#include "ZRIMGeometryModel/zrimposition.h"
#include "ZRSmartFormat/zrftguid.h"

#include <string>

namespace ZRSmartDB
{

class IZRModelStore;

/// An open project. Owned by the database; see IZRDatabase for its life and for threads. A setter changes the
/// project in memory; IZRDatabase::SaveAll writes it.
class IZRProject
{
public:
    [[nodiscard]] virtual ZRSmartFormat::SZRFTGuid GetGuid() const = 0;

    [[nodiscard]] virtual ZRIMGeometryModel::CZRIMPosition GetPosition() const = 0;
    virtual void SetPosition(const ZRIMGeometryModel::CZRIMPosition& position) = 0;

    [[nodiscard]] virtual std::wstring GetName() const = 0;
    virtual void SetName(const std::wstring& name) = 0;

    /// "CIM" for a scene, "BIM" for a building project, "MODEL" for a model assigned to one.
    [[nodiscard]] virtual std::wstring GetType() const = 0;
    virtual void SetType(const std::wstring& type) = 0;

    /// A free attribute; a key that was never set reads as the empty text.
    virtual void SetAttr(const std::wstring& key, const std::wstring& value) = 0;
    [[nodiscard]] virtual std::wstring GetAttr(const std::wstring& key) const = 0;

    virtual void SetIotCode(const std::wstring& code) = 0;
    [[nodiscard]] virtual std::wstring GetIotCode() const = 0;

    /// Projection parameters in PROJ4 form.
    virtual void SetProj4(const std::wstring& parameters) = 0;
    [[nodiscard]] virtual std::wstring GetProj4() const = 0;

    /// The property template, JSON text; any text is kept as it is.
    virtual void SetTemplate(const std::wstring& text) = 0;
    [[nodiscard]] virtual std::wstring GetTemplate() const = 0;

    /// Absolute path of the project's picture, empty when it has none.
    [[nodiscard]] virtual std::wstring GetImagePath() const = 0;

    /// The models of a building project; null for other types. Owned by the project.
    [[nodiscard]] virtual IZRModelStore* GetModelStore() = 0;

protected:
    ~IZRProject() = default;
};

} // namespace ZRSmartDB
