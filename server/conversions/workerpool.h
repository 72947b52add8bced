// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace server
{

/// Keeps a number of worker processes running. They end with the pool, and with the server whatever ends
/// that.
class WorkerPool
{
public:
    /// Starts `count` processes of this command.
    WorkerPool(std::vector<std::string> command, unsigned count);
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

private:
    void run(unsigned count);
    [[nodiscard]] int start() const;

    std::vector<std::string> m_command;
    std::atomic<bool> m_isToEnd = false;
    /// Starts and watches all of them: a process ends with the thread that has started it.
    std::thread m_thread;
};

} // namespace server
