// SPDX-License-Identifier: MIT
#include "kyvconvert/job.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <new>
#include <sstream>

#include <nlohmann/json.hpp>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kyvconvert
{

namespace
{

constexpr long looksEvery = 50'000'000; ///< nanoseconds

void Print(const nlohmann::json& line)
{
    std::printf("%s\n", line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
    std::fflush(stdout);
}

/// Pages that a process occupies when it is one of the group, else 0.
std::uint64_t PagesOf(const std::filesystem::path& process, pid_t group)
{
    std::ifstream stream(process / "stat");
    std::string text;
    std::getline(stream, text);
    // The name may hold anything; what is counted stands after it.
    const auto end = text.rfind(')');
    if (end == std::string::npos)
        return 0;
    std::istringstream fields(text.substr(end + 1));
    std::string field;
    pid_t itsGroup = 0;
    fields >> field >> field >> itsGroup;
    if (itsGroup != group)
        return 0;
    for (int i = 0; i < 18; ++i)
        fields >> field;
    std::uint64_t pages = 0;
    fields >> pages;
    return fields ? pages : 0;
}

std::uint64_t MemoryOf(pid_t group)
{
    static const auto pageSize = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    std::uint64_t pages = 0;
    std::error_code error;
    for (std::filesystem::directory_iterator it("/proc", error), end; !error && it != end;
         it.increment(error)) {
        const auto name = it->path().filename().string();
        if (name.find_first_not_of("0123456789") == std::string::npos)
            pages += PagesOf(it->path(), group);
    }
    return pages * pageSize;
}

[[noreturn]] void BeJob(pid_t parent, const sigset_t& signals, const std::function<int()>& job)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(cancelled);
    setpgid(0, 0);
    sigprocmask(SIG_UNBLOCK, &signals, nullptr);
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    int code = crashed;
    try {
        code = job();
    } catch (const std::bad_alloc&) {
        code = TellError(outOfMemory, "the model needs more memory than there is");
    } catch (const std::exception& exception) {
        code = TellError(badSource, std::string("the file cannot be read: ") + exception.what());
    }
    _exit(code);
}

/// Ends all processes of a job.
int Reap(pid_t job)
{
    kill(-job, SIGKILL);
    int status = 0;
    while (waitpid(job, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

int Judge(int status)
{
    if (WIFEXITED(status))
        return WEXITSTATUS(status);
    return TellError(crashed, "the conversion has crashed (signal " + std::to_string(WTERMSIG(status)) + ')');
}

} // namespace

void TellPercent(int percent)
{
    static int told = -1;
    if (percent <= told)
        return;
    told = percent;
    Print({{"percent", percent}});
}

int TellError(ExitCode code, const std::string& reason)
{
    Print({{"error", reason}, {"code", static_cast<int>(code)}});
    return code;
}

int RunJob(const JobLimits& limits, const std::function<int()>& job)
{
    using Clock = std::chrono::steady_clock;
    sigset_t signals;
    sigemptyset(&signals);
    for (int signal : {SIGTERM, SIGINT, SIGHUP, SIGCHLD})
        sigaddset(&signals, signal);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    std::fflush(nullptr);
    const auto begin = Clock::now();
    const auto parent = getpid();
    const auto child = fork();
    if (child < 0)
        return TellError(crashed, "the conversion could not be started");
    if (child == 0)
        BeJob(parent, signals, job);
    // Both do it, so that it is done whoever runs first.
    setpgid(child, child);

    const timespec pause{0, looksEvery};
    for (;;) {
        const int signal = sigtimedwait(&signals, nullptr, &pause);
        siginfo_t info{};
        if (waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
            info.si_pid == child)
            return Judge(Reap(child));
        if (signal == SIGTERM || signal == SIGINT || signal == SIGHUP) {
            Reap(child);
            return TellError(cancelled, "the conversion was cancelled");
        }
        if (limits.memory > 0 && MemoryOf(child) > limits.memory) {
            Reap(child);
            return TellError(outOfMemory, "the model needs more memory than it may have");
        }
        if (limits.seconds > 0.0 &&
            std::chrono::duration<double>(Clock::now() - begin).count() > limits.seconds) {
            Reap(child);
            return TellError(outOfTime, "the model takes longer than it may");
        }
    }
}

} // namespace kyvconvert
