// SPDX-License-Identifier: MIT
#include "tabs/websdkmgr.h"

#include "TorvoSDK/torvosdkplugin.h"
#include "core/homeapp.h"
#include "tabs/prop.h"

#include <utility>

#include <QQmlContext>
#include <QWebChannel>

namespace TorvoEditor
{

namespace
{

TorvoSDK::IHostWebService* WebService()
{
    return CHomeApp::instance().m_plugin->GetWebService();
}

} // namespace

CWebSDKMgr::CWebSDKMgr(QObject* parent)
    : QObject(parent)
{
}

CWebSDKMgr::~CWebSDKMgr()
{
    // A manager that another Init has replaced goes without its UnInit.
    delete m_prop;
}

void CWebSDKMgr::Init()
{
    m_prop = new Prop;
    if (auto* service = WebService())
        service->AddWebObserver(this);
}

void CWebSDKMgr::UnInit()
{
    // A page may be in the middle of a call.
    if (auto* prop = std::exchange(m_prop, nullptr))
        prop->deleteLater();
}

void CWebSDKMgr::RegisterContext(QQmlContext* context)
{
    context->setContextProperty(QStringLiteral("webSdkMgr"), this);
    context->setContextProperty(QStringLiteral("propObject"), m_prop);
    if (auto* service = WebService())
        service->ContributeContext(context);
}

void CWebSDKMgr::OnWebChannel(QWebChannel* channel)
{
    if (m_prop != nullptr)
        channel->registerObject(QStringLiteral("propObject"), m_prop);
}

} // namespace TorvoEditor
