// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/gridviewcontroller.h"

#include "TorvoSDK/projectrecords.h"
#include "ZRSmartDB/zrproject.h"
#include "convert/serviceconvertmgr.h"
#include "core/homeapp.h"
#include "project/guidtext.h"
#include "project/localprojectinfomgr.h"
#include "project/projectmgr.h"
#include "view/context/editorcontrol/gridviewlistmodel.h"

#include <QFileInfo>
#include <QMap>
#include <QQmlContext>
#include <QVariant>
#include <QtQml>

namespace TorvoEditor
{

namespace
{

const char* const sceneIcon = "qrc:/images/bar_ic_scene.png";
const char* const bimIcon = "qrc:/images/bar_ic_bim.png";

CProjectMgr& ProjectMgr()
{
    return *CHomeApp::instance().GetMgr<CProjectMgr>();
}

QString PictureUrl(const QString& path)
{
    return path.isEmpty() ? QStringLiteral("qrc:/images/card_ic_default.png")
                          : QStringLiteral("file:///") + path;
}

QString LocalPicture(const ZRSmartDB::IZRProject& project)
{
    return PictureUrl(QString::fromStdWString(project.GetImagePath()));
}

QString ServerPicture(const QString& guid)
{
    const QString path = ProjectMgr().GetProjectImagePath(guid);
    return PictureUrl(QFileInfo::exists(path) ? path : QString());
}

CGridViewData::StateTypeEnum StateOf(const QString& guid)
{
    return static_cast<CGridViewData::StateTypeEnum>(ProjectMgr().GetProjStatus(guid));
}

/// A scene counts as changed here as soon as one of the projects linked into it is.
CGridViewData::StateTypeEnum StateWithSubProjects(const QString& guid)
{
    const auto subProjects = CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>()->GetSubProjects(guid);
    for (const auto& subProject : subProjects) {
        if (ProjectMgr().GetProject(subProject) != nullptr &&
            StateOf(subProject) == CGridViewData::ST_ModifyState)
            return CGridViewData::ST_ModifyState;
    }
    return StateOf(guid);
}

std::unique_ptr<CGridViewData> LocalCard(const ZRSmartDB::IZRProject& project, const QString& guid)
{
    const QString type = QString::fromStdWString(project.GetType());
    auto card = std::make_unique<CGridViewData>();
    card->setGuid(TextOf(project.GetGuid()));
    card->setImag(LocalPicture(project));
    card->setTypeImag(QLatin1String(type == QLatin1String("CIM") ? sceneIcon : bimIcon));
    card->setName(QString::fromStdWString(project.GetName()));
    card->setProjType(type);
    card->setDealState(CGridViewData::DS_NonState);
    card->setStateType(StateOf(guid));
    return card;
}

std::unique_ptr<CGridViewData> ServerCard(const TorvoSDK::SServerProjectRecord& record, const QString& guid)
{
    auto card = std::make_unique<CGridViewData>();
    card->setGuid(guid);
    card->setImag(ServerPicture(guid));
    // Whatever the record's type: the icon is told with the first reading after the download.
    card->setTypeImag(QLatin1String(sceneIcon));
    card->setName(QString::fromStdWString(record.name));
    card->setProjType(record.type != 0 ? QStringLiteral("BIM") : QStringLiteral("CIM"));
    return card;
}

void ShowCurrentProject(CGridViewData& card, const ZRSmartDB::IZRProject& project, const QString& guid)
{
    card.setNeedUpgrade(false);
    card.setDealState(CGridViewData::DS_NonState);
    card.setImag(LocalPicture(project));
    card.setName(QString::fromStdWString(project.GetName()));
    card.setStateType(StateWithSubProjects(guid));
}

void ShowOldProject(CGridViewData& card, const QString& guid)
{
    const auto record = ProjectMgr().GetServerProject(guid);
    card.setNeedUpgrade(true);
    card.setGuid(guid);
    card.setDealState(CGridViewData::DS_NonState);
    card.setImag(ServerPicture(guid));
    card.setTypeImag(QLatin1String(sceneIcon));
    card.setStateType(CGridViewData::ST_LocalState);
    card.setName(QString::fromStdWString(record.name));
}

} // namespace

CGridViewController::CGridViewController(QObject* parent)
    : QObject(parent)
    , m_model(std::make_unique<CGridViewListModel>())
{
}

CGridViewController::~CGridViewController() = default;

void CGridViewController::Init() {}

void CGridViewController::UnInit() {}

void CGridViewController::RegisterContext(QQmlContext* context)
{
    qmlRegisterType<CGridViewData>("myData.CGridViewData", 1, 0, "CGridViewData");
    context->setContextProperty(QStringLiteral("gridViewModel"), QVariant::fromValue(m_model.get()));
    context->setContextProperty(QStringLiteral("gridViewCtrl"), QVariant::fromValue(this));
}

void CGridViewController::AddCard(const QString& guid)
{
    if (const auto* project = ProjectMgr().GetProject(guid)) {
        m_model->addProjectInfo(LocalCard(*project, guid).release());
        return;
    }
    const auto record = ProjectMgr().GetServerProject(guid);
    if (!record.guid.empty())
        m_model->addProjectInfo(ServerCard(record, guid).release());
}

void CGridViewController::AddNeedUpgradeCard(const QString& guid, const QString& name)
{
    auto card = std::make_unique<CGridViewData>();
    card->setNeedUpgrade(true);
    card->setGuid(guid);
    card->setImag(ServerPicture(guid));
    card->setTypeImag(QLatin1String(sceneIcon));
    card->setName(name);
    m_model->addProjectInfo(card.release());
}

void CGridViewController::UpdateCard(const QString& guid)
{
    const bool needUpgrade = ProjectMgr().NeedUpgrade(guid);
    const auto* project = ProjectMgr().GetProject(guid);
    if (!needUpgrade && project == nullptr) {
        RemoveCard(guid);
        return;
    }
    auto* card = m_model->getDataByGuid(guid);
    if (card == nullptr)
        return;
    if (needUpgrade)
        ShowOldProject(*card, guid);
    else
        ShowCurrentProject(*card, *project, guid);
}

void CGridViewController::RemoveCard(const QString& guid)
{
    m_model->removeProjectInfo(guid);
}

bool CGridViewController::ContainsCard(const QString& guid) const
{
    return m_model->isContain(guid);
}

void CGridViewController::RefreshStates()
{
    for (const auto& card : m_model->cards()) {
        int state = 0;
        if (ProjectMgr().GetProjStatus(card->guid(), state))
            card->setStateType(static_cast<CGridViewData::StateTypeEnum>(state));
    }
}

void CGridViewController::GetCardGuids(QStringList& guids) const
{
    for (const auto& card : m_model->cards())
        guids.append(card->guid());
}

void CGridViewController::UpdateTipTexts()
{
    QMap<QString, QList<int>> positions;
    CHomeApp::instance().GetMgr<CServiceConvertMgr>()->GetConvertInfo(positions);
    m_model->updateTipTexts(positions);
}

void CGridViewController::SetDealState(const QString& guid, CGridViewData::DealStateEnum state)
{
    if (auto* card = m_model->getDataByGuid(guid))
        card->setDealState(state);
}

void CGridViewController::SetGuid(const QString& guid, const QString& newGuid)
{
    if (auto* card = m_model->getDataByGuid(guid))
        card->setGuid(newGuid);
}

void CGridViewController::SetIsUpgrade(const QString& guid, bool isUpgrade)
{
    if (auto* card = m_model->getDataByGuid(guid))
        card->setIsUpgrade(isUpgrade);
}

void CGridViewController::SetName(const QString& guid, const QString& name)
{
    if (auto* card = m_model->getDataByGuid(guid))
        card->setName(name);
}

void CGridViewController::SetStateType(const QString& guid, CGridViewData::StateTypeEnum state)
{
    if (auto* card = m_model->getDataByGuid(guid))
        card->setStateType(state);
}

} // namespace TorvoEditor
