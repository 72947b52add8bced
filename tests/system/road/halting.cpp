// SPDX-License-Identifier: MIT
#include "road/halting.h"

#include "road/processes.h"

#include <chrono>
#include <csignal>

namespace road
{

namespace
{

constexpr std::chrono::milliseconds look(5);

void SendTo(const QList<pid_t>& processes, int signal)
{
    for (const auto process : processes)
        ::kill(process, signal);
}

} // namespace

Halted::Halted(QList<pid_t> processes)
    : m_processes(std::move(processes))
{
    SendTo(m_processes, SIGSTOP);
}

Halted::~Halted()
{
    SendTo(m_processes, SIGCONT);
}

Trap::Trap(const QString& program)
    : m_thread([this, program] { watch(program); })
{
}

Trap::~Trap()
{
    m_isOpen = false;
    m_thread.join();
    SendTo(m_halted, SIGCONT);
}

void Trap::watch(const QString& program)
{
    while (m_isOpen) {
        for (const auto process : ProcessesOf(program)) {
            if (m_halted.contains(process))
                continue;
            ::kill(process, SIGSTOP);
            m_halted.append(process);
            m_isShut = true;
        }
        std::this_thread::sleep_for(look);
    }
}

} // namespace road
