// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace ZRSmartDB
{

/// The library's own threads. Work that has not begun when the queue is stopped is dropped.
class TaskQueue
{
public:
    explicit TaskQueue(unsigned threads);
    TaskQueue(const TaskQueue&) = delete;
    TaskQueue& operator=(const TaskQueue&) = delete;
    ~TaskQueue();

    /// `work` must not throw. Any thread.
    void post(std::function<void()> work);

    /// Drops what waits and returns when what runs has ended. Called again it does nothing.
    void stop();

private:
    void run();

    std::mutex m_mutex; ///< protects the work and the flag
    std::condition_variable m_hasChanged;
    std::deque<std::function<void()>> m_work;
    bool m_isStopped = false;
    std::vector<std::thread> m_threads;
};

} // namespace ZRSmartDB
