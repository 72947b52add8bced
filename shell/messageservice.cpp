// SPDX-License-Identifier: MIT
#include "shell/messageservice.h"

namespace shell
{

void MessageService::AddMessageObserver(TorvoSDK::IMessageObserver* observer)
{
    m_observers.push_back(observer);
}

void MessageService::forgetObservers()
{
    m_observers.clear();
}

void MessageService::info(const QString& text) const
{
    for (auto* observer : m_observers)
        observer->OnInfo(text);
}

void MessageService::warn(const QString& text) const
{
    for (auto* observer : m_observers)
        observer->OnWarn(text);
}

void MessageService::error(const QString& text) const
{
    for (auto* observer : m_observers)
        observer->OnError(text);
}

} // namespace shell
