// SPDX-License-Identifier: MIT
#include "kyvconvert/childprocess.h"

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kyvconvert
{

namespace
{

constexpr int notStarted = 127;
constexpr int killedBy = 128;
constexpr std::size_t longestLine = 65536;

/// Only calls that are allowed between fork and exec.
[[noreturn]] void BecomeProgram(char* const* arguments, int output, pid_t parent)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(notStarted);
    const int nothing = open("/dev/null", O_RDWR);
    dup2(nothing, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(nothing, STDERR_FILENO);
    execvp(arguments[0], arguments);
    _exit(notStarted);
}

void HandOverLines(int input, const std::function<void(std::string_view)>& onLine)
{
    std::string waiting;
    std::array<char, 4096> buffer{};
    for (;;) {
        const auto count = read(input, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return;
        waiting.append(buffer.data(), static_cast<std::size_t>(count));
        std::size_t begin = 0;
        for (auto end = waiting.find('\n'); end != std::string::npos; end = waiting.find('\n', begin)) {
            onLine(std::string_view(waiting).substr(begin, end - begin));
            begin = end + 1;
        }
        waiting.erase(0, begin);
        if (waiting.size() > longestLine)
            waiting.clear();
    }
}

} // namespace

int RunChild(const std::vector<std::string>& command, const std::function<void(std::string_view)>& onLine)
{
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const auto& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    std::array<int, 2> pipe{};
    if (pipe2(pipe.data(), O_CLOEXEC) != 0)
        return notStarted;
    const auto parent = getpid();
    const auto child = fork();
    if (child == 0)
        BecomeProgram(arguments.data(), pipe[1], parent);
    close(pipe[1]);
    if (child > 0)
        HandOverLines(pipe[0], onLine);
    close(pipe[0]);
    if (child < 0)
        return notStarted;
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : killedBy + WTERMSIG(status);
}

} // namespace kyvconvert
