// SPDX-License-Identifier: MIT
#include "project/localprojectinfomgr.h"

#include "TorvoSDK/projecthost.h"
#include "TorvoSDK/torvosdkplugin.h"
#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrdbdirector.h"
#include "ZRSmartDB/zrprojupgrader.h"
#include "ZRSmartDB/zrsceneobject.h"
#include "core/homeapp.h"
#include "project/guidtext.h"
#include "project/projectconfig.h"

#include <algorithm>

#include <QCoreApplication>
#include <QJsonObject>

namespace TorvoEditor
{

namespace
{

constexpr QLatin1String guidKey("guid");
constexpr QLatin1String nameKey("name");
constexpr QLatin1String customMapKey("customMap");

ZRSmartDB::IZRDatabase* Database()
{
    return ZRSmartDB::GetIDBDirector()->GetDatabase();
}

TorvoSDK::IProjectHost* ProjectHost()
{
    return CHomeApp::instance().m_plugin->GetProjectHost();
}

TorvoSDK::SLocalProjectRecord RecordOf(const QJsonObject& project)
{
    TorvoSDK::SLocalProjectRecord record;
    record.guid = project.value(guidKey).toString().toStdWString();
    record.name = project.value(nameKey).toString().toStdWString();
    const auto attributes = project.value(customMapKey).toObject();
    for (auto attribute = attributes.constBegin(); attribute != attributes.constEnd(); ++attribute)
        record.customMap[attribute.key().toStdWString()] = attribute.value().toString().toStdWString();
    return record;
}

QJsonObject ObjectOf(const TorvoSDK::SLocalProjectRecord& record)
{
    QJsonObject attributes;
    for (const auto& [key, value] : record.customMap)
        attributes.insert(QString::fromStdWString(key), QString::fromStdWString(value));
    return {{guidKey, QString::fromStdWString(record.guid)},
            {nameKey, QString::fromStdWString(record.name)},
            {customMapKey, attributes}};
}

/// The records of those listed projects that can be opened, or could be after an upgrade.
std::vector<TorvoSDK::SLocalProjectRecord> UsableProjects(const QJsonArray& projects, const QString& dataPath)
{
    std::vector<TorvoSDK::SLocalProjectRecord> records;
    auto* database = Database();
    auto* upgrader = database != nullptr ? database->GetUpgrader() : nullptr;
    if (upgrader == nullptr)
        return records;
    const std::wstring dataFolder = dataPath.toStdWString();
    for (const auto& project : projects) {
        auto record = RecordOf(project.toObject());
        const auto key = ZRSmartFormat::GuidFromText(record.guid);
        if (database->OpenProject(key, dataFolder) == nullptr) {
            if (!upgrader->NeedUpgrade(key, dataFolder))
                continue;
            record.customMap[L"needUpgrade"] = L"true";
        }
        records.push_back(std::move(record));
    }
    return records;
}

} // namespace

CLocalProjectInfoMgr::CLocalProjectInfoMgr()
    : m_configPath(QCoreApplication::applicationDirPath() + QStringLiteral("/ProjectConfig.json"))
    , m_dataPath(QCoreApplication::applicationDirPath() + QStringLiteral("/data"))
{
}

void CLocalProjectInfoMgr::Init()
{
    Load();
}

void CLocalProjectInfoMgr::UnInit()
{
    Save();
}

void CLocalProjectInfoMgr::Load()
{
    m_projectArray = DecodeProjectConfig(ReadProjectConfig(m_configPath));
    m_projectRecords = UsableProjects(m_projectArray, m_dataPath);
    ProjectHost()->SetProjectRecords(m_projectRecords);
    for (const auto& record : m_projectRecords)
        ProjectHost()->AddProjectRecord(record);

    m_projectGuids.reserve(static_cast<int>(m_projectRecords.size()));
    for (const auto& record : m_projectRecords)
        m_projectGuids.append(QString::fromStdWString(record.guid));
}

void CLocalProjectInfoMgr::Save()
{
    WriteProjectConfig(m_configPath, EncodeProjectConfig(m_projectArray));
}

void CLocalProjectInfoMgr::AddProject(const QString& guid)
{
    if (ContainsProject(guid) || Database() == nullptr)
        return;
    TorvoSDK::SLocalProjectRecord record;
    ProjectHost()->GetProjectRecord(guid.toStdWString(), record);
    m_projectArray.append(ObjectOf(record));
    m_projectRecords.push_back(std::move(record));
    m_projectGuids.append(guid);
    Save();
}

void CLocalProjectInfoMgr::RemoveProject(const QString& guid)
{
    m_projectGuids.removeAll(guid);
    const std::wstring wideGuid = guid.toStdWString();
    std::erase_if(m_projectRecords, [&](const auto& record) { return record.guid == wideGuid; });
    const auto listed =
        std::find_if(m_projectArray.begin(), m_projectArray.end(), [&](const QJsonValue& project) {
            return project.toObject().value(guidKey).toString() == guid;
        });
    if (listed != m_projectArray.end())
        m_projectArray.erase(listed);
    Save();
}

bool CLocalProjectInfoMgr::ContainsProject(const QString& guid) const
{
    return m_projectGuids.contains(guid);
}

QStringList CLocalProjectInfoMgr::GetSubProjects(const QString& guid) const
{
    auto* database = Database();
    if (database == nullptr)
        return {};
    auto* project = database->OpenProject(KeyOf(guid), m_dataPath.toStdWString());
    if (project == nullptr)
        return {};
    database->LoadProjObjects(project);
    std::vector<ZRSmartDB::IZRSceneObject*> objects;
    database->GetProjObjects(project, objects, std::wstring());

    QStringList linked;
    for (const auto* object : objects) {
        const QString text = TextOf(object->GetLinkedProj());
        if (!text.isEmpty())
            linked.append(text);
    }
    linked.removeDuplicates();
    return linked;
}

} // namespace TorvoEditor
