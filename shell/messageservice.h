// SPDX-License-Identifier: MIT
#pragma once

#include "TorvoSDK/hostmessageservice.h"

#include <vector>

namespace shell
{

/// Passes the host's messages on to whoever observes them. GUI thread.
class MessageService final : public TorvoSDK::IHostMessageService
{
public:
    void AddMessageObserver(TorvoSDK::IMessageObserver* observer) override;

    /// The observers are about to go.
    void forgetObservers();

    void info(const QString& text) const;
    void warn(const QString& text) const;
    void error(const QString& text) const;

private:
    std::vector<TorvoSDK::IMessageObserver*> m_observers;
};

} // namespace shell
