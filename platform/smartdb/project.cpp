// SPDX-License-Identifier: MIT
#include "smartdb/project.h"

#include "smartdb/data/projectfile.h"
#include "smartdb/modelstore.h"
#include "smartdb/text.h"
#include "wire/projectfolder.h"

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
    m_data.text = Utf8Of(text);
    m_project.m_areObjectsChanged = true;
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

Project::Project(std::filesystem::path folder)
    : m_folder(std::move(folder))
{
    m_stamp = stampOfFiles();
    m_head = ProjectFile(m_folder).readHead();
    m_diskState = {m_head.changeCounter, ReadSyncState(m_folder)};
    if (m_head.type == "BIM")
        m_models = std::make_unique<ModelStore>(*this);
}

Project::~Project() = default;

ZRSmartFormat::SZRFTGuid Project::GetGuid() const
{
    return GuidOf(m_head.guid);
}

ZRIMGeometryModel::CZRIMPosition Project::GetPosition() const
{
    const std::lock_guard lock(m_mutex);
    return {m_head.longitude, m_head.latitude, m_head.height};
}

void Project::SetPosition(const ZRIMGeometryModel::CZRIMPosition& position)
{
    const std::lock_guard lock(m_mutex);
    m_head.longitude = position.GetX();
    m_head.latitude = position.GetY();
    m_head.height = position.GetZ();
    m_isHeadChanged = true;
}

std::wstring Project::GetName() const
{
    const std::lock_guard lock(m_mutex);
    return WideOf(m_head.name);
}

void Project::SetName(const std::wstring& name)
{
    const std::lock_guard lock(m_mutex);
    m_head.name = Utf8Of(name);
    m_isHeadChanged = true;
}

std::wstring Project::GetType() const
{
    const std::lock_guard lock(m_mutex);
    return WideOf(m_head.type);
}

void Project::SetType(const std::wstring& type)
{
    const std::lock_guard lock(m_mutex);
    m_head.type = Utf8Of(type);
    m_isHeadChanged = true;
}

void Project::SetAttr(const std::wstring& key, const std::wstring& value)
{
    const std::lock_guard lock(m_mutex);
    m_head.attributes[Utf8Of(key)] = Utf8Of(value);
    m_isHeadChanged = true;
}

std::wstring Project::GetAttr(const std::wstring& key) const
{
    const std::lock_guard lock(m_mutex);
    const auto attribute = m_head.attributes.find(Utf8Of(key));
    return attribute != m_head.attributes.end() ? WideOf(attribute->second) : std::wstring();
}

void Project::SetIotCode(const std::wstring& code)
{
    const std::lock_guard lock(m_mutex);
    m_head.iotCode = Utf8Of(code);
    m_isHeadChanged = true;
}

std::wstring Project::GetIotCode() const
{
    const std::lock_guard lock(m_mutex);
    return WideOf(m_head.iotCode);
}

void Project::SetProj4(const std::wstring& parameters)
{
    const std::lock_guard lock(m_mutex);
    m_head.proj4 = Utf8Of(parameters);
    m_isHeadChanged = true;
}

std::wstring Project::GetProj4() const
{
    const std::lock_guard lock(m_mutex);
    return WideOf(m_head.proj4);
}

void Project::SetTemplate(const std::wstring& text)
{
    const std::lock_guard lock(m_mutex);
    m_template = Utf8Of(text);
    m_isTemplateChanged = true;
}

std::wstring Project::GetTemplate() const
{
    const std::lock_guard lock(m_mutex);
    try {
        if (!m_template)
            m_template = ProjectFile(m_folder).readTemplate();
    } catch (const ProjectFileError&) {
        return {};
    }
    return WideOf(*m_template);
}

std::wstring Project::GetImagePath() const
{
    const auto picture = m_folder / "projimage.jpg";
    std::error_code missing;
    if (!std::filesystem::exists(picture, missing))
        return {};
    return WideOf(std::filesystem::absolute(picture, missing).string());
}

IZRModelStore* Project::GetModelStore()
{
    return m_models.get();
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
    m_isHeadChanged = true;
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

void Project::setModelGuids(std::vector<std::string> guids)
{
    const std::lock_guard lock(m_mutex);
    m_head.modelGuids = std::move(guids);
}

bool Project::isDirty() const
{
    const std::lock_guard lock(m_mutex);
    return m_isHeadChanged || m_isTemplateChanged || m_areObjectsChanged;
}

void Project::save()
{
    if (!isDirty())
        return;
    std::vector<ObjectData> objects;
    if (m_objects) {
        for (const auto& object : *m_objects)
            objects.push_back(object->data());
    }
    const std::lock_guard lock(m_mutex);
    ProjectChange change;
    if (m_isHeadChanged)
        change.head = &m_head;
    if (m_isTemplateChanged)
        change.propertyTemplate = &*m_template;
    if (m_areObjectsChanged)
        change.objects = &objects;
    m_head.changeCounter = ProjectFile(m_folder).write(change);
    m_isHeadChanged = m_isTemplateChanged = m_areObjectsChanged = false;
}

Project::Stamp Project::stampOfFiles() const
{
    Stamp stamp{};
    const auto database = m_folder / std::string(wire::projectDatabaseName);
    const std::array files = {database, std::filesystem::path(database.string() + "-wal"),
                              m_folder / std::string(wire::syncStateName)};
    for (std::size_t i = 0; i < files.size(); ++i) {
        std::error_code missing;
        stamp[i].second = std::filesystem::file_size(files[i], missing);
        if (!missing)
            stamp[i].first = std::filesystem::last_write_time(files[i], missing);
    }
    return stamp;
}

Project::DiskState Project::diskState()
{
    const std::lock_guard lock(m_mutex);
    // Taken before the reading: what is written meanwhile is found the next time.
    const auto stamp = stampOfFiles();
    if (stamp != m_stamp) {
        m_diskState = {ProjectFile(m_folder).readChangeCounter(), ReadSyncState(m_folder)};
        m_stamp = stamp;
    }
    return m_diskState;
}

} // namespace ZRSmartDB
