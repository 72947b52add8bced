// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <thread>

#include <QList>
#include <QString>

#include <sys/types.h>

namespace road
{

/// Processes that do nothing as long as it lives, however they were made to end meanwhile.
class Halted
{
public:
    explicit Halted(QList<pid_t> processes);
    Halted(const Halted&) = delete;
    Halted& operator=(const Halted&) = delete;
    ~Halted();

    [[nodiscard]] const QList<pid_t>& processes() const { return m_processes; }

private:
    QList<pid_t> m_processes;
};

/// Waits beside the test for the processes of a program, to halt each of them as soon as it is there: what
/// would be over in a moment stays in its middle. They go on when it goes.
class Trap
{
public:
    /// The program lies beside this one.
    explicit Trap(const QString& program);
    Trap(const Trap&) = delete;
    Trap& operator=(const Trap&) = delete;
    ~Trap();

    /// Something is halted.
    [[nodiscard]] bool isShut() const { return m_isShut; }

private:
    void watch(const QString& program);

    std::atomic<bool> m_isOpen = true;
    std::atomic<bool> m_isShut = false;
    QList<pid_t> m_halted; ///< of the thread, until that has ended
    std::thread m_thread;
};

} // namespace road
