// SPDX-License-Identifier: MIT
#include "server/conversions/arrivingmodels.h"

#include "server/conversions/portions.h"
#include "wire/projectfolder.h"

#include <system_error>
#include <vector>

namespace server
{

namespace
{

constexpr const char* arriving = "arriving";

} // namespace

ArrivingModels::ArrivingModels(std::filesystem::path folder)
    : m_folder(std::move(folder))
{
    std::filesystem::remove_all(m_folder);
    std::filesystem::create_directories(m_folder);
}

bool ArrivingModels::write(const std::string& job, const std::string& path, std::uint64_t offset,
                           std::string_view bytes) const
{
    const auto file = folder(job) / arriving / std::filesystem::u8path(path);
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    if (offset > (error ? 0 : size))
        return false;
    std::filesystem::create_directories(file.parent_path());
    WritePortion(file, offset, bytes, Keeping::whileItRuns);
    std::filesystem::resize_file(file, offset + bytes.size());
    return true;
}

bool ArrivingModels::complete(const std::string& job, const std::map<std::string, std::uint64_t>& files,
                              const std::string& model) const
{
    const auto source = folder(job) / arriving;
    const auto target = folder(job) / model;
    if (!std::filesystem::exists(source))
        return false;
    std::map<std::string, std::uint64_t> standing;
    for (const auto& path : wire::ProjectFiles(source))
        standing[path] = std::filesystem::file_size(source / std::filesystem::u8path(path));
    if (standing != files)
        return false;
    std::filesystem::rename(source, target);
    return true;
}

void ArrivingModels::remove(const std::string& job) const
{
    std::error_code error;
    std::filesystem::remove_all(folder(job), error);
}

void ArrivingModels::removeUnless(const std::function<bool(const std::string& job)>& isRunning) const
{
    std::vector<std::string> jobs;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder))
        jobs.push_back(entry.path().filename().string());
    for (const auto& job : jobs) {
        if (!isRunning(job))
            remove(job);
    }
}

} // namespace server
