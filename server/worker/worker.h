// SPDX-License-Identifier: MIT
#pragma once

#include "server/worker/jobdesk.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace server
{

/// Takes conversion jobs and does them, one after the other.
class Worker
{
public:
    struct Settings {
        std::filesystem::path folder;       ///< what conversions are at, and models that were made before
        std::filesystem::path converter;    ///< the program
        std::chrono::seconds jobTime{3600}; ///< how long a conversion may take
        std::uint64_t jobMebibytes = 4096;  ///< how much memory it may occupy
    };

    /// `isToEnd` is asked often.
    Worker(JobDesk& desk, Settings settings, std::function<bool()> isToEnd);

    /// Does the next job. False when there is none. Throws std::exception when the desk cannot be asked.
    [[nodiscard]] bool doNext();

private:
    void convert(const Job& job);
    [[nodiscard]] std::vector<std::string> commandFor(const Job& job, const std::filesystem::path& archive,
                                                      const std::filesystem::path& target) const;

    JobDesk& m_desk;
    Settings m_settings;
    std::function<bool()> m_isToEnd;
};

} // namespace server
