// SPDX-License-Identifier: MIT
#include "server/conversions/workerpool.h"

#include <chrono>
#include <csignal>
#include <iostream>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace server
{

namespace
{

constexpr std::chrono::milliseconds look(200);
constexpr std::chrono::seconds
    restAfterEnd(2); ///< so that a worker that cannot start does not busy the machine
constexpr int notStarted = 127;

using Clock = std::chrono::steady_clock;

struct Place {
    pid_t process = -1;
    Clock::time_point next; ///< when one is to be started
};

} // namespace

WorkerPool::WorkerPool(std::vector<std::string> command, unsigned count)
    : m_command(std::move(command))
    , m_thread([this, count] { run(count); })
{
}

WorkerPool::~WorkerPool()
{
    m_isToEnd = true;
    m_thread.join();
}

int WorkerPool::start() const
{
    std::vector<char*> arguments;
    arguments.reserve(m_command.size() + 1);
    for (const auto& argument : m_command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    const auto parent = getpid();
    const auto process = fork();
    if (process != 0)
        return process;
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    // The server's sockets are not the worker's: its address would stay taken when the server has ended.
    close_range(STDERR_FILENO + 1, ~0U, 0);
    if (getppid() == parent)
        execv(arguments[0], arguments.data());
    _exit(notStarted);
}

void WorkerPool::run(unsigned count)
{
    std::vector<Place> places(count);
    while (!m_isToEnd) {
        for (auto& place : places) {
            int status = 0;
            if (place.process > 0 && waitpid(place.process, &status, WNOHANG) == place.process) {
                std::cerr << "a conversion worker has ended (" << status
                          << "); another one takes its place\n";
                place = {-1, Clock::now() + restAfterEnd};
            }
            if (place.process <= 0 && Clock::now() >= place.next)
                place.process = start();
        }
        std::this_thread::sleep_for(look);
    }
    for (const auto& place : places) {
        if (place.process > 0)
            kill(place.process, SIGTERM);
    }
    for (const auto& place : places) {
        if (place.process > 0)
            waitpid(place.process, nullptr, 0);
    }
}

} // namespace server
