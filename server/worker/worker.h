// SPDX-License-Identifier: MIT
#pragma once

#include "server/conversions/archivefolder.h"
#include "server/storage/store.h"
#include "server/worker/modelpublisher.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

namespace server
{

/// Takes conversion jobs and does them, one after the other.
class Worker
{
public:
    struct Settings {
        std::string name;                   ///< no two workers have one
        std::filesystem::path data;         ///< the server's folder
        std::filesystem::path converter;    ///< the program
        std::chrono::seconds lease{15};     ///< how long a job is the worker's after a sign of life
        std::chrono::seconds jobTime{3600}; ///< how long a conversion may take
        std::uint64_t jobMebibytes = 4096;  ///< how much memory it may occupy
    };

    /// `isToEnd` is asked often.
    Worker(Store& store, Settings settings, std::function<bool()> isToEnd);

    /// Does the next job. False when there is none.
    [[nodiscard]] bool doNext();

private:
    void convert(const Job& job);
    void publish(const Job& job, const std::filesystem::path& folder, const std::string& model);
    void giveBack(const Job& job);
    [[nodiscard]] bool keep(const Job& job, double percent);
    void fail(const Job& job, const std::string& reason);

    Store& m_store;
    Settings m_settings;
    std::function<bool()> m_isToEnd;
    ArchiveFolder m_archives;
    ModelPublisher m_publisher;
};

} // namespace server
