// SPDX-License-Identifier: MIT
#pragma once

namespace TorvoSDK
{

class IProjectHost;
class IHostMessageService;
class IHostWebService;

/// The host, as the plugin sees it. Owned by the host, alive from before TorvoHomePlugin::Init until after
/// TorvoHomePlugin::UnInit. GUI thread, except GetProjectHost, which a worker thread may call too.
class ITorvoSDKPlugin
{
public:
    /// The host's books about projects; never null.
    virtual IProjectHost* GetProjectHost() = 0;

    /// The host's messages, or null when the host has none to tell.
    virtual IHostMessageService* GetMessageService() = 0;

    /// The host's web views, or null when the host has none.
    virtual IHostWebService* GetWebService() = 0;

protected:
    ~ITorvoSDKPlugin() = default;
};

} // namespace TorvoSDK
