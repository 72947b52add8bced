// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace TorvoSDK
{

/// Whoever wants to hear what the host has to tell the user. Called on the GUI thread.
class IMessageObserver
{
public:
    virtual ~IMessageObserver() = default;

    virtual void OnInfo(QString text) { Q_UNUSED(text) }
    virtual void OnWarn(QString text) { Q_UNUSED(text) }
    virtual void OnError(QString text) { Q_UNUSED(text) }
};

/// The host's messages to the user. GUI thread only.
class IHostMessageService
{
public:
    /// Tells `observer` every message from now on. Not owned; it must outlive the service or the host's loop.
    virtual void AddMessageObserver(IMessageObserver* observer) = 0;

protected:
    ~IHostMessageService() = default;
};

} // namespace TorvoSDK
