// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace ZRSmartDB
{

/// Brings projects from the server into a data folder. Everything is gathered in a side folder and checked
/// there; it becomes visible by renaming, models before the project that they belong to. A kill at any moment
/// leaves nothing visible but whole projects; side folders that it left behind are removed by the next
/// download.
class Download
{
public:
    Download(http::Client& client, std::filesystem::path dataFolder);
    Download(const Download&) = delete;
    Download& operator=(const Download&) = delete;
    /// Removes what is still in the side folder.
    ~Download();

    /// Fetches a project that is not here, with its assigned models when `withModels` is set. Models that are
    /// here already stay as they are.
    [[nodiscard]] http::Fault run(const std::string& guid, bool withModels);

private:
    [[nodiscard]] http::Fault fetch(const std::string& guid);
    [[nodiscard]] http::Fault fetchModelsOf(const std::string& guid);
    [[nodiscard]] http::Fault moveIn();
    [[nodiscard]] std::filesystem::path sideFolderOf(const std::string& guid) const;

    http::Client& m_client;
    std::filesystem::path m_dataFolder;
    std::filesystem::path m_sideFolder;
    std::vector<std::string>
        m_fetched; ///< in the order in which they were fetched: the project before its models
};

} // namespace ZRSmartDB
