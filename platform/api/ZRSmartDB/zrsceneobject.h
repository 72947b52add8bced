// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartFormat/zrftguid.h"

#include <string>

namespace ZRSmartDB
{

/// An object of a scene, owned by its project. Threads as for IZRProject.
class IZRSceneObject
{
public:
    [[nodiscard]] virtual ZRSmartFormat::SZRFTGuid GetGuid() const = 0;

    /// The project that this object places in the scene; the alias "none" when it places none.
    [[nodiscard]] virtual ZRSmartFormat::SZRFTGuid GetLinkedProj() const = 0;

    /// A text that the object carries, for example an IoT number.
    virtual void SetObjectText(const std::wstring& text) = 0;
    [[nodiscard]] virtual std::wstring GetObjectText() const = 0;

protected:
    ~IZRSceneObject() = default;
};

} // namespace ZRSmartDB
