// SPDX-License-Identifier: MIT
#include "smartdb/project.h"

#include "smartdb/data/projectfile.h"
#include "smartdb/failure.h"
#include "smartdb/text.h"

#include <cmath>
#include <utility>

namespace ZRSmartDB
{

namespace
{

constexpr const char* buildingType = "BIM";
constexpr const char* pictureFile = "projimage.jpg";

/// What is no number cannot be stored; a text that does not parse counts as 0 elsewhere too.
double Coordinate(double value)
{
    return std::isfinite(value) ? value : 0.0;
}

} // namespace

Project::Project(const ZRSmartFormat::SZRFTGuid& guid, std::filesystem::path dataFolder, ModelUse& use)
    : m_guid(guid)
    , m_dataFolder(std::move(dataFolder))
    , m_folder(ProjectFolder(m_dataFolder, GuidTextOf(guid)))
    , m_models(*this, use)
{
    std::error_code missing;
    if (!std::filesystem::exists(DatabaseIn(m_folder), missing))
        throw Failure(localcode::notHere, "the project " + GuidTextOf(guid) + " is not on this machine");
    m_head = ProjectFile(m_folder).readHead();
    if (GuidOf(m_head.guid) != guid)
        throw Failure(localcode::damaged, m_folder.string() + " holds another project than its name says");
    m_savedHead = m_head;
}

Project::~Project() = default;

ZRSmartFormat::SZRFTGuid Project::GetGuid() const
{
    return m_guid;
}

ZRIMGeometryModel::CZRIMPosition Project::GetPosition() const
{
    const std::lock_guard lock(m_mutex);
    return {m_head.longitude, m_head.latitude, m_head.height};
}

void Project::SetPosition(const ZRIMGeometryModel::CZRIMPosition& position)
{
    const std::lock_guard lock(m_mutex);
    m_head.longitude = Coordinate(position.GetX());
    m_head.latitude = Coordinate(position.GetY());
    m_head.height = Coordinate(position.GetZ());
}

std::wstring Project::GetName() const
{
    return get(&ProjectHead::name);
}

void Project::SetName(const std::wstring& name)
{
    set(&ProjectHead::name, name);
}

std::wstring Project::GetType() const
{
    return get(&ProjectHead::type);
}

void Project::SetType(const std::wstring& type)
{
    set(&ProjectHead::type, type);
}

void Project::SetAttr(const std::wstring& key, const std::wstring& value)
{
    const std::lock_guard lock(m_mutex);
    const auto name = Utf8Of(key);
    // What was never set reads as empty, so that setting it to the empty text changes nothing.
    if (!value.empty() || m_head.attributes.contains(name))
        m_head.attributes[name] = Utf8Of(value);
}

std::wstring Project::GetAttr(const std::wstring& key) const
{
    const std::lock_guard lock(m_mutex);
    const auto attribute = m_head.attributes.find(Utf8Of(key));
    return attribute != m_head.attributes.end() ? WideOf(attribute->second) : std::wstring();
}

void Project::SetIotCode(const std::wstring& code)
{
    set(&ProjectHead::iotCode, code);
}

std::wstring Project::GetIotCode() const
{
    return get(&ProjectHead::iotCode);
}

void Project::SetProj4(const std::wstring& parameters)
{
    set(&ProjectHead::proj4, parameters);
}

std::wstring Project::GetProj4() const
{
    return get(&ProjectHead::proj4);
}

void Project::SetTemplate(const std::wstring& text)
{
    if (GetTemplate() == text)
        return;
    const std::lock_guard lock(m_mutex);
    m_template = Utf8Of(text);
    m_isTemplateChanged = true;
}

std::wstring Project::GetTemplate() const
{
    return AtBorder(std::wstring(), [this] {
        const std::lock_guard lock(m_mutex);
        if (!m_template)
            m_template = ProjectFile(m_folder).readTemplate();
        return WideOf(*m_template);
    });
}

std::wstring Project::GetImagePath() const
{
    std::error_code error;
    const auto picture = std::filesystem::absolute(m_folder / pictureFile, error);
    return std::filesystem::exists(picture, error) ? WideOf(TextOfPath(picture)) : std::wstring();
}

IZRModelStore* Project::GetModelStore()
{
    return type() == buildingType ? &m_models : nullptr;
}

std::string Project::type() const
{
    const std::lock_guard lock(m_mutex);
    return m_head.type;
}

std::string Project::note() const
{
    const std::lock_guard lock(m_mutex);
    return m_head.note;
}

void Project::setNote(const std::string& note)
{
    const std::lock_guard lock(m_mutex);
    m_head.note = note;
}

std::vector<IZRSceneObject*> Project::objects()
{
    const std::lock_guard lock(m_mutex);
    if (!m_objects) {
        std::vector<std::unique_ptr<SceneObject>> read;
        if (m_head.objectCount > 0) {
            for (auto& data : ProjectFile(m_folder).readObjects())
                read.push_back(std::make_unique<SceneObject>(*this, std::move(data)));
        }
        m_objects = std::move(read);
    }
    std::vector<IZRSceneObject*> objects;
    for (const auto& object : *m_objects)
        objects.push_back(object.get());
    return objects;
}

std::vector<std::string> Project::modelGuids() const
{
    const std::lock_guard lock(m_mutex);
    return m_head.modelGuids;
}

bool Project::isDirty() const
{
    const std::lock_guard lock(m_mutex);
    return m_head != m_savedHead || m_isTemplateChanged || !m_changedObjects.empty();
}

void Project::save()
{
    if (!isDirty())
        return;
    const std::lock_guard lock(m_mutex);
    ProjectChange change;
    change.head = &m_head;
    change.headBefore = &m_savedHead;
    if (m_isTemplateChanged)
        change.propertyTemplate = &*m_template;
    for (const auto* object : m_changedObjects)
        change.objectTexts[object->m_data.guid] = object->m_data.text;
    ProjectFile(m_folder).write(change);
    m_savedHead = m_head;
    m_isTemplateChanged = false;
    m_changedObjects.clear();
}

void Project::set(std::string ProjectHead::*member, const std::wstring& value)
{
    const std::lock_guard lock(m_mutex);
    m_head.*member = Utf8Of(value);
}

std::wstring Project::get(std::string ProjectHead::*member) const
{
    const std::lock_guard lock(m_mutex);
    return WideOf(m_head.*member);
}

} // namespace ZRSmartDB
