// SPDX-License-Identifier: MIT
#include "smartdb/net/taskqueue.h"

#include <utility>

namespace ZRSmartDB
{

TaskQueue::TaskQueue(unsigned threads)
{
    for (unsigned i = 0; i < threads; ++i)
        m_threads.emplace_back([this] { run(); });
}

TaskQueue::~TaskQueue()
{
    stop();
}

void TaskQueue::post(std::function<void()> work)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_isStopped)
            return;
        m_work.push_back(std::move(work));
    }
    m_hasChanged.notify_one();
}

void TaskQueue::stop()
{
    std::deque<std::function<void()>> dropped;
    {
        const std::lock_guard lock(m_mutex);
        m_isStopped = true;
        dropped.swap(m_work);
    }
    m_hasChanged.notify_all();
    for (auto& thread : m_threads)
        thread.join();
    m_threads.clear();
}

void TaskQueue::run()
{
    while (true) {
        std::function<void()> work;
        {
            std::unique_lock lock(m_mutex);
            m_hasChanged.wait(lock, [this] { return m_isStopped || !m_work.empty(); });
            if (m_isStopped)
                return;
            work = std::move(m_work.front());
            m_work.pop_front();
        }
        work();
    }
}

} // namespace ZRSmartDB
