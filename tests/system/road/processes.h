// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <sys/types.h>

namespace road
{

/// The processes that run the program of that name from the folder of this program, this process not among
/// them.
[[nodiscard]] QList<pid_t> ProcessesOf(const QString& program);

/// The children that are running.
[[nodiscard]] QList<pid_t> Children();

/// What a process was started with, its name first; empty when it is gone.
[[nodiscard]] QStringList ArgumentsOf(pid_t process);

} // namespace road
