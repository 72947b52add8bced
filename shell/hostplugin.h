// SPDX-License-Identifier: MIT
#pragma once

#include "TorvoSDK/torvosdkplugin.h"
#include "shell/messageservice.h"
#include "shell/projecthost.h"

namespace shell
{

/// What the plugin gets to see of the host. This version has no web views to offer.
class HostPlugin final : public TorvoSDK::ITorvoSDKPlugin
{
public:
    HostPlugin(ProjectHost& projectHost, MessageService& messages)
        : m_projectHost(projectHost)
        , m_messages(messages)
    {
    }

    TorvoSDK::IProjectHost* GetProjectHost() override { return &m_projectHost; }
    TorvoSDK::IHostMessageService* GetMessageService() override { return &m_messages; }
    TorvoSDK::IHostWebService* GetWebService() override { return nullptr; }

private:
    ProjectHost& m_projectHost;
    MessageService& m_messages;
};

} // namespace shell
