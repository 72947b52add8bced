// SPDX-License-Identifier: MIT
#include "fakes/fakeproject.h"

namespace Fakes
{

SceneObject::SceneObject(const ZRSmartFormat::SZRFTGuid& guid, const ZRSmartFormat::SZRFTGuid& linkedProj)
    : m_guid(guid)
    , m_linkedProj(linkedProj)
{
}

Project::Project(const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& name, const std::wstring& type)
    : m_guid(guid)
    , m_name(name)
    , m_type(type)
{
}

std::wstring Project::GetAttr(const std::wstring& key) const
{
    const auto found = m_attributes.find(key);
    return found != m_attributes.end() ? found->second : std::wstring();
}

SceneObject& Project::addObject(const ZRSmartFormat::SZRFTGuid& guid,
                                const ZRSmartFormat::SZRFTGuid& linkedProj)
{
    objects.push_back(std::make_unique<SceneObject>(guid, linkedProj));
    return *objects.back();
}

} // namespace Fakes
