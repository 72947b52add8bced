// SPDX-License-Identifier: MIT
#pragma once

#include "TorvoSDK/torvosdkplugin.h"
#include "shell/messageservice.h"
#include "shell/projecthost.h"
#include "shell/web/webservice.h"

namespace shell
{

/// What the plugin gets to see of the host.
class HostPlugin final : public TorvoSDK::ITorvoSDKPlugin
{
public:
    HostPlugin(ProjectHost& projectHost, MessageService& messages, WebService& web)
        : m_projectHost(projectHost)
        , m_messages(messages)
        , m_web(web)
    {
    }

    TorvoSDK::IProjectHost* GetProjectHost() override { return &m_projectHost; }
    TorvoSDK::IHostMessageService* GetMessageService() override { return &m_messages; }
    TorvoSDK::IHostWebService* GetWebService() override { return &m_web; }

private:
    ProjectHost& m_projectHost;
    MessageService& m_messages;
    WebService& m_web;
};

} // namespace shell
