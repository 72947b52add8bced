// SPDX-License-Identifier: MIT
#include "editortab/document/document.h"

#include "ZRIMGeometryModel/zrimposition.h"
#include "ZRSmartDB/zrdatabase.h"
#include "ZRSmartDB/zrdbdirector.h"
#include "ZRSmartDB/zrdbnetaccess.h"
#include "ZRSmartDB/zrmodelstore.h"
#include "ZRSmartDB/zrproject.h"

#include <algorithm>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtMath>

namespace editortab
{

namespace
{

constexpr double metresPerDegree = 111320.0;
constexpr wchar_t noteKey[] = L"note";

QString DataFolder()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/data");
}

/// Where `position` lies as seen from `origin`; exact enough for what fits into one scene.
QVector3D PlaceOf(const ZRIMGeometryModel::CZRIMPosition& position,
                  const ZRIMGeometryModel::CZRIMPosition& origin)
{
    const double narrowing = qCos(qDegreesToRadians(origin.GetY()));
    const double east = (position.GetX() - origin.GetX()) * metresPerDegree * narrowing;
    const double north = (position.GetY() - origin.GetY()) * metresPerDegree;
    return {static_cast<float>(east), static_cast<float>(position.GetZ() - origin.GetZ()),
            static_cast<float>(-north)};
}

} // namespace

Document::Document(const StartMessage& start, QObject* parent)
    : QObject(parent)
    , m_start(start)
{
}

Document::~Document()
{
    ZRSmartDB::FreeIDBDirector();
}

QString Document::open()
{
    auto* director = ZRSmartDB::GetIDBDirector();
    const QString server =
        m_start.serverAddr.isEmpty() ? QStringLiteral("http://localhost") : m_start.serverAddr;
    if (!director->SetServer(server.toStdWString()))
        return tr("工程服务器地址无效：%1").arg(server);
    m_database = director->GetDatabase();
    m_database->SetUp(0);
    m_database->GetNetAccess()->LoginByToken(m_start.token.toStdWString());
    m_database->GetNetAccess()->SetCookie(m_start.cookies.toStdWString());

    if (!openAll()) {
        std::wstring reason;
        m_database->GetLastError(reason);
        const auto words = QJsonDocument::fromJson(QString::fromStdWString(reason).toUtf8()).object();
        return tr("工程无法打开：%1").arg(words.value(QLatin1String("msg")).toString());
    }
    return {};
}

bool Document::openAll()
{
    m_buildings.clear();
    m_models.clear();
    m_floors.clear();
    m_project = openProject(m_start.tabName);
    if (m_project == nullptr)
        return false;
    m_name = QString::fromStdWString(m_project->GetName());
    m_note = QString::fromStdWString(m_project->GetAttr(noteKey));
    addBuilding(*m_project);
    for (const auto& subProject : qAsConst(m_start.subProjects)) {
        if (auto* linked = openProject(subProject))
            addBuilding(*linked);
    }
    return true;
}

bool Document::reload()
{
    if (m_project == nullptr || m_isModified)
        return false;
    const auto models = m_models;
    const auto floors = m_floors;
    // The database keeps what it has read of a project until that is closed.
    QStringList opened = m_start.subProjects;
    opened.append(m_start.tabName);
    for (const auto& guid : qAsConst(opened))
        m_database->CloseProject(ZRSmartFormat::GuidFromText(guid.toStdWString()));
    static_cast<void>(openAll());
    const auto isSameModel = [](const ModelEntry& one, const ModelEntry& other) {
        return one.guid == other.guid && one.building == other.building && one.name == other.name;
    };
    const auto isSameFloor = [](const FloorEntry& one, const FloorEntry& other) {
        return one.name == other.name && one.building == other.building && one.mapping == other.mapping;
    };
    return !std::equal(models.begin(), models.end(), m_models.begin(), m_models.end(), isSameModel) ||
           !std::equal(floors.begin(), floors.end(), m_floors.begin(), m_floors.end(), isSameFloor);
}

ZRSmartDB::IZRProject* Document::openProject(const QString& guid)
{
    return m_database->OpenProject(ZRSmartFormat::GuidFromText(guid.toStdWString()),
                                   DataFolder().toStdWString());
}

void Document::addBuilding(ZRSmartDB::IZRProject& project)
{
    auto* models = project.GetModelStore();
    if (models == nullptr)
        return;
    m_buildings.push_back({QString::fromStdWString(project.GetName()),
                           PlaceOf(project.GetPosition(), m_project->GetPosition())});
    const int building = static_cast<int>(m_buildings.size()) - 1;
    std::vector<ZRSmartFormat::SZRFTGuid> guids;
    models->GetModelProjIds(guids);
    for (const auto& guid : guids) {
        const auto* record = models->GetModelProj(guid);
        if (record == nullptr)
            continue;
        const auto text = QString::fromStdWString(ZRSmartFormat::GuidToText(guid));
        m_models.push_back({QString::fromStdWString(record->GetName()),
                            DataFolder() + QStringLiteral("/proj_%1/model.glb").arg(text), building, text,
                            BIZCOMMON::FLOORINFO::ReadModelFloors(DataFolder(), text)});
    }
    const auto own = QString::fromStdWString(ZRSmartFormat::GuidToText(project.GetGuid()));
    const auto floors = ReadFloors(DataFolder(), own, building);
    m_floors.insert(m_floors.end(), floors.begin(), floors.end());
}

QString Document::type() const
{
    return m_project != nullptr ? QString::fromStdWString(m_project->GetType()) : QString();
}

QString Document::position() const
{
    if (m_project == nullptr)
        return {};
    const auto position = m_project->GetPosition();
    return QStringLiteral("%1, %2").arg(position.GetX(), 0, 'f', 6).arg(position.GetY(), 0, 'f', 6);
}

void Document::setName(const QString& name)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty() || trimmed == m_name || m_project == nullptr)
        return;
    m_name = trimmed;
    m_project->SetName(trimmed.toStdWString());
    setModified(true);
}

void Document::setNote(const QString& note)
{
    if (note == m_note || m_project == nullptr)
        return;
    m_note = note;
    m_project->SetAttr(noteKey, note.toStdWString());
    setModified(true);
}

bool Document::save()
{
    if (!m_isModified)
        return true;
    if (!m_database->SaveAll()) {
        std::wstring reason;
        m_database->GetLastError(reason);
        const auto words = QJsonDocument::fromJson(QString::fromStdWString(reason).toUtf8()).object();
        m_problem = tr("保存失败：%1").arg(words.value(QLatin1String("msg")).toString());
        return false;
    }
    setModified(false);
    emit saved();
    return true;
}

void Document::setModified(bool isModified)
{
    if (m_isModified == isModified)
        return;
    m_isModified = isModified;
    emit modifiedChanged();
}

} // namespace editortab
