// SPDX-License-Identifier: MIT
#include "smartdb/sceneobject.h"

#include "smartdb/project.h"
#include "smartdb/text.h"

#include <utility>

namespace ZRSmartDB
{

SceneObject::SceneObject(Project& project, ObjectData data)
    : m_project(project)
    , m_data(std::move(data))
{
}

ZRSmartFormat::SZRFTGuid SceneObject::GetGuid() const
{
    return GuidOf(m_data.guid);
}

ZRSmartFormat::SZRFTGuid SceneObject::GetLinkedProj() const
{
    return GuidOf(m_data.link);
}

void SceneObject::SetObjectText(const std::wstring& text)
{
    const std::lock_guard lock(m_project.m_mutex);
    auto value = Utf8Of(text);
    if (value == m_data.text)
        return;
    m_data.text = std::move(value);
    m_project.m_changedObjects.insert(this);
}

std::wstring SceneObject::GetObjectText() const
{
    const std::lock_guard lock(m_project.m_mutex);
    return WideOf(m_data.text);
}

ObjectData SceneObject::data() const
{
    const std::lock_guard lock(m_project.m_mutex);
    return m_data;
}

} // namespace ZRSmartDB
