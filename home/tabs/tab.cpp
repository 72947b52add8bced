// SPDX-License-Identifier: MIT
#include "tabs/tab.h"

#include "ZRSmartDB/zrproject.h"
#include "core/homeapp.h"
#include "project/projectmgr.h"

namespace TorvoEditor
{

CTab::CTab(QObject* parent)
    : QObject(parent)
{
}

QString CTab::idConvertToName(const QString& id) const
{
    auto* project = CHomeApp::instance().GetMgr<CProjectMgr>()->GetProject(id);
    return project != nullptr ? QString::fromStdWString(project->GetName()) : QString();
}

void CTab::addTab(const QString& name)
{
    if (m_tabList.contains(name))
        return;
    m_tabList.append(name);
    emit tabListChanged();
}

void CTab::removeTab(const QString& name)
{
    if (m_tabList.removeOne(name))
        emit tabListChanged();
}

void CTab::setCurrentTab(const QString& name)
{
    if (m_currentTab == name)
        return;
    m_currentTab = name;
    emit currentTabChanged();
}

} // namespace TorvoEditor
