// SPDX-License-Identifier: MIT
#pragma once

#include "view/context/editorcontrol/treeindex.h"

#include <QObject>
#include <QString>
#include <QVariant>
#include <QVariantMap>

class QStandardItem;

namespace TorvoSDK
{
struct SOrgNode;
}

namespace XHUTILITY
{
class CSortTreeModel;
class CTreeModel;
} // namespace XHUTILITY

namespace TorvoEditor
{

class CTreeProjects;

/// The tree of all projects that the user can reach, on the server and here, flat or by organisation, with
/// counts, a filter by type and a search. Published as "leftPanelModel". GUI thread.
///
/// Each item carries a QVariantMap at role 257: "text1" name, "text2" guid or department id, "image1" type
/// icon, "image2" state icon, and where they apply "type", "isDemo", "needUpgrade".
class CPanelModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int bimProjCount READ bimProjCount NOTIFY onBimProjCountChanged)
    Q_PROPERTY(int sceneProjCount READ sceneProjCount NOTIFY onSceneProjCountChanged)
    Q_PROPERTY(QVariant treeModel READ treeModel NOTIFY onTreeModelChanged)

public:
    explicit CPanelModel(QObject* parent = nullptr);
    ~CPanelModel() override;

    /// Numbers of the last build, without regard to the filter.
    [[nodiscard]] int bimProjCount() const { return m_bimProjCount; }
    [[nodiscard]] int sceneProjCount() const { return m_sceneProjCount; }
    /// The sorted model, as a pointer. Another object after each RebuildTree.
    [[nodiscard]] QVariant treeModel() const;

    /// Shows one type only: "CIM", "BIM", or "" for all.
    Q_INVOKABLE void filterTree(const QString& strType);

    /// Decides whether the tree follows the organisation, then builds it.
    void InitGrouping();
    void RebuildTree();
    void AddItem(const QString& guid);
    void AddNeedUpgradeItem(const QString& guid, const QString& name);
    void UpdateItem(const QString& guid);
    void ClearStateIcon(const QString& guid);
    void RemoveItem(const QString& guid);
    void RenameItem(const QString& guid, const QString& name);
    [[nodiscard]] bool HasItem(const QString& guid) const;
    void RefreshStateIcons();

signals:
    void onBimProjCountChanged();
    void onSceneProjCountChanged();
    void onTreeModelChanged();

private:
    void fillTree();
    void AddOrgNode(QStandardItem* parent, const TorvoSDK::SOrgNode& node, CTreeProjects& projects);
    void AddServerProjects(QStandardItem* parent, const TorvoSDK::SOrgNode& node, CTreeProjects& projects);
    void AddLocalProjects(QStandardItem* parent, const TorvoSDK::SOrgNode& node, CTreeProjects& projects);

    QStandardItem* appendItem(QStandardItem* parent, const QVariantMap& row);
    void countProject(const QString& type, int difference);
    /// countProject, with the signal of the count.
    void changeCount(const QString& type, int difference);

    QString m_strType; ///< the filter
    int m_bimProjCount = 0;
    int m_sceneProjCount = 0;
    XHUTILITY::CTreeModel* m_treeModel = nullptr;     ///< a child of this object's parent
    XHUTILITY::CSortTreeModel* m_sortModel = nullptr; ///< a child of this object's parent
    CTreeIndex m_index;
    bool m_bOrgMode = false; ///< the tree follows the organisation
};

} // namespace TorvoEditor
