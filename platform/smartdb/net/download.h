// SPDX-License-Identifier: MIT
#pragma once

#include "http/client.h"
#include "smartdb/disk/disk.h"
#include "smartdb/disk/sidefolder.h"
#include "wire/digest.h"
#include "wire/manifest.h"

#include <filesystem>
#include <memory>
#include <string>
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
    /// Client and disk must outlive the download. Throws Failure.
    Download(http::Client& client, std::shared_ptr<Disk> disk, std::filesystem::path dataFolder);

    /// Fetches a project that is not here, with its assigned models when `withModels` is set. Models that are
    /// here already stay as they are. Throws Failure; then nothing of it is visible.
    void run(const std::string& guid, bool withModels);

    /// Fetches those models of the project in a folder, wherever that is, which are not here. Throws Failure.
    void runModelsOf(const std::filesystem::path& projectFolder);

private:
    void fetch(const std::string& guid);
    [[nodiscard]] std::vector<std::string> missingModels(const std::filesystem::path& projectFolder) const;
    void moveIn();
    void fetchFiles(const std::string& guid, const wire::Manifest& manifest);
    void keepUnreadable(const std::string& guid);

    http::Client& m_client;
    const std::shared_ptr<Disk> m_disk;
    const std::filesystem::path m_dataFolder;
    SideFolder m_side;
    std::vector<std::string> m_fetched; ///< the models before their project
};

} // namespace ZRSmartDB
