// SPDX-License-Identifier: MIT
#pragma once

class QQmlContext;
class QWebChannel;

namespace TorvoSDK
{

/// Whoever wants to put objects on the channel of a web view of the host. Called on the GUI thread.
class IWebObserver
{
public:
    virtual ~IWebObserver() = default;

    /// A web view has been made; `channel` is owned by the host and lives as long as the view.
    virtual void OnWebChannel(QWebChannel* channel) { static_cast<void>(channel); }
};

/// The host's web views. GUI thread only.
class IHostWebService
{
public:
    /// Adds to `context` what the screens need of the web views: the context property "webViewMgr", an object
    /// with `openWeb(url, rect)`, where `url` is a local page and `rect` the size of its window in pixels.
    virtual void ContributeContext(QQmlContext* context) = 0;

    /// Tells `observer` of the channel of each web view from now on. Not owned.
    virtual void AddWebObserver(IWebObserver* observer) = 0;

protected:
    ~IHostWebService() = default;
};

} // namespace TorvoSDK
