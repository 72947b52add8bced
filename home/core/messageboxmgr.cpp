// SPDX-License-Identifier: MIT
#include "core/messageboxmgr.h"

#include "TorvoSDK/torvosdkplugin.h"
#include "core/homeapp.h"
#include "tabs/tab.h"
#include "tabs/tabmgr.h"

#include <QQmlContext>

namespace TorvoEditor
{

CMessageBoxMgr::CMessageBoxMgr(QObject* parent) : QObject(parent) {}

void CMessageBoxMgr::Init()
{
    if (auto* service = CHomeApp::instance().m_plugin->GetMessageService())
        service->AddMessageObserver(this);
}

void CMessageBoxMgr::UnInit() {}

void CMessageBoxMgr::RegisterContext(QQmlContext* context)
{
    context->setContextProperty(QStringLiteral("messageBoxMgr"), this);
}

void CMessageBoxMgr::OnInfo(QString text)
{
    auto* tabMgr = CHomeApp::instance().GetMgr<CTabMgr>();
    const QString currentTab = tabMgr->tab()->currentTab();
    if (currentTab == mainTabName)
        emit sigShowTip(QStringLiteral("提示"), text);
    else
        tabMgr->SendInfo(text, currentTab);
}

void CMessageBoxMgr::OnWarn(QString text)
{
    auto* tabMgr = CHomeApp::instance().GetMgr<CTabMgr>();
    const QString currentTab = tabMgr->tab()->currentTab();
    if (currentTab == mainTabName)
        emit sigShowTip(QStringLiteral("警告"), text);
    else
        tabMgr->SendWarn(text, currentTab);
}

void CMessageBoxMgr::OnError(QString text)
{
    auto* tabMgr = CHomeApp::instance().GetMgr<CTabMgr>();
    const QString currentTab = tabMgr->tab()->currentTab();
    if (currentTab == mainTabName)
        emit sigShowTip(QStringLiteral("出错"), text);
    else
        tabMgr->SendError(text, currentTab);
}

bool CMessageBoxMgr::ShowCheckBox(const QString& title, const QString& text)
{
    emit sigCheckBox(title, text);
    m_loop.exec();
    return m_result;
}

void CMessageBoxMgr::callResultCallBack(bool bResult)
{
    m_result = bResult;
    m_loop.quit();
}

} // namespace TorvoEditor
