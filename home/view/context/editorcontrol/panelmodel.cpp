// SPDX-License-Identifier: MIT
#include "view/context/editorcontrol/panelmodel.h"

#include "XHUtility/sorttreemodel.h"
#include "XHUtility/treemodel.h"
#include "ZRSmartDB/zrproject.h"
#include "core/homeapp.h"
#include "project/localprojectinfomgr.h"
#include "project/projectmgr.h"
#include "view/context/editorcontrol/treeprojects.h"

#include <QScopeGuard>
#include <QStandardItem>

namespace TorvoEditor
{

namespace
{

const auto sceneType = QLatin1String("CIM");
const auto bimType = QLatin1String("BIM");

CProjectMgr& ProjectMgr()
{
    return *CHomeApp::instance().GetMgr<CProjectMgr>();
}

const CLocalProjectInfoMgr& LocalProjects()
{
    return *CHomeApp::instance().GetMgr<CLocalProjectInfoMgr>();
}

/// The word for the type number of a server's record; empty for one that nobody knows.
QString TypeWord(int type)
{
    switch (type) {
    case 0:
        return sceneType;
    case 1:
        return bimType;
    default:
        return {};
    }
}

QString TypeIcon(const QString& type)
{
    return type == sceneType ? QStringLiteral("qrc:/images/bar_ic_scene.png")
                             : QStringLiteral("qrc:/images/bar_ic_bim.png");
}

/// The row of a project that only this machine knows.
QVariantMap LocalRow(const QString& guid, const QString& name, const QString& type)
{
    return {
        {QStringLiteral("text1"), name},
        {QStringLiteral("text2"), guid},
        {QStringLiteral("image1"), TypeIcon(type)},
        {QStringLiteral("image2"), QStringLiteral("qrc:/images/state_ic_unmatched.png")},
    };
}

QVariantMap RowOf(const QStandardItem* item)
{
    return item->data(XHUTILITY::CTreeModel::valueRole).toMap();
}

void SetRow(QStandardItem* item, const QVariantMap& row)
{
    item->setData(row, XHUTILITY::CTreeModel::valueRole);
}

/// The row of an item that nobody shows yet, without the copy that a change of the item's own would cost.
QVariantMap TakeRow(QStandardItem* item)
{
    auto row = RowOf(item);
    item->setData({}, XHUTILITY::CTreeModel::valueRole);
    return row;
}

void SetValue(QStandardItem* item, const QString& key, const QVariant& value)
{
    auto row = RowOf(item);
    row.insert(key, value);
    SetRow(item, row);
}

QString NameOf(const ZRSmartDB::IZRProject& project)
{
    return QString::fromStdWString(project.GetName());
}

QString TypeOf(const ZRSmartDB::IZRProject& project)
{
    return QString::fromStdWString(project.GetType());
}

} // namespace

CPanelModel::CPanelModel(QObject* parent)
    : QObject(parent)
{
}

CPanelModel::~CPanelModel() = default;

QVariant CPanelModel::treeModel() const
{
    return QVariant::fromValue(m_sortModel);
}

void CPanelModel::filterTree(const QString& strType)
{
    if (m_strType == strType)
        return;
    m_strType = strType;
    RebuildTree();
}

void CPanelModel::InitGrouping()
{
    m_bOrgMode = !IsEmptyOrgNode(ProjectMgr().orgRoot());
    RebuildTree();
}

void CPanelModel::RebuildTree()
{
    if (m_treeModel != nullptr)
        m_treeModel->clear();
    // The screens may hold the old pair until they have heard of the new one; it goes with the parent.
    m_treeModel = new XHUTILITY::CTreeModel(parent());
    m_sortModel = new XHUTILITY::CSortTreeModel(parent());
    m_sortModel->setSearchKey(QStringLiteral("text1"));
    m_bimProjCount = 0;
    m_sceneProjCount = 0;
    fillTree();
    m_sortModel->sort(0, Qt::AscendingOrder);
    emit onTreeModelChanged();
    emit onBimProjCountChanged();
    emit onSceneProjCountChanged();
}

void CPanelModel::fillTree()
{
    // Built beside the models and moved in as a whole: neither has to follow each of the items. What stands
    // when the building is broken off is moved in as well.
    QStandardItem top;
    m_index = CTreeIndex(&top);
    m_index.reserve(static_cast<int>(ProjectMgr().serverProjects().size()) +
                    LocalProjects().projectGuids().size());
    const auto moveIn = qScopeGuard([&] {
        const auto items = top.takeColumn(0);
        for (auto* item : items)
            m_treeModel->appendRow(item);
        m_index.setRoot(m_treeModel->invisibleRootItem());
        m_sortModel->setSourceModel(m_treeModel);
    });

    CTreeProjects projects;
    const auto& orgRoot = ProjectMgr().orgRoot();
    if (!m_bOrgMode) {
        AddServerProjects(&top, TorvoSDK::SOrgNode(), projects);
        AddLocalProjects(&top, TorvoSDK::SOrgNode(), projects);
    } else if (!IsEmptyOrgNode(orgRoot)) {
        AddOrgNode(&top, orgRoot, projects);
    }
}

void CPanelModel::AddOrgNode(QStandardItem* parent, const TorvoSDK::SOrgNode& node, CTreeProjects& projects)
{
    auto* item = appendItem(parent, CProjectMgr::MakeOrgRow(node));
    for (const auto& child : node.children)
        AddOrgNode(item, child, projects);
    if (node.canSelect) {
        AddServerProjects(item, node, projects);
        AddLocalProjects(item, node, projects);
    }
}

void CPanelModel::AddServerProjects(QStandardItem* parent, const TorvoSDK::SOrgNode& node,
                                    CTreeProjects& projects)
{
    for (const auto* record : projects.serverProjectsOf(node)) {
        const QString type = TypeWord(record->type);
        countProject(type, 1);
        if (m_strType.isEmpty() || m_strType == type)
            appendItem(parent, CProjectMgr::MakeProjectRow(*record));
    }
}

void CPanelModel::AddLocalProjects(QStandardItem* parent, const TorvoSDK::SOrgNode& node,
                                   CTreeProjects& projects)
{
    for (const auto& [guid, project] : projects.localProjectsOf(node)) {
        if (auto* item = m_index.find(guid)) {
            auto row = TakeRow(item);
            row.insert(QStringLiteral("image2"), ProjectMgr().GetProjStatusIcon(guid));
            row.insert(QStringLiteral("text1"), NameOf(*project));
            SetRow(item, row);
            continue;
        }
        const QString type = TypeOf(*project);
        countProject(type, 1);
        if (m_strType.isEmpty() || m_strType == type)
            appendItem(parent, LocalRow(guid, NameOf(*project), type));
    }
}

void CPanelModel::AddItem(const QString& guid)
{
    auto* project = ProjectMgr().GetProject(guid);
    if (project == nullptr)
        return;
    const QString type = TypeOf(*project);
    auto* parent = m_treeModel->invisibleRootItem();
    if (m_bOrgMode)
        parent = m_index.find(DepartmentOf(project));
    else if (!m_strType.isEmpty() && m_strType != type)
        return;
    if (parent == nullptr)
        return;
    changeCount(type, 1);
    appendItem(parent, LocalRow(guid, NameOf(*project), type));
    m_sortModel->sort(0, Qt::AscendingOrder);
}

void CPanelModel::AddNeedUpgradeItem(const QString& guid, const QString& name)
{
    if (m_bOrgMode) {
        AddItem(guid);
        return;
    }
    if (!m_strType.isEmpty() && m_strType != sceneType)
        return;
    auto row = LocalRow(guid, name, sceneType);
    row.insert(QStringLiteral("needUpgrade"), true);
    changeCount(sceneType, 1);
    appendItem(m_treeModel->invisibleRootItem(), row);
    m_sortModel->sort(0, Qt::AscendingOrder);
}

void CPanelModel::UpdateItem(const QString& guid)
{
    auto* item = m_index.find(guid);
    if (item == nullptr)
        return;
    auto row = RowOf(item);
    row.insert(QStringLiteral("image2"), ProjectMgr().GetProjStatusIcon(guid));
    if (const auto* project = ProjectMgr().GetProject(guid))
        row.insert(QStringLiteral("text1"), NameOf(*project));
    else if (ProjectMgr().NeedUpgrade(guid))
        row.insert(QStringLiteral("needUpgrade"), QStringLiteral("true"));
    SetRow(item, row);
}

void CPanelModel::ClearStateIcon(const QString& guid)
{
    if (auto* item = m_index.find(guid))
        SetValue(item, QStringLiteral("image2"), QString(QLatin1String("")));
}

void CPanelModel::RenameItem(const QString& guid, const QString& name)
{
    if (auto* item = m_index.find(guid))
        SetValue(item, QStringLiteral("text1"), name);
}

void CPanelModel::RemoveItem(const QString& guid)
{
    auto* item = m_index.find(guid);
    if (item == nullptr || item == m_treeModel->invisibleRootItem())
        return;
    m_index.remove(item);
    auto* parent = item->parent() != nullptr ? item->parent() : m_treeModel->invisibleRootItem();
    parent->removeRow(item->row());
    if (const auto* project = ProjectMgr().GetProject(guid))
        changeCount(TypeOf(*project), -1);
}

bool CPanelModel::HasItem(const QString& guid) const
{
    return m_index.find(guid) != nullptr;
}

void CPanelModel::RefreshStateIcons()
{
    for (const auto& guid : LocalProjects().projectGuids()) {
        if (auto* item = m_index.find(guid))
            SetValue(item, QStringLiteral("image2"), ProjectMgr().GetProjStatusIcon(guid));
    }
}

QStandardItem* CPanelModel::appendItem(QStandardItem* parent, const QVariantMap& row)
{
    auto* item = new QStandardItem;
    SetRow(item, row);
    parent->appendRow(item);
    m_index.add(item);
    return item;
}

void CPanelModel::countProject(const QString& type, int difference)
{
    if (type == bimType)
        m_bimProjCount += difference;
    else if (type == sceneType)
        m_sceneProjCount += difference;
}

void CPanelModel::changeCount(const QString& type, int difference)
{
    countProject(type, difference);
    if (type == bimType)
        emit onBimProjCountChanged();
    else if (type == sceneType)
        emit onSceneProjCountChanged();
}

} // namespace TorvoEditor
