// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/infocardcontroller.h"

#include "XHUtility/treemodel.h"
#include "ZRSmartDB/zrproject.h"
#include "concurrency/task.h"
#include "core/filefunctions.h"
#include "core/homeapp.h"
#include "project/localprojectinfomgr.h"
#include "project/projectmgr.h"
#include "view/context/editorcontrol/projectinfo.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QQmlContext>
#include <QStandardItem>
#include <QVariant>

namespace TorvoEditor
{

namespace
{

CProjectMgr& ProjectMgr()
{
    return *CHomeApp::instance().GetMgr<CProjectMgr>();
}

void AppendOrgNode(QStandardItem* parent, const TorvoSDK::SOrgNode& node)
{
    auto* item = new QStandardItem;
    item->setData(QVariantMap{{QStringLiteral("id"), QString::fromStdWString(node.id)},
                              {QStringLiteral("name"), QString::fromStdWString(node.name)},
                              {QStringLiteral("canSelect"), node.canSelect}},
                  XHUTILITY::CTreeModel::valueRole);
    parent->appendRow(item);
    for (const auto& child : node.children)
        AppendOrgNode(item, child);
}

void ReadTemplate(const ZRSmartDB::IZRProject& project, SProjectInfoRecord& record)
{
    const QString text = QString::fromStdWString(project.GetTemplate());
    if (QJsonDocument::fromJson(text.toUtf8()).isNull())
        return;
    record.templateName = QStringLiteral("CompTemplate.json");
    record.templateContent = text;
}

/// What a project on this machine says of itself; nothing when it cannot be opened.
SProjectInfoRecord LocalRecord(const QString& guid)
{
    SProjectInfoRecord record;
    const auto* project = guid.isEmpty() ? nullptr : ProjectMgr().GetProject(guid);
    if (project == nullptr)
        return record;
    record.guid = guid;
    record.name = QString::fromStdWString(project->GetName());
    record.type = QString::fromStdWString(project->GetType());
    record.imagePath = QString::fromStdWString(project->GetImagePath());
    record.iotCode = QString::fromStdWString(project->GetIotCode());
    record.earthConfig = QString::fromStdWString(project->GetAttr(L"basemap"));
    record.proj4 = QString::fromStdWString(project->GetProj4());
    ReadTemplate(*project, record);
    record.longitude = QString::number(project->GetPosition().GetX(), 'f', 12);
    record.latitude = QString::number(project->GetPosition().GetY(), 'f', 12);
    ProjectMgr().GetProjExtAttrs(project, record.extAttrs);
    ProjectMgr().ReadBelongsRegion(project, record);
    return record;
}

/// Fetches the picture of a project that is not here and gives its path, also when there is none.
QString FetchPicture(const QString& guid)
{
    QString path = QCoreApplication::applicationDirPath() + QStringLiteral("/projImage/") + guid +
                   QStringLiteral(".jpg");
    QFile::remove(path);
    try {
        ProjectMgr().DownloadProjFile(guid, QStringLiteral("projimage.jpg"), path);
    } catch (const Concurrency::task_canceled&) {
        // The database ends while it is asked; the card then has no picture.
    }
    return path;
}

SProjectInfoRecord ServerRecord(const QString& guid, const TorvoSDK::SServerProjectRecord& server)
{
    SProjectInfoRecord record;
    record.imagePath = FetchPicture(guid);
    record.guid = guid;
    record.name = QString::fromStdWString(server.name);
    record.type = server.type == 0 ? QStringLiteral("CIM") : QStringLiteral("BIM");
    record.longitude = QString::fromStdWString(server.longitude);
    record.latitude = QString::fromStdWString(server.latitude);
    record.iotCode = QString::fromStdWString(server.iotCode);
    record.earthConfig = QString::fromStdWString(server.earthConfig);
    record.proj4 = QString::fromStdWString(server.proj4);
    for (const auto& [key, value] : server.customMap)
        record.extAttrs.insert(QString::fromStdWString(key), QString::fromStdWString(value));
    return record;
}

} // namespace

CInfoCardController::CInfoCardController(QObject* parent)
    : QObject(parent)
    , m_expandPath(QCoreApplication::applicationDirPath() + QStringLiteral("/ProjectExpandAttr.json"))
    , m_projectInfo(std::make_unique<CProjectInfo>())
    , m_orgModel(std::make_unique<XHUTILITY::CTreeModel>())
{
}

CInfoCardController::~CInfoCardController() = default;

void CInfoCardController::Init()
{
    // Most hosts come without the file; one that is there and cannot be read is worth a line in the log.
    if (QFile::exists(m_expandPath))
        static_cast<void>(ReadJsonFile(m_expandPath, m_expandAttrs));
    m_projectInfo->LoadExpandAttrs(m_expandAttrs);
    if (!IsEmptyOrgNode(ProjectMgr().orgRoot()))
        AppendOrgNode(m_orgModel->invisibleRootItem(), ProjectMgr().orgRoot());
}

void CInfoCardController::UnInit() {}

void CInfoCardController::RegisterContext(QQmlContext* context)
{
    context->setContextProperty(QStringLiteral("proInfoModel"), QVariant::fromValue(m_projectInfo.get()));
    context->setContextProperty(QStringLiteral("infoCardCtrl"), QVariant::fromValue(this));
    context->setContextProperty(QStringLiteral("orgModel"), QVariant::fromValue(m_orgModel.get()));
}

void CInfoCardController::showProjectInfo(const QString& projGuid)
{
    if (CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>()->ContainsProject(projGuid)) {
        m_projectInfo->SetProjectData(LocalRecord(projGuid), true);
        return;
    }
    const auto server = ProjectMgr().GetServerProject(projGuid);
    if (!server.guid.empty())
        m_projectInfo->SetProjectData(ServerRecord(projGuid, server), false);
}

SProjectInfoRecord CInfoCardController::GetProjectInfo() const
{
    return m_projectInfo->record();
}

} // namespace TorvoEditor
