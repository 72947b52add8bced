// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartDB/zrsceneobject.h"
#include "smartdb/data/projectdata.h"

namespace ZRSmartDB
{

class Project;

/// An object of an open scene. Any thread.
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
    friend class Project;

    Project& m_project;
    ObjectData m_data; ///< its text under the project's mutex; the rest does not change
};

} // namespace ZRSmartDB
