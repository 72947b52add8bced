// SPDX-License-Identifier: MIT
#include "server/worker/converterprocess.h"

#include "kyvconvert/converterwords.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace server
{

namespace
{

constexpr int lookMilliseconds = 1000;
constexpr std::chrono::seconds patience(5); ///< with a converter that is to stop
constexpr int notStarted = 127;

class Converter
{
public:
    explicit Converter(const std::vector<std::string>& command)
    {
        std::vector<char*> arguments;
        arguments.reserve(command.size() + 1);
        for (const auto& argument : command)
            arguments.push_back(const_cast<char*>(argument.c_str()));
        arguments.push_back(nullptr);
        std::array<int, 2> pipe{};
        if (pipe2(pipe.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("a pipe cannot be made");
        const auto parent = getpid();
        m_process = fork();
        if (m_process == 0)
            become(arguments.data(), pipe[1], parent);
        close(pipe[1]);
        m_output = pipe[0];
        if (m_process < 0)
            throw std::runtime_error("the converter cannot be started");
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    ~Converter()
    {
        if (m_process > 0) {
            ::kill(m_process, SIGKILL);
            (void)wait();
        }
        close(m_output);
    }

    /// Takes what the converter says within a second. False at its end.
    bool listen(int milliseconds)
    {
        pollfd input{m_output, POLLIN, 0};
        if (poll(&input, 1, milliseconds) <= 0)
            return true;
        std::array<char, 4096> buffer{};
        const auto count = read(m_output, buffer.data(), buffer.size());
        if (count < 0)
            return errno == EINTR || errno == EAGAIN;
        m_words.take({buffer.data(), static_cast<std::size_t>(count)});
        return count > 0;
    }

    /// Asks the converter to clean up and end; whoever does not within a while is killed.
    void stop()
    {
        using Clock = std::chrono::steady_clock;
        ::kill(m_process, SIGTERM);
        const auto begin = Clock::now();
        while (listen(lookMilliseconds) && Clock::now() - begin < patience) {
        }
    }

    ConverterEnd end()
    {
        const int status = wait();
        if (!WIFEXITED(status))
            return {ConverterEnd::How::killed, {}};
        if (WEXITSTATUS(status) == 0)
            return {ConverterEnd::How::done, {}};
        if (!m_words.reason().empty())
            return {ConverterEnd::How::failed, m_words.reason()};
        return {ConverterEnd::How::failed, WEXITSTATUS(status) == notStarted
                                               ? "the converter could not be started"
                                               : "the converter has ended without a reason"};
    }

    [[nodiscard]] double percent() const { return m_words.percent(); }

private:
    [[noreturn]] static void become(char* const* arguments, int output, pid_t parent)
    {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (getppid() != parent)
            _exit(notStarted);
        dup2(output, STDOUT_FILENO);
        execv(arguments[0], arguments);
        _exit(notStarted);
    }

    int wait()
    {
        int status = 0;
        while (waitpid(m_process, &status, 0) < 0 && errno == EINTR) {
        }
        m_process = -1;
        return status;
    }

    pid_t m_process = -1;
    int m_output = -1;
    kyvconvert::ConverterWords m_words;
};

} // namespace

ConverterEnd RunConverter(const std::vector<std::string>& command, const std::function<bool(double)>& goOn)
{
    using Clock = std::chrono::steady_clock;
    Converter converter(command);
    auto asked = Clock::now();
    while (converter.listen(lookMilliseconds)) {
        if (Clock::now() - asked < std::chrono::milliseconds(lookMilliseconds))
            continue;
        asked = Clock::now();
        if (!goOn(converter.percent())) {
            converter.stop();
            return {ConverterEnd::How::stopped, {}};
        }
    }
    return converter.end();
}

} // namespace server
