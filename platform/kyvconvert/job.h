// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace kyvconvert
{

/// How the programs of this folder end.
enum ExitCode {
    done = 0,
    badArguments = 2,
    badSource = 3,
    cannotWrite = 4,
    crashed = 5,
    outOfMemory = 6,
    outOfTime = 7,
    cancelled = 8,
};

struct JobLimits {
    std::uint64_t memory = 0; ///< bytes that the job and all that it starts may occupy; 0 for no limit
    double seconds = 0.0;     ///< 0 for no limit
};

/// Prints a percentage as one line of JSON, when it is higher than all before it.
void TellPercent(int percent);

/// Prints why something ends as one line of JSON and gives the code.
int TellError(ExitCode code, const std::string& reason);

/// Runs a job in a process of its own and waits for it. Whatever ends the job (a crash, a limit, a signal
/// that asks to stop), all that it has started is gone when this returns, and the reason has been told. The
/// job tells its own failures. Gives the exit code. To be called before there are threads.
int RunJob(const JobLimits& limits, const std::function<int()>& job);

} // namespace kyvconvert
