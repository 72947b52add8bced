// SPDX-License-Identifier: MIT
#pragma once

#include "startedview.h"

#include "XHUtility/sorttreemodel.h"
#include "XHUtility/treemodel.h"

#include <functional>
#include <memory>

/// A panel model over the stand-ins, and what the screens see of it.
class PanelSuite : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_view = std::make_unique<StartedView>(); }
    void cleanup() { m_view.reset(); }

protected:
    static TorvoSDK::SOrgNode Node(const std::wstring& id, bool canSelect,
                                   std::vector<TorvoSDK::SOrgNode> children = {})
    {
        TorvoSDK::SOrgNode node;
        node.id = id;
        node.name = L"name of " + id;
        node.canSelect = canSelect;
        node.children = std::move(children);
        return node;
    }

    void useOrganisation()
    {
        m_view->around.host.projects.organisation =
            Node(L"root", false, {Node(L"d1", true), Node(L"office", false, {Node(L"d2", true)})});
    }

    /// The department of a local project, as its extended attribute says.
    static void setDepartment(const QString& guid, const QString& department)
    {
        Fakes::SmartDB::instance().find(guid)->project->SetAttr(
            L"Pa_ExtendedAttr", QString(R"({"deptId": "%1"})").arg(department).toStdWString());
    }

    const QAbstractItemModel& tree()
    {
        return *m_view->panel().treeModel().value<XHUTILITY::CSortTreeModel*>();
    }

    /// The guid of each item, indented by its depth, in the order that the screens see.
    QStringList rows()
    {
        QStringList rows;
        const std::function<void(const QModelIndex&, const QString&)> walk = [&](const QModelIndex& parent,
                                                                                 const QString& indent) {
            for (int i = 0; i < tree().rowCount(parent); ++i) {
                const auto index = tree().index(i, 0, parent);
                const auto map = index.data(XHUTILITY::CTreeModel::valueRole).toMap();
                rows.append(indent + map.value("text2").toString());
                walk(index, indent + "-");
            }
        };
        walk({}, {});
        return rows;
    }

    QStringList guids()
    {
        auto found = rows();
        for (auto& text : found)
            text.remove('-');
        return found;
    }

    QVariantMap row(const QString& guid)
    {
        QVariantMap map;
        const std::function<void(const QModelIndex&)> walk = [&](const QModelIndex& parent) {
            for (int i = 0; i < tree().rowCount(parent); ++i) {
                const auto index = tree().index(i, 0, parent);
                const auto value = index.data(XHUTILITY::CTreeModel::valueRole).toMap();
                if (map.isEmpty() && value.value("text2") == guid)
                    map = value;
                walk(index);
            }
        };
        walk({});
        return map;
    }

    std::unique_ptr<StartedView> m_view;
};
