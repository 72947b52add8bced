// SPDX-License-Identifier: MIT
#include "peers/program.h"

#include "ratio.h"

#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench
{

namespace
{

[[noreturn]] void Fail(const std::string& program)
{
    std::fprintf(stderr, "%s has failed\n", program.c_str());
    std::exit(1);
}

double SecondsIn(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

} // namespace

ProgramCost RunProgram(const std::vector<std::string>& words)
{
    std::vector<char*> arguments;
    for (const auto& word : words)
        arguments.push_back(const_cast<char*>(word.c_str())); // the call asks for it so
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    ::sync();
    ProgramCost cost;
    rusage usage{};
    cost.seconds = SecondsOf([&] {
        pid_t process = 0;
        int status = 0;
        // Not a fork: the child would count the memory of this process as its own.
        if (posix_spawnp(&process, arguments.front(), &actions, nullptr, arguments.data(), environ) != 0 ||
            wait4(process, &status, 0, &usage) != process || status != 0)
            Fail(words.front());
    });
    posix_spawn_file_actions_destroy(&actions);
    cost.processor = SecondsIn(usage.ru_utime) + SecondsIn(usage.ru_stime);
    cost.memory = static_cast<double>(usage.ru_maxrss) * 1024;
    return cost;
}

ProgramCost MedianOf(const std::vector<ProgramCost>& costs)
{
    const auto median = [&](double ProgramCost::*figure) {
        std::vector<double> values;
        for (const auto& cost : costs)
            values.push_back(cost.*figure);
        return MedianOf(values);
    };
    return {median(&ProgramCost::seconds), median(&ProgramCost::processor), median(&ProgramCost::memory)};
}

void Tell(const char* what, const ProgramCost& cost)
{
    std::fprintf(stderr, "%s: %.2f s, %.2f s of processor, %.0f MiB\n", what, cost.seconds, cost.processor,
                 cost.memory / 1024 / 1024);
}

} // namespace bench
