// SPDX-License-Identifier: MIT
#pragma once

#include "ZRSmartFormat/zrftguid.h"

#include <memory>
#include <mutex>
#include <unordered_map>

namespace ZRSmartDB
{

/// Lets operations on one project come one after the other, while those on different projects run side by
/// side. Any thread; not recursive.
class ProjectLocks
{
public:
    class Lock
    {
    public:
        explicit Lock(std::shared_ptr<std::mutex> mutex)
            : m_mutex(std::move(mutex))
            , m_lock(*m_mutex)
        {
        }

    private:
        std::shared_ptr<std::mutex> m_mutex; // before m_lock: freed after the lock has been given back
        std::unique_lock<std::mutex> m_lock;
    };

    /// Waits until no other operation has the project.
    [[nodiscard]] Lock lock(const ZRSmartFormat::SZRFTGuid& guid)
    {
        std::shared_ptr<std::mutex> mutex;
        {
            const std::scoped_lock lock(m_mutex);
            std::erase_if(m_locks, [](const auto& entry) { return entry.second.expired(); });
            mutex = m_locks[guid].lock();
            if (!mutex)
                m_locks[guid] = mutex = std::make_shared<std::mutex>();
        }
        return Lock(std::move(mutex));
    }

private:
    std::mutex m_mutex; ///< protects the map
    std::unordered_map<ZRSmartFormat::SZRFTGuid, std::weak_ptr<std::mutex>> m_locks;
};

} // namespace ZRSmartDB
