// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace server
{

/// The files of converted models that workers on other machines send, a folder for each job. Any thread, one
/// at a time for each job.
class ArrivingModels
{
public:
    /// Makes the folder, empty: what came before a machine failed need not be what was sent.
    explicit ArrivingModels(std::filesystem::path folder);

    /// Where everything of a job lies.
    [[nodiscard]] std::filesystem::path folder(const std::string& job) const { return m_folder / job; }

    /// Writes bytes of a file, which ends behind them then. False when it is shorter than `offset`. `path` is
    /// one that a project may have. Throws DiskFull, and std::runtime_error.
    [[nodiscard]] bool write(const std::string& job, const std::string& path, std::uint64_t offset,
                             std::string_view bytes) const;

    /// Gives the model the name `model` within the job's folder. False unless it consists of these files, by
    /// path and size.
    [[nodiscard]] bool complete(const std::string& job, const std::map<std::string, std::uint64_t>& files,
                                const std::string& model) const;

    void remove(const std::string& job) const;

    /// Removes what belongs to no job that `isRunning`.
    void removeUnless(const std::function<bool(const std::string& job)>& isRunning) const;

private:
    std::filesystem::path m_folder;
};

} // namespace server
