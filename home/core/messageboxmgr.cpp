// SPDX-License-Identifier: MIT
#include "core/messageboxmgr.h"

#include "TorvoSDK/torvosdkplugin.h"
#include "core/corelog.h"
#include "core/homeapp.h"
#include "tabs/tab.h"
#include "tabs/tabmgr.h"

#include <QQmlContext>

namespace TorvoEditor
{

CMessageBoxMgr::CMessageBoxMgr(QObject* parent)
    : QObject(parent)
{
}

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
    tell(QStringLiteral("提示"), text, &CTabMgr::SendInfo);
}

void CMessageBoxMgr::OnWarn(QString text)
{
    tell(QStringLiteral("警告"), text, &CTabMgr::SendWarn);
}

void CMessageBoxMgr::OnError(QString text)
{
    tell(QStringLiteral("出错"), text, &CTabMgr::SendError);
}

void CMessageBoxMgr::tell(const QString& title, const QString& text, SendToTab send)
{
    auto* tabMgr = CHomeApp::instance().GetMgr<CTabMgr>();
    const auto* tab = tabMgr != nullptr ? tabMgr->tab() : nullptr;
    if (tab == nullptr || tab->currentTab() == mainTabName)
        emit sigShowTip(title, text);
    else
        (tabMgr->*send)(text, tab->currentTab());
}

bool CMessageBoxMgr::ShowCheckBox(const QString& title, const QString& text)
{
    if (m_loop.isRunning()) {
        qCWarning(lcCore) << "a question is open already, this one counts as answered with no:" << text;
        return false;
    }
    m_result = false;
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
