// SPDX-License-Identifier: MIT
#include "fakes/fakeproject.h"

#include "fakes/calls.h"

namespace Fakes
{

namespace
{

QString Text(const ZRSmartFormat::SZRFTGuid& guid)
{
    return QString::fromStdWString(ZRSmartFormat::GuidToText(guid));
}

void Changed(const char* operation, const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& value)
{
    Called(QStringLiteral("%1(%2,%3)")
               .arg(QLatin1String(operation), Text(guid), QString::fromStdWString(value)));
}

} // namespace

SceneObject::SceneObject(const ZRSmartFormat::SZRFTGuid& guid, const ZRSmartFormat::SZRFTGuid& linkedProj)
    : m_guid(guid)
    , m_linkedProj(linkedProj)
{
}

void SceneObject::SetObjectText(const std::wstring& text)
{
    Changed("SetObjectText", m_guid, text);
    m_text = text;
}

Project::Project(const ZRSmartFormat::SZRFTGuid& guid, const std::wstring& name, const std::wstring& type,
                 const ZRIMGeometryModel::CZRIMPosition& position)
    : m_guid(guid)
    , m_position(position)
    , m_name(name)
    , m_type(type)
{
}

void Project::SetPosition(const ZRIMGeometryModel::CZRIMPosition& position)
{
    Called(QStringLiteral("SetPosition(%1,%2,%3,%4)")
               .arg(Text(m_guid))
               .arg(position.GetX())
               .arg(position.GetY())
               .arg(position.GetZ()));
    m_position = position;
}

void Project::SetName(const std::wstring& name)
{
    Changed("SetName", m_guid, name);
    m_name = name;
}

void Project::SetType(const std::wstring& type)
{
    Changed("SetType", m_guid, type);
    m_type = type;
}

void Project::SetAttr(const std::wstring& key, const std::wstring& value)
{
    Changed("SetAttr", m_guid, key + L"," + value);
    m_attributes[key] = value;
}

void Project::SetIotCode(const std::wstring& code)
{
    Changed("SetIotCode", m_guid, code);
    m_iotCode = code;
}

void Project::SetProj4(const std::wstring& parameters)
{
    Changed("SetProj4", m_guid, parameters);
    m_proj4 = parameters;
}

void Project::SetTemplate(const std::wstring& text)
{
    Changed("SetTemplate", m_guid, text);
    m_template = text;
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
